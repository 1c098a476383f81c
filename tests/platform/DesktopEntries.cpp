// Desktop entries as texts.

#include "applications/DesktopEntry.h"

#include <gtest/gtest.h>

using namespace Platform;

namespace {

using Texts = std::vector<std::string>;

std::string Value(std::string_view text, std::string_view key) {
    return std::string(ValueInGroup(text, "G", key).value_or("(none)"));
}

DesktopEntry EntryWith(std::string const& lines) { return ParseDesktopEntry("[Desktop Entry]\n" + lines); }

}  // namespace

// ---- Groups and keys

TEST(DesktopEntries, ValuesAreThoseOfTheGroup) {
    char const* const text = "a=0\n[F]\na=1\n[G]\na=2\n[H]\na=3\n";
    EXPECT_EQ("2", Value(text, "a"));
    EXPECT_EQ("(none)", Value(text, "b"));
    EXPECT_FALSE(ValueInGroup(text, "None", "a"));
}

TEST(DesktopEntries, FirstValueCounts) {
    EXPECT_EQ("1", Value("[G]\na=1\na=2\n", "a"));
    EXPECT_EQ("2", Value("[G]\nb=1\n[H]\na=1\n[G]\na=2\n", "a")) << "groups of one name are one";
}

TEST(DesktopEntries, BlanksAroundDoNotCount) {
    EXPECT_EQ("1 2", Value("[G] \t\r\n\ta \t= 1 2 \r\n", "a"));
    EXPECT_EQ("", Value("[G]\na=", "a"));
    EXPECT_EQ("b=c", Value("[G]\na=b=c", "a"));
}

TEST(DesktopEntries, OtherLinesDoNotCount) {
    EXPECT_EQ("2", Value("# [X]\n[G]\n\n#a=1\nnothing\na[de]=1\nA=1\na=2", "a"));
    EXPECT_EQ("(none)", Value("", "a"));
    EXPECT_EQ("(none)", Value("[G\na=1", "a"));
}

TEST(DesktopEntries, BytesOfAnyKind) {
    using namespace std::string_view_literals;
    EXPECT_EQ("\xFF\x00\x80"sv, Value("[G]\n\xFE\na=\xFF\x00\x80\n"sv, "a"));
}

// ---- Values

TEST(DesktopEntries, EscapesStandForBlanks) {
    EXPECT_EQ(" a\nb\tc\rd\\", Unescaped("\\sa\\nb\\tc\\rd\\\\"));
    EXPECT_EQ("\\s", Unescaped("\\\\s"));
    EXPECT_EQ("\\x\\", Unescaped("\\x\\")) << "others are what they are";
}

TEST(DesktopEntries, ElementsEndWithSemicolons) {
    EXPECT_EQ((Texts{"a", "b c", "d"}), ElementsOf("a;b c;d"));
    EXPECT_EQ((Texts{"a"}), ElementsOf(";;a;;"));
    EXPECT_EQ((Texts{"a;b", "c\\", "d e"}), ElementsOf("a\\;b;c\\\\;d\\se;"));
    EXPECT_EQ(Texts(), ElementsOf(""));
    EXPECT_EQ((Texts{"a\\"}), ElementsOf("a\\"));
}

// ---- Commands

TEST(DesktopEntries, CommandsAreWords) {
    EXPECT_EQ((Texts{"a", "-b", "c"}), CommandOf("a -b  c"));
    EXPECT_EQ((Texts{"a", "b"}), CommandOf(" \t\na\r\nb "));
    EXPECT_EQ(Texts(), CommandOf(""));
    EXPECT_EQ(Texts(), CommandOf("  "));
}

TEST(DesktopEntries, QuotedWordsMayHoldBlanks) {
    EXPECT_EQ((Texts{"/opt/a b/c", "d"}), CommandOf("\"/opt/a b/c\" d"));
    EXPECT_EQ((Texts{"a\"b`c$d\\e\\f"}), CommandOf(R"("a\"b\`c\$d\\e\f")"));
    EXPECT_EQ((Texts{"a b"}), CommandOf("a\" \"b"));
}

TEST(DesktopEntries, OpenQuotesMakeNoCommand) {
    EXPECT_EQ(Texts(), CommandOf("a \"b"));
    EXPECT_EQ(Texts(), CommandOf("\""));
    EXPECT_EQ(Texts(), CommandOf("\"a\\\""));
}

TEST(DesktopEntries, FieldCodesAreLeftOut) {
    EXPECT_EQ((Texts{"a", "b"}), CommandOf("a %U b %f"));
    EXPECT_EQ((Texts{"a", "--x="}), CommandOf("a --x=%u"));
    EXPECT_EQ((Texts{"100%"}), CommandOf("100%%"));
    EXPECT_EQ((Texts{"a"}), CommandOf("a %"));
    EXPECT_EQ((Texts{"a", "b"}), CommandOf("a % b"));
    EXPECT_EQ((Texts{"%f"}), CommandOf("\"%f\"")) << "not in quotes";
}

// ---- Entries

TEST(DesktopEntries, TellOfTheirApplications) {
    DesktopEntry const entry = ParseDesktopEntry(
        "# mine\n[Desktop Entry]\nType=Application\nName=A\\sname\nName[de]=Ein Name\nExec=prog\\s%U\n"
        "TryExec=prog\nX-Creator-Code=ttxt\n[Desktop Action new]\nName=Another\nExec=none\n");
    EXPECT_EQ("A name", entry.name);
    EXPECT_EQ("prog %U", entry.exec);
    EXPECT_EQ("prog", entry.tryExec);
    EXPECT_EQ(0x74747874u, entry.creator);
    EXPECT_TRUE(entry.isApplication);
    EXPECT_FALSE(entry.isHidden);
}

TEST(DesktopEntries, CreatorsAreFourBytes) {
    EXPECT_EQ(0x41422020u, EntryWith("X-Creator-Code=AB\\s\\s").creator);
    EXPECT_EQ(0xFF80FE81u, EntryWith("X-Creator-Code=\xFF\x80\xFE\x81").creator);
    for (char const* const code : {"", "abc", "abcde", "ab\\s", "\xC3\xA9\xC3\xA9\xC3\xA9"})
        EXPECT_EQ(0u, EntryWith(std::string("X-Creator-Code=") + code).creator) << code;
}

TEST(DesktopEntries, OfOtherTypesAreNoApplications) {
    EXPECT_FALSE(EntryWith("Type=Link\n").isApplication);
    EXPECT_FALSE(EntryWith("").isApplication);
    EXPECT_FALSE(ParseDesktopEntry("Type=Application\n").isApplication);
}

TEST(DesktopEntries, HiddenOnes) {
    EXPECT_TRUE(EntryWith("Hidden=true\n").isHidden);
    EXPECT_FALSE(EntryWith("Hidden=false\n").isHidden);
    EXPECT_FALSE(EntryWith("NoDisplay=true\n").isHidden);
}
