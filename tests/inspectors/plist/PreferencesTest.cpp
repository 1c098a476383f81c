// Preferences, against a program that stands in for the platform's: it knows one application.

#include "plist/Preferences.h"

#include <CoreFoundation/CFPreferences.h>

#include <map>
#include <memory>
#include <vector>

#include "Evaluator/Context.h"
#include "filesystem/Asking.h"
#include "plist/Arrays.h"
#include "plist/Dictionaries.h"
#include "plist/Lists.h"

namespace {

std::map<std::string, List const*> settings;
std::string asked;
bool isMemoryFull = false;

std::string MacRoman(CFStringRef text) {
    CFRange const all = CFRangeMake(0, CFStringGetLength(text));
    std::string bytes(static_cast<std::size_t>(CFStringGetLength(text)), '\0');
    CFStringGetBytes(text, all, kCFStringEncodingMacRoman, '?', false, reinterpret_cast<UInt8*>(bytes.data()),
                     all.length, nullptr);
    return bytes;
}

}  // namespace

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef applicationID) {
    asked = MacRoman(applicationID) + "/" + MacRoman(key);
    auto const found = settings.find(asked);
    return found == settings.end() ? nullptr : CFRetain(found->second->Root());
}

void* Allocate_Inspector_Memory(unsigned int size) {
    if (isMemoryFull) throw MemoryFullError();
    static std::vector<std::unique_ptr<std::max_align_t[]>> blocks;
    blocks.push_back(std::make_unique<std::max_align_t[]>(size / sizeof(std::max_align_t) + 1));
    return blocks.back().get();
}

namespace {

template <class R>
using Getter = R (*)(unsigned char const*, unsigned long, Preferences const&);

// A test that sets keys of the application "org.example.editor".
class PreferencesOfApplications : public testing::Test {
  protected:
    ~PreferencesOfApplications() override {
        settings.clear();
        isMemoryFull = false;
    }
    void Set(std::string const& key, List const& value) { settings["org.example.editor/" + key] = &value; }
    static Preferences Named(std::string_view name) { return prefs_of(Bytes(name), name.size()); }
    template <class R>
    static R Ask(Getter<R> getter, std::string_view key, std::string_view name = "org.example.editor") {
        return getter(Bytes(key), key.size(), Named(name));
    }
};

// Asks each getter; each must leave the count of the value alone.
void ExpectCountKept(List const& value, std::string_view key, Preferences const& preferences) {
    CFIndex const before = value.Count();
    auto const ask = [&](auto const& getter) {
        try {
            getter(Bytes(key), key.size(), preferences);
        } catch (NoSuchObject const&) {
        } catch (MemoryFullError const&) {
        }
        EXPECT_EQ(before, value.Count());
    };
    ask(string_of_prefs);
    ask(boolean_of_prefs);
    ask(integer_of_prefs);
    ask(date_of_prefs);
    ask(array_of_prefs);
    ask(dictionary_of_prefs);
}

constexpr std::string_view kValues[] = {"<string>a text</string>",
                                        "<data>YWIA</data>",
                                        "<true/>",
                                        "<integer>7</integer>",
                                        "<real>2.5</real>",
                                        "<date>2001-01-01T00:00:00Z</date>",
                                        "<dict/>",
                                        "<array/>"};

TEST_F(PreferencesOfApplications, GiveTheValuesOfKeys) {
    List const text("<string>caf\u00e9</string>"), data("<data>YWIA</data>"), truth("<true/>"),
        number("<integer>7</integer>"), date("<date>2001-01-01T00:00:00Z</date>"),
        array("<array><true/></array>"), dictionary("<dict><key>a</key><true/></dict>");
    Set("text", text);
    Set("data", data);
    Set("truth", truth);
    Set("number", number);
    Set("date", date);
    Set("array", array);
    Set("dictionary", dictionary);
    EXPECT_EQ("caf\x8e", Text(Ask(string_of_prefs, "text")));
    EXPECT_EQ(std::string("ab\0", 3), Text(Ask(string_of_prefs, "data")));
    EXPECT_TRUE(Ask(boolean_of_prefs, "truth"));
    EXPECT_EQ(7, Ask(integer_of_prefs, "number"));
    EXPECT_EQ(978'307'200'000'000, Ask(date_of_prefs, "date").SinceEpoch().microseconds);
    EXPECT_EQ(1, size_of_array(Ask(array_of_prefs, "array")));
    EXPECT_EQ(1, size_of_dictionary(Ask(dictionary_of_prefs, "dictionary")));
}

TEST_F(PreferencesOfApplications, DoNotGiveAValueAsAnotherType) {
    List const fraction("<real>2.5</real>");
    Set("key", fraction);
    EXPECT_THROW(Ask(string_of_prefs, "key"), NoSuchObject);
    EXPECT_THROW(Ask(boolean_of_prefs, "key"), NoSuchObject);
    EXPECT_THROW(Ask(integer_of_prefs, "key"), NoSuchObject);
    EXPECT_THROW(Ask(date_of_prefs, "key"), NoSuchObject);
    EXPECT_THROW(Ask(array_of_prefs, "key"), NoSuchObject);
    EXPECT_THROW(Ask(dictionary_of_prefs, "key"), NoSuchObject);
}

TEST_F(PreferencesOfApplications, AreThereUnderAnyName) {
    for (std::string_view const name : {"", "no such application", "a/b", "\xff"}) {
        asked.clear();
        Preferences const preferences = Named(name);
        EXPECT_EQ("", asked);
        EXPECT_THROW(string_of_prefs(Bytes("key"), 3, preferences), NoSuchObject);
        EXPECT_EQ(std::string(name) + "/key", asked);
    }
}

TEST_F(PreferencesOfApplications, HaveNoValueOfOtherKeys) {
    List const text("<string>words</string>");
    Set("text", text);
    EXPECT_THROW(Ask(string_of_prefs, "Text"), NoSuchObject);
    EXPECT_THROW(Ask(string_of_prefs, "text", "org.example.other"), NoSuchObject);
}

TEST_F(PreferencesOfApplications, TakeNamesAndKeysAsMacRoman) {
    EXPECT_THROW(Ask(string_of_prefs, "cl\x8e", "caf\x8e"), NoSuchObject);
    EXPECT_EQ("caf\x8e/cl\x8e", asked);
}

TEST_F(PreferencesOfApplications, GiveBackWhatTheyLookedUp) {
    for (std::string_view const bytes : kValues) {
        List const value(bytes);
        Set("key", value);
        ExpectCountKept(value, "key", Named("org.example.editor"));
    }
}

TEST_F(PreferencesOfApplications, GiveBackWhatTheyLookedUpWhenMemoryIsFull) {
    isMemoryFull = true;
    for (std::string_view const bytes : kValues) {
        List const value(bytes);
        Set("key", value);
        ExpectCountKept(value, "key", Named("org.example.editor"));
    }
    List const text("<string>words</string>");
    Set("key", text);
    EXPECT_THROW(Ask(string_of_prefs, "key"), MemoryFullError);
}

TEST_F(PreferencesOfApplications, GiveArraysAndDictionariesWithAReferenceOfTheirOwn) {
    List const array("<array/>"), dictionary("<dict/>");
    Set("array", array);
    Set("dictionary", dictionary);
    CFIndex const beforeArray = array.Count(), beforeDictionary = dictionary.Count();
    OSXArray const givenArray = Ask(array_of_prefs, "array");
    OSXDictionary const givenDictionary = Ask(dictionary_of_prefs, "dictionary");
    EXPECT_EQ(beforeArray + 1, array.Count());
    EXPECT_EQ(beforeDictionary + 1, dictionary.Count());
}

TEST_F(PreferencesOfApplications, OwnTheirIdentifierTogether) {
    Owned<CFStringRef> const identifier(NewString("org.example.editor"));
    CFIndex const before = CFGetRetainCount(identifier);
    {
        CFRetain(identifier);
        Preferences const preferences(identifier);
        Preferences copy(preferences);
        Preferences const another(copy);
        copy = Named("org.example.other");
        EXPECT_EQ(before + 1, CFGetRetainCount(identifier));
    }
    EXPECT_EQ(before, CFGetRetainCount(identifier));
}

}  // namespace
