// Settings files: single lines first, in memory of exactly their size, then files.

#include "content/Sections.h"

#include <gtest/gtest.h>
#include <locale.h>

#include <cstdlib>
#include <memory>

#include "Answers.h"
#include "Memory.h"
#include "RegistrationLog.h"
#include "Slot.h"
#include "filesystem/Asking.h"
#include "modules/FileSectionsModule.h"
#include "support/TemporaryFolder.h"
#include "support/Unprivileged.h"

namespace {

using namespace std::string_literals;
using Transcription::Section;

constexpr std::size_t kBuffer = 65536;

// A line behind which nothing may be read.
class TightLine {
  public:
    explicit TightLine(std::string_view text)
        : memory(std::make_unique<unsigned char[]>(text.size())), size(text.size()) {
        std::copy(text.begin(), text.end(), memory.get());
    }
    operator ConstData() const { return {memory.get(), size}; }

  private:
    std::unique_ptr<unsigned char[]> memory;
    std::size_t size;
};

std::optional<std::string> ValueIn(std::string_view key, std::string_view line) {
    try {
        return TextOf(GetValueForKey(StringOf(key), TightLine(line)));
    } catch (KeyNotFoundInLine const&) {
        return std::nullopt;
    }
}

bool IsHeader(std::string_view name, std::string_view line) {
    char open = 0, close = 0;
    return FindSectionStart(StringOf(name), TightLine(line), open, close);
}

bool IsEnd(std::string_view line, std::string_view brackets = "[]") {
    return FindSectionEnd(TightLine(line), brackets[0], brackets[1]);
}

class Sections : public testing::Test {
  protected:
    ~Sections() override { ReleaseInspectorMemory(); }

    file const& Holding(std::string_view bytes) {
        fork.Write(bytes);
        return fork.AsFile();
    }
    std::optional<std::string> KeyIn(std::string_view bytes, std::string_view key) {
        return KeyOf(key, Holding(bytes));
    }
    std::optional<Section> SectionIn(std::string_view bytes, std::string_view name) {
        return AsSection(SectionOf(name, Holding(bytes)));
    }
    std::optional<std::string> KeyInSection(std::string_view bytes, std::string_view name,
                                            std::string_view key) {
        return KeyOf(key, section_of_file(StringOf(name), {}, Holding(bytes)));
    }

    Fork fork;
};

}  // namespace

// ---- The value in a line

TEST(ValueInALine, IsWhatStandsBehindKeyAndSeparator) {
    struct Row {
        std::string line;
        std::string value;
    };
    for (Row const& row : std::vector<Row>{
             {"key=1", "1"},
             {"key:1", "1"},
             {"KEY=1", "1"},
             {"Key = 1", "1"},
             {" \t key \t= \t1", "1"},
             {"  Key : value ; comment", "value"},
             {"key=value;comment", "value"},
             {"key=a b\t c \t ", "a b\t c"},
             {"key=a b \t; c", "a b"},
             {"key==1", "=1"},
             {"key:=1", "=1"},
             {"key=a=b:c", "a=b:c"},
             {"key=\"a;b\"", "\"a"},
             {"key=;x", ""},
             {"key=;", ""},
             {"key= ;x", ""},
             {"key=a;b;c", "a"},
             {"key=a\0b"s, "a\0b"s},
             {"key=\xE4 \xFF", "\xE4 \xFF"},
             {"key=\va\v", "\va\v"},  // no blanks
         })
        EXPECT_EQ(row.value, ValueIn("key", row.line)) << Dump(row.line);
}

TEST(ValueInALine, IsAbsent) {
    for (std::string const& line : {
             ""s,         " "s,     "k"s,         "key"s,     "key "s,    "key="s,      "key ="s,   "key=  "s,
             "key = \t"s, "key: "s, "keyword=1"s, "ke=1"s,    "a key=1"s, "key value"s, "key 1=1"s, ";key=1"s,
             "[key]=1"s,  "=1"s,    "\vkey=1"s,   "key\v=1"s, "kez=1"s,   "k\0y=1"s,
         })
        EXPECT_EQ(std::nullopt, ValueIn("key", line)) << Dump(line);
}

TEST(ValueInALine, IsThatOfKeysOfAllKinds) {
    EXPECT_EQ("1", ValueIn("a b", "A B=1"));
    EXPECT_EQ("1", ValueIn("a=b", "a=b=1"));
    EXPECT_EQ("b=1", ValueIn("a", "a=b=1"));
    EXPECT_EQ("1", ValueIn("a ", "a =1"));
    EXPECT_EQ(std::nullopt, ValueIn("a ", "a=1"));
    EXPECT_EQ(std::nullopt, ValueIn(" a", " a=1"));  // the line's blanks are skipped first
    EXPECT_EQ("1", ValueIn("", "=1"));
    EXPECT_EQ("1", ValueIn("", " : 1"));
    EXPECT_EQ(std::nullopt, ValueIn("", ""));
    EXPECT_EQ(std::nullopt, ValueIn("", "a=1"));
    EXPECT_EQ(std::nullopt, ValueIn("\xC4", "\xE4=1"));  // the case of ASCII letters alone
    EXPECT_EQ(std::nullopt, ValueIn(std::string(5000, 'k'), "k=1"));
}

// In Turkish the letters "I" and "i" are none of one another.
TEST(ValueInALine, IsTheSameInEveryLocale) {
    TemporaryFolder const here;
    std::string const command =
        "localedef -i tr_TR -f UTF-8 --no-archive " + here.Path("tr_TR.UTF-8") + " >/dev/null 2>&1";
    bool const isMade = std::system(command.c_str()) == 0;
    setenv("LOCPATH", here.Path().c_str(), true);
    bool const isSet = isMade && setlocale(LC_CTYPE, "tr_TR.UTF-8") != nullptr;
    std::optional<std::string> const value = ValueIn("ID", "id=1");
    setlocale(LC_CTYPE, "C");
    unsetenv("LOCPATH");
    EXPECT_TRUE(isSet) << "the sources of locales are to be installed";
    EXPECT_EQ("1", value);
}

TEST(ValueInALine, IgnoresWhatStandsBehindANulInAKey) {
    EXPECT_EQ("1", ValueIn("a\0b"s, "a\0b=1"s));
    EXPECT_EQ("1", ValueIn("a\0b"s, "a\0c=1"s));
    EXPECT_EQ(std::nullopt, ValueIn("a\0b"s, "a=1"));
    EXPECT_EQ(std::nullopt, ValueIn("a\0b"s, "axb=1"));
}

TEST(ValueInALine, LiesInMemoryOfItsOwn) {
    ReleaseInspectorMemory();
    std::string line = "key=value";
    inspector_string const value = GetValueForKey(StringOf("key"), DataOf(line));
    EXPECT_EQ(1u, BlocksGiven());
    line = "overwritten";
    EXPECT_EQ("value", TextOf(value));
    EXPECT_EQ(std::nullopt, ValueIn("other", "key=value"));
    EXPECT_EQ(1u, BlocksGiven());
    ReleaseInspectorMemory();
}

TEST(ValueInALine, IsThatOfThePlainRulesOfEveryShortLine) {
    constexpr std::string_view kBytes = "kK =;\t";
    for (int number = 0; number < 6 * 6 * 6 * 6 * 6 * 6; ++number) {
        std::string line;
        for (int rest = number; rest > 0; rest /= 6) line += kBytes[static_cast<std::size_t>(rest % 6)];
        for (std::string const key : {"k", "", "kk", "k "})
            ASSERT_EQ(Transcription::ValueForKey(key, line), ValueIn(key, line)) << Dump(line);
        if (number % 1000 == 0) ReleaseInspectorMemory();
    }
}

// ---- Headers and ends

TEST(SectionHeader, IsTheNameInBrackets) {
    for (std::string const line : {"<Main>", "(Main)", "{Main}", "[main]", "[MAIN]", " \t[Main]",
                                   "[Main] ; comment", "[Main]]", "[Main]x", "[Main] [other]"})
        EXPECT_TRUE(IsHeader("Main", line)) << line;
    for (std::string const line :
         {"",        " ",       "[",       "[Main",    "[Main ",   "[Main>",  "[Main)",
          "<Main]",  "Main",    "Main]",   "[]",       "[Mai]",    "[Mainx]", "[ Main]",
          "[Main ]", "[[Main]", "x[Main]", "\"Main\"", "\v[Main]", ">Main<",  "]Main["})
        EXPECT_FALSE(IsHeader("Main", line)) << line;
}

TEST(SectionHeader, HasNamesOfAllKinds) {
    EXPECT_TRUE(IsHeader("", "[]"));
    EXPECT_FALSE(IsHeader("", "[ ]"));
    EXPECT_FALSE(IsHeader("", "["));
    EXPECT_FALSE(IsHeader("", ""));
    EXPECT_TRUE(IsHeader(" a ", "[ a ]"));
    EXPECT_TRUE(IsHeader("a]", "[a]]"));
    EXPECT_TRUE(IsHeader("[a]", "{[a]}"));
    EXPECT_TRUE(IsHeader("a\0b"s, "[a\0b]"s));
    EXPECT_TRUE(IsHeader("a\0b"s, "[a\0c]"s));
    EXPECT_FALSE(IsHeader("a\0b"s, "[a]"));
    EXPECT_FALSE(IsHeader(std::string(5000, 'a'), "[a]"));
}

TEST(SectionHeader, TellsItsBrackets) {
    for (std::string const pair : {"<>", "()", "[]", "{}"}) {
        char open = 0, close = 0;
        EXPECT_TRUE(FindSectionStart(StringOf("a"), TightLine(pair[0] + "a"s + pair[1]), open, close));
        EXPECT_EQ(pair, (std::string{open, close}));
    }
}

TEST(SectionHeader, OfAnotherNameTellsItsBracketsToo) {
    char open = 0, close = 0;
    EXPECT_FALSE(FindSectionStart(StringOf("a"), TightLine("{b}"), open, close));
    EXPECT_EQ("{}", (std::string{open, close}));
    EXPECT_FALSE(FindSectionStart(StringOf("a"), TightLine("no header"), open, close));
    EXPECT_EQ("{}", (std::string{open, close}));
}

TEST(SectionEnd, IsAHeaderWithTheSameBrackets) {
    for (std::string const line : {"[]", "[b]", " \t[b]", "[b] ; c", "[[b]", "[ b c ] d", "[b>]"})
        EXPECT_TRUE(IsEnd(line)) << line;
    for (std::string const line :
         {"", " ", "\t", "[", "[b", "{b}", "<b>", "(b)", "x", "x=[b]", "]", "][", "[b>"})
        EXPECT_FALSE(IsEnd(line)) << line;
    EXPECT_TRUE(IsEnd("{b}", "{}"));
    EXPECT_TRUE(IsEnd("<b>", "<>"));
    EXPECT_TRUE(IsEnd("(b)", "()"));
    EXPECT_FALSE(IsEnd("[b]", "()"));
}

// ---- Sections of a file

TEST_F(Sections, BeginBehindTheirHeaderAndEndAtTheNext) {
    struct Row {
        std::string bytes;
        std::optional<Section> section;
    };
    for (Row const& row : std::vector<Row>{
             {"[a]\nx=1\n[b]\n", Section{4, 8}},
             {"[a]\r\nx=1\r\n[b]\r\n", Section{5, 10}},
             {"x=0\n[a]\nx=1", Section{8, 11}},
             {"[b]\n[a]\nx=1\n", Section{8, 12}},
             {"[a]\nx=1\n{b}\nx=2\n[c]\n", Section{4, 16}},
             {"{a}\nx=1\n[b]\n{c}", Section{4, 12}},
             {"[a]\nx\n[b\ny\n[c]", Section{4, 11}},
             {"[a]\n1\n[a]\n2\n", Section{4, 6}},
             {"<a>\n1\n[a]\n2\n", Section{4, 12}},
             {"[a]\n\n\n[b]\n", Section{4, 6}},
             {"[a]\n[b]\n", Section{4, 0}},
             {"[a]\n\n", Section{4, 5}},
             {"[a]", std::nullopt},
             {"[a]\n", std::nullopt},
             {"[b]\nx=1\n[a]", std::nullopt},
             {"[b]\nx=1\n", std::nullopt},
             {"", std::nullopt},
             {"[a\nx=1\n", std::nullopt},
         })
        EXPECT_EQ(row.section, SectionIn(row.bytes, "a")) << Dump(row.bytes);
}

TEST_F(Sections, ReferToTheirFile) {
    file const& object = Holding("[a]\nx=1\n");
    std::optional<file_section> const section = SectionOf("a", object);
    ASSERT_TRUE(section);
    EXPECT_TRUE(section->location == object);
}

TEST_F(Sections, WithNothingInThemHaveTheEndZero) {
    struct Row {
        unsigned long start, end;
        std::uint32_t kept;
    };
    for (Row const& row : {Row{4, 5, 5}, Row{4, 4, 0}, Row{4, 3, 0}, Row{0, 0, 0}, Row{0, 1, 1}}) {
        file_section const section(fork.AsFile(), row.start, row.end);
        EXPECT_EQ(row.start, section.start);
        EXPECT_EQ(row.kept, section.end);
    }
}

// ---- Keys

TEST_F(Sections, KeysOfAFileAreThoseOfItsFirstLineThatHasThem) {
    EXPECT_EQ("1", KeyIn("a=0\nx=1\nx=2\n", "x"));
    EXPECT_EQ("1", KeyIn("a=0\n[s]\nx=1\n", "x"));
    EXPECT_EQ("2", KeyIn("x=\nx\nx=2", "x"));
    EXPECT_EQ("", KeyIn("x=;1\nx=2", "x"));
    EXPECT_EQ("1", KeyIn("[x]=0\n[x:1", "[x"));  // also in a line that looks like a header
    EXPECT_EQ(std::nullopt, KeyIn("a=0\n", "x"));
    EXPECT_EQ(std::nullopt, KeyIn("", "x"));
    EXPECT_EQ(std::nullopt, KeyIn("", ""));
}

TEST_F(Sections, KeysOfASectionAreThoseInIt) {
    std::string const file = "x=0\n[a]\nx=1\n{b}\nx=2\ny=2\n[c]\nx=3\nz=3\n[d]\n[e]\nw=4";
    EXPECT_EQ("1", KeyInSection(file, "a", "x"));
    EXPECT_EQ("2", KeyInSection(file, "a", "y"));
    EXPECT_EQ("2", KeyInSection(file, "b", "x"));
    EXPECT_EQ("3", KeyInSection(file, "c", "x"));
    EXPECT_EQ("4", KeyInSection(file, "e", "w"));
    EXPECT_EQ(std::nullopt, KeyInSection(file, "a", "z"));
    for (char const* key : {"x", "w", ""}) EXPECT_EQ(std::nullopt, KeyInSection(file, "d", key)) << key;
}

TEST_F(Sections, TheLineThatEndsASectionIsNotInIt) {
    EXPECT_EQ(std::nullopt, KeyInSection("[a]\nx=1\n[b:2]\n", "a", "[b"));
    EXPECT_EQ("2]", KeyInSection("{a}\nx=1\n[b:2]\n", "a", "[b"));
}

TEST_F(Sections, KeysOfASectionAreReadAnew) {
    std::optional<file_section> const section = SectionOf("a", Holding("[a]\nx=1\n"));
    ASSERT_TRUE(section);
    fork.Write("[a]\nx=2\n");
    EXPECT_EQ("2", KeyOf("x", *section));
    fork.Write("");
    EXPECT_EQ(std::nullopt, KeyOf("x", *section));
}

TEST_F(Sections, AKeyOfALineThatBeginsBeforeTheSectionsEndCounts) {
    fork.Write("[a]\nx=12345\n");
    EXPECT_EQ("12345", KeyOf("x", file_section(fork.AsFile(), 4, 5)));
}

// ---- Lines of more than one buffer

TEST_F(Sections, AKeyOrHeaderThatLiesAcrossPiecesOfALineIsNotSeen) {
    std::string const blanks(kBuffer - 2, ' ');
    EXPECT_EQ(std::nullopt, KeyIn(blanks + "key=1\n", "key"));
    EXPECT_EQ(std::nullopt, SectionIn(blanks + "[a]\nx=1\n", "a"));
    // One that begins a piece is.
    EXPECT_EQ("1", KeyIn(blanks + "  key=1\n", "key"));
    EXPECT_EQ((Section{kBuffer + 4, kBuffer + 8}), SectionIn(blanks + "  [a]\nx=1\n", "a"));
    // Of a value that goes on in the next piece there is what is in the first.
    EXPECT_EQ("1", KeyIn(std::string(kBuffer - 5, ' ') + "key=12\n", "key"));
}

TEST_F(Sections, AHeaderThatLiesAcrossTheBuffersEndIsSeen) {
    for (std::size_t before : {kBuffer - 1, kBuffer - 2, kBuffer - 3}) {
        std::string const comment = std::string(before - 2, ';') + "\r\n";
        EXPECT_EQ((Section{static_cast<std::uint32_t>(before + 4), static_cast<std::uint32_t>(before + 8)}),
                  SectionIn(comment + "[a]\nx=1\n", "a"))
            << before;
        EXPECT_EQ("1", KeyIn(comment + "key=1\n", "key")) << before;
    }
}

TEST_F(Sections, AHeaderWhoseEndingIsTheLastByteOfAFullBufferGoesOnWithTheNextLine) {
    std::string const comment = std::string(kBuffer - 6, ';') + "\r\n";
    EXPECT_EQ((Section{kBuffer + 3, kBuffer + 7}), SectionIn(comment + "[a]\nx=1\ny=2\n", "a"));
}

// ---- What they ask for and hold

TEST_F(Sections, AskForNoMemoryButTheValues) {
    file const& object = Holding("a=1\n[s]\nx=value\n");
    ReleaseInspectorMemory();
    EXPECT_EQ(std::nullopt, KeyOf("y", object));
    EXPECT_TRUE(SectionOf("s", object));
    EXPECT_FALSE(SectionOf("t", object));
    EXPECT_EQ(0u, BlocksGiven());
    EXPECT_EQ("value", KeyOf("x", object));
    EXPECT_EQ(1u, BlocksGiven());
}

TEST_F(Sections, LeaveNoForkOpen) {
    file const& object = Holding("a=1\n[s]\nx=1\n");
    auto const openDescriptors = [] {
        std::filesystem::directory_iterator const all("/proc/self/fd");
        return std::distance(begin(all), end(all));
    };
    auto const before = openDescriptors();
    std::optional<file_section> const section = SectionOf("s", object);
    KeyOf("x", object);
    KeyOf("absent", object);
    KeyOf("x", *section);
    KeyOf("absent", *section);
    SectionOf("absent", object);
    EXPECT_EQ(before, openDescriptors());
}

// ---- Failures

TEST_F(Sections, LetFailuresToOpenThrough) {
    TemporaryFolder const here;
    file const object = FileAt(here.Write("file", "[a]\nx=1\n"));
    file_section const section = section_of_file(StringOf("a"), {}, object);
    std::filesystem::remove(here.Path("file"));
    EXPECT_THROW(key_of_file(StringOf("x"), {}, object), FileNotFoundError);
    EXPECT_THROW(section_of_file(StringOf("a"), {}, object), FileNotFoundError);
    EXPECT_THROW(key_of_section(StringOf("x"), {}, section), FileNotFoundError);
    here.MakeFolder("file");
    EXPECT_THROW(key_of_file(StringOf("x"), {}, object), NotAFileError);
    EXPECT_THROW(section_of_file(StringOf("a"), {}, object), NotAFileError);
    EXPECT_THROW(key_of_section(StringOf("x"), {}, section), NotAFileError);
}

TEST_F(Sections, LetTheLackOfPermissionThrough) {
    TemporaryFolder const here;
    std::string const path = here.Write("file", "x=1");
    file const object = FileAt(path);
    std::filesystem::permissions(here.Path(), std::filesystem::perms(0755));
    std::filesystem::permissions(path, std::filesystem::perms::none);
    Unprivileged const unprivileged;
    EXPECT_THROW(key_of_file(StringOf("x"), {}, object), FilePermissionError);
}

// ---- The module

TEST(FileSectionsModule, RegistersItsTableInOrder) {
    ExpectRows<FileSectionsModule>(
        {"property \"key\" \"keys\" [\"string\"] of \"file\": \"string\" pure",
         "property \"section\" \"sections\" [\"string\"] of \"file\": \"file section\" pure",
         "property \"key\" \"keys\" [\"string\"] of \"file section\": \"string\" pure",
         "type \"file section\""});
}

TEST(FileSectionsModule, SectionsHaveNoFingerprint) {
    FileSectionsModule const module;
    Registration const type = RegisteredAs("type \"file section\"");
    EXPECT_EQ(nullptr, type.fingerprint);
    EXPECT_EQ(sizeof(file_section), type.valueSize);
}

TEST_F(Sections, PropertiesAreThoseOfTheirPhrases) {
    FileSectionsModule const module;
    file const& object = Holding("x=0\n[x]\nx=1\n");
    inspector_string const name = StringOf("x");
    auto const get = [&](std::string const& row, void* slot, void const* of) {
        Registration const property = RegisteredAs("property " + row + " pure");
        property.get(slot, &name, of, nullptr, property.context);
    };
    Slot<inspector_string> ofFile, ofSection;
    Slot<file_section> section;
    get("\"key\" \"keys\" [\"string\"] of \"file\": \"string\"", ofFile, &object);
    get("\"section\" \"sections\" [\"string\"] of \"file\": \"file section\"", section, &object);
    get("\"key\" \"keys\" [\"string\"] of \"file section\": \"string\"", ofSection, &section.Value());
    EXPECT_EQ("0", TextOf(ofFile.Value()));
    EXPECT_EQ("1", TextOf(ofSection.Value()));
    RegisteredAs("type \"file section\"").destroy(section);
}
