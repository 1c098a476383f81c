// The lines of a file as an expression asks for them.

#include "content/FileLines.h"

#include <gtest/gtest.h>

#include <limits>

#include "Answers.h"
#include "Memory.h"
#include "RegistrationLog.h"
#include "Slot.h"
#include "filesystem/Asking.h"
#include "modules/FileLinesModule.h"
#include "support/TemporaryFolder.h"
#include "support/Unprivileged.h"

namespace {

using Transcription::Line;

constexpr long long kLeast = std::numeric_limits<long long>::min();
constexpr long long kLargest = std::numeric_limits<long long>::max();

using Texts = std::vector<std::string>;

Texts TextsOf(std::vector<file_line> const& lines) {
    Texts texts;
    for (file_line const& line : lines) texts.push_back(TextOf(line.text));
    return texts;
}

std::string A(std::size_t size) { return std::string(size, 'a'); }

std::ptrdiff_t OpenDescriptors() {
    std::filesystem::directory_iterator const all("/proc/self/fd");
    return std::distance(begin(all), end(all));
}

// Keeps what it is fed, piece by piece.
class Recorder : public Fingerprinter {
  public:
    void Add(ConstData bytes) override { pieces.emplace_back(bytes.begin(), bytes.end()); }
    Texts pieces;
};

class FileLines : public testing::Test {
  protected:
    ~FileLines() override { ReleaseInspectorMemory(); }

    file const& Holding(std::string_view bytes) {
        fork.Write(bytes);
        return fork.AsFile();
    }
    /// A line of a file with these bytes.
    file_line LineIn(std::string_view bytes, long long number) {
        return NumberedLine(number, {}, Holding(bytes));
    }

    Fork fork;
};

}  // namespace

// ---- Every line

TEST_F(FileLines, HaveTextsNumbersAndRanges) {
    struct Row {
        std::string bytes;
        std::vector<Line> lines;
    };
    for (Row const& row : std::vector<Row>{
             {"", {}},
             {"a", {{"a", 0, 0, 1}}},
             {"a\n", {{"a", 0, 0, 2}}},
             {"\n", {{"", 0, 0, 1}}},
             {"a\r\nb", {{"a", 0, 0, 3}, {"b", 1, 3, 4}}},
             {"a\n\rb", {{"a", 0, 0, 3}, {"b", 1, 3, 4}}},
             {"a\r\rb", {{"a", 0, 0, 2}, {"", 1, 2, 3}, {"b", 2, 3, 4}}},
             {"a\n\nb\n", {{"a", 0, 0, 2}, {"", 1, 2, 3}, {"b", 2, 3, 5}}},
             {A(5000), {{A(2048), 0, 0, 2048}, {A(2048), 1, 2048, 4096}, {A(904), 2, 4096, 5000}}},
             {A(5000) + "\nb",
              {{A(2048), 0, 0, 2048},
               {A(2048), 1, 2048, 4096},
               {A(904), 2, 4096, 5001},
               {"b", 3, 5001, 5002}}},
         })
        EXPECT_EQ(row.lines, AsLines(LinesOf(Holding(row.bytes)))) << Dump(row.bytes);
}

TEST_F(FileLines, OffsetsAreOneShortBehindALostEnding) {
    // The carriage return is the last byte of a full buffer.
    EXPECT_EQ((std::vector<Line>{{"x", 0, 0, 2}, {A(2045) + "b", 1, 2, 2049}, {"c", 2, 2049, 2050}}),
              AsLines(LinesOf(Holding("x\n" + A(2045) + "\rb\nc"))));
    EXPECT_EQ((std::vector<Line>{{"x", 0, 0, 2}, {A(2045), 1, 2, 2048}, {"b", 2, 2048, 2049}}),
              AsLines(LinesOf(Holding("x\n" + A(2045) + "\r\nb"))));
}

TEST_F(FileLines, AFirstLineWhoseOneByteEndingIsByte2048IsGivenAlone) {
    EXPECT_EQ((std::vector<Line>{{A(2047), 0, 0, 2047}, {"b", 1, 2047, 2049}, {"c", 2, 2049, 2050}}),
              AsLines(LinesOf(Holding(A(2047) + "\nb\nc"))));
}

TEST_F(FileLines, AnIterationStaysAtItsEnd) {
    file const& object = Holding("a\nb");
    line_iterator lines;
    lines.First({}, object);
    lines.Next({}, object);
    for (int i = 0; i < 3; ++i) EXPECT_THROW(lines.Next({}, object), NoSuchObject);
    EXPECT_THROW(lines.NextStartingWith({}, {}, object), NoSuchObject);
    EXPECT_THROW(lines.NextContaining({}, {}, object), NoSuchObject);
}

TEST_F(FileLines, AnIterationCanBeginAgain) {
    file const& object = Holding("a\nb");
    line_iterator lines;
    lines.First({}, object);
    lines.Next({}, object);
    EXPECT_EQ((Line{"a", 0, 0, 2}), AsLine(lines.First({}, object)));
    EXPECT_EQ((Line{"b", 1, 2, 3}), AsLine(lines.FirstContaining(StringOf("b"), {}, object)));
    EXPECT_EQ((Line{"b", 1, 2, 3}), AsLine(lines.FirstStartingWith(StringOf("b"), {}, object)));
}

TEST_F(FileLines, StepsOfAllKindsGoOnFromTheSameLine) {
    file const& object = Holding("ax\nbx\nb\nx\nc\n");
    line_iterator lines;
    EXPECT_EQ("ax", TextOf(lines.First({}, object).text));
    EXPECT_EQ("bx", TextOf(lines.NextContaining(StringOf("x"), {}, object).text));
    EXPECT_EQ((Line{"b", 2, 6, 8}), AsLine(lines.NextStartingWith(StringOf("b"), {}, object)));
    EXPECT_EQ((Line{"x", 3, 8, 10}), AsLine(lines.NextContaining(StringOf("x"), {}, object)));
    EXPECT_EQ((Line{"c", 4, 10, 12}), AsLine(lines.Next({}, object)));
}

// ---- Lines by their text

TEST_F(FileLines, StartingWithAndContainingCompareBytes) {
    using namespace std::string_literals;
    std::string const bytes = "ab\ncab\r\n\nAB\nx\0y\nabc"s;
    struct Row {
        std::string text;
        Texts startingWith;
        Texts containing;
    };
    for (Row const& row : std::vector<Row>{
             {"ab", {"ab", "abc"}, {"ab", "cab", "abc"}},
             {"AB", {"AB"}, {"AB"}},
             {"c", {"cab"}, {"cab", "abc"}},
             {"x\0"s, {"x\0y"s}, {"x\0y"s}},
             {"\0"s, {}, {"x\0y"s}},
             {"\0y"s, {}, {"x\0y"s}},
             {"x\0z"s, {}, {}},
             {"ab\n", {}, {}},
             {"\n", {}, {}},
             {"\r\n", {}, {}},
             {"absent", {}, {}},
             {"", {"ab", "cab", "", "AB", "x\0y"s, "abc"}, {"ab", "cab", "", "AB", "x\0y"s, "abc"}},
             {std::string(3000, 'a'), {}, {}},
         }) {
        file const& object = Holding(bytes);
        EXPECT_EQ(row.startingWith, TextsOf(LinesStartingWith(row.text, object))) << Dump(row.text);
        EXPECT_EQ(row.containing, TextsOf(LinesContaining(row.text, object))) << Dump(row.text);
    }
}

TEST_F(FileLines, ATextAcrossSegmentsOfALineIsInNoneOfThem) {
    file const& object = Holding(A(2047) + "xy" + A(100));
    EXPECT_TRUE(LinesContaining("xy", object).empty());
    EXPECT_EQ(1u, LinesContaining("x", object).size());
    EXPECT_EQ(1u, LinesStartingWith("y", object).size());
}

TEST_F(FileLines, ContainingFindsWhatLiesAcrossTheBuffersEnd) {
    // Both words stand in the second line, of which the first buffer has but a part.
    file const& object = Holding(A(100) + "\n" + A(1941) + "before behind\nc");
    for (char const* text : {"before", "behind", "before behind"})
        EXPECT_EQ((std::vector<Line>{{A(1941) + "before behind", 1, 101, 2056}}),
                  AsLines(LinesContaining(text, object)));
}

TEST_F(FileLines, ContainingKeepsCountOfWhatItPasses) {
    std::string bytes;
    for (int i = 0; i < 100000; ++i) bytes += "line\r\n";
    std::vector<file_line> const found = LinesContaining("x", Holding(bytes + "x\nx"));
    // The fewer offsets are those of endings at buffer ends.
    ASSERT_EQ(2u, found.size());
    EXPECT_EQ(100000, found[0].number);
    EXPECT_EQ(AsLine(LineOf(100001, fork.AsFile())), AsLine(found[0]));
    EXPECT_EQ(100001, found[1].number);
}

TEST_F(FileLines, ThatDoNotMatchAskForNoMemory) {
    file const& object = Holding("a\nb\nab\n" + A(3000));
    ReleaseInspectorMemory();
    LinesContaining("x", object);
    LinesStartingWith("x", object);
    EXPECT_EQ(0u, BlocksGiven());
    LinesContaining("b", object);
    EXPECT_EQ(2u, BlocksGiven());
    LinesStartingWith("b", object);
    EXPECT_EQ(3u, BlocksGiven());
    LineOf(3, object);
    EXPECT_EQ(4u, BlocksGiven());
    LineOf(99, object);
    EXPECT_EQ(4u, BlocksGiven());
}

// ---- Lines by their number

TEST_F(FileLines, AreNumberedFromOne) {
    EXPECT_EQ((Line{"a", 0, 0, 2}), AsLine(LineIn("a\nb\nc", 1)));
    EXPECT_EQ((Line{"c", 2, 4, 5}), AsLine(LineIn("a\nb\nc", 3)));
    EXPECT_EQ(3, LineNumber({}, LineIn("a\nb\nc", 3)));
}

TEST_F(FileLines, NoneIsThereOfNumberZeroOrPastTheLast) {
    for (long long number : {0LL, 4LL, 5LL, 100LL, kLargest})
        EXPECT_THROW(LineIn("a\nb\nc\n", number), NoSuchObject) << number;
    EXPECT_THROW(LineIn("", 1), NoSuchObject);
}

TEST_F(FileLines, OfANegativeNumberIsTheFirstWithThatNumber) {
    EXPECT_EQ((Line{"a", -4, 0, 2}), AsLine(LineIn("a\nb", -3)));
    EXPECT_EQ(-3, LineNumber({}, LineIn("a\nb", -3)));
    EXPECT_EQ("a", TextOf(LineIn("a\nb", kLeast).text));
    EXPECT_EQ(kLeast, LineNumber({}, LineIn("a\nb", kLeast)));
    EXPECT_THROW(LineIn("", -3), NoSuchObject);
    EXPECT_THROW(LineIn("", kLeast), NoSuchObject);
}

TEST_F(FileLines, ZeroIsRefusedBeforeTheFileIsOpened) {
    TemporaryFolder const here;
    std::string const path = here.Write("file", "a");
    file const object = FileAt(path);
    std::filesystem::remove(path);
    EXPECT_THROW(NumberedLine(0, {}, object), NoSuchObject);
    EXPECT_THROW(NumberedLine(1, {}, object), FileNotFoundError);
}

// ---- Neighbours

TEST_F(FileLines, HaveNeighbours) {
    file_line const line = LineIn("a\r\nb\nc", 2);
    EXPECT_EQ((Line{"a", 0, 0, 3}), AsLine(PreviousLine({}, line)));
    EXPECT_EQ((Line{"c", 2, 5, 6}), AsLine(NextLine({}, line)));
}

TEST_F(FileLines, TheFirstHasNoneBefore) { EXPECT_THROW(PreviousLine({}, LineIn("a\nb", 1)), NoSuchObject); }

TEST_F(FileLines, TheLastHasNoneBehind) {
    EXPECT_THROW(NextLine({}, LineIn("a\nb", 2)), NoSuchObject);
    EXPECT_THROW(NextLine({}, LineIn("a\n", 1)), NoSuchObject);
    EXPECT_THROW(NextLine({}, LineIn("a\r\n", 1)), NoSuchObject);
    EXPECT_EQ("", TextOf(NextLine({}, LineIn("a\n\n", 1)).text));
}

TEST_F(FileLines, ThePreviousOneIsLookedForIn2048Bytes) {
    // With a pair, whose second byte is left when the buffer's last one is lost.
    std::string const file = A(3000) + "\r\nb";
    file_line const line = LineIn(file, 3);
    ASSERT_EQ((Line{"b", 2, 3002, 3003}), AsLine(line));
    EXPECT_EQ((Line{A(2046), 1, 954, 3002}), AsLine(PreviousLine({}, line)));
}

TEST_F(FileLines, ThePreviousOneOfALineFromByte2048OnComesJoinedWithItsText) {
    // The one-byte ending before the line is the last byte of the 2048 that are looked at.
    file_line const line = LineIn(A(1500) + "\n" + A(1000) + "\nb\nc", 3);
    ASSERT_EQ((Line{"b", 2, 2502, 2504}), AsLine(line));
    EXPECT_EQ((Line{A(1000) + "b", 1, 1501, 2503}), AsLine(PreviousLine({}, line)));
    // Before byte 2048 it does not.
    file_line const earlier = LineIn(A(1000) + "\nb\nc", 2);
    EXPECT_EQ((Line{A(1000), 0, 0, 1001}), AsLine(PreviousLine({}, earlier)));
    // From byte 2048 on, even when the file begins there.
    file_line const boundary = LineIn("a\n" + A(2044) + "\r\nb\nc", 3);
    ASSERT_EQ(2048u, boundary.range.begin);
    EXPECT_EQ((Line{A(2044), 1, 2, 2048}), AsLine(PreviousLine({}, boundary)));
}

TEST_F(FileLines, ThePreviousOneOfOneWithANegativeNumberIsTheFirst) {
    EXPECT_EQ((Line{"a", -5, 0, 2}), AsLine(PreviousLine({}, LineIn("a\nb", -3))));
    EXPECT_EQ((Line{"b", -3, 2, 3}), AsLine(NextLine({}, LineIn("a\nb", -3))));
}

TEST_F(FileLines, ThePreviousOneIsGoneWhenTheFileBecameShorter) {
    file_line const line = LineIn("a\nb\nc", 3);
    fork.Write("a");
    EXPECT_THROW(PreviousLine({}, line), NoSuchObject);
    EXPECT_THROW(NextLine({}, line), NoSuchObject);
}

// ---- What a line holds

TEST_F(FileLines, KeepTheirTextWhenTheScannerGoesOn) {
    file const& object = Holding("first\nsecond\n");
    line_iterator lines;
    file_line const first = lines.First({}, object);
    lines.Next({}, object);
    EXPECT_EQ("first", TextOf(first.text));
}

TEST_F(FileLines, OutliveTheirIterationAndTheirFile) {
    TemporaryFolder const here;
    std::string const path = here.Write("file", "a\nb\nc");
    std::ptrdiff_t const before = OpenDescriptors();
    {
        std::vector<file_line> lines = LinesOf(FileAt(path));
        lines.erase(lines.begin() + 2);
        lines.erase(lines.begin());
        std::filesystem::remove(path);
        here.Write("file", "other");
        EXPECT_EQ(before + 1, OpenDescriptors());
        EXPECT_EQ("a", TextOf(PreviousLine({}, lines[0]).text));
        EXPECT_EQ("c", TextOf(NextLine({}, lines[0]).text));
        EXPECT_EQ(before + 1, OpenDescriptors());
    }
    EXPECT_EQ(before, OpenDescriptors());
}

TEST_F(FileLines, HoldOneForkForAllThatComeFromOneAnother) {
    file const& object = Holding("a\nb\nc");
    std::ptrdiff_t const before = OpenDescriptors();
    {
        std::optional<file_line> neighbour;
        {
            file_line const line = NumberedLine(2, {}, object);
            neighbour.emplace(PreviousLine({}, line));
            file_line const copy = *neighbour;
            EXPECT_EQ(before + 1, OpenDescriptors());
        }
        EXPECT_EQ(before + 1, OpenDescriptors());
        EXPECT_EQ("b", TextOf(NextLine({}, *neighbour).text));
        NumberedLine(1, {}, object);
        EXPECT_EQ(before + 1, OpenDescriptors());
    }
    EXPECT_EQ(before, OpenDescriptors());
}

TEST_F(FileLines, LeaveNoForkOpenWhenThereIsNone) {
    file const& object = Holding("a");
    std::ptrdiff_t const before = OpenDescriptors();
    EXPECT_FALSE(LineOf(2, object));
    EXPECT_TRUE(LinesContaining("x", object).empty());
    EXPECT_TRUE(LinesOf(Holding("")).empty());
    EXPECT_EQ(before, OpenDescriptors());
}

TEST_F(FileLines, AnIterationHoldsItsForkUntilItIsDestroyedOrBeginsAgain) {
    file const& object = Holding("a\nb");
    std::ptrdiff_t const before = OpenDescriptors();
    {
        line_iterator lines;
        EXPECT_EQ(before, OpenDescriptors());
        lines.First({}, object);
        lines.First({}, object);
        EXPECT_EQ(before + 1, OpenDescriptors());
    }
    EXPECT_EQ(before, OpenDescriptors());
}

// ---- Failures

TEST_F(FileLines, LetFailuresToOpenThrough) {
    TemporaryFolder const here;
    std::string const path = here.Write("file", "a");
    file const object = FileAt(path);
    line_iterator lines;
    std::filesystem::remove(path);
    EXPECT_THROW(NumberedLine(1, {}, object), FileNotFoundError);
    EXPECT_THROW(lines.First({}, object), FileNotFoundError);
    EXPECT_THROW(lines.FirstStartingWith({}, {}, object), FileNotFoundError);
    EXPECT_THROW(lines.FirstContaining({}, {}, object), FileNotFoundError);
    here.MakeFolder("file");
    EXPECT_THROW(NumberedLine(1, {}, object), NotAFileError);
    EXPECT_THROW(lines.First({}, object), NotAFileError);
}

TEST_F(FileLines, LetTheLackOfPermissionThrough) {
    TemporaryFolder const here;
    std::string const path = here.Write("file", "a");
    file const object = FileAt(path);
    std::filesystem::permissions(here.Path(), std::filesystem::perms(0755));
    std::filesystem::permissions(path, std::filesystem::perms::none);
    Unprivileged const unprivileged;
    EXPECT_THROW(NumberedLine(1, {}, object), FilePermissionError);
}

// ---- The module

TEST(FileLinesModule, RegistersItsTableInOrder) {
    std::string const ofFile = "of \"file\": \"file line\"";
    ExpectRows<FileLinesModule>(
        {"type \"file line\" based on \"string\"",
         "property \"line number\" \"line numbers\" of \"file line\": \"integer\" pure",
         "property \"previous line\" \"previous lines\" of \"file line\": \"file line\"",
         "property \"next line\" \"next lines\" of \"file line\": \"file line\"",
         "property \"line\" \"lines\" [\"integer\"] " + ofFile,
         "iterated property \"line\" \"lines\" " + ofFile,
         "iterated property \"line starting with\" \"lines starting with\" [\"string\"] " + ofFile,
         "iterated property \"line containing\" \"lines containing\" [\"string\"] " + ofFile});
}

TEST(FileLinesModule, TellsTheSizesOfItsValuesAndStates) {
    FileLinesModule const module;
    EXPECT_EQ(sizeof(file_line), RegisteredAs("type \"file line\" based on \"string\"").valueSize);
    for (Registration const& registration : Registered()) {
        bool const isIteration = registration.row.starts_with("iterated");
        if (isIteration) {
            EXPECT_EQ(sizeof(line_iterator), registration.valueSize) << registration.row;
        }
    }
    // The buffer is in the state.
    EXPECT_GE(sizeof(line_iterator), kLineBufferSize);
}

TEST_F(FileLines, FeedTheirTextAndNothingElseToAFingerprint) {
    FileLinesModule const module;
    auto const fingerprint = RegisteredAs("type \"file line\" based on \"string\"").fingerprint;
    ASSERT_NE(nullptr, fingerprint);
    file_line const line = LineIn("x\nsame\nx", 2);
    Recorder fed, plain;
    fingerprint(fed, &line);
    plain << line.text;
    EXPECT_EQ(plain.pieces, fed.pieces);
    Recorder another;
    file_line const same = LineIn("same\r\n", 1);
    fingerprint(another, &same);
    EXPECT_EQ(fed.pieces, another.pieces);
}

TEST_F(FileLines, AreStringsToWhoeverWantsOne) {
    file_line const line = LineIn("text\n", 1);
    void const* const value = &line;
    EXPECT_EQ("text", TextOf(*static_cast<inspector_string const*>(value)));
}

TEST_F(FileLines, AreDestroyedWithTheirShareOfTheFork) {
    FileLinesModule const module;
    Registration const type = RegisteredAs("type \"file line\" based on \"string\"");
    file const& object = Holding("a");
    std::ptrdiff_t const before = OpenDescriptors();
    Slot<file_line> slot;
    new (slot) file_line(NumberedLine(1, {}, object));
    EXPECT_EQ(before + 1, OpenDescriptors());
    type.destroy(slot);
    EXPECT_EQ(before, OpenDescriptors());
}

// A text is asked for that tells the three iterations apart.
TEST_F(FileLines, IterationsAreThoseOfTheirPhrases) {
    FileLinesModule const module;
    file const& object = Holding("1b\nb2\nc\nb4\n5b\n");
    inspector_string const text = StringOf("b");
    struct Row {
        std::string phrase;
        Texts texts;
    };
    for (Row const& row :
         {Row{"\"line\" \"lines\"", {"1b", "b2", "c", "b4", "5b"}},
          Row{"\"line starting with\" \"lines starting with\" [\"string\"]", {"b2", "b4"}},
          Row{"\"line containing\" \"lines containing\" [\"string\"]", {"1b", "b2", "b4", "5b"}}}) {
        Registration const found =
            RegisteredAs("iterated property " + row.phrase + " of \"file\": \"file line\"");
        Slot<line_iterator> state;
        found.construct(state);
        Texts texts;
        for (auto step = found.get;; step = found.next) {
            Slot<file_line> slot;
            if (!Asked([&] { return step(slot, &text, &object, state, found.context), true; })) break;
            texts.push_back(TextOf(slot.Value().text));
            slot.End();
        }
        found.destroy(state);
        EXPECT_EQ(row.texts, texts) << row.phrase;
    }
}

TEST_F(FileLines, PropertiesAreThoseOfTheirPhrases) {
    FileLinesModule const module;
    file_line const line = LineIn("a\nb\nc", 2);
    auto const text = [&](std::string const& row) {
        Registration const property = RegisteredAs("property " + row + " of \"file line\": \"file line\"");
        Slot<file_line> slot;
        property.get(slot, nullptr, &line, nullptr, property.context);
        std::string const answer = TextOf(slot.Value().text);
        slot.End();
        return answer;
    };
    EXPECT_EQ("a", text("\"previous line\" \"previous lines\""));
    EXPECT_EQ("c", text("\"next line\" \"next lines\""));
}

TEST(CurrentCharSet, IsWindows1252) {
    std::string const first = GetCurrentCharSet();
    EXPECT_EQ("windows-1252", first);
    EXPECT_EQ(first, GetCurrentCharSet());
}
