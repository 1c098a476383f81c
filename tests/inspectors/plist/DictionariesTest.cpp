// Values of dictionaries by their keys.

#include "plist/Dictionaries.h"

#include "filesystem/Asking.h"
#include "plist/Arrays.h"
#include "plist/Lists.h"

namespace {

// One value of each type.
List const& Mixed() {
    static List const list(
        "<dict><key>text</key><string>words</string><key>bytes</key><data>YWIA</data>"
        "<key>truth</key><true/><key>number</key><integer>7</integer>"
        "<key>date</key><date>2001-01-01T00:00:00Z</date>"
        "<key>dictionary</key><dict><key>a</key><true/></dict>"
        "<key>array</key><array><false/><false/></array></dict>");
    return list;
}

// The answer of a getter for a key.
template <class R>
R Ask(R (*getter)(unsigned char const*, unsigned long, OSXDictionary const&), std::string_view key,
      OSXDictionary const& dictionary = Mixed().Dictionary()) {
    return getter(Bytes(key), key.size(), dictionary);
}

template <class R>
void ExpectOnly(R (*getter)(unsigned char const*, unsigned long, OSXDictionary const&),
                std::string_view keys) {
    for (std::string_view const key : {"text", "bytes", "truth", "number", "date", "dictionary", "array"}) {
        if (keys.find(key) != keys.npos) continue;
        EXPECT_THROW(Ask(getter, key), NoSuchObject) << key;
    }
}

}  // namespace

TEST(Dictionaries, HaveASize) {
    EXPECT_EQ(7, size_of_dictionary(Mixed().Dictionary()));
    EXPECT_EQ(0, size_of_dictionary(List("<dict/>").Dictionary()));
}

TEST(Dictionaries, GiveTheValuesOfKeys) {
    EXPECT_EQ("words", Text(Ask(string_of_dictionary, "text")));
    EXPECT_EQ(std::string("ab\0", 3), Text(Ask(string_of_dictionary, "bytes")));
    EXPECT_EQ("words", Text(Ask(cstring_of_dictionary, "text")));
    EXPECT_EQ("ab", Text(Ask(cstring_of_dictionary, "bytes")));
    EXPECT_TRUE(Ask(boolean_of_dictionary, "truth"));
    EXPECT_EQ(7, Ask(integer_of_dictionary, "number"));
    EXPECT_EQ(978'307'200'000'000, Ask(date_of_dictionary, "date").SinceEpoch().microseconds);
    EXPECT_EQ(1, size_of_dictionary(Ask(dictionary_of_dictionary, "dictionary")));
    EXPECT_EQ(2, size_of_array(Ask(array_of_dictionary, "array")));
}

TEST(Dictionaries, DoNotGiveAValueAsAnotherType) {
    ExpectOnly(string_of_dictionary, "text bytes");
    ExpectOnly(cstring_of_dictionary, "text bytes");
    ExpectOnly(boolean_of_dictionary, "truth");
    ExpectOnly(integer_of_dictionary, "number");
    ExpectOnly(date_of_dictionary, "date");
    ExpectOnly(dictionary_of_dictionary, "dictionary");
    ExpectOnly(array_of_dictionary, "array");
}

TEST(Dictionaries, HaveNoValueOfOtherKeys) {
    for (std::string_view const key : {"", "Text", "tex", "text ", "absent"})
        EXPECT_THROW(Ask(string_of_dictionary, key), NoSuchObject) << key;
}

TEST(Dictionaries, TakeKeysAsMacRoman) {
    OSXDictionary const dictionary =
        List("<dict><key>caf\u00e9</key><integer>1</integer></dict>").Dictionary();
    EXPECT_EQ(1, Ask(integer_of_dictionary, "caf\x8e", dictionary));
    EXPECT_THROW(Ask(integer_of_dictionary, "caf\u00e9", dictionary), NoSuchObject);
}

TEST(Dictionaries, TakeKeysWhole) {
    OSXDictionary const dictionary =
        List("<dict><key/><integer>1</integer><key>a</key><integer>2</integer></dict>").Dictionary();
    EXPECT_EQ(1, Ask(integer_of_dictionary, "", dictionary));
    EXPECT_EQ(2, Ask(integer_of_dictionary, "a", dictionary));
    EXPECT_THROW(Ask(integer_of_dictionary, std::string_view("a\0", 2), dictionary), NoSuchObject);
}
