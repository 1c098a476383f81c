// A mount whose server never answers.

#include <Platform/Items.h>

#include <thread>

#include "evaluator/Asking.h"
#include "mounts/Namespace.h"
#include "mounts/VolumesAsked.h"

using namespace Mounts;
using namespace std::chrono_literals;

namespace {

class DeadMounts : public testing::Test {
  protected:
    std::string At(std::string const& name) const { return here.Path(name); }

    // Runs a test with a dead mount, and one that lives behind it.
    template <class Body>
    void ApartWithADeadMount(Body const& body) const {
        Apart([&] {
            DeadServer server(At("dead"));
            MountTmpfs(At("alive"));
            PlatformSetVolumePatience(10);
            EXPECT_TRUE(Evaluator::LoadInspectors(Evaluator::StandardInspectorsFolder()).empty());
            body(server);
        });
    }
    // The place of the dead mount among the volumes: the living one is the last.
    static ItemCount DeadIndex() {
        ItemCount last = 1;
        while (FSGetVolumeInfo(0, last + 1, nullptr, 0, nullptr, nullptr, nullptr) == noErr) ++last;
        return last - 1;
    }
    std::string DoesNotAnswer(std::string const& shown = "dead") const {
        return "the file system mounted at \"" + At(shown) + "\" does not answer";
    }

    TemporaryFolder const here;
};

Evaluator::RunOptions Within(std::chrono::nanoseconds time) {
    Evaluator::RunOptions options;
    options.limits.time = time;
    return options;
}

std::size_t Threads() {
    auto const tasks = std::filesystem::directory_iterator("/proc/self/task");
    return static_cast<std::size_t>(std::distance(begin(tasks), end(tasks)));
}

}  // namespace

TEST_F(DeadMounts, HangNothingThatDidNotAskForThem) {
    ApartWithADeadMount([&](DeadServer&) {
        EXPECT_EQ("root", Answer("name of volume 1"));
        EXPECT_EQ("alive", Answer("names of volumes \"alive\""));
        EXPECT_EQ("alive", Answer("name of volume \"alive\""));
        EXPECT_EQ("", Answer("names of volumes \"nobody\""));
        EXPECT_EQ("alive", Answer("name of volume of folder \"" + At("alive") + "\""));
        EXPECT_EQ("true", Answer("exists file \"/proc/version\""));
        EXPECT_EQ("true", Answer("exists folder \"" + here.Path() + "\""));
        EXPECT_EQ("true", Answer("exists hfs folder \"alive:\""));
    });
}

TEST_F(DeadMounts, TellTheirNumbersAndNamesAtOnce) {
    ApartWithADeadMount([&](DeadServer&) {
        PlatformSetVolumePatience(3'600'000);
        FSVolumeRefNum number = 0;
        HFSUniStr255 name{};
        ASSERT_EQ(noErr, FSGetVolumeInfo(0, DeadIndex(), &number, kFSVolInfoNone, nullptr, &name, nullptr));
        EXPECT_GT(-100, number);
        EXPECT_EQ(u"dead", std::u16string(name.unicode, name.unicode + name.length));
    });
}

TEST_F(DeadMounts, AreOfflineWhenThePatienceIsAtItsEnd) {
    ApartWithADeadMount([&](DeadServer&) {
        ItemCount const index = DeadIndex();
        EXPECT_EQ(volOffLinErr, AskVolume(0, index).error);
        char mountPoint[4096];
        EXPECT_EQ(volOffLinErr, PlatformUnresponsiveMount(mountPoint, sizeof mountPoint));
        EXPECT_EQ(At("dead"), mountPoint);
        EXPECT_EQ(noErr, AskVolume(0, index + 1).error);
    });
}

TEST_F(DeadMounts, TakeOneThreadHoweverOftenTheyAreAsked) {
    ApartWithADeadMount([&](DeadServer&) {
        ItemCount const index = DeadIndex();
        EXPECT_EQ(volOffLinErr, AskVolume(0, index).error);
        PlatformSetVolumePatience(3'600'000);
        for (int i = 0; i < 20; ++i) EXPECT_EQ(volOffLinErr, AskVolume(0, index).error) << "at once";
        EXPECT_EQ(2u, Threads());
    });
}

TEST_F(DeadMounts, AreAskedAgainWhenTheCallHasComeBack) {
    ApartWithADeadMount([&](DeadServer& server) {
        ItemCount const index = DeadIndex();
        EXPECT_EQ(volOffLinErr, AskVolume(0, index).error);
        PlatformSetVolumePatience(3'600'000);
        server.Close();
        OSErr error = volOffLinErr;
        while (error == volOffLinErr) error = AskVolume(0, index).error;
        EXPECT_EQ(ioErr, error) << "the server is known to be gone";
    });
}

TEST_F(DeadMounts, AnotherInTheirPlaceIsAsked) {
    ApartWithADeadMount([&](DeadServer&) {
        EXPECT_EQ(volOffLinErr, AskVolume(0, DeadIndex()).error);
        Unmount(At("dead"), MNT_DETACH);
        MountTmpfs(At("dead"));
        PlatformSetVolumePatience(3'600'000);
        EXPECT_EQ(noErr, AskVolume(NumberAt(At("dead"))).error);
    });
}

TEST_F(DeadMounts, ThatAreCoveredAreNoVolumes) {
    ApartWithADeadMount([&](DeadServer&) {
        PlatformSetVolumePatience(3'600'000);
        ASSERT_EQ(0, mount("test", At("dead").c_str(), "tmpfs", 0, nullptr));
        EXPECT_EQ((std::vector{At("alive"), At("dead")}), VolumesBelow(here.Path()));
    });
}

// The kernel's table does not tell; the look at their places does.
TEST_F(DeadMounts, InAFolderThatIsCoveredEndNoEnumeration) {
    Apart([&] {
        DeadServer const server(At("folder/dead"));
        MountTmpfs(At("alive"));
        MountTmpfs(At("folder"));
        EXPECT_EQ((std::vector{At("alive"), At("folder")}), VolumesBelow(here.Path()));
    });
}

TEST_F(DeadMounts, EndAnEvaluationAtItsTimeLimitWithTheirName) {
    ApartWithADeadMount([&](DeadServer&) {
        PlatformSetVolumePatience(3'600'000);
        std::string const query = "name of volume " + std::to_string(DeadIndex());
        EXPECT_EQ((Outcome{{},
                           "error: the time limit of 0.05 s was reached\n  " + query +
                               "\n          ^~~~~~\n  hint: " + DoesNotAnswer() + "\n"}),
                  Ask(query, Within(50ms)));
        EXPECT_EQ((Outcome{{"root"}, ""}), Ask("name of volume 1", Within(1h)));
    });
}

TEST_F(DeadMounts, AreNamedByACancellationToo) {
    ApartWithADeadMount([&](DeadServer&) {
        PlatformSetVolumePatience(3'600'000);
        std::string const query = "name of volume " + std::to_string(DeadIndex());
        Evaluator::Cancellation cancellation;
        Evaluator::RunOptions options;
        options.cancellation = &cancellation;
        std::thread other([&] {
            std::this_thread::sleep_for(30ms);
            cancellation.Request();
        });
        EXPECT_EQ((Outcome{{},
                           "error: the evaluation was cancelled\n  " + query +
                               "\n          ^~~~~~\n  hint: " + DoesNotAnswer() + "\n"}),
                  Ask(query, options));
        other.join();
    });
}

TEST_F(DeadMounts, FailAnEvaluationWithTheirNameWhenThereIsNoTimeLimit) {
    ApartWithADeadMount([&](DeadServer&) {
        std::string const query = "name of volume " + std::to_string(DeadIndex());
        EXPECT_EQ((Outcome{{},
                           "error: \"volume\" failed: the platform's error -53 (" + DoesNotAnswer() +
                               ")\n  " + query + "\n          ^~~~~~\n"}),
                  Ask(query));
        EXPECT_EQ("error: \"volume\" failed: the platform's error -53 (" + DoesNotAnswer() +
                      ")\n  names of volumes\n           ^~~~~~~\n",
                  Ask("names of volumes").problems);
    });
}

// An inspector that takes every failure for an absence would have them answered "false".
TEST_F(DeadMounts, MakeNothingAbsent) {
    ApartWithADeadMount([&](DeadServer&) {
        ASSERT_EQ(Messages(Evaluator::LoadInspectorLibrary(TestLibrary("NastyInspectors"))), "");
        std::string const index = std::to_string(DeadIndex());
        for (std::string const word : {"shrug", "sigh"}) {
            std::string const failed =
                "error: \"" + word + "\" failed: the platform's error -53 (" + DoesNotAnswer() + ")\n";
            for (std::string const& query :
                 {"exists " + word + " " + index, word + " " + index + " otherwise 2",
                  "number of " + word + "s " + index})
                EXPECT_EQ(failed, Ask(query).problems.substr(0, failed.size())) << query;
            EXPECT_EQ("true|false", Answer("exists " + word + " 1; exists " + word + " 9999"));
        }
    });
}

TEST_F(DeadMounts, AreNotNamedForTheTimeLimitOfAnotherEvaluation) {
    ApartWithADeadMount([&](DeadServer&) {
        PlatformSetVolumePatience(3'600'000);
        Ask("name of volume " + std::to_string(DeadIndex()), Within(50ms));
        EXPECT_EQ(
            "error: the time limit of 0.05 s was reached\n"
            "  number of integers up to 1000000000000\n"
            "            ^~~~~~~~~~~~~~\n"
            "  hint: allow more time, or ask for less\n",
            Ask("number of integers up to 1000000000000", Within(50ms)).problems);
    });
}

TEST_F(DeadMounts, AreShownPrintable) {
    Apart([&] {
        DeadServer const server(At("de\nad"));
        MountTmpfs(At("alive"));
        PlatformSetVolumePatience(10);
        EXPECT_TRUE(Evaluator::LoadInspectors(Evaluator::StandardInspectorsFolder()).empty());
        std::string const query = "name of volume " + std::to_string(DeadIndex());
        EXPECT_EQ("error: \"volume\" failed: the platform's error -53 (" + DoesNotAnswer("de\\nad") +
                      ")\n  " + query + "\n          ^~~~~~\n",
                  Ask(query).problems);
    });
}
