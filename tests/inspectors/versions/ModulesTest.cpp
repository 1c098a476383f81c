// The tables of the modules, row for row.

#include <gtest/gtest.h>

#include "Evaluator/Exceptions.h"
#include "RegistrationLog.h"
#include "Slot.h"
#include "VersionsOfTests.h"
#include "modules/CountryModule.h"
#include "modules/StageModule.h"
#include "modules/VersionsModule.h"

namespace {

template <class R>
R Get(std::string const& row, void const* index, void const* object) {
    Registration const one = RegisteredAs(row);
    Slot<R> slot;
    one.get(slot, index, object, nullptr, one.context);
    R const result = slot.Value();
    slot.End();
    return result;
}

template <class A, class B>
bool Holds(int code, std::string const& types, A const& left, B const& right) {
    Registration const one =
        RegisteredAs("operator " + std::to_string(code) + " " + types + ": \"boolean\" pure");
    Slot<boolean> slot;
    one.compute(slot, &left, &right, one.context);
    return slot.Value();
}

/// The three relations of types: by a pair whose first one is less, and one that are equal.
template <class A, class B>
void ExpectRelations(std::string const& types, A const& less, A const& equal, B const& greater) {
    EXPECT_TRUE(Holds(kRelationLess, types, less, greater));
    EXPECT_FALSE(Holds(kRelationLess, types, equal, greater));
    EXPECT_TRUE(Holds(kRelationLessOrEqual, types, less, greater));
    EXPECT_TRUE(Holds(kRelationLessOrEqual, types, equal, greater));
    EXPECT_FALSE(Holds(kRelationEqual, types, less, greater));
    EXPECT_TRUE(Holds(kRelationEqual, types, equal, greater));
}

constexpr char kOfRevision[] = " of \"version\": \"integer\" pure";

}  // namespace

TEST(VersionsModule, RegistersItsTableInOrder) {
    ExpectRows<VersionsModule>(
        {"type \"version\"", "cast \"string\" of \"version\": \"string\" pure",
         "cast \"version\" of \"string\": \"version\" pure",
         "operator 6 \"version\" \"version\": \"boolean\" pure",
         "operator 7 \"version\" \"version\": \"boolean\" pure",
         "operator 8 \"version\" \"version\": \"boolean\" pure",
         "operator 6 \"version\" \"string\": \"boolean\" pure",
         "operator 7 \"version\" \"string\": \"boolean\" pure",
         "operator 8 \"version\" \"string\": \"boolean\" pure",
         "operator 6 \"string\" \"version\": \"boolean\" pure",
         "operator 7 \"string\" \"version\": \"boolean\" pure",
         "operator 8 \"string\" \"version\": \"boolean\" pure",
         "property \"version\" \"versions\" [\"integer\"] of \"file\": \"version\" pure",
         "property \"version\" \"versions\" of \"file\": \"version\" pure",
         "property \"major revision\" \"major revisions\" of \"version\": \"integer\" pure",
         "property \"minor revision\" \"minor revisions\" of \"version\": \"integer\" pure",
         "property \"bug revision\" \"bug revisions\" of \"version\": \"integer\" pure",
         "property \"stage\" \"stages\" of \"version\": \"stage\" pure",
         "property \"version\" \"versions\" [\"string\"]: \"version\" pure"});
}

TEST(StageModule, RegistersItsTableInOrder) {
    ExpectRows<StageModule>({"type \"stage\"", "property \"stage\" \"stages\" [\"string\"]: \"stage\"",
                             "operator 6 \"stage\" \"stage\": \"boolean\""});
}

TEST(CountryModule, RegistersItsTableInOrder) {
    ExpectRows<CountryModule>({"type \"country\"",
                               "property \"country\" \"countries\" [\"string\"]: \"country\"",
                               "operator 6 \"country\" \"country\": \"boolean\""});
}

TEST(VersionModules, TellTheSizesOfTheirValues) {
    VersionsModule const versions;
    StageModule const stages;
    CountryModule const countries;
    EXPECT_EQ(sizeof(MacVersion), RegisteredAs("type \"version\"").valueSize);
    EXPECT_EQ(1u, RegisteredAs("type \"stage\"").valueSize);
    EXPECT_EQ(4u, RegisteredAs("type \"country\"").valueSize);
    for (Registration const& one : Registered()) EXPECT_EQ(nullptr, one.fingerprint) << one.row;
}

TEST(VersionsModule, MarksWhatDependsOnlyOnParameters) {
    VersionsModule const versions;
    for (Registration const& one : Registered()) {
        bool const isType = one.row.starts_with("type");
        EXPECT_EQ(isType ? nullptr : &DependsOnlyOnParameters, one.dependency) << one.row;
    }
}

TEST(VersionsModule, EndsTheTextOfAVersion) {
    VersionsModule const versions;
    Slot<MacVersion> slot;
    new (slot) MacVersion(Textual("a text that is too long to lie in the value itself"));
    RegisteredAs("type \"version\"").destroy(slot);
}

TEST(VersionsModule, CastsByTheFunctionsOfItsRows) {
    VersionsModule const versions;
    Registration const asString = RegisteredAs("cast \"string\" of \"version\": \"string\" pure");
    MacVersion const version = Numeric(1, 2, 3, 0x60, 4);
    Slot<inspector_string> text;
    asString.cast(text, &version, asString.context);
    EXPECT_EQ("1.2.3b4", std::string(text.Value().begin(), text.Value().end()));
    Registration const asVersion = RegisteredAs("cast \"version\" of \"string\": \"version\" pure");
    Slot<MacVersion> result;
    asVersion.cast(result, &text.Value(), asVersion.context);
    EXPECT_EQ("1 2 3 0x60 4", Fields(result.Value()));
    result.End();
}

TEST(VersionsModule, ComparesVersionsAndStringsOnEitherSide) {
    VersionsModule const versions;
    MacVersion const less = Parsed("1.5"), equal = Parsed("1.10f"), greater = Parsed("1.10");
    inspector_string const lessText = AsString("1.5"), equalText = AsString("1.10f"),
                           greaterText = AsString("1.10");
    ExpectRelations("\"version\" \"version\"", less, equal, greater);
    ExpectRelations("\"version\" \"string\"", less, equal, greaterText);
    ExpectRelations("\"string\" \"version\"", lessText, equalText, greater);
}

TEST(VersionsModule, AsksThePartsOfTheirPhrases) {
    VersionsModule const versions;
    MacVersion const version = Numeric(1, 2, 3, 0x60, 4);
    EXPECT_EQ(1, Get<integer>(std::string("property \"major revision\" \"major revisions\"") + kOfRevision,
                              nullptr, &version));
    EXPECT_EQ(2, Get<integer>(std::string("property \"minor revision\" \"minor revisions\"") + kOfRevision,
                              nullptr, &version));
    EXPECT_EQ(3, Get<integer>(std::string("property \"bug revision\" \"bug revisions\"") + kOfRevision,
                              nullptr, &version));
    EXPECT_EQ(
        0x60,
        Get<stage>("property \"stage\" \"stages\" of \"version\": \"stage\" pure", nullptr, &version).code);
}

TEST(VersionsModule, ReadsAVersionOfAName) {
    VersionsModule const versions;
    inspector_string const name = AsString("1.2.3b4");
    EXPECT_EQ("1 2 3 0x60 4",
              Fields(Get<MacVersion>("property \"version\" \"versions\" [\"string\"]: \"version\" pure",
                                     &name, nullptr)));
}

TEST(StageModule, FindsAndComparesStages) {
    StageModule const stages;
    inspector_string const final = AsString("f"), empty = AsString(""), beta = AsString("b");
    std::string const row = "property \"stage\" \"stages\" [\"string\"]: \"stage\"";
    stage const one = Get<stage>(row, &final, nullptr), same = Get<stage>(row, &empty, nullptr),
                other = Get<stage>(row, &beta, nullptr);
    Registration const equal = RegisteredAs("operator 6 \"stage\" \"stage\": \"boolean\"");
    Slot<boolean> slot;
    equal.compute(slot, &one, &same, equal.context);
    EXPECT_TRUE(slot.Value());
    equal.compute(slot, &one, &other, equal.context);
    EXPECT_FALSE(slot.Value());
}

TEST(CountryModule, FindsAndComparesCountries) {
    CountryModule const countries;
    inspector_string const here = AsString("verUS"), there = AsString("verFrance"), nowhere = AsString("US");
    std::string const row = "property \"country\" \"countries\" [\"string\"]: \"country\"";
    country const one = Get<country>(row, &here, nullptr), other = Get<country>(row, &there, nullptr);
    EXPECT_EQ(1u, other.code);
    Registration const equal = RegisteredAs("operator 6 \"country\" \"country\": \"boolean\"");
    Slot<boolean> slot;
    equal.compute(slot, &one, &one, equal.context);
    EXPECT_TRUE(slot.Value());
    equal.compute(slot, &one, &other, equal.context);
    EXPECT_FALSE(slot.Value());
    EXPECT_THROW(Get<country>(row, &nowhere, nullptr), NoSuchObject);
}
