// Loading and unloading inspector libraries.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "evaluator/Asking.h"
#include "support/TemporaryFolder.h"

namespace {

bool IsMapped(std::string const& library) {
    std::ifstream maps("/proc/self/maps");
    std::stringstream text;
    text << maps.rdbuf();
    return text.str().find("/" + library) != std::string::npos;
}

std::string Load(std::string const& name) {
    return Messages(Evaluator::LoadInspectorLibrary(TestLibrary(name)));
}

// What Load says of a library that broke the contract: a line about the file, then these.
std::string Refused(std::string const& name, std::string const& reasons) {
    return "cannot load \"" + TestLibrary(name).string() +
           "\": it breaks the contract of inspector libraries\n" + reasons;
}

// A copy of a library with other rights, gone at the end.
class Copy {
  public:
    explicit Copy(std::string const& name) : folder(home.Path()), file(folder / (name + ".dylib")) {
        std::filesystem::copy(TestLibrary(name), file);
    }

  private:
    TemporaryFolder home;

  public:
    std::filesystem::path const folder, file;
};

TEST(Libraries, LoadUnloadLoadAgainAndReallyUnmap) {
    for (int round = 0; round < 3; ++round) {
        EXPECT_FALSE(IsMapped("TestInspectors.dylib"));
        ASSERT_EQ(Load("TestInspectors"), "");
        EXPECT_TRUE(IsMapped("TestInspectors.dylib"));
        EXPECT_EQ(Answer("id of probe 3"), "3");
        EXPECT_FALSE(Evaluator::UnloadInspectorLibrary("TestInspectors.dylib"));
        EXPECT_FALSE(IsMapped("TestInspectors.dylib"));
        EXPECT_TRUE(Evaluator::Registrations().empty());
        EXPECT_EQ(Ask("id of probe 3").values.size(), 0u);
    }
}

TEST(Libraries, TheInspectorLibraryLeavesNothingRegisteredOrMapped) {
    std::filesystem::path folder = Evaluator::StandardInspectorsFolder();
    for (int round = 0; round < 2; ++round) {
        ASSERT_EQ(Messages(Evaluator::LoadInspectors(folder)), "");
        EXPECT_TRUE(IsMapped("CarbonZelqInspectors.dylib"));
        EXPECT_GT(Evaluator::Registrations().size(), 50u);
        EXPECT_EQ(Answer("name of file \"/etc/hosts\""), "hosts");
        ASSERT_FALSE(Evaluator::UnloadInspectorLibrary("CarbonZelqInspectors.dylib"));
        EXPECT_TRUE(Evaluator::Registrations().empty());
        EXPECT_FALSE(IsMapped("CarbonZelqInspectors.dylib"));
    }
}

TEST(Libraries, AProcessMayEndWithALibraryLoaded) {
    EXPECT_EXIT(
        {
            Evaluator::LoadInspectorLibrary(TestLibrary("TestInspectors"));
            std::exit(Answer("id of probe 3") == "3" ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(Libraries, TwoAtOnce) {
    ASSERT_EQ(Load("TestInspectors"), "");
    ASSERT_EQ(Load("SoundInspectors"), "");
    EXPECT_EQ(Evaluator::LoadedLibraries(),
              (std::vector<std::string>{"TestInspectors.dylib", "SoundInspectors.dylib"}));
    EXPECT_EQ(Answer("id of probe (second answer)"), "42");
    EXPECT_FALSE(Evaluator::UnloadInspectorLibrary("TestInspectors.dylib"));
    EXPECT_EQ(Answer("second answer"), "42");
    EXPECT_FALSE(Evaluator::UnloadInspectorLibrary("SoundInspectors.dylib"));
}

TEST(Libraries, ACompiledQueryHoldsItsLibrary) {
    ASSERT_EQ(Load("TestInspectors"), "");
    {
        auto compiled = Evaluator::Query::Compile("id of probe 3");
        ASSERT_TRUE(compiled.query);
        auto refused = Evaluator::UnloadInspectorLibrary("TestInspectors.dylib");
        ASSERT_TRUE(refused);
        EXPECT_EQ(refused->message,
                  "cannot unload \"TestInspectors.dylib\": a compiled query, a kept value or an evaluation "
                  "uses it");
        auto other = Evaluator::Query::Compile("1 + 1");
    }
    EXPECT_FALSE(Evaluator::UnloadInspectorLibrary("TestInspectors.dylib"));
}

TEST(Libraries, ProblemsOutliveTheLibrary) {
    ASSERT_EQ(Load("TestInspectors"), "");
    Outcome outcome = Ask("broken of probe 1");
    ASSERT_FALSE(Evaluator::UnloadInspectorLibrary("TestInspectors.dylib"));
    EXPECT_EQ(outcome.problems.substr(0, 24), "error: \"broken\" failed: ");
}

TEST(Libraries, NotLoadedCannotBeUnloaded) {
    EXPECT_EQ(Evaluator::UnloadInspectorLibrary("None.dylib")->message,
              "cannot unload \"None.dylib\": it is not loaded");
}

TEST(Libraries, TheSameTwiceIsRefused) {
    ASSERT_EQ(Load("SoundInspectors"), "");
    EXPECT_EQ(Load("SoundInspectors"),
              "cannot load \"" + TestLibrary("SoundInspectors").string() + "\": it is loaded already\n");
    EXPECT_EQ(
        Load("LikeSoundInspectors"),
        Refused("LikeSoundInspectors",
                "LikeSoundInspectors.dylib: property \"second answer\" of the world: already registered by "
                "SoundInspectors.dylib\n"));
    EXPECT_EQ(Answer("second answer"), "42");
    EXPECT_FALSE(Evaluator::UnloadInspectorLibrary("SoundInspectors.dylib"));
}

TEST(Libraries, OnesThatBreakTheContractAreRefusedByName) {
    EXPECT_EQ(Load("TwiceInspectors"),
              Refused("TwiceInspectors",
                      "TwiceInspectors.dylib: property \"faulty answer\" of the world: already registered by "
                      "TwiceInspectors.dylib\n"));
    EXPECT_EQ(Load("SizeInspectors"),
              Refused("SizeInspectors",
                      "SizeInspectors.dylib: cache: its record has 63 bytes for the host instead of 64\n"));
    EXPECT_EQ(
        Load("ReservedInspectors"),
        Refused("ReservedInspectors",
                "ReservedInspectors.dylib: property \"answer of all\" of the world: its phrase \"answer of "
                "all\" holds the reserved word \"of\"\n"));
    EXPECT_EQ(
        Load("RecordInspectors"),
        Refused("RecordInspectors",
                "RecordInspectors.dylib: type \"faulty type\": its record is that of the cache already\n"));
    EXPECT_EQ(
        Load("OperatorInspectors"),
        Refused(
            "OperatorInspectors",
            "OperatorInspectors.dylib: operator 4 of \"integer\" and \"time\": there is no operator of that "
            "code\n"
            "OperatorInspectors.dylib: operator \"=\" of \"integer\" and \"time\": the result of a relation "
            "is "
            "a boolean\n"));
    EXPECT_TRUE(Evaluator::LoadedLibraries().empty());
    EXPECT_TRUE(Evaluator::Registrations().empty());
    EXPECT_FALSE(IsMapped("TwiceInspectors.dylib"));
}

TEST(Libraries, AnUnknownTypeIsReportedAtFirstUse) {
    ASSERT_EQ(Load("UnknownInspectors"), "");
    EXPECT_EQ(
        Ask("strange answer").problems,
        "error: UnknownInspectors.dylib: property \"strange answer\" of the world: no library registers the "
        "type \"stranger\" that it names\n"
        "  strange answer\n"
        "  ^~~~~~~~~~~~~~\n");
    EXPECT_EQ(Answer("1 + 1"), "2");
    EXPECT_FALSE(Evaluator::UnloadInspectorLibrary("UnknownInspectors.dylib"));
}

TEST(Libraries, AnUnknownTypeIsReportedAtFirstUseWhateverTheRegistration) {
    ASSERT_EQ(Load("StrangerInspectors"), "");
    struct {
        char const *query, *registration;
    } const rows[] = {
        {"1 as lost", "cast \"lost\" of \"integer\""},
        {"true as found", "cast \"found\" of \"stranger\""},
        {"true < 1", "operator \"<\" of \"stranger\" and \"integer\""},
        {"1 > true", "operator \"<\" of \"stranger\" and \"integer\""},
        {"sorted values of true", "operator \"<\" of \"stranger\" and \"integer\""},
        {"(true, 1) < (true, 1)", "operator \"<\" of \"stranger\" and \"integer\""},
        {"true + true", "operator \"+\" of \"boolean\" and \"boolean\""},
        {"\"a\" + \"b\"", "operator \"+\" of \"boolean\" and \"boolean\""},
        {"strange weight of 1", "property \"strange weight\" of \"stranger\""},
        {"strange place 1", "property \"strange place\" with index \"stranger\" of the world"},
        {"strange place", "property \"strange place\" with index \"stranger\" of the world"},
    };
    for (auto const& row : rows) {
        auto compiled = Evaluator::Query::Compile(row.query);
        EXPECT_EQ(Messages(compiled.problems),
                  "StrangerInspectors.dylib: " + std::string(row.registration) +
                      ": no library registers the type \"stranger\" that it names\n")
            << row.query;
    }
    EXPECT_EQ(Answer("1 < 2; 1 + 1 = 2; 1 as string = \"1\""), "true|true|true");
    EXPECT_FALSE(Evaluator::UnloadInspectorLibrary("StrangerInspectors.dylib"));
}

TEST(Libraries, ATypeThatIsSmallerThanItsBaseIsReportedAtFirstUse) {
    ASSERT_EQ(Load("NarrowInspectors"), "");
    auto compiled = Evaluator::Query::Compile("weight of narrow thing");
    EXPECT_EQ(Messages(compiled.problems),
              "NarrowInspectors.dylib: type \"narrow thing\": its base type \"wide thing\" is larger than "
              "itself\n");
    EXPECT_EQ(Answer("1 + 1"), "2");
    EXPECT_FALSE(Evaluator::UnloadInspectorLibrary("NarrowInspectors.dylib"));
}

TEST(Libraries, TheLibraryOfEveryTypeOnTheWayIsHeld) {
    ASSERT_EQ(Load("ThingInspectors"), "");
    ASSERT_EQ(Load("ForeignInspectors"), "");
    {
        auto compiled = Evaluator::Query::Compile("weight of foreign thing");
        ASSERT_TRUE(compiled.query);
        EXPECT_TRUE(Evaluator::UnloadInspectorLibrary("ThingInspectors.dylib"));
        EXPECT_TRUE(Evaluator::UnloadInspectorLibrary("ForeignInspectors.dylib"));
        EXPECT_EQ(Answer("weight of foreign thing"), "5");
        auto only = Evaluator::Query::Compile("foreign thing");
        compiled.query.reset();
        EXPECT_TRUE(Evaluator::UnloadInspectorLibrary("ThingInspectors.dylib"));
    }
    EXPECT_FALSE(Evaluator::UnloadInspectorLibrary("ThingInspectors.dylib"));
    EXPECT_FALSE(Evaluator::UnloadInspectorLibrary("ForeignInspectors.dylib"));
}

TEST(Libraries, ACacheThatCannotBeClearedEndsTheEvaluationOnly) {
    ASSERT_EQ(Load("BadCacheInspectors"), "");
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(Ask("1 + 1").problems,
                  "error: \"clearing a cache of BadCacheInspectors.dylib\" failed: the platform's error -36 "
                  "(input or "
                  "output error)\n  1 + 1\n    ^\n");
    ASSERT_FALSE(Evaluator::UnloadInspectorLibrary("BadCacheInspectors.dylib"));
    EXPECT_EQ(Answer("1 + 1"), "2");
}

TEST(Libraries, OneThatRegistersNothingIsRefused) {
    EXPECT_EQ(Load("EmptyInspectors"),
              "cannot load \"" + TestLibrary("EmptyInspectors").string() + "\": it registers nothing\n");
}

TEST(Libraries, RowsThatLeadNowhereAreRefused) {
    EXPECT_EQ(
        Load("NowhereInspectors"),
        Refused(
            "NowhereInspectors",
            "NowhereInspectors.dylib: property \"number\" of the world: \"number\" is a phrase of the "
            "language itself\n"
            "NowhereInspectors.dylib: cast \"string\" of \"string\": a type is not cast to itself\n"
            "NowhereInspectors.dylib: property \"nothing\" of the world: a type that it needs is not named\n"
            "NowhereInspectors.dylib: property \"strange\" of the world: of the type \"no\xFFtype\" that it "
            "names, \"no\xFFtype\" in its phrase \"no\xFFtype\" is no word\n"));
}

TEST(Libraries, TheSameFileByAnotherNameIsRefused) {
    Copy copy("SoundInspectors");
    ASSERT_EQ(chmod(copy.file.c_str(), 0755), 0);
    ASSERT_EQ(Messages(Evaluator::LoadInspectorLibrary(copy.file)), "");
    std::filesystem::create_hard_link(copy.file, copy.folder / "Other.dylib");
    EXPECT_EQ(Messages(Evaluator::LoadInspectorLibrary(copy.folder / "Other.dylib")),
              "cannot load \"" + (copy.folder / "Other.dylib").string() + "\": it registers nothing\n");
    EXPECT_EQ(Answer("second answer"), "42");
    EXPECT_FALSE(Evaluator::UnloadInspectorLibrary("SoundInspectors.dylib"));
    EXPECT_EQ(Messages(Evaluator::LoadInspectorLibrary(copy.folder / "Other.dylib")), "");
    EXPECT_FALSE(Evaluator::UnloadInspectorLibrary("Other.dylib"));
}

TEST(Libraries, OneThatOthersMayWriteIsRefused) {
    Copy copy("SoundInspectors");
    for (auto mode : {0775, 0757}) {
        ASSERT_EQ(chmod(copy.file.c_str(), static_cast<mode_t>(mode)), 0);
        char text[8];
        std::snprintf(text, sizeof text, "%04o", mode);
        EXPECT_EQ(Messages(Evaluator::LoadInspectorLibrary(copy.file)),
                  "cannot load \"" + copy.file.string() +
                      "\": it is not trusted: others may write it (mode " + text + ")\n");
    }
    ASSERT_EQ(chmod(copy.file.c_str(), 0755), 0);
    EXPECT_EQ(Messages(Evaluator::LoadInspectorLibrary(copy.file)), "");
    EXPECT_FALSE(Evaluator::UnloadInspectorLibrary("SoundInspectors.dylib"));
}

// Only root can give a file away; who is not root finds the file of another in /usr/lib no more suspicious
// than root's.
TEST(Libraries, OneOfAnotherOwnerIsRefused) {
    Copy copy("SoundInspectors");
    bool root = geteuid() == 0;
    ASSERT_EQ(chmod(copy.file.c_str(), 0755), 0);
    ASSERT_EQ(chown(copy.file.c_str(), root ? 12345 : geteuid(), static_cast<gid_t>(-1)), 0);
    EXPECT_EQ(Messages(Evaluator::LoadInspectorLibrary(copy.file)),
              root ? "cannot load \"" + copy.file.string() +
                         "\": it is not trusted: its owner is neither you nor root (user id 12345)\n"
                   : "");
    Evaluator::UnloadInspectorLibrary("SoundInspectors.dylib");
}

TEST(Libraries, WhatIsNoLibraryIsRefused) {
    Copy copy("SoundInspectors");
    std::ofstream(copy.folder / "Text.dylib") << "no library";
    ASSERT_EQ(chmod((copy.folder / "Text.dylib").c_str(), 0644), 0);
    EXPECT_NE(Messages(Evaluator::LoadInspectorLibrary(copy.folder / "Text.dylib")).find("Text.dylib"),
              std::string::npos);
    EXPECT_EQ(Messages(Evaluator::LoadInspectorLibrary("/nowhere/None.dylib")),
              "cannot load \"/nowhere/None.dylib\": No such file or directory\n");
    EXPECT_EQ(Messages(Evaluator::LoadInspectors("/nowhere")),
              "cannot read the inspectors folder \"/nowhere\": No such file or directory\n");
}

TEST(Libraries, AFolderIsLoadedInTheOrderOfNamesPastABadOne) {
    Copy copy("SoundInspectors");
    ASSERT_EQ(chmod(copy.file.c_str(), 0755), 0);
    std::filesystem::copy(TestLibrary("SizeInspectors"), copy.folder / "Bad.dylib");
    std::ofstream(copy.folder / "readme.txt") << "not looked at";
    std::string messages = Messages(Evaluator::LoadInspectors(copy.folder));
    EXPECT_NE(messages.find("Bad.dylib"), std::string::npos);
    EXPECT_EQ(Evaluator::LoadedLibraries(), std::vector<std::string>{"SoundInspectors.dylib"});
    EXPECT_FALSE(Evaluator::UnloadInspectorLibrary("SoundInspectors.dylib"));
}

}  // namespace
