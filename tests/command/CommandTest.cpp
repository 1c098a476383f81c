#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

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
    auto told = [](std::vector<std::string> const& arguments) {
        Ran ran = RunZelq(arguments);
        EXPECT_EQ(ran.status, 3);
        EXPECT_EQ(ran.out, "");
        std::string const end = "\nRun with --help for more information.\n";
        EXPECT_TRUE(ran.err.ends_with(end)) << ran.err;
        return ran.err.substr(0, ran.err.size() - std::min(ran.err.size(), end.size()));
    };
    std::string const nothing = "a QUERY is needed, or -f FILE, or -";
    EXPECT_EQ(told({}), nothing);
    EXPECT_EQ(told({"--json"}), nothing);
    std::string const several = "the QUERY is one argument: put quotes around it";
    EXPECT_EQ(told({"1", "2"}), several);
    EXPECT_EQ(told({"--", "name", "of", "now"}), several);
    std::string const twice = "only one of QUERY, -f, - and --registrations can be asked for";
    EXPECT_EQ(told({"1", "-f", "x"}), twice);
    EXPECT_EQ(told({"-", "-f", "x"}), twice);
    EXPECT_EQ(told({"--registrations", "1"}), twice);
    std::string const formats = "only one of --null, --json and --ndjson can be asked for";
    EXPECT_EQ(told({"--json", "--ndjson", "1"}), formats);
    EXPECT_EQ(told({"1", "-0", "--json"}), formats);
    std::string const registrations = "--registrations has one format and no time limit";
    EXPECT_EQ(told({"--registrations", "--json"}), registrations);
    EXPECT_EQ(told({"--registrations", "--timeout", "1"}), registrations);
    EXPECT_EQ(told({"--explain", "--ndjson", "1"}), "--explain has one format and no time limit");
    EXPECT_EQ(told({"--explain", "--registrations"}),
              "only one of --registrations and --explain can be asked for");
    EXPECT_EQ(told({"--nonsense"}), "The following argument was not expected: --nonsense");
    EXPECT_EQ(told({"--inspectors"}), "--inspectors: 1 required DIR missing");
    EXPECT_EQ(told({"1", "-f"}), "-f: 1 required FILE missing");
    EXPECT_EQ(told({"--error-format", "xml", "1"}), "--error-format: xml not in {text,json}");
    for (char const* time : {"0", "0.0", "-1", "1e3", "inf", "nan", "0x1", "", "1s", "."})
        EXPECT_EQ(told({"--timeout", time, "1"}),
                  "--timeout: a number of seconds above 0 is needed, such as 2.5")
            << time;
}

TEST(Command, AQueryMayBeginWithAMinus) {
    EXPECT_EQ(RunZelq({"-5 + 3"}).out, "-2\n");
    EXPECT_EQ(RunZelq({"-(1)"}).out, "-1\n");
    EXPECT_EQ(RunZelq({"-hour"}).out, "-01:00:00\n");
    EXPECT_EQ(RunZelq({"--", "-hour"}).out, "-01:00:00\n");
    EXPECT_EQ(RunZelq({"-1", "-2"}).status, 3);
}

TEST(Command, OnlyWhatIsExactlyAnOptionIsNoQuery) {
    EXPECT_EQ(RunZelq({"-0 + 3"}).out, "3\n");
    EXPECT_EQ(RunZelq({"-0", "-0 + 3"}).out, std::string("3\0", 2));
    EXPECT_EQ(RunZelq({"--", "-0"}).out, "0\n");
    EXPECT_EQ(RunZelq({"--null", "-1"}).out, std::string("-1\0", 3));
    EXPECT_EQ(RunZelq({"-f2"}).err.substr(0, 7), "error: ");  // the negative of a phrase "f2"
    EXPECT_EQ(RunZelq({"-f2"}).status, 2);
    EXPECT_EQ(RunZelq({"--", "--5"}).out, "5\n");
}

TEST(Command, TheValueOfAnOptionMayBeginWithAMinus) {
    Folder folder;
    folder.Write("-query", "1 + 1");
    Ran ran = RunProgram({"env", "-C", folder.path, Zelq(), "-f", "-query"});
    EXPECT_EQ(ran.out, "2\n");
    EXPECT_EQ(ran.err, "");
}

TEST(Command, ReadsTheQueryFromAFile) {
    Folder folder;
    EXPECT_EQ(RunZelq({"-f", folder.Write("plain", "1 + 1")}).out, "2\n");
    EXPECT_EQ(RunZelq({"-f", folder.Write("ended", "1 +\n1 // two\n")}).out, "2\n");
    EXPECT_EQ(RunZelq({"-f", folder.Write("dos", "1 +\r\n1\r\n")}).out, "2\n");
    EXPECT_EQ(RunProgram({"bash", "-c", "exec \"$0\" -f <(echo 1 + 2)", Zelq()}).out, "3\n");
}

TEST(Command, ReadsTheQueryFromStandardInput) {
    EXPECT_EQ(RunZelq({"-"}, "1 +\n1\n").out, "2\n");
    EXPECT_EQ(RunZelq({"-f", "-"}, "1 +\n1\n").out, "2\n");
    Ran ran = RunZelq({"-"}, "");
    EXPECT_EQ(ran.err, "(standard input):1:1: error: the query is empty\n  \n  ^\n");
    EXPECT_EQ(ran.status, 2);
}

TEST(Command, AProblemNamesItsPlaceInTheFile) {
    Folder folder;
    std::string const file = folder.Write("query", "1;\n(\"ö\", naem of now)\n");
    Ran ran = RunZelq({"-f", file});
    EXPECT_EQ(ran.err, file +
                           ":2:7: error: a time has no property \"naem\"\n  (\"ö\", naem of now)\n        "
                           "^~~~\n  hint: \"date\" is one; so are \"day\" and \"time\"\n");
    EXPECT_EQ(ran.status, 2);
    std::string const unfinished = folder.Write("unfinished", "\n1 +\n\n");
    EXPECT_EQ(
        RunZelq({"-f", unfinished}).err,
        unfinished + ":2:4: error: a phrase or a value is missing at the end of the query\n  1 +\n     ^\n");
    std::string const odd = folder.Write("\033[1m", "2 / 0");
    EXPECT_EQ(RunZelq({"-f", odd}).err,
              folder.Path("\\x1B[1m") + ":1:3: error: division by zero\n  2 / 0\n    ^\n");
}

TEST(Command, AnUnreadableFile) {
    Folder folder;
    Ran ran = RunZelq({"-f", folder.Path("none")});
    EXPECT_EQ(ran.err, "error: cannot read \"" + folder.Path("none") + "\": No such file or directory\n");
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(RunZelq({"-f", folder.path}).err,
              "error: cannot read \"" + folder.path.string() + "\": Is a directory\n");
    EXPECT_EQ(RunZelq({"-f", ""}).err, "error: cannot read \"\": No such file or directory\n");
    Ran closed = RunProgram({"sh", "-c", "exec \"$0\" - <&-", Zelq()});
    EXPECT_EQ(closed.err, "error: cannot read standard input: Bad file descriptor\n");
    EXPECT_EQ(closed.status, 3);
}

TEST(Command, AQueryBeyondALimit) {
    Ran endless = RunZelq({"-f", "/dev/zero"});
    EXPECT_EQ(endless.err.substr(0, endless.err.find('\n')),
              "/dev/zero:1:1: error: the query is longer than 1048576 bytes");
    EXPECT_EQ(endless.status, 4);
    Ran full = RunZelq({"-"}, "1" + std::string((1 << 20) - 1, ' ') + "\n");
    EXPECT_EQ(full.out, "1\n") << full.err;
    Ran deep = RunZelq({std::string(500, '(') + "1" + std::string(500, ')')});
    EXPECT_EQ(deep.err.substr(0, deep.err.find('\n')), "error: the query is nested more than 400 deep");
    EXPECT_EQ(deep.status, 4);
}

TEST(Command, TheTimeLimitEndsTheEvaluation) {
    Ran ran = RunZelq({"--timeout", "0.05", "--inspectors", TestLibrary("NastyInspectors"),
                       "kind of trouble 1; patience of trouble 1"});
    EXPECT_EQ(ran.out, "1\n");
    EXPECT_EQ(ran.err,
              "error: the time limit of 0.05 s was reached\n  kind of trouble 1; patience of trouble 1\n"
              "                     ^~~~~~~~\n  hint: allow more time, or ask for less\n");
    EXPECT_EQ(ran.status, 4);
}

TEST(Command, ALongTimeLimitIsNotReached) {
    for (char const* time : {"60", "1000000.5", "99999999999999999999"})
        EXPECT_EQ(RunZelq({"--timeout", time, "1 + 1"}).out, "2\n") << time;
}

// The smallest is some time yet, not none.
TEST(Command, ATinyTimeLimitIsReached) {
    EXPECT_EQ(RunZelq({"--timeout", "0.0000000000001", "--inspectors", TestLibrary("NastyInspectors"),
                       "patience of trouble 1"})
                  .status,
              4);
}

TEST(Command, KeepsLinesOfMoreFilesThanAProcessMayOpenAtFirst) {
    TemporaryFolder const folder;
    for (int i = 0; i < 100; ++i) folder.Write("f" + std::to_string(i), "line\nnext " + std::to_string(i));
    std::string const lines = "sorted values of lines 1 of files of folder \"" + folder.Path() + '"';
    std::string const query = "number of next lines of " + lines;
    Ran const ran = RunProgram({"/bin/sh", "-c", "ulimit -Sn 64 && exec \"$0\" \"$1\"", Zelq(), query});
    EXPECT_EQ("", ran.err);
    EXPECT_EQ("100\n", ran.out);
}

TEST(Command, NamesTheFileThatCannotBeRead) {
    // A process may open its own memory, and at offset 0 there is none.
    Ran const ran = RunZelq({"lines of file \"/proc/self/mem\""});
    EXPECT_EQ(
        "error: \"line\" failed: the file \"/proc/self/mem\" cannot be read: the platform's error -36 (input "
        "or "
        "output error)\n"
        "  lines of file \"/proc/self/mem\"\n  ^~~~~\n",
        ran.err);
    EXPECT_EQ(1, ran.status);
}

TEST(Command, ARepeatedComplaintIsToldOnceWithItsCount) {
    std::string const library = TestLibrary("RepeatingInspectors");
    Ran ran = RunZelq({"--inspectors", library, "1"});
    EXPECT_EQ(
        ran.err,
        "error: cannot load \"" + library +
            "\": it breaks the contract of inspector libraries\n"
            "error: RepeatingInspectors.dylib: cache: its record has 63 bytes for the host instead of 64 "
            "(3 times)\n"
            "error: no inspector library was loaded from \"" +
            library + "\"\n");
    EXPECT_EQ(ran.status, 3);
}

TEST(Command, NothingToLoad) {
    Folder empty;
    Ran ran = RunZelq({"--inspectors", empty.path, "1"});
    EXPECT_EQ(ran.err, "error: no inspector library was loaded from \"" + empty.path.string() + "\"\n");
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(RunZelq({"--inspectors", empty.path / "none", "1"}).status, 3);
}

TEST(Command, LoadsTheLibraryOrTheFolderNamed) {
    std::string library = TestLibrary("SoundInspectors");
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
    fs::copy(Zelq(), folder.path / "bin");
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
    for (char const* part : {"\n  -f FILE ", "--inspectors DIR", "--registrations", "--explain", "-0,--null",
                             "--json", "--ndjson", "--timeout SECONDS", "--error-format FORMAT:{text,json}",
                             "--version", "Examples:", "\n  0    ", "\n  1    ", "\n  2    ", "\n  3    ",
                             "\n  4    ", "\n  130  ", "\n  141  ", "\n  143  "})
        EXPECT_NE(ran.out.find(part), std::string::npos) << part;
}

TEST(Command, AFullDiskIsTold) {
    for (char const* arguments : {"'1; 2'", "--json '1; 2'", "--help", "--registrations"}) {
        Ran ran = RunProgram({"sh", "-c", std::string("exec \"$0\" ") + arguments + " >/dev/full", Zelq()});
        EXPECT_EQ(ran.status, 1) << arguments;
        EXPECT_EQ(ran.err, "error: cannot write to standard output: No space left on device\n") << arguments;
    }
    Ran failed = RunProgram({"sh", "-c", "exec \"$0\" '2 / 0' >/dev/full", Zelq()});
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.err, "error: division by zero\n  2 / 0\n    ^\n");
}

TEST(Command, ExplainsInsteadOfAnswering) {
    Ran ran = RunZelq({"--explain", "hours as string"});
    EXPECT_EQ(ran.out,
              "(hours as string)\n"
              "as string  string, many         core: cast \"string\" of \"time interval\"\n"
              "  hours    time interval, many  core: property \"hour\" of the world\n");
    EXPECT_EQ(ran.err, "");
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(RunZelq({"--explain", "1 / 0"}).status, 0);  // nothing is evaluated
    Ran invalid = RunZelq({"--explain", "naem of now"});
    EXPECT_EQ(invalid.out, "");
    EXPECT_EQ(invalid.err.substr(0, 37), "error: a time has no property \"naem\"\n");
    EXPECT_EQ(invalid.status, 2);
}

TEST(Command, RegistrationsAreJsonLinesWithTheKeysThatApply) {
    Ran ran = RunZelq({"--registrations", "--inspectors", TestLibrary("TestInspectors")});
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
