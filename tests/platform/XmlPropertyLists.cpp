#include <gtest/gtest.h>

#include "platform/PropertyListText.h"

namespace {

using namespace std::string_literals;

constexpr std::string_view kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n";

struct Row {
    std::string xml;
    std::string shown;
};

void ExpectRows(std::initializer_list<Row> rows) {
    for (Row const& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.xml));
        EXPECT_EQ(row.shown, List(row.xml));
        EXPECT_EQ(row.shown, List("<plist version=\"1.0\">" + row.xml + "</plist>"));
        EXPECT_EQ(row.shown, List(std::string(kHead) + "<plist>\n" + row.xml + "\n</plist>\n"));
        EXPECT_EQ("(" + row.shown + ")", List("<array>" + row.xml + "</array>"));
        EXPECT_EQ("{\"k\" = " + row.shown + "}", List("<dict><key>k</key>" + row.xml + "</dict>"));
    }
}

TEST(XmlObjects, TruthValuesAreRead) {
    ExpectRows({Row{"<true/>", "true"}, Row{"<false/>", "false"}, Row{"<true></true>", "true"},
                Row{"<false> \n</false>", "false"}});
}

TEST(XmlObjects, StringsAreRead) {
    ExpectRows({Row{"<string>a b</string>", "\"a b\""}, Row{"<string/>", "\"\""},
                Row{"<string></string>", "\"\""}, Row{"<string> a\tb\n </string>", "\" a\tb\n \""},
                Row{"<string><![CDATA[<&>]]>x</string>", "\"<&>x\""},
                Row{"<string>&lt;&gt;&amp;&apos;&quot;</string>", "\"<>&'\"\""},
                Row{"<string>&#65;&#x42;&#x1F600;</string>", "\"AB\U0001F600\""},
                Row{"<string>\u00DCber</string>", "\"\u00DCber\""},
                Row{"<string>a<!-- b -->c<?d e?></string>", "\"ac\""}});
}

TEST(XmlObjects, WholeNumbersAreRead) {
    ExpectRows({Row{"<integer>0</integer>", "0"}, Row{"<integer>-5</integer>", "-5"},
                Row{"<integer>+5</integer>", "5"}, Row{"<integer> \t\r\n12</integer>", "12"},
                Row{"<integer>010</integer>", "10"}, Row{"<integer>0xff</integer>", "255"},
                Row{"<integer>-0XA</integer>", "-10"},
                Row{"<integer>9223372036854775807</integer>", "9223372036854775807"},
                Row{"<integer>-9223372036854775808</integer>", "-9223372036854775808"},
                Row{"<integer>18446744073709551615</integer>", "1.8446744073709552e+19"}});
}

TEST(XmlObjects, RealNumbersAreRead) {
    ExpectRows({Row{"<real>1.5</real>", "1.5"}, Row{"<real>-.25</real>", "-0.25"},
                Row{"<real>1e3</real>", "1000"}, Row{"<real> 2.</real>", "2"},
                Row{"<real>+1.5E-1</real>", "0.14999999999999999"}, Row{"<real>1e999</real>", "inf"},
                Row{"<real>-1e999</real>", "-inf"}, Row{"<real>1e-999</real>", "0"},
                Row{"<real>0.1e400</real>", "inf"}, Row{"<real>1000e-400</real>", "0"},
                Row{"<real>0.001e99999999999999999999</real>", "inf"},
                Row{"<real>123e-99999999999999999999</real>", "0"}, Row{"<real>Infinity</real>", "inf"},
                Row{"<real>-inf</real>", "-inf"}, Row{"<real>NaN</real>", "nan"}});
}

TEST(XmlObjects, DatesAreRead) {
    ExpectRows({Row{"<date>2001-01-01T00:00:00Z</date>", "@0"},
                Row{"<date>2000-12-31T23:59:59Z</date>", "@-1"},
                Row{"<date>2004-02-29T12:30:15Z</date>", "@99750615"},
                Row{"<date>1904-01-01T00:00:00Z</date>", "@-3061152000"},
                Row{"<date>9999-12-31T23:59:60Z</date>", "@252423993600"}});
}

TEST(XmlObjects, DataAreRead) {
    ExpectRows({Row{"<data>AAEC</data>", "<000102>"}, Row{"<data>AAE=</data>", "<0001>"},
                Row{"<data>AA==</data>", "<00>"}, Row{"<data>\n\tAA\n\tEC\n</data>", "<000102>"},
                Row{"<data></data>", "<>"}, Row{"<data>\n</data>", "<>"},
                Row{"<data>A*A-E!C</data>", "<000102>"}, Row{"<data>+/+/</data>", "<fbffbf>"}});
}

TEST(XmlObjects, ContainersAreRead) {
    ExpectRows({Row{"<array/>", "()"}, Row{"<array></array>", "()"}, Row{"<dict/>", "{}"},
                Row{"<dict>\n</dict>", "{}"},
                Row{"<array a='b'><true/> <!-- c --> <false/></array>", "(true, false)"},
                Row{"<dict><key>z</key><true/><key>a</key><array/></dict>", R"({"z" = true; "a" = ()})"},
                Row{"<dict><key>a</key><true/><key>b</key><true/><key>a</key><false/></dict>",
                    R"({"a" = false; "b" = true})"},
                Row{"<dict><key/><true/></dict>", R"({"" = true})"},
                Row{"<dict><key>CF$UID</key><integer>3</integer></dict>", "(other)"},
                Row{"<dict><key>CF$UID</key><string>3</string></dict>", R"({"CF$UID" = "3"})"}});
}

TEST(XmlLists, EndWithTheirRoot) {
    EXPECT_EQ("true", List("<true/>anything <else"));
    EXPECT_EQ("true", List("<plist><true/></plist>&&&"));
}

TEST(XmlLists, HaveTheEncodingThatTheyTell) {
    std::string const latin = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><string>\xE9</string>";
    EXPECT_EQ("\"\u00E9\"", List(latin));
    for (std::string const name : {"windows-1252", "ISO-8859-15", "utf8", "ASCII"}) {
        EXPECT_EQ("\"e\"", List("<?xml version=\"1.0\" encoding=\"" + name + "\"?><string>e</string>"))
            << name;
    }
    EXPECT_EQ("\"\u20AC\"", List("<?xml version=\"1.0\" encoding=\"Windows-1252\"?><string>\x80</string>"));
    std::string const roman = "<?xml version=\"1.0\" encoding=\"macintosh\"?><string>\x8E</string>";
    EXPECT_EQ("\"\u00E9\"", List(roman));
    EXPECT_EQ("\"\u00E9\"", List("<string>\u00E9</string>"));
    EXPECT_EQ("\"\u00E9\"", List("\xEF\xBB\xBF<string>\u00E9</string>"));
}

TEST(XmlLists, MayHaveWhiteSpaceBeforeTheirDeclaration) {
    EXPECT_EQ("true", List(" \r\n\t<?xml version=\"1.0\"?><true/>"));
    EXPECT_EQ("true", List("\xEF\xBB\xBF\n<?xml version=\"1.0\"?><true/>"));
}

// The parser gives what it converts away in pieces, which may begin with whatever is in a comment.
TEST(XmlLists, MayHaveLongCommentsWithWhateverInThem) {
    for (std::string const encoding : {"ISO-8859-1", "macintosh", "UTF-8"}) {
        std::string const long_(5000, '&');
        EXPECT_EQ("()", List("<?xml version=\"1.0\" encoding=\"" + encoding + "\"?><!--" + long_ +
                             "--><!DOCTYPE plist [<!ENTITY e \"" + std::string(5000, '-') + "\"><!--" +
                             long_ + "-->]><array><!--" + long_ + "--><?x " + long_ + "?></array>"))
            << encoding;
    }
}

TEST(XmlLists, MayDeclareTheirAttributes) {
    EXPECT_EQ("()", List("<!DOCTYPE plist [<!ATTLIST plist version CDATA \"1.0\">]><plist><array/></plist>"));
}

// ASCII text in another encoding, each character in so many bytes.
std::string Widened(std::string_view text, std::size_t size, bool isBigEndian) {
    std::string bytes;
    for (char const character : text) {
        std::string unit(size, '\0');
        unit[isBigEndian ? size - 1 : 0] = character;
        bytes += unit;
    }
    return bytes;
}

TEST(XmlLists, MayBeInWideEncodingsWhateverTheyDeclare) {
    std::string const text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?><string>abc</string>";
    EXPECT_EQ("\"abc\"", List("\xFE\xFF" + Widened(text, 2, true)));
    EXPECT_EQ("\"abc\"", List("\xFF\xFE" + Widened(text, 2, false)));
    EXPECT_EQ("\"abc\"", List(Widened(text, 2, true)));
    EXPECT_EQ("\"abc\"", List(Widened(text, 2, false)));
    EXPECT_EQ("\"abc\"", List("\0\0\xFE\xFF"s + Widened(text, 4, true)));
    EXPECT_EQ("\"abc\"", List("\xFF\xFE\0\0"s + Widened(text, 4, false)));
}

// More than one piece of the parser's.
TEST(XmlLists, MayBeLarge) {
    std::string const text(300000, 'x');
    EXPECT_EQ("(\"" + text + "\", \"" + text + "\")",
              List("<array><string>" + text + "</string><string>" + text + "</string></array>"));
}

TEST(XmlLists, HoldManyKeys) {
    std::string xml, shown;
    for (int i = 0; i < 5000; ++i) {
        xml += "<key>k" + std::to_string(i) + "</key><integer>" + std::to_string(i) + "</integer>";
        shown += (i > 0 ? "; \"k" : "\"k") + std::to_string(i) + "\" = " + std::to_string(i);
    }
    EXPECT_EQ("{" + shown + "}", List("<dict>" + xml + "</dict>"));
}

}  // namespace
