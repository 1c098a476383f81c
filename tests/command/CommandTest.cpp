#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "command/Running.h"
#include "support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

struct Folder : TemporaryFolder {
    fs::path const path{Path()};
};

TEST(Command, PrintsOneValueALine) {
    Ran ran = RunZelq({"1; 2; 3"});
    EXPECT_EQ(ran.out, "1\n2\n3\n");
    EXPECT_EQ(ran.err, "");
    EXPECT_EQ(ran.status, 0);
}

TEST(Command, APluralWithoutValuesIsAnswered) {
    Ran ran = RunZelq({"(1; 2) whose (it > 5)"});
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(ran.err, "");
    EXPECT_EQ(ran.status, 0);
}

TEST(Command, AFailedEvaluationComesBehindTheValuesFound) {
    Ran ran = RunZelq({"1; 2 / 0; 3"});
    EXPECT_EQ(ran.out, "1\n");
    EXPECT_EQ(ran.err, "error: division by zero\n  1; 2 / 0; 3\n       ^\n");
    EXPECT_EQ(ran.status, 1);
}

TEST(Command, AnInvalidQuery) {
    Ran ran = RunZelq({"naem of now"});
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(ran.err.substr(0, 58), "error: a time has no property \"naem\"\n  naem of now\n  ^~~~\n");
    EXPECT_EQ(ran.status, 2);
}

TEST(Command, WrongUse) {
    for (std::vector<std::string> const& arguments :
         std::vector<std::vector<std::string>>{{}, {"1", "2"}, {"--nonsense"}, {"--inspectors"}}) {
        Ran ran = RunZelq(arguments);
        EXPECT_EQ(ran.status, 3);
        EXPECT_EQ(ran.out, "");
        EXPECT_NE(ran.err, "");
    }
    EXPECT_EQ(RunZelq({}).err, "QUERY is required\nRun with --help for more information.\n");
}

TEST(Command, AQueryMayBeginWithAMinus) {
    EXPECT_EQ(RunZelq({"-5 + 3"}).out, "-2\n");
    EXPECT_EQ(RunZelq({"-(1)"}).out, "-1\n");
    EXPECT_EQ(RunZelq({"-hour"}).out, "-01:00:00\n");
    EXPECT_EQ(RunZelq({"--", "-hour"}).out, "-01:00:00\n");
    EXPECT_EQ(RunZelq({"-1", "-2"}).status, 3);
}

TEST(Command, NothingToLoad) {
    Folder empty;
    Ran ran = RunZelq({"--inspectors", empty.path, "1"});
    EXPECT_EQ(ran.err, "error: no inspector library was loaded from \"" + empty.path.string() + "\"\n");
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(RunZelq({"--inspectors", empty.path / "none", "1"}).status, 3);
}

TEST(Command, LoadsTheLibraryOrTheFolderNamed) {
    std::string library = BuildFolder() + "/bin/tests/libraries/SoundInspectors.dylib";
    EXPECT_EQ(RunZelq({"--inspectors", library, "second answer"}).out, "42\n");
    EXPECT_EQ(RunZelq({"second answer", "--inspectors", library}).out, "42\n");
    EXPECT_EQ(RunZelq({"--inspectors", library, "hour of now"}).status, 2);
    EXPECT_EQ(
        RunZelq({"--inspectors", BuildFolder() + "/lib/Inspectors", "hour of now as string contains \"\""})
            .out,
        "true\n");
}

TEST(Command, ARefusedLibraryIsToldAndTheOthersServe) {
    Folder folder;
    std::string libraries = BuildFolder() + "/bin/tests/libraries/";
    fs::copy(libraries + "SoundInspectors.dylib", folder.path);
    fs::copy(libraries + "SizeInspectors.dylib", folder.path);
    fs::copy(libraries + "TestInspectors.dylib", folder.path);
    chmod((folder.path / "TestInspectors.dylib").c_str(), 0777);
    Ran ran = RunZelq({"--inspectors", folder.path, "second answer"});
    EXPECT_EQ(ran.out, "42\n");
    EXPECT_EQ(ran.status, 0);
    EXPECT_NE(ran.err.find("others may write it (mode 0777)"), std::string::npos);
    EXPECT_NE(ran.err.find("SizeInspectors.dylib: cache: its record has 63 bytes"), std::string::npos);
}

TEST(Command, TheTreeCanBeMoved) {
    Folder folder;
    fs::create_directories(folder.path / "bin");
    fs::copy(BuildFolder() + "/bin/zelq", folder.path / "bin");
    fs::create_directories(folder.path / "lib" / "Inspectors");
    for (char const* library : {"Platform.dylib", "Evaluator.dylib", "Inspectors/CarbonZelqInspectors.dylib"})
        fs::copy(BuildFolder() + "/lib/" + library, folder.path / "lib" / library);
    Ran ran = RunProgram({folder.path / "bin" / "zelq", "day_of_week of time \"2026-11-20T12:00:00Z\" > 0"});
    EXPECT_EQ(ran.out, "true\n");
    EXPECT_EQ(ran.err, "");
}

TEST(Command, LibrariesHaveTheModeThatTheHostTrusts) {
    for (char const* library :
         {"Platform.dylib", "Evaluator.dylib", "Inspectors/CarbonZelqInspectors.dylib"}) {
        struct stat status;
        ASSERT_EQ(stat((BuildFolder() + "/lib/" + library).c_str(), &status), 0) << library;
        EXPECT_EQ(status.st_mode & 07777, 0755u) << library;
    }
}

TEST(Command, Version) {
    Ran ran = RunZelq({"--version"});
    EXPECT_EQ(ran.out, "zelq " ZELQ_VERSION "\n");
    EXPECT_EQ(ran.status, 0);
}

TEST(Command, HelpListsOptionsExamplesAndEveryExitStatus) {
    Ran ran = RunZelq({"--help"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.err, "");
    for (char const* part : {"--inspectors", "--registrations", "--version", "Examples:", "\n  0  ",
                             "\n  1  ", "\n  2  ", "\n  3  "})
        EXPECT_NE(ran.out.find(part), std::string::npos) << part;
}

TEST(Command, AFullDiskIsTold) {
    Ran ran = RunProgram({"sh", "-c", "exec \"$0\" '1; 2' >/dev/full", BuildFolder() + "/bin/zelq"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.err, "error: cannot write to standard output\n");
}

TEST(Command, RegistrationsAreJsonLinesWithTheKeysThatApply) {
    Ran ran = RunZelq(
        {"--registrations", "--inspectors", BuildFolder() + "/bin/tests/libraries/TestInspectors.dylib"});
    EXPECT_EQ(ran.status, 0);
    auto has = [&](std::string const& line) {
        return ("\n" + ran.out).find("\n" + line + "\n") != std::string::npos;
    };
    EXPECT_TRUE(has(
        R"({"library":"TestInspectors.dylib","kind":"type","singular":"special probe","base":"probe","size":40,"fingerprint":false})"))
        << ran.out;
    EXPECT_TRUE(has(
        R"({"library":"TestInspectors.dylib","kind":"property","singular":"id","plural":"ids","object":"probe","result":"integer","dependsOnlyOnParameters":false})"));
    EXPECT_TRUE(has(
        R"({"library":"TestInspectors.dylib","kind":"property","singular":"probe","plural":"probes","index":"integer","result":"probe","dependsOnlyOnParameters":false})"));
    EXPECT_TRUE(has(
        R"({"library":"TestInspectors.dylib","kind":"iterated","singular":"echo","plural":"echoes","object":"probe","result":"string","stateSize":16,"dependsOnlyOnParameters":false})"));
    EXPECT_TRUE(has(R"({"library":"TestInspectors.dylib","kind":"cache"})"));
    EXPECT_EQ(ran.out.find("\"core\""), std::string::npos);
    Ran own = RunZelq({"--registrations"});
    EXPECT_NE(
        own.out.find(
            R"({"library":"CarbonZelqInspectors.dylib","kind":"operator","result":"boolean","operator":7,"left":"date","right":"date","dependsOnlyOnParameters":false})"),
        std::string::npos);
}

}  // namespace
