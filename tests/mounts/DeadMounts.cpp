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

// ---- Look-ups and listings

namespace {

// Says stop when it has been asked for a while.
std::chrono::steady_clock::time_point stopTime;
void StopIn(std::chrono::milliseconds time) {
    stopTime = std::chrono::steady_clock::now() + time;
    PlatformSetCheckIn([](UInt32) -> Boolean { return std::chrono::steady_clock::now() < stopTime; });
}

// How a call ended that is asked to stop while it waits, and the mount that is named then.
template <class Call>
std::string Stopped(Call const& call) {
    StopIn(150ms);
    auto const error = call();
    char mountPoint[4096];
    OSErr const code = PlatformUnresponsiveMount(mountPoint, sizeof mountPoint);
    PlatformSetCheckIn(nullptr);
    return std::to_string(error) + " " + std::to_string(code) + " " + mountPoint;
}

OSErr OpenIterator(std::string const& path, FSIterator* iterator) {
    Owned<CFURLRef> const url(NewURL(path));
    return PlatformOpenIterator(url, iterator);
}

std::vector<std::string> NamesIn(std::string const& folder) {
    std::vector<std::string> names;
    FSIterator iterator = nullptr;
    EXPECT_EQ(noErr, OpenIterator(folder, &iterator));
    for (OSErr error = noErr; error == noErr;) {
        ItemCount count = 0;
        FSRef references[3];
        error = FSGetCatalogInfoBulk(iterator, 3, &count, nullptr, 0, nullptr, references, nullptr, nullptr);
        EXPECT_TRUE(error == noErr || error == errFSNoMoreItems) << error;
        for (ItemCount i = 0; i < count; ++i)
            names.push_back(PathOf(references[i]).substr(folder.size() + 1));
    }
    EXPECT_EQ(noErr, FSCloseIterator(iterator));
    std::sort(names.begin(), names.end());
    return names;
}

// Mounts a file system that counts as one whose server may not answer, because it lies below such a one, but
// does answer.
void MountThatMayHangButAnswers(std::string const& deadMountPoint, std::string const& path) {
    ASSERT_EQ(0, mount("test", deadMountPoint.c_str(), "tmpfs", 0, nullptr));
    MountTmpfs(path);
}

// One item of a folder's listing.
FSCatalogInfo Listed(std::string const& folder, std::string const& name) {
    FSIterator iterator = nullptr;
    EXPECT_EQ(noErr, OpenIterator(folder, &iterator));
    FSCatalogInfo infos[64];
    FSRef references[64];
    ItemCount count = 0;
    EXPECT_EQ(errFSNoMoreItems, FSGetCatalogInfoBulk(iterator, 64, &count, nullptr, kFSCatInfoGettableInfo,
                                                     infos, references, nullptr, nullptr));
    EXPECT_EQ(noErr, FSCloseIterator(iterator));
    for (ItemCount i = 0; i < count; ++i)
        if (PathOf(references[i]) == folder + "/" + name) return infos[i];
    ADD_FAILURE() << name << " is not listed";
    return {};
}

}  // namespace

TEST_F(DeadMounts, LetEachLookUpEndWhenTheHostSaysStop) {
    std::string const path = At("dead/folder/x");
    std::string const stopped = "-128 -128 " + At("dead");
    auto const each = [&](auto const& call) {
        ApartWithADeadMount([&](DeadServer&) { EXPECT_EQ(stopped, Stopped(call)); });
    };
    FSRef reference{};
    each([&] { return FSPathMakeRef(Bytes(path.c_str()), &reference, nullptr); });
    each([&] {
        return FSPathMakeRefWithOptions(Bytes(path.c_str()), kFSPathMakeRefDoNotFollowLeafSymlink, &reference,
                                        nullptr);
    });
    each([&] {
        Owned<CFURLRef> const url(NewURL(path));
        FSCatalogInfo info;
        return PlatformGetItem(url, kFSCatInfoGettableInfo, &reference, &info);
    });
    each([&] {
        Owned<CFURLRef> const url(NewURL(At("dead/../dead/x/")));
        OSErr error = noErr;
        EXPECT_EQ(nullptr, PlatformCreateResolvedURL(url, &error));
        return error;
    });
    each([&] {
        FSIterator iterator = nullptr;
        return OpenIterator(At("dead"), &iterator);
    });
    each([&] {
        FSRef const parent = ReferenceTo(here.Path());
        return FSMakeFSRefUnicode(&parent, 4, reinterpret_cast<UniChar const*>(u"dead"), 0, &reference);
    });
    each([&] {
        FSRef const neighbour = ReferenceTo(At("alive"));
        FSSpec spec{};
        EXPECT_EQ(noErr, FSGetCatalogInfo(&neighbour, 0, nullptr, nullptr, &spec, nullptr));
        std::memcpy(spec.name, "\4dead", 5);
        return FSpMakeFSRef(&spec, &reference);
    });
    each([&] {
        FSRef const there = ReferenceTo(here.Link("link", "alive"));
        std::filesystem::remove(At("link"));
        here.Link("link", "dead");
        return FSGetCatalogInfo(&there, 0, nullptr, nullptr, nullptr, nullptr);
    });
}

TEST_F(DeadMounts, AreFoundBehindLinks) {
    ApartWithADeadMount([&](DeadServer&) {
        here.Link("absolute", At("dead"));
        here.MakeFolder("folder");
        here.Link("folder/relative", "../folder/./../absolute");
        FSRef reference{};
        std::string const link = At("folder/relative");
        EXPECT_EQ("-128 -128 " + At("dead"),
                  Stopped([&] { return FSPathMakeRef(Bytes(link.c_str()), &reference, nullptr); }));
        EXPECT_EQ(volOffLinErr, FSPathMakeRef(Bytes((link + "/x").c_str()), &reference, nullptr));
        EXPECT_EQ(noErr, FSPathMakeRefWithOptions(Bytes(link.c_str()), kFSPathMakeRefDoNotFollowLeafSymlink,
                                                  &reference, nullptr))
            << "the link itself is not on it";
    });
}

TEST_F(DeadMounts, LinksInARingLeadNowhere) {
    ApartWithADeadMount([&](DeadServer&) {
        here.Link("a", "b");
        here.Link("b", "a");
        EXPECT_EQ("false", Answer("exists folder \"" + At("a/x") + "\""));
    });
}

TEST_F(DeadMounts, AreListedWhereTheyAreMountedWithoutInformation) {
    ApartWithADeadMount([&](DeadServer&) {
        here.Write("file");
        EXPECT_EQ((std::vector<std::string>{"alive", "dead", "file"}), NamesIn(here.Path()));
        FSCatalogInfo const nothing{};
        FSCatalogInfo const dead = Listed(here.Path(), "dead");
        EXPECT_EQ(0, std::memcmp(&nothing, &dead, sizeof dead));
        EXPECT_EQ(noErr, PlatformUnresponsiveMount(nullptr, 0)) << "nobody asked for it";
        EXPECT_NE(0u, +Listed(here.Path(), "alive").nodeID);
    });
}

// An item tells of the silence itself when it is asked for more than its name; its neighbours are believed.
TEST_F(DeadMounts, AreInTheWayOfNoListingThatWantsTheirNamesOnly) {
    ApartWithADeadMount([&](DeadServer&) {
        here.Write("file");
        std::string const items = "items of folder \"" + here.Path() + "\"";
        EXPECT_EQ("alive|dead|file", Answer("sorted values of names of " + items));
        EXPECT_EQ("3", Answer("number of " + items));
        std::string const times = "number of modification times of " + items;
        EXPECT_EQ("error: \"modification time\" failed: the platform's error -53 (" + DoesNotAnswer() +
                      ")\n  " + times + "\n            ^~~~~~~~~~~~~~~~~~\n",
                  Ask(times).problems);
        std::string const both = "number of " + items + " = 3; exists folder \"" + At("dead") + "\"";
        std::string const before(both.find("folder", both.find(';')) + 2, ' ');
        EXPECT_EQ((Outcome{{"true"},
                           "error: \"folder\" failed: the platform's error -53 (" + DoesNotAnswer() +
                               ")\n  " + both + "\n" + before + "^~~~~~\n"}),
                  Ask(both));
    });
}

TEST_F(DeadMounts, WithACompanionBesideThemHangNoListing) {
    ApartWithADeadMount([&](DeadServer&) {
        here.Write("._dead");
        EXPECT_EQ((std::vector<std::string>{"._dead", "alive", "dead"}), NamesIn(here.Path()));
    });
}

TEST_F(DeadMounts, LinksOntoThemAreListedByThemselves) {
    ApartWithADeadMount([&](DeadServer&) {
        here.MakeFolder("folder");
        here.Link("first", At("dead/x"));
        here.Link("folder/direct", At("dead"));
        here.Link("folder/indirect", "../first");
        here.Link("folder/alive", At("alive"));
        here.Write("target");
        here.Link("folder/ordinary", At("target"));
        for (std::string const name : {"direct", "indirect"}) {
            FileInfo const info = FinderInfoOf(Listed(At("folder"), name));
            EXPECT_EQ(UInt32{kSymLinkFileType}, +info.fileType) << name;
            EXPECT_NE(0, info.finderFlags & kIsAlias) << name;
        }
        EXPECT_EQ(0u, +FinderInfoOf(Listed(At("folder"), "ordinary")).fileType);
        EXPECT_EQ(noErr, PlatformUnresponsiveMount(nullptr, 0));
        EXPECT_EQ("alive|direct|indirect|ordinary",
                  Answer("sorted values of names of items of folder \"" + At("folder") + "\""));
        EXPECT_EQ("4", Answer("number of descendants of folder \"" + At("folder") + "\""));
    });
}

TEST_F(DeadMounts, EndAWalkThatComesToThemWithTheirName) {
    ApartWithADeadMount([&](DeadServer&) {
        for (std::string const word : {"file", "folder", "descendant"}) {
            std::string const query = word + "s of folder \"" + here.Path() + "\"";
            EXPECT_EQ("error: \"" + word + "\" failed: the platform's error -53 (" + DoesNotAnswer() +
                          ")\n  " + query + "\n  " + "^" + std::string(word.size(), '~') + "\n",
                      Ask(query).problems);
        }
    });
}

TEST_F(DeadMounts, AreNotTakenForAnAbsenceOfWhatIsOnThem) {
    ApartWithADeadMount([&](DeadServer&) {
        std::string const query = "exists file \"" + At("dead/x") + "\"";
        EXPECT_EQ((Outcome{{},
                           "error: the time limit of 0.05 s was reached\n  " + query +
                               "\n         ^~~~\n  hint: " + DoesNotAnswer() + "\n"}),
                  Ask(query, Within(50ms)));
        EXPECT_EQ((Outcome{{},
                           "error: \"file\" failed: the platform's error -53 (" + DoesNotAnswer() + ")\n  " +
                               query + "\n         ^~~~\n"}),
                  Ask(query));
    });
}

// A batch that is given up leaves its iterator to the thread that reads it.
TEST_F(DeadMounts, EndIteratorsThatWereGivenUpOnThem) {
    Apart([&] {
        DeadServer const server(At("net"));
        MountThatMayHangButAnswers(At("net"), At("net/live"));
        for (int i = 0; i < 10; ++i) here.Write("net/live/" + std::to_string(i));
        FSIterator iterator = nullptr;
        ASSERT_EQ(noErr, OpenIterator(At("net/live"), &iterator));
        auto const read = [&] {
            ItemCount count = 77;
            OSErr const error =
                FSGetCatalogInfoBulk(iterator, 2, &count, nullptr, 0, nullptr, nullptr, nullptr, nullptr);
            return std::pair(error, count);
        };
        EXPECT_EQ(std::pair(OSErr{noErr}, ItemCount{2}), read());
        PlatformSetCheckIn([](UInt32) -> Boolean { return false; });
        EXPECT_EQ(std::pair(OSErr{userCanceledErr}, ItemCount{0}), read());
        PlatformSetCheckIn(nullptr);
        EXPECT_EQ(std::pair(OSErr{userCanceledErr}, ItemCount{0}), read()) << "for ever after";
        EXPECT_EQ(noErr, FSCloseIterator(iterator));
    });
}

TEST_F(DeadMounts, InAFolderOnAnotherMountThatMayHangHangNoListingOfIt) {
    Apart([&] {
        DeadServer const server(At("net"));
        MountThatMayHangButAnswers(At("net"), At("net/live"));
        DeadServer const other(At("net/live/dead"));
        here.Link("net/live/absolute", At("net/live/dead/x"));
        here.Link("net/live/relative", "dead");
        here.Write("net/live/file");
        EXPECT_EQ((std::vector<std::string>{"absolute", "dead", "file", "relative"}),
                  NamesIn(At("net/live")));
        EXPECT_EQ(0u, +Listed(At("net/live"), "dead").nodeID);
        EXPECT_EQ(UInt32{kSymLinkFileType}, +FinderInfoOf(Listed(At("net/live"), "relative")).fileType);
    });
}

// The same folder is asked on another thread, and on this one.
TEST_F(DeadMounts, ListingsOfOnesThatAnswerTellWhatOthersTell) {
    Apart([&] {
        DeadServer const server(At("net"));
        MountThatMayHangButAnswers(At("net"), At("net/live"));
        Bind(At("net/live"), At("plain"));
        here.MakeFolder("plain/many");
        for (int i = 0; i < 3000; ++i) here.Write("plain/many/file " + std::to_string(i), "12345");
        here.MakeFolder("plain/folder/inner");
        here.Write("plain/folder/inner/file");
        here.Write("target", "12345");
        here.Link("plain/link", At("target"));
        here.Link("plain/folder link", "folder");
        here.Link("plain/nowhere", "nothing");
        EXPECT_TRUE(Evaluator::LoadInspectors(Evaluator::StandardInspectorsFolder()).empty());
        EXPECT_EQ(NamesIn(At("plain/many")), NamesIn(At("net/live/many")));
        for (std::string const query :
             {"sorted values of names of descendants of folder \"", "number of items of folder \"",
              "sum of sizes of descendants of folder \"", "names of folders of folder \"",
              "name of file \"target\" of folder \"", "exists file \"folder/inner/file\" of folder \""})
            EXPECT_EQ(Ask(query + At("plain") + "\"").values, Ask(query + At("net/live") + "\"").values)
                << query;
        for (std::string const name : {"many", "folder", "link", "folder link", "nowhere"}) {
            FSCatalogInfo plain = Listed(At("plain"), name), live = Listed(At("net/live"), name);
            plain.accessDate = live.accessDate = {};  // reading folders and links is access
            plain.volume = live.volume;  // what is not asked cannot be known to be of one file system
            EXPECT_EQ(0, std::memcmp(&plain, &live, sizeof plain)) << name;
        }
    });
}
