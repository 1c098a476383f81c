// Elements of arrays, by number and all of them.

#include "plist/Arrays.h"

#include "filesystem/Asking.h"
#include "plist/Dictionaries.h"
#include "plist/Lists.h"

namespace {

// One element of each type.
List const& Mixed() {
    static List const list(
        "<array><string>text</string><true/><integer>7</integer><date>2001-01-01T00:00:00Z</date>"
        "<dict><key>a</key><true/></dict><array><false/><false/></array></array>");
    return list;
}

std::string Types(OSXArray const& array) {
    std::string types;
    OSXArrayIterator each;
    try {
        for (OSXValue value = each.First(array);; value = each.Next(array))
            types += Text(type_of_value(value)) + " ";
    } catch (NoSuchObject const&) {
        return types;
    }
}

}  // namespace

TEST(Arrays, HaveASize) {
    EXPECT_EQ(6, size_of_array(Mixed().Array()));
    EXPECT_EQ(0, size_of_array(List("<array/>").Array()));
}

TEST(Arrays, GiveTheirElementsByNumberFromZeroOn) {
    OSXArray const array = Mixed().Array();
    EXPECT_EQ("text", Text(string_of_array(0, array)));
    EXPECT_TRUE(boolean_of_array(1, array));
    EXPECT_EQ(7, integer_of_array(2, array));
    EXPECT_EQ(978'307'200'000'000, date_of_array(3, array).SinceEpoch().microseconds);
    EXPECT_EQ(1, size_of_dictionary(dictionary_of_array(4, array)));
    EXPECT_EQ(2, size_of_array(array_of_array(5, array)));
}

TEST(Arrays, DoNotGiveAnElementAsAnotherType) {
    OSXArray const array = Mixed().Array();
    EXPECT_THROW(string_of_array(1, array), NoSuchObject);
    EXPECT_THROW(boolean_of_array(2, array), NoSuchObject);
    EXPECT_THROW(integer_of_array(3, array), NoSuchObject);
    EXPECT_THROW(date_of_array(4, array), NoSuchObject);
    EXPECT_THROW(dictionary_of_array(5, array), NoSuchObject);
    EXPECT_THROW(array_of_array(0, array), NoSuchObject);
}

TEST(Arrays, HaveNothingBehindTheirEnd) {
    OSXArray const array = List("<array><integer>1</integer></array>").Array();
    EXPECT_THROW(integer_of_array(1, array), NoSuchObject);
    EXPECT_THROW(integer_of_array(0, List("<array/>").Array()), NoSuchObject);
    EXPECT_THROW(string_of_array((1ULL << 31) - 1, array), NoSuchObject);
}

// An index that were cut to 32 bits would be one of an element.
TEST(Arrays, HaveNoElementsAtNumbersOf32BitsAndMore) {
    OSXArray const array = Mixed().Array();
    for (unsigned long long const large : {1ULL << 31, 1ULL << 32, 1ULL << 63}) {
        EXPECT_THROW(string_of_array(large, array), NoSuchObject) << large;
        EXPECT_THROW(boolean_of_array(large + 1, array), NoSuchObject) << large;
        EXPECT_THROW(integer_of_array(large + 2, array), NoSuchObject) << large;
        EXPECT_THROW(date_of_array(large + 3, array), NoSuchObject) << large;
        EXPECT_THROW(dictionary_of_array(large + 4, array), NoSuchObject) << large;
        EXPECT_THROW(array_of_array(large + 5, array), NoSuchObject) << large;
    }
}

TEST(ArrayIterators, YieldTheElementsInOrder) {
    EXPECT_EQ("string boolean integer date dictionary array ", Types(Mixed().Array()));
}

TEST(ArrayIterators, EndAtOnceWithAnEmptyArray) {
    OSXArray const array = List("<array/>").Array();
    OSXArrayIterator each;
    EXPECT_THROW(each.First(array), NoSuchObject);
    EXPECT_THROW(each.Next(array), NoSuchObject);
}

TEST(ArrayIterators, StayAtTheEnd) {
    OSXArray const array = List("<array><true/></array>").Array();
    OSXArrayIterator each;
    each.First(array);
    EXPECT_THROW(each.Next(array), NoSuchObject);
    EXPECT_THROW(each.Next(array), NoSuchObject);
}

TEST(ArrayIterators, BeginAgain) {
    OSXArray const array = List("<array><integer>1</integer><integer>2</integer></array>").Array();
    OSXArrayIterator each;
    each.First(array);
    each.Next(array);
    EXPECT_EQ(1, integer_of_value(each.First(array)));
    EXPECT_EQ(2, integer_of_value(each.Next(array)));
}

TEST(ArrayIterators, HaveNothingBeforeTheFirstStep) {
    OSXArrayIterator each;
    EXPECT_THROW(each.Next(Mixed().Array()), NoSuchObject);
}
