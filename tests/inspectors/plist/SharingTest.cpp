// Who owns the objects of a list, and for how long.

#include <memory>
#include <vector>

#include "plist/Arrays.h"
#include "plist/Dictionaries.h"
#include "plist/Lists.h"

namespace {

char const kArray[] = "<array><string>a</string></array>";
char const kDictionary[] = "<dict><key>a</key><true/></dict>";

}  // namespace

TEST(Arrays, OwnOneReferenceHoweverManyCopiesThereAre) {
    List const list(kArray);
    CFIndex const before = list.Count();
    {
        OSXArray const array = list.Array();
        OSXArray const copy(array), another(copy);
        EXPECT_EQ(before + 1, list.Count());
    }
    EXPECT_EQ(before, list.Count());
}

// The copies of one array end in each order.
TEST(Arrays, AreReleasedByTheLastCopy) {
    for (std::vector<int> const& order :
         std::vector<std::vector<int>>{{0, 1, 2}, {0, 2, 1}, {1, 0, 2}, {1, 2, 0}, {2, 0, 1}, {2, 1, 0}}) {
        List const list(kArray);
        CFIndex const before = list.Count();
        std::unique_ptr<OSXArray> copies[3];
        copies[0] = std::make_unique<OSXArray>(list.Array());
        copies[1] = std::make_unique<OSXArray>(*copies[0]);
        copies[2] = std::make_unique<OSXArray>(*copies[0]);
        copies[static_cast<std::size_t>(order[0])].reset();
        EXPECT_EQ(before + 1, list.Count());
        copies[static_cast<std::size_t>(order[1])].reset();
        EXPECT_EQ(before + 1, list.Count());
        copies[static_cast<std::size_t>(order[2])].reset();
        EXPECT_EQ(before, list.Count());
    }
}

TEST(Arrays, ReleaseWhatTheyHadWhenAssigned) {
    List const one(kArray), other(kArray);
    CFIndex const before = one.Count();
    OSXArray array = one.Array();
    OSXArray const another = other.Array();
    array = another;
    EXPECT_EQ(before, one.Count());
    EXPECT_EQ(before + 1, other.Count());
}

TEST(Arrays, DoNotReleaseWhatACopyStillHasWhenAssigned) {
    List const one(kArray), other(kArray);
    CFIndex const before = one.Count();
    OSXArray array = one.Array();
    OSXArray const copy(array), another = other.Array();
    array = another;
    EXPECT_EQ(before + 1, one.Count());
}

TEST(Arrays, StayWhatTheyAreWhenAssignedToThemselves) {
    List const list(kArray);
    CFIndex const before = list.Count();
    {
        OSXArray array = list.Array();
        OSXArray const& same = array;
        array = same;
        EXPECT_EQ(before + 1, list.Count());
        EXPECT_EQ(1, size_of_array(array));
    }
    EXPECT_EQ(before, list.Count());
}

TEST(Arrays, AreOfOneRingOnlyWithTheirCopies) {
    List const list(kArray);
    CFIndex const before = list.Count();
    OSXArray const one = list.Array(), other = list.Array();
    EXPECT_EQ(before + 2, list.Count());
}

TEST(Arrays, OutliveTheListThatTheyAreIn) {
    OSXArray const inner = array_of_array(0, List("<array><array><true/></array></array>").Array());
    EXPECT_TRUE(boolean_of_array(0, inner));
}

TEST(Dictionaries, OwnAReferenceEach) {
    List const list(kDictionary);
    CFIndex const before = list.Count();
    {
        OSXDictionary const dictionary = list.Dictionary();
        OSXDictionary const copy(dictionary);
        EXPECT_EQ(before + 2, list.Count());
    }
    EXPECT_EQ(before, list.Count());
}

TEST(Dictionaries, OutliveTheListThatTheyAreIn) {
    OSXDictionary const inner =
        dictionary_of_array(0, List("<array><dict><key>a</key><true/></dict></array>").Array());
    EXPECT_EQ(1, size_of_dictionary(inner));
}

TEST(Values, OwnNothing) {
    List const list(kArray);
    CFIndex const before = list.Count();
    OSXValue value = list.Value();
    OSXValue const copy(value);
    value = copy;
    EXPECT_EQ(before, list.Count());
}

TEST(Values, KeepTheirObjectWhenCopiesEnd) {
    List const one(kArray), other(kDictionary);
    OSXValue value = one.Value();
    {
        OSXValue const copy(value), another = other.Value();
        value = another;
        EXPECT_EQ(one.Root(), copy.object);
    }
    EXPECT_EQ(other.Root(), value.object);
}

TEST(DictionaryHolders, DuplicateAndDispose) {
    List const list(kDictionary);
    CFIndex const before = list.Count();
    auto const lent = static_cast<CFDictionaryRef>(list.Root());
    CFDictionaryRef const own = Duplicate(lent);
    EXPECT_EQ(lent, own);
    EXPECT_EQ(before + 1, list.Count());
    AutoCFDictionary::DisposeCFDictionaryRef(own);
    EXPECT_EQ(before, list.Count());
}

TEST(DictionaryHolders, LetNullBe) {
    CFDictionaryRef const none = nullptr;
    EXPECT_EQ(nullptr, Duplicate(none));
    AutoCFDictionary::DisposeCFDictionaryRef(none);
    AutoCFDictionary const holder;
    AutoCFDictionary const copy(holder);
    EXPECT_EQ(nullptr, static_cast<CFDictionaryRef>(copy));
}
