// Every getter leaves the counts of what it looks at as they were, whether it answers or not, but for the one
// reference of an array or a dictionary that it gives.

#include <functional>
#include <vector>

#include "plist/Arrays.h"
#include "plist/Dictionaries.h"
#include "plist/DictionaryEntries.h"
#include "plist/Lists.h"

namespace {

using Getter = std::function<void()>;

void Ask(Getter const& getter) {
    try {
        getter();
    } catch (NoSuchObject const&) {
    }
}

// The objects of a list: its root, and what its root holds.
struct Objects {
    explicit Objects(List const& list) : all{list.Root()} {
        CFTypeID const type = CFGetTypeID(list.Root());
        if (type == CFArrayGetTypeID()) {
            auto const array = static_cast<CFArrayRef>(list.Root());
            for (CFIndex i = 0; i < CFArrayGetCount(array); ++i)
                all.push_back(CFArrayGetValueAtIndex(array, i));
        } else if (type == CFDictionaryGetTypeID()) {
            auto const dictionary = static_cast<CFDictionaryRef>(list.Root());
            std::vector<CFTypeRef> keys(static_cast<std::size_t>(CFDictionaryGetCount(dictionary)));
            std::vector<CFTypeRef> values(keys.size());
            CFDictionaryGetKeysAndValues(dictionary, keys.data(), values.data());
            all.insert(all.end(), keys.begin(), keys.end());
            all.insert(all.end(), values.begin(), values.end());
        }
    }
    std::vector<CFIndex> Counts() const {
        std::vector<CFIndex> counts;
        for (CFTypeRef const object : all) counts.push_back(CFGetRetainCount(object));
        return counts;
    }

    std::vector<CFTypeRef> all;
};

// Asks each getter of a value, and looks at the counts behind each.
void ExpectCountsKept(List const& list, std::vector<Getter> const& getters) {
    Objects const objects(list);
    std::vector<CFIndex> const before = objects.Counts();
    for (std::size_t i = 0; i < getters.size(); ++i) {
        Ask(getters[i]);
        EXPECT_EQ(before, objects.Counts()) << "getter " << i;
    }
}

// All getters of an element, or of a value by its key.
template <class Of>
std::vector<Getter> GettersOfElement(Of const& array, unsigned long long i) {
    return {[=] { string_of_array(i, array); },     [=] { boolean_of_array(i, array); },
            [=] { integer_of_array(i, array); },    [=] { date_of_array(i, array); },
            [=] { dictionary_of_array(i, array); }, [=] { array_of_array(i, array); }};
}

constexpr std::string_view kElements[] = {"<string>a text</string>",
                                          "<data>YWIA</data>",
                                          "<true/>",
                                          "<integer>7</integer>",
                                          "<real>2.5</real>",
                                          "<date>2001-01-01T00:00:00Z</date>",
                                          "<dict><key>k</key><true/></dict>",
                                          "<array><true/></array>"};

}  // namespace

TEST(ReferenceCounts, AreKeptByGettersOfValues) {
    for (std::string_view const element : kElements) {
        List const list(element);
        OSXValue const value = list.Value();
        ExpectCountsKept(list, {[&] { type_of_value(value); }, [&] { string_of_value(value); },
                                [&] { cstring_of_value(value); }, [&] { boolean_of_value(value); },
                                [&] { integer_of_value(value); }, [&] { date_of_value(value); },
                                [&] { array_of_value(value); }, [&] { dictionary_of_value(value); }});
    }
}

TEST(ReferenceCounts, AreKeptByGettersOfArrays) {
    for (std::string_view const element : kElements) {
        List const list("<array>" + std::string(element) + "</array>");
        OSXArray const array = list.Array();
        for (unsigned long long const index : {0ULL, 1ULL})
            ExpectCountsKept(list, GettersOfElement(array, index));
        ExpectCountsKept(list, {[&] { size_of_array(array); }, [&] { OSXArrayIterator().First(array); }});
    }
}

TEST(ReferenceCounts, AreKeptByGettersOfDictionaries) {
    for (std::string_view const element : kElements) {
        List const list("<dict><key>key</key>" + std::string(element) + "</dict>");
        OSXDictionary const of = list.Dictionary();
        for (std::string_view const name : {"key", "absent"}) {
            unsigned char const* const key = Bytes(name);
            unsigned long const size = name.size();
            ExpectCountsKept(
                list,
                {[&] { keyedLookup(key, size, of); }, [&] { string_of_dictionary(key, size, of); },
                 [&] { cstring_of_dictionary(key, size, of); }, [&] { boolean_of_dictionary(key, size, of); },
                 [&] { integer_of_dictionary(key, size, of); }, [&] { date_of_dictionary(key, size, of); },
                 [&] { array_of_dictionary(key, size, of); },
                 [&] { dictionary_of_dictionary(key, size, of); }});
        }
        ExpectCountsKept(list,
                         {[&] { size_of_dictionary(of); }, [&] { OSXDictionaryKeyIterator().First(of); },
                          [&] { value_of_entry(OSXDictionaryEntryIterator().First(of)); },
                          [&] { key_of_entry(OSXDictionaryEntryIterator().First(of)); }});
    }
}

TEST(ReferenceCounts, AreOneHigherForAnArrayOrDictionaryThatIsGiven) {
    List const array("<array><true/></array>"), dictionary("<dict><key>k</key><true/></dict>");
    CFIndex const beforeArray = array.Count(), beforeDictionary = dictionary.Count();
    OSXArray const givenArray = array_of_value(array.Value());
    OSXDictionary const givenDictionary = dictionary_of_value(dictionary.Value());
    EXPECT_EQ(beforeArray + 1, array.Count());
    EXPECT_EQ(beforeDictionary + 1, dictionary.Count());
}
