// All keys and all entries of a dictionary.

#include "plist/DictionaryEntries.h"

#include "filesystem/Asking.h"
#include "plist/Lists.h"

namespace {

char const kThree[] =
    "<dict><key>one</key><integer>1</integer><key>caf\u00e9</key><string>two</string>"
    "<key>three</key><false/></dict>";

// What an iteration yields, shown by a function.
template <class Iterator, class Show>
std::string All(OSXDictionary const& dictionary, Show const& show) {
    std::string shown;
    Iterator each;
    try {
        shown += show(each.First(dictionary)) + ";";
        while (true) shown += show(each.Next(dictionary)) + ";";
    } catch (NoSuchObject const&) {
        return shown;
    }
}

std::string Keys(std::string_view bytes) {
    return All<OSXDictionaryKeyIterator>(List(bytes).Dictionary(), Text);
}
std::string Entries(std::string_view bytes) {
    auto const show = [](OSXDictionaryEntry const& entry) {
        return Text(key_of_entry(entry)) + "=" + Text(type_of_value(value_of_entry(entry)));
    };
    return All<OSXDictionaryEntryIterator>(List(bytes).Dictionary(), show);
}

template <class Iterator>
class DictionaryIterators : public testing::Test {};
using Both = testing::Types<OSXDictionaryKeyIterator, OSXDictionaryEntryIterator>;
TYPED_TEST_SUITE(DictionaryIterators, Both);

TYPED_TEST(DictionaryIterators, EndAtOnceWithAnEmptyDictionary) {
    OSXDictionary const dictionary = List("<dict/>").Dictionary();
    TypeParam each;
    EXPECT_THROW(each.First(dictionary), NoSuchObject);
    EXPECT_THROW(each.Next(dictionary), NoSuchObject);
}

TYPED_TEST(DictionaryIterators, StayAtTheEnd) {
    OSXDictionary const dictionary = List("<dict><key>a</key><true/></dict>").Dictionary();
    TypeParam each;
    each.First(dictionary);
    EXPECT_THROW(each.Next(dictionary), NoSuchObject);
    EXPECT_THROW(each.Next(dictionary), NoSuchObject);
}

TYPED_TEST(DictionaryIterators, HaveNothingBeforeTheFirstStep) {
    TypeParam each;
    EXPECT_THROW(each.Next(List(kThree).Dictionary()), NoSuchObject);
}

TYPED_TEST(DictionaryIterators, OwnNoObjects) {
    List const list(kThree);
    CFIndex const before = list.Count();
    OSXDictionary const dictionary = list.Dictionary();
    TypeParam each;
    each.First(dictionary);
    EXPECT_EQ(before + 1, list.Count());
}

}  // namespace

TEST(DictionaryKeys, ComeInTheOrderOfTheListInMacRoman) { EXPECT_EQ("one;caf\x8e;three;", Keys(kThree)); }

TEST(DictionaryKeys, BeginAgain) {
    OSXDictionary const dictionary = List(kThree).Dictionary();
    OSXDictionaryKeyIterator each;
    each.First(dictionary);
    each.Next(dictionary);
    EXPECT_EQ("one", Text(each.First(dictionary)));
    EXPECT_EQ("caf\x8e", Text(each.Next(dictionary)));
}

TEST(DictionaryEntries, AreKeysWithTheirValues) {
    EXPECT_EQ("one=integer;caf\x8e=string;three=boolean;", Entries(kThree));
}

TEST(DictionaryEntries, KeepTheirKeyAndValueWhenCopied) {
    List const list(kThree);
    OSXDictionary const dictionary = list.Dictionary();
    OSXDictionaryEntryIterator each;
    OSXDictionaryEntry last = each.First(dictionary);
    {
        OSXDictionaryEntry const second = each.Next(dictionary);
        OSXDictionaryEntry const copy(second);
        last = copy;
    }
    EXPECT_EQ("caf\x8e", Text(key_of_entry(last)));
    EXPECT_EQ("two", Text(string_of_value(value_of_entry(last))));
}

TEST(DictionaryEntries, OwnNoValues) {
    List const list("<dict><key>a</key><array><true/></array></dict>");
    OSXDictionary const dictionary = list.Dictionary();
    OSXDictionaryEntryIterator each;
    OSXDictionaryEntry const entry = each.First(dictionary);
    CFIndex const before = CFGetRetainCount(entry.value);
    {
        OSXValue const value = value_of_entry(entry);
        OSXDictionaryEntry const copy(entry);
        EXPECT_EQ(before, CFGetRetainCount(entry.value));
    }
    EXPECT_EQ(before, CFGetRetainCount(entry.value));
}
