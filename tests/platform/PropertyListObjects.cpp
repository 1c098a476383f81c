// The objects of property lists: numbers, truth values, data, dates, arrays, dictionaries.

#include <gtest/gtest.h>

#include <cmath>

#include "platform/PropertyListText.h"

namespace {

Owned<CFTypeRef> Xml(std::string const& xml) {
    std::string reason;
    Owned<CFTypeRef> list = ReadList(xml, reason);
    EXPECT_TRUE(list) << reason;
    return list;
}

// What CFNumberGetValue writes, and whether it says that nothing was lost.
template <class Value>
std::pair<Value, bool> Read(std::string const& number, CFNumberType type) {
    bool const isReal = number.find_first_of(".enI") != number.npos;
    Owned<CFTypeRef> const object =
        Xml(isReal ? "<real>" + number + "</real>" : "<integer>" + number + "</integer>");
    Value value = 77;
    bool const isExact =
        CFNumberGetValue(static_cast<CFNumberRef>(static_cast<CFTypeRef>(object)), type, &value);
    return {value, isExact};
}

TEST(Numbers, AreExactWhereTheyFit) {
    EXPECT_EQ(std::pair(SInt8{-128}, true), Read<SInt8>("-128", kCFNumberSInt8Type));
    EXPECT_EQ(std::pair(SInt8{127}, true), Read<SInt8>("127", kCFNumberCharType));
    EXPECT_EQ(std::pair(SInt16{-32768}, true), Read<SInt16>("-32768", kCFNumberSInt16Type));
    EXPECT_EQ(std::pair(SInt16{5}, true), Read<SInt16>("5", kCFNumberShortType));
    EXPECT_EQ(std::pair(SInt32{-1}, true), Read<SInt32>("-1", kCFNumberSInt32Type));
    EXPECT_EQ(std::pair(SInt32{7}, true), Read<SInt32>("7", kCFNumberIntType));
    EXPECT_EQ(std::pair(SInt64{1} << 40, true), Read<SInt64>("1099511627776", kCFNumberSInt64Type));
    EXPECT_EQ(std::pair(SInt64{8}, true), Read<SInt64>("8", kCFNumberLongLongType));
    EXPECT_EQ(std::pair(SInt64{9}, true), Read<SInt64>("9", kCFNumberCFIndexType));
    EXPECT_EQ(std::pair(0.5f, true), Read<float>("0.5", kCFNumberFloat32Type));
    EXPECT_EQ(std::pair(3.0f, true), Read<float>("3", kCFNumberFloatType));
    EXPECT_EQ(std::pair(0.1, true), Read<double>("0.1", kCFNumberFloat64Type));
    EXPECT_EQ(std::pair(3.0, true), Read<double>("3", kCFNumberDoubleType));
    EXPECT_EQ(std::pair(SInt32{2}, true), Read<SInt32>("2.0", kCFNumberSInt32Type));
}

TEST(Numbers, AreTruncatedWhereTheyDoNotFit) {
    EXPECT_EQ(std::pair(SInt32{2}, false), Read<SInt32>("2.5", kCFNumberSInt32Type));
    EXPECT_EQ(std::pair(SInt32{-2}, false), Read<SInt32>("-2.5", kCFNumberSInt32Type));
    EXPECT_EQ(std::pair(SInt32{0}, false), Read<SInt32>("1099511627776", kCFNumberSInt32Type));
    EXPECT_EQ(std::pair(SInt8{-128}, false), Read<SInt8>("128", kCFNumberSInt8Type));
    EXPECT_EQ(std::pair(SInt32{2147483647}, false), Read<SInt32>("1e30", kCFNumberSInt32Type));
    EXPECT_EQ(std::pair(SInt32{-2147483647 - 1}, false), Read<SInt32>("-1e30", kCFNumberSInt32Type));
    EXPECT_EQ(std::pair(SInt64{0x7FFFFFFFFFFFFFFF}, false),
              Read<SInt64>("9223372036854775808.0", kCFNumberSInt64Type));
    EXPECT_EQ(std::pair(SInt64{-1}, false), Read<SInt64>("18446744073709551615", kCFNumberSInt64Type));
    EXPECT_EQ(std::pair(SInt32{0}, false), Read<SInt32>("nan", kCFNumberSInt32Type));
    EXPECT_EQ(std::pair(0.1f, false), Read<float>("0.1", kCFNumberFloat32Type));
    EXPECT_EQ(std::pair(9007199254740992.0, false), Read<double>("9007199254740993", kCFNumberDoubleType));
}

TEST(Numbers, OfTheTypeLongHave32BitsEverywhere) {
    SInt32 both[2] = {77, 77};
    Owned<CFTypeRef> const object = Xml("<integer>5</integer>");
    EXPECT_TRUE(
        CFNumberGetValue(static_cast<CFNumberRef>(static_cast<CFTypeRef>(object)), kCFNumberLongType, both));
    EXPECT_EQ(5, both[0]);
    EXPECT_EQ(77, both[1]);
    EXPECT_FALSE(Read<SInt64>("4294967296", kCFNumberLongType).second);
}

TEST(Numbers, CannotBeReadAsUnknownTypes) {
    EXPECT_EQ(std::pair(SInt64{77}, false), Read<SInt64>("5", static_cast<CFNumberType>(0)));
    EXPECT_EQ(std::pair(SInt64{77}, false), Read<SInt64>("5", static_cast<CFNumberType>(17)));
}

TEST(Numbers, AreEqualByValue) {
    Owned<CFTypeRef> const whole = Xml("<integer>2</integer>"), real = Xml("<real>2.0</real>"),
                           other = Xml("<real>2.5</real>");
    EXPECT_TRUE(CFEqual(whole, real));
    EXPECT_TRUE(CFEqual(real, whole));
    EXPECT_EQ(CFHash(whole), CFHash(real));
    EXPECT_FALSE(CFEqual(whole, other));
    Owned<CFTypeRef> const large = Xml("<integer>9007199254740993</integer>"),
                           near = Xml("<real>9007199254740992</real>");
    EXPECT_FALSE(CFEqual(large, near));
}

TEST(TruthValues, AreTwoObjectsThatAreNoNumbers) {
    Owned<CFTypeRef> const list = Xml("<array><true/><true/><false/></array>");
    auto const array = static_cast<CFArrayRef>(static_cast<CFTypeRef>(list));
    CFTypeRef const yes = CFArrayGetValueAtIndex(array, 0), no = CFArrayGetValueAtIndex(array, 2);
    EXPECT_EQ(yes, CFArrayGetValueAtIndex(array, 1));
    EXPECT_NE(yes, no);
    EXPECT_FALSE(CFEqual(yes, no));
    EXPECT_EQ(CFBooleanGetTypeID(), CFGetTypeID(yes));
    EXPECT_NE(CFBooleanGetTypeID(), CFNumberGetTypeID());
    EXPECT_TRUE(CFBooleanGetValue(static_cast<CFBooleanRef>(yes)));
    EXPECT_FALSE(CFBooleanGetValue(static_cast<CFBooleanRef>(no)));
}

TEST(DataObjects, CopyTheirBytes) {
    std::string bytes = "abc";
    Owned<CFDataRef> const data = NewTestData(bytes), same = NewTestData("abc"), other = NewTestData("abd");
    bytes[0] = 'x';
    EXPECT_EQ("<616263>", Shown(data));
    EXPECT_TRUE(CFEqual(data, same));
    EXPECT_EQ(CFHash(data), CFHash(same));
    EXPECT_FALSE(CFEqual(data, other));
    EXPECT_EQ(0, CFDataGetLength(NewTestData("")));
    EXPECT_FALSE(CFDataCreate(kCFAllocatorDefault, nullptr, -1));
}

TEST(Dates, KnowTheirTimeAndTheBeginningsOfOtherCalendars) {
    Owned<CFTypeRef> const date = Xml("<date>1970-01-01T00:00:00Z</date>"),
                           first = Xml("<date>1904-01-01T00:00:00Z</date>");
    EXPECT_EQ(-kCFAbsoluteTimeIntervalSince1970,
              CFDateGetAbsoluteTime(static_cast<CFDateRef>(static_cast<CFTypeRef>(date))));
    EXPECT_EQ(-kCFAbsoluteTimeIntervalSince1904,
              CFDateGetAbsoluteTime(static_cast<CFDateRef>(static_cast<CFTypeRef>(first))));
    EXPECT_FALSE(CFEqual(date, first));
    EXPECT_TRUE(CFEqual(date, Xml("<date>1970-01-01T00:00:00Z</date>")));
}

TEST(Arrays, HaveNullOutside) {
    Owned<CFTypeRef> const list = Xml("<array><string>a</string></array>"), none = Xml("<array/>");
    auto const array = static_cast<CFArrayRef>(static_cast<CFTypeRef>(list));
    EXPECT_EQ("\"a\"", Shown(CFArrayGetValueAtIndex(array, 0)));
    EXPECT_EQ(nullptr, CFArrayGetValueAtIndex(array, 1));
    EXPECT_EQ(nullptr, CFArrayGetValueAtIndex(array, -1));
    EXPECT_EQ(nullptr, CFArrayGetValueAtIndex(static_cast<CFArrayRef>(static_cast<CFTypeRef>(none)), 0));
}

TEST(Arrays, KeepTheirElementsAndLetThemGo) {
    CFTypeRef element;
    {
        Owned<CFTypeRef> const list = Xml("<array><string>a</string></array>");
        element = CFRetain(CFArrayGetValueAtIndex(static_cast<CFArrayRef>(static_cast<CFTypeRef>(list)), 0));
        EXPECT_EQ(2, CFGetRetainCount(element));
    }
    EXPECT_EQ(1, CFGetRetainCount(element));
    CFRelease(element);
}

TEST(Containers, AreEqualByTheirContents) {
    auto const areEqual = [](std::string const& left, std::string const& right) {
        Owned<CFTypeRef> const first = Xml(left), second = Xml(right);
        bool const equal = CFEqual(first, second) != 0;
        if (equal) {
            EXPECT_EQ(CFHash(first), CFHash(second));
        }
        return equal;
    };
    EXPECT_TRUE(areEqual("<array><true/><array/></array>", "<array><true/><array/></array>"));
    EXPECT_FALSE(areEqual("<array><true/></array>", "<array><false/></array>"));
    EXPECT_FALSE(areEqual("<array><true/></array>", "<array><true/><true/></array>"));
    EXPECT_TRUE(areEqual("<dict><key>a</key><true/><key>b</key><false/></dict>",
                         "<dict><key>b</key><false/><key>a</key><true/></dict>"));
    EXPECT_FALSE(areEqual("<dict><key>a</key><true/></dict>", "<dict><key>b</key><true/></dict>"));
    EXPECT_FALSE(areEqual("<dict><key>a</key><true/></dict>", "<dict><key>a</key><false/></dict>"));
    EXPECT_FALSE(areEqual("<dict/>", "<dict><key>a</key><false/></dict>"));
}

TEST(Dictionaries, FindValuesByEqualKeysHoweverMany) {
    for (int count : {1, 8, 9, 100, 3000}) {
        std::string xml;
        for (int i = 0; i < count; ++i)
            xml += "<key>" + std::to_string(i) + "</key><integer>" + std::to_string(i) + "</integer>";
        Owned<CFTypeRef> const list = Xml("<dict>" + xml + "</dict>");
        auto const dictionary = static_cast<CFDictionaryRef>(static_cast<CFTypeRef>(list));
        ASSERT_EQ(count, CFDictionaryGetCount(dictionary));
        for (int i = 0; i < count; ++i) {
            Owned<CFStringRef> const key = NewString(std::to_string(i));
            EXPECT_EQ(std::to_string(i), Shown(CFDictionaryGetValue(dictionary, key)));
        }
        Owned<CFStringRef> const other = NewString("-1");
        EXPECT_EQ(nullptr, CFDictionaryGetValue(dictionary, other));
    }
}

TEST(Dictionaries, HaveStringsOnlyForKeys) {
    Owned<CFTypeRef> const list = Xml("<dict><key>1</key><true/></dict>"),
                           number = Xml("<integer>1</integer>");
    EXPECT_EQ(nullptr,
              CFDictionaryGetValue(static_cast<CFDictionaryRef>(static_cast<CFTypeRef>(list)), number));
}

TEST(Dictionaries, FindKeysThatAreNotAscii) {
    Owned<CFTypeRef> const list = Xml("<dict><key>\u00E9</key><true/></dict>");
    Owned<CFStringRef> const key = NewString("\x8E", kCFStringEncodingMacRoman);
    EXPECT_NE(nullptr, CFDictionaryGetValue(static_cast<CFDictionaryRef>(static_cast<CFTypeRef>(list)), key));
}

TEST(Dictionaries, GiveKeysAloneOrValuesAlone) {
    Owned<CFTypeRef> const list = Xml("<dict><key>a</key><true/><key>b</key><false/></dict>");
    auto const dictionary = static_cast<CFDictionaryRef>(static_cast<CFTypeRef>(list));
    CFTypeRef found[2];
    CFDictionaryGetKeysAndValues(dictionary, found, nullptr);
    EXPECT_EQ("\"b\"", Shown(found[1]));
    CFDictionaryGetKeysAndValues(dictionary, nullptr, found);
    EXPECT_EQ("false", Shown(found[1]));
}

}  // namespace
