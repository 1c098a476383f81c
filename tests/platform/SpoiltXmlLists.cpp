// XML that is no property list, and XML that asks for more than it is worth.

#include <gtest/gtest.h>

#include "platform/PropertyListText.h"

namespace {

using namespace std::string_literals;

// Why XML was refused, without what was said of it as old-style text.
std::string Refusal(std::string const& xml) {
    std::string const shown = List(xml);
    constexpr std::string_view front = "refused: as XML: ", behind = "; as old-style text: ";
    std::size_t const end = shown.find(behind);
    if (!shown.starts_with(front) || end == shown.npos) return shown;
    return shown.substr(front.size(), end - front.size());
}

struct Row {
    std::string xml;
    std::string refusal;
};

void ExpectRows(std::initializer_list<Row> rows) {
    for (Row const& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.xml));
        EXPECT_EQ(row.refusal, Refusal(row.xml));
    }
}

TEST(SpoiltXml, OfTheWrongStructureIsRefused) {
    ExpectRows({Row{"<plist/>", "line 1: \"plist\" is empty"},
                Row{"<plist>\n</plist>", "line 2: \"plist\" is empty"},
                Row{"<plist><true/><true/></plist>", "line 1: \"plist\" holds more than one object"},
                Row{"<array><plist><true/></plist></array>", "line 1: \"plist\" is not the root"},
                Row{"<foo/>", "line 1: unknown element \"foo\""},
                Row{"<array>\n<String/></array>", "line 2: unknown element \"String\""},
                Row{"<dict><string/><true/></dict>", "line 1: \"string\" where a key is due"},
                Row{"<dict><key>a</key><key>b</key></dict>", "line 1: a key where none is due"},
                Row{"<dict><key>a</key></dict>", "line 1: a key without a value"},
                Row{"<key>a</key>", "line 1: a key where none is due"},
                Row{"<array><key>a</key></array>", "line 1: a key where none is due"},
                Row{"<array>x</array>", "line 1: text within \"array\""},
                Row{"<dict>\n\nx</dict>", "line 3: text within \"dict\""},
                Row{"<plist>x<true/></plist>", "line 1: text within \"plist\""},
                Row{"<true>x</true>", "line 1: text within \"true\""},
                Row{"<string><true/></string>", "line 1: an element within \"string\""},
                Row{"<integer><string/></integer>", "line 1: an element within \"integer\""}});
}

TEST(SpoiltXml, WithTextsThatAreNoValuesIsRefused) {
    ExpectRows(
        {Row{"<data/>", "line 1: \"data\" is empty"},
         Row{"<integer/>", "line 1: \"integer\" cannot be \"\""},
         Row{"<real/>", "line 1: \"real\" cannot be \"\""},
         Row{"<date/>", "line 1: \"date\" cannot be \"\""},
         Row{"<integer></integer>", "line 1: \"integer\" cannot be \"\""},
         Row{"<integer>12x</integer>", "line 1: \"integer\" cannot be \"12x\""},
         Row{"<integer>12 </integer>", "line 1: \"integer\" cannot be \"12 \""},
         Row{"<integer>--1</integer>", "line 1: \"integer\" cannot be \"--1\""},
         Row{"<integer>0x</integer>", "line 1: \"integer\" cannot be \"0x\""},
         Row{"<integer>1.0</integer>", "line 1: \"integer\" cannot be \"1.0\""},
         Row{"<integer>18446744073709551616</integer>",
             "line 1: \"integer\" cannot be \"18446744073709551616\""},
         Row{"<integer>-9223372036854775809</integer>",
             "line 1: \"integer\" cannot be \"-9223372036854775809\""},
         Row{"<real>1.5x</real>", "line 1: \"real\" cannot be \"1.5x\""},
         Row{"<real>0x10</real>", "line 1: \"real\" cannot be \"0x10\""},
         Row{"<real>1.5 </real>", "line 1: \"real\" cannot be \"1.5 \""},
         Row{"<real>-</real>", "line 1: \"real\" cannot be \"-\""},
         Row{"<real>.</real>", "line 1: \"real\" cannot be \".\""},
         Row{"<real>nanx</real>", "line 1: \"real\" cannot be \"nanx\""},
         Row{"<date>2001-01-01</date>", "line 1: \"date\" cannot be \"2001-01-01\""},
         Row{"<date>2001-01-01T00:00:00.5Z</date>", "line 1: \"date\" cannot be \"2001-01-01T00:00:00.5Z\""},
         Row{"<date> 2001-01-01T00:00:00Z</date>", "line 1: \"date\" cannot be \" 2001-01-01T00:00:00Z\""},
         Row{"<date>2001-13-01T00:00:00Z</date>", "line 1: \"date\" cannot be \"2001-13-01T00:00:00Z\""},
         Row{"<date>2001-02-29T00:00:00Z</date>", "line 1: \"date\" cannot be \"2001-02-29T00:00:00Z\""},
         Row{"<date>2001-01-01T24:00:00Z</date>", "line 1: \"date\" cannot be \"2001-01-01T24:00:00Z\""},
         Row{"<date>2001-01-01T00:00:61Z</date>", "line 1: \"date\" cannot be \"2001-01-01T00:00:61Z\""},
         Row{"<date>2001-01-0xT00:00:00Z</date>", "line 1: \"date\" cannot be \"2001-01-0xT00:00:00Z\""},
         Row{"<data>AA\u00E9</data>", "line 1: \"data\" cannot be \"AA\u00E9\""}});
}

TEST(SpoiltXml, ThatIsNoDocumentIsRefused) {
    ExpectRows({Row{"<array><true/>", "line 1: no element found"},
                Row{"<array></dict>", "line 1: mismatched tag"}, Row{"<array", "line 1: unclosed token"},
                Row{"<string>&foo;</string>", "line 1: undefined entity"},
                Row{"<string>\x01</string>", "line 1: not well-formed (invalid token)"},
                Row{"<string>\xFF</string>", "line 1: not well-formed (invalid token)"},
                Row{"<!-- nothing -->", "line 1: no element found"},
                Row{"<?xml version=\"1.0\" encoding=\"klingon\"?><true/>", "line 1: unknown encoding"}});
}

TEST(SpoiltXmlLists, HaveTheLinesOfWhatIsBeforeThem) {
    EXPECT_EQ("line 3: unknown element \"foo\"", Refusal("\n\n<?xml version=\"1.0\"?><foo/>"));
}

// The parser would give each element all attributes that are declared.
TEST(SpoiltXmlLists, MayNotDeclareManyAttributes) {
    auto const declared = [](int number) {
        std::string attributes;
        for (int i = 0; i < number; ++i) attributes += " a" + std::to_string(i) + " CDATA \"\"";
        return "<!DOCTYPE plist [<!ATTLIST array" + attributes + ">]><array/>";
    };
    EXPECT_EQ("()", List(declared(100)));
    EXPECT_EQ("line 1: more than 100 attributes are declared with a value", Refusal(declared(101)));
    EXPECT_EQ("line 1: more than 100 attributes are declared with a value", Refusal(declared(20000)));
}

TEST(SpoiltXmlLists, AreShownInAFewWords) {
    std::string const long_(1000, 'x'), shown(40, 'x');
    EXPECT_EQ("line 1: unknown element \"" + shown + "\"", Refusal("<" + long_ + "/>"));
    std::string const doctype = "<!DOCTYPE plist SYSTEM \"x\">";
    EXPECT_EQ("line 1: unknown entity \"" + shown + "\"",
              Refusal(doctype + "<string>&" + long_ + ";</string>"));
}

TEST(SpoiltXmlLists, AreShownInWholeCharacters) {
    std::string long_ = "x", shown = "x";
    for (int i = 0; i < 100; ++i) long_ += "\u00E9";
    for (int i = 0; i < 19; ++i) shown += "\u00E9";
    EXPECT_EQ("line 1: \"real\" cannot be \"" + shown + "\"", Refusal("<real>" + long_ + "</real>"));
}

TEST(SpoiltXmlLists, AreRefusedWhereverTheyAreCutOff) {
    std::string const whole =
        "<?xml version=\"1.0\"?><!DOCTYPE plist><plist><dict><key>a</key><data>AAEC</data></dict></plist>";
    ASSERT_EQ(R"({"a" = <000102>})", List(whole));
    std::size_t const complete = whole.find("</plist>") + 8;
    for (std::size_t size = 0; size < complete; ++size)
        EXPECT_TRUE(List(whole.substr(0, size)).starts_with("refused: ")) << size;
}

TEST(SpoiltXmlLists, MayBe512DeepAndNoDeeper) {
    auto const nested = [](std::size_t levels) {
        std::string begin, end;
        for (std::size_t i = 0; i < levels; ++i) {
            begin += "<array>";
            end += "</array>";
        }
        return "<plist>" + begin + end + "</plist>";
    };
    EXPECT_EQ(std::string(512, '(') + std::string(512, ')'), List(nested(512)));
    std::string const refusal = "containers lie more than 512 deep in one another, which is the limit";
    EXPECT_EQ(refusal, Refusal(nested(513)));
    EXPECT_EQ(refusal, Refusal(nested(1000000)));
}

TEST(XmlEntities, OfTheDocumentItselfAreRefusedWhereTheyAreUsed) {
    std::string const declared = "<!DOCTYPE plist [<!ENTITY word \"text\">]><plist>";
    EXPECT_EQ("line 1: unknown entity \"word\"", Refusal(declared + "<string>&word;</string></plist>"));
    EXPECT_EQ("\"\"", List(declared + "<string/></plist>"));
}

TEST(XmlEntities, OfADeclarationElsewhereAreRefused) {
    EXPECT_EQ("line 1: unknown entity \"word\"",
              Refusal("<!DOCTYPE plist SYSTEM \"file:///etc/passwd\"><string>&word;</string>"));
    EXPECT_EQ("line 1: unknown entity \"file\"",
              Refusal("<!DOCTYPE plist [<!ENTITY file SYSTEM \"/etc/passwd\">]><string>&file;</string>"));
}

// Each entity ten times the one before: a billion texts from a few lines.
std::string Bomb() {
    std::string declarations = "<!ENTITY e0 \"0123456789\">";
    for (int i = 1; i <= 9; ++i) {
        std::string const former = "&e" + std::to_string(i - 1) + ";";
        std::string ten;
        for (int j = 0; j < 10; ++j) ten += former;
        declarations += "<!ENTITY e" + std::to_string(i) + " \"" + ten + "\">";
    }
    return "<!DOCTYPE plist [" + declarations + "]>";
}

TEST(XmlEntities, DoNotExplodeInText) {
    EXPECT_EQ("line 1: unknown entity \"e9\"", Refusal(Bomb() + "<string>&e9;</string>"));
}

TEST(XmlEntities, DoNotExplodeInAttributes) {
    EXPECT_EQ("line 1: limit on input amplification factor (from DTD and entities) breached",
              Refusal(Bomb() + "<array a=\"&e9;\"/>"));
}

// A token that is not complete is looked at again from its beginning with the next piece.
TEST(SpoiltXmlLists, MayHaveTokensOfManyPieces) {
    std::string const long_(std::size_t{30} << 20, 'x');
    EXPECT_EQ("true", List("<!--" + long_ + "--><true/>"));
    EXPECT_EQ("()", List("<array a=\"" + long_ + "\"/>"));
    EXPECT_EQ("line 1: unclosed token", Refusal("<array a=\"" + long_));
}

}  // namespace
