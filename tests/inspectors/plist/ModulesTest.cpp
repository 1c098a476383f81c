// The tables of the modules, row for row, and what the rows lead to.

#include "RegistrationLog.h"
#include "Slot.h"
#include "filesystem/Asking.h"
#include "modules/ArrayValuesModule.h"
#include "modules/ArraysModule.h"
#include "modules/BundlesModule.h"
#include "modules/DictionariesModule.h"
#include "modules/DictionaryEntriesModule.h"
#include "modules/DictionaryIterationModule.h"
#include "modules/PreferencesModule.h"
#include "modules/PropertyListValuesModule.h"
#include "plist/Lists.h"

namespace {

// A row of a property of one value.
std::string Row(std::string const& phrases, std::string const& of, std::string const& result) {
    return "property " + phrases + " of \"" + of + "\": \"" + result + "\"";
}

// The answer of a registered property as text.
std::string Answer(std::string const& row, void const* index, void const* object) {
    Registration const one = RegisteredAs(row);
    Slot<inspector_string> slot;
    one.get(slot, index, object, nullptr, one.context);
    return Text(slot.Value());
}

// The size that a type is registered with, and how its values end.
template <class T>
void ExpectType(std::string const& name, T const& value) {
    Registration const one = RegisteredAs("type \"" + name + "\"");
    EXPECT_EQ(sizeof(T), one.valueSize) << name;
    EXPECT_EQ(nullptr, one.fingerprint) << name;
    Slot<T> slot;
    new (slot) T(value);
    one.destroy(slot);
}

inspector_string AsString(std::string_view text) {
    return {Bytes(text), static_cast<std::uint32_t>(text.size())};
}

}  // namespace

TEST(ArraysModule, RegistersItsTableInOrder) {
    ExpectRows<ArraysModule>({"type \"array\"", "property \"size\" \"sizes\" of \"array\": \"integer\"",
                              "property \"string\" \"strings\" [\"integer\"] of \"array\": \"string\"",
                              "property \"boolean\" \"booleans\" [\"integer\"] of \"array\": \"boolean\"",
                              "property \"integer\" \"integers\" [\"integer\"] of \"array\": \"integer\"",
                              "property \"date\" \"dates\" [\"integer\"] of \"array\": \"time\"",
                              "property \"dictionary\" \"dictionaries\" [\"integer\"] of \"array\": "
                              "\"dictionary\"",
                              "property \"array\" \"arrays\" [\"integer\"] of \"array\": \"array\""});
}

TEST(ArrayValuesModule, RegistersItsTableInOrder) {
    ExpectRows<ArrayValuesModule>({"iterated property \"value\" \"values\" of \"array\": \"osxvalue\""});
}

TEST(DictionariesModule, RegistersItsTableInOrder) {
    ExpectRows<DictionariesModule>(
        {"type \"dictionary\"", "property \"dictionary\" \"dictionaries\" of \"file\": \"dictionary\"",
         "property \"size\" \"sizes\" of \"dictionary\": \"integer\"",
         "property \"data\" \"datas\" [\"string\"] of \"dictionary\": \"string\"",
         "property \"string\" \"strings\" [\"string\"] of \"dictionary\": \"string\"",
         "property \"cstring\" \"cstrings\" [\"string\"] of \"dictionary\": \"string\"",
         "property \"boolean\" \"booleans\" [\"string\"] of \"dictionary\": \"boolean\"",
         "property \"integer\" \"integers\" [\"string\"] of \"dictionary\": \"integer\"",
         "property \"array\" \"arrays\" [\"string\"] of \"dictionary\": \"array\"",
         "property \"dictionary\" \"dictionaries\" [\"string\"] of \"dictionary\": \"dictionary\"",
         "property \"date\" \"dates\" [\"string\"] of \"dictionary\": \"time\""});
}

TEST(DictionaryEntriesModule, RegistersItsTableInOrder) {
    ExpectRows<DictionaryEntriesModule>(
        {"type \"dictionaryentry\"", "property \"key\" \"keys\" of \"dictionaryentry\": \"string\"",
         "property \"value\" \"values\" of \"dictionaryentry\": \"osxvalue\""});
}

TEST(DictionaryIterationModule, RegistersItsTableInOrder) {
    ExpectRows<DictionaryIterationModule>(
        {"iterated property \"key\" \"keys\" of \"dictionary\": \"string\"",
         "iterated property \"entry\" \"entries\" of \"dictionary\": \"dictionaryentry\""});
}

TEST(PropertyListValuesModule, RegistersItsTableInOrder) {
    ExpectRows<PropertyListValuesModule>(
        {"type \"osxvalue\"", "property \"type\" \"types\" of \"osxvalue\": \"string\"",
         "property \"data\" \"datas\" of \"osxvalue\": \"string\"",
         "property \"string\" \"strings\" of \"osxvalue\": \"string\"",
         "property \"cstring\" \"csrings\" of \"osxvalue\": \"string\"",
         "property \"boolean\" \"booleans\" of \"osxvalue\": \"boolean\"",
         "property \"integer\" \"integers\" of \"osxvalue\": \"integer\"",
         "property \"array\" \"arrays\" of \"osxvalue\": \"array\"",
         "property \"dictionary\" \"dictionaries\" of \"osxvalue\": \"dictionary\"",
         "property \"date\" \"dates\" of \"osxvalue\": \"time\""});
}

TEST(BundlesModule, RegistersItsTableInOrder) {
    ExpectRows<BundlesModule>(
        {"type \"bundle\"", "property \"bundle\" \"bundles\" of \"folder\": \"bundle\"",
         "property \"bundle\" \"bundles\" [\"string\"]: \"bundle\"",
         "property \"version\" \"versions\" of \"bundle\": \"version\"",
         "property \"bundle version\" \"bundle versions\" of \"bundle\": \"version\"",
         "property \"type\" \"types\" of \"bundle\": \"file type\"",
         "property \"creator\" \"creators\" of \"bundle\": \"file signature\"",
         "property \"global dictionary\" \"global dictionaries\" of \"bundle\": \"dictionary\"",
         "property \"local dictionary\" \"local dictionaries\" of \"bundle\": \"dictionary\""});
}

TEST(PreferencesModule, RegistersItsTableInOrder) {
    ExpectRows<PreferencesModule>(
        {"type \"preference\"", "property \"preference\" \"preferences\" [\"string\"]: \"preference\"",
         "property \"string\" \"strings\" [\"string\"] of \"preference\": \"string\"",
         "property \"boolean\" \"booleans\" [\"string\"] of \"preference\": \"boolean\"",
         "property \"integer\" \"integers\" [\"string\"] of \"preference\": \"integer\"",
         "property \"date\" \"dates\" [\"string\"] of \"preference\": \"time\"",
         "property \"array\" \"arrays\" [\"string\"] of \"preference\": \"array\"",
         "property \"dictionary\" \"dictionaries\" [\"string\"] of \"preference\": \"dictionary\""});
}

TEST(PropertyListModules, TellTheSizesOfTheirValuesAndEndThem) {
    ArraysModule const arrays;
    DictionariesModule const dictionaries;
    DictionaryEntriesModule const entries;
    PropertyListValuesModule const values;
    PreferencesModule const preferences;
    BundlesModule const bundles;
    List const array("<array/>"), dictionary("<dict/>"), text("<string>text</string>");
    CFIndex const before[] = {array.Count(), dictionary.Count(), text.Count()};
    auto const string = static_cast<CFStringRef>(text.Root());
    ExpectType("array", array.Array());
    ExpectType("dictionary", dictionary.Dictionary());
    ExpectType("dictionaryentry", OSXDictionaryEntry(string, text.Root()));
    ExpectType("osxvalue", text.Value());
    ExpectType("preference", Preferences(CFStringCreateCopy(kCFAllocatorDefault, string)));
    // Any object will do for a bundle that only ends.
    CFRetain(text.Root());
    ExpectType("bundle", Bundle(static_cast<CFBundleRef>(const_cast<void*>(text.Root()))));
    EXPECT_EQ(before[0], array.Count());
    EXPECT_EQ(before[1], dictionary.Count());
    EXPECT_EQ(before[2], text.Count());
}

TEST(PropertyListModules, TellTheSizesOfTheirIterations) {
    ArrayValuesModule const values;
    DictionaryIterationModule const entries;
    EXPECT_EQ(8u,
              RegisteredAs("iterated property \"value\" \"values\" of \"array\": \"osxvalue\"").valueSize);
    EXPECT_EQ(sizeof(OSXDictionaryKeyIterator),
              RegisteredAs("iterated property \"key\" \"keys\" of \"dictionary\": \"string\"").valueSize);
    EXPECT_EQ(sizeof(OSXDictionaryEntryIterator),
              RegisteredAs("iterated property \"entry\" \"entries\" of \"dictionary\": \"dictionaryentry\"")
                  .valueSize);
}

TEST(PropertyListModules, MarkNothingAsDependingOnParametersAlone) {
    ArraysModule const arrays;
    ArrayValuesModule const arrayValues;
    DictionariesModule const dictionaries;
    DictionaryEntriesModule const entries;
    DictionaryIterationModule const iteration;
    PropertyListValuesModule const values;
    PreferencesModule const preferences;
    BundlesModule const bundles;
    EXPECT_EQ(52u, Registered().size());
    for (Registration const& one : Registered()) EXPECT_EQ(nullptr, one.dependency) << one.row;
}

TEST(PropertyListValuesModule, AsksByItsPhrases) {
    PropertyListValuesModule const module;
    List const data("<data>YWIA</data>");
    OSXValue const value = data.Value();
    EXPECT_EQ("data", Answer(Row("\"type\" \"types\"", "osxvalue", "string"), nullptr, &value));
    EXPECT_EQ(std::string("ab\0", 3),
              Answer(Row("\"data\" \"datas\"", "osxvalue", "string"), nullptr, &value));
    EXPECT_EQ(std::string("ab\0", 3),
              Answer(Row("\"string\" \"strings\"", "osxvalue", "string"), nullptr, &value));
    EXPECT_EQ("ab", Answer(Row("\"cstring\" \"csrings\"", "osxvalue", "string"), nullptr, &value));
}

TEST(DictionariesModule, AsksByItsPhrases) {
    DictionariesModule const module;
    OSXDictionary const dictionary = List("<dict><key>k</key><data>YWIA</data></dict>").Dictionary();
    inspector_string const key = AsString("k");
    EXPECT_EQ(std::string("ab\0", 3),
              Answer(Row("\"data\" \"datas\" [\"string\"]", "dictionary", "string"), &key, &dictionary));
    EXPECT_EQ(std::string("ab\0", 3),
              Answer(Row("\"string\" \"strings\" [\"string\"]", "dictionary", "string"), &key, &dictionary));
    EXPECT_EQ("ab", Answer(Row("\"cstring\" \"cstrings\" [\"string\"]", "dictionary", "string"), &key,
                           &dictionary));
}

// The array is not there to be touched.
TEST(ArraysModule, HasNothingAtNegativeNumbers) {
    ArraysModule const module;
    integer const index = -1;
    EXPECT_THROW(Answer(Row("\"string\" \"strings\" [\"integer\"]", "array", "string"), &index, nullptr),
                 NoSuchObject);
}

TEST(DictionaryEntriesModule, AsksByItsPhrases) {
    DictionaryEntriesModule const module;
    List const text("<string>both</string>");
    OSXDictionaryEntry const entry(static_cast<CFStringRef>(text.Root()), text.Root());
    EXPECT_EQ("both", Answer(Row("\"key\" \"keys\"", "dictionaryentry", "string"), nullptr, &entry));
    Registration const one = RegisteredAs(Row("\"value\" \"values\"", "dictionaryentry", "osxvalue"));
    Slot<OSXValue> slot;
    one.get(slot, nullptr, &entry, nullptr, one.context);
    EXPECT_EQ(text.Root(), slot.Value().object);
    slot.End();
}

// As the host iterates: the state in its memory, ended although the iteration had no first step.
TEST(DictionaryIterationModule, EndsAnIterationWithoutValues) {
    DictionaryIterationModule const module;
    Registration const one =
        RegisteredAs("iterated property \"entry\" \"entries\" of \"dictionary\": \"dictionaryentry\"");
    OSXDictionary const dictionary = List("<dict/>").Dictionary();
    Slot<OSXDictionaryEntryIterator> state;
    Slot<OSXDictionaryEntry> slot;
    one.construct(state);
    EXPECT_THROW(one.get(slot, nullptr, &dictionary, state, one.context), NoSuchObject);
    EXPECT_TRUE(slot.Untouched());
    one.destroy(state);
}

TEST(DictionaryIterationModule, YieldsToTheHost) {
    DictionaryIterationModule const module;
    Registration const one = RegisteredAs("iterated property \"key\" \"keys\" of \"dictionary\": \"string\"");
    OSXDictionary const dictionary = List("<dict><key>a</key><true/><key>b</key><true/></dict>").Dictionary();
    Slot<OSXDictionaryKeyIterator> state;
    Slot<inspector_string> slot;
    one.construct(state);
    one.get(slot, nullptr, &dictionary, state, one.context);
    EXPECT_EQ("a", Text(slot.Value()));
    one.next(slot, nullptr, &dictionary, state, one.context);
    EXPECT_EQ("b", Text(slot.Value()));
    EXPECT_THROW(one.next(slot, nullptr, &dictionary, state, one.context), NoSuchObject);
    one.destroy(state);
}
