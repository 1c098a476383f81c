// How values and problems are written for programs.

#include <gtest/gtest.h>

#include <regex>

#include "command/Running.h"
#include "support/TemporaryFolder.h"

namespace {

std::string const kBothFail = "naem of now; agee of now";

// The document, with its time taken out.
std::string Document(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "--json");
    return std::regex_replace(RunZelq(arguments).out, std::regex("\"seconds\":[0-9]+\\.[0-9]+"),
                              "\"seconds\":…");
}

TEST(Formats, ADocumentHoldsTheWholeAnswer) {
    EXPECT_EQ(Document({"1 + 1"}),
              R"({"query":"1 + 1","type":"integer","plural":false,"values":[2],"error":null,"seconds":…})"
              "\n");
    EXPECT_EQ(
        Document({"\"a\"; \"b\""}),
        R"({"query":"\"a\"; \"b\"","type":"string","plural":true,"values":["a","b"],"error":null,"seconds":…})"
        "\n");
}

TEST(Formats, ADocumentWithoutValues) {
    EXPECT_EQ(
        Document({"(1; 2) whose (it > 5)"}),
        R"json({"query":"(1; 2) whose (it > 5)","type":"integer","plural":true,"values":[],"error":null,"seconds":…})json"
        "\n");
    EXPECT_EQ(RunZelq({"--ndjson", "(1; 2) whose (it > 5)"}).out, "");
    EXPECT_EQ(RunZelq({"-0", "(1; 2) whose (it > 5)"}).out, "");
}

TEST(Formats, ValuesBeforeAnErrorStay) {
    std::string const message = "error: division by zero\n  1; 2 / 0; 3\n       ^\n";
    for (std::string format : {"--json", "--ndjson", "-0", "--null"}) {
        Ran ran = RunZelq({format, "1; 2 / 0; 3"});
        EXPECT_EQ(ran.err, message) << format;
        EXPECT_EQ(ran.status, 1) << format;
    }
    EXPECT_EQ(
        Document({"1; 2 / 0; 3"}),
        R"({"query":"1; 2 / 0; 3","type":"integer","plural":true,"values":[1],"error":{"kind":"evaluation","message":"division by zero","hint":null,"begin":5,"end":6,"more":[]},"seconds":…})"
        "\n");
    EXPECT_EQ(RunZelq({"--ndjson", "1; 2 / 0; 3"}).out, "1\n");
    EXPECT_EQ(RunZelq({"-0", "1; 2 / 0; 3"}).out, std::string("1\0", 2));
}

TEST(Formats, ADocumentOfAnInvalidQueryHasAllItsProblems) {
    EXPECT_EQ(
        Document({kBothFail}),
        R"({"query":"naem of now; agee of now","type":null,"plural":null,"values":[],"error":{"kind":"meaning","message":"a time has no property \"naem\"","hint":"\"date\" is one; so are \"day\" and \"time\"","begin":0,"end":4,"more":[{"kind":"meaning","message":"a time has no property \"agee\"","hint":"\"date\" is one; so are \"time\" and \"day\"","begin":13,"end":17}]},"seconds":…})"
        "\n");
    EXPECT_EQ(RunZelq({"--json", kBothFail}).status, 2);
}

TEST(Formats, EveryTypeInJson) {
    EXPECT_EQ(RunZelq({"--ndjson", "(-1, true, \"x\", time \"2026-11-20T12:00:00.5Z\", 90 * minute)"}).out,
              "[-1,true,\"x\",\"2026-11-20T12:00:00.500000+00:00\",\"01:30:00\"]\n");
    EXPECT_EQ(RunZelq({"--ndjson", "file type \"TEXT\""}).out, "\"file type\"\n");
    EXPECT_EQ(RunZelq({"--ndjson", "folder \"/usr\""}).out, "\"folder usr\"\n");
    EXPECT_EQ(RunZelq({"--ndjson", "(1, (2, (3, false)), (\"a\", \"b\"))"}).out,
              "[1,[2,[3,false]],[\"a\",\"b\"]]\n");
    EXPECT_EQ(RunZelq({"--ndjson", "1; 2"}).out, "1\n2\n");
}

TEST(Formats, AReaderOfJsonGetsEveryBitOfAnInteger) {
    std::string const query = "9223372036854775807; -9223372036854775808; 9007199254740993";
    Ran parsed = RunProgram({"python3", "-c", "import json, sys; print(json.load(sys.stdin)['values'])"},
                            RunZelq({"--json", query}).out);
    EXPECT_EQ(parsed.out, "[9223372036854775807, -9223372036854775808, 9007199254740993]\n") << parsed.err;
}

TEST(Formats, ControlCharactersAreEscapedInJson) {
    EXPECT_EQ(RunZelq({"--ndjson", R"("\u0001\n\t\"\\\x00ä")"}).out, R"("\u0001\n\t\"\\\u0000ä")"
                                                                     "\n");
}

TEST(Formats, TextThatIsNotUtf8IsBase64InJson) {
    for (auto const& [text, base64] :
         {std::pair("\\xff", "/w=="), {"\\xffa", "/2E="}, {"\\xffab", "/2Fi"}, {"\\xfb\\xefabc", "++9hYmM="}})
        EXPECT_EQ(RunZelq({"--ndjson", std::string("\"") + text + "\""}).out,
                  std::string("{\"base64\":\"") + base64 + "\"}\n");
    EXPECT_EQ(RunZelq({"--ndjson", "(1, \"\\xff\")"}).out, "[1,{\"base64\":\"/w==\"}]\n");
    // A surrogate and an overlong form are no UTF-8 either.
    EXPECT_EQ(RunZelq({"--ndjson", R"("\xed\xa0\x80"; "\xc0\x80")"}).out,
              "{\"base64\":\"7aCA\"}\n{\"base64\":\"wIA=\"}\n");
}

TEST(Formats, Base64WhateverTheType) {
    TemporaryFolder folder;
    folder.Write("\xff");
    Ran ran = RunZelq({"--ndjson", "file \"\\xff\" of folder \"" + folder.Path() + "\""});
    EXPECT_EQ(ran.out, "{\"base64\":\"ZmlsZSD/\"}\n") << ran.err;  // "file " and the byte
}

TEST(Formats, AQueryThatIsNotUtf8IsBase64InADocument) {
    EXPECT_EQ(
        Document({"\"\xff\" = \"a\""}),
        R"({"query":{"base64":"Iv8iID0gImEi"},"type":"boolean","plural":false,"values":[false],"error":null,"seconds":…})"
        "\n");
}

TEST(Formats, TheLineEndBehindAQueryInAFileIsNoneOfIt) {
    TemporaryFolder folder;
    EXPECT_EQ(Document({"-f", folder.Write("query", "1 +\n1\n")}),
              R"({"query":"1 +\n1","type":"integer","plural":false,"values":[2],"error":null,"seconds":…})"
              "\n");
}

TEST(Formats, BytesOfTextAreWrittenAsTheyAre) {
    std::string const query = R"("a\x00b"; "\xff"; "c\nd")";
    EXPECT_EQ(RunZelq({query}).out, std::string("a\0b\n\xff\nc\nd\n", 10));
    EXPECT_EQ(RunZelq({"-0", query}).out, std::string("a\0b\0\xff\0c\nd\0", 10));
    EXPECT_EQ(RunZelq({"--null", query}).out, RunZelq({"-0", query}).out);
}

TEST(Formats, ProblemsAsJson) {
    Ran ran = RunZelq({"--error-format=json", kBothFail});
    EXPECT_EQ(
        ran.err,
        R"({"kind":"meaning","message":"a time has no property \"naem\"","hint":"\"date\" is one; so are \"day\" and \"time\"","begin":0,"end":4,"file":null,"count":1})"
        "\n"
        R"({"kind":"meaning","message":"a time has no property \"agee\"","hint":"\"date\" is one; so are \"time\" and \"day\"","begin":13,"end":17,"file":null,"count":1})"
        "\n");
    EXPECT_EQ(ran.status, 2);
    EXPECT_EQ(RunZelq({"--error-format", "text", "2 / 0"}).err, "error: division by zero\n  2 / 0\n    ^\n");
}

TEST(Formats, EachKindOfProblemAsJson) {
    auto kind = [](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "--error-format=json");
        std::string const err = RunZelq(arguments).err;
        return err.substr(0, err.find(','));
    };
    std::string const nasty = TestLibrary("NastyInspectors");
    EXPECT_EQ(kind({"1 +"}), R"({"kind":"syntax")");
    EXPECT_EQ(kind({"naem of now"}), R"({"kind":"meaning")");
    EXPECT_EQ(kind({"2 / 0"}), R"({"kind":"evaluation")");
    EXPECT_EQ(kind({"--inspectors", nasty, "--timeout", "0.01", "patience of trouble 1"}),
              R"({"kind":"limit")");
}

TEST(Formats, ProblemsAsJsonNameTheFile) {
    TemporaryFolder folder;
    std::string const file = folder.Write("query", "2 / 0\n");
    EXPECT_EQ(RunZelq({"--error-format=json", "-f", file}).err,
              R"({"kind":"evaluation","message":"division by zero","hint":null,"begin":2,"end":3,"file":")" +
                  file + "\",\"count\":1}\n");
}

TEST(Formats, ProblemsOfLibrariesAndOfTheCommandAsJson) {
    std::string const library = TestLibrary("RepeatingInspectors");
    Ran ran = RunZelq({"--error-format=json", "--inspectors", library, "1"});
    std::string const end = R"(","hint":null,"begin":null,"end":null,"file":null,"count":)";
    EXPECT_EQ(ran.err, R"({"kind":"library","message":"cannot load \")" + library +
                           R"(\": it breaks the contract of inspector libraries)" + end + "1}\n" +
                           R"({"kind":"library","message":"RepeatingInspectors.dylib: cache: )" +
                           "its record has 63 bytes for the host instead of 64" + end + "3}\n" +
                           R"({"kind":"command","message":"no inspector library was loaded from \")" +
                           library + R"(\")" + end + "1}\n");
    EXPECT_EQ(ran.status, 3);
}

}  // namespace
