#include "frame/Properties.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "RegistrationLog.h"
#include "Slot.h"
#include "frame/Types.h"

namespace {

struct Thing {
    long long number;
};

int calls;

// A result that is made where it stays: neither copied nor moved.
struct Placed {
    explicit Placed(long long value) : number(value), self(this) {}
    Placed(Placed const&) = delete;
    bool InPlace() const { return self == this; }
    long long number;
    Placed const* self;
};

std::string TextOf(unsigned char const* text, unsigned long length) { return {text, text + length}; }

Placed placed_of(Thing const& thing) { return ++calls, Placed(thing.number); }
integer double_of(Thing const& thing) { return ++calls, thing.number * 2; }
integer triple_of(Thing const& thing) { return ++calls, thing.number * 3; }
std::string named_of(unsigned char const* text, unsigned long length, Thing const& thing) {
    return ++calls, TextOf(text, length) + std::to_string(thing.number);
}
std::string numbered_of(unsigned long long index, Thing const& thing) {
    return ++calls, std::to_string(index) + "/" + std::to_string(thing.number);
}
integer answer_of() { return ++calls, 42; }
std::string greeting_of(unsigned char const* text, unsigned long length) {
    return ++calls, "hello " + TextOf(text, length);
}
std::string count_of(unsigned long long index) { return ++calls, std::to_string(index); }
integer tagged_of(Of, Thing const& thing) { return ++calls, thing.number; }
integer sum_of(Thing const& index, Of, Thing const& thing) { return ++calls, index.number + thing.number; }
integer indexed_of(Thing const& index) { return ++calls, index.number; }
integer absent_of(Thing const&) { throw NoSuchObject(); }

inspector_string const name(reinterpret_cast<unsigned char const*>("Ann"), 3);
Thing const seven{7};
Thing const five{5};

// Calls the registration as the host does: first without a slot, which must not reach the inspector, then
// with one.
template <class R>
R Ask(std::string const& row, void const* argument, void const* object) {
    Registration const one = RegisteredAs(row);
    EXPECT_EQ(128u, one.recordSize);
    EXPECT_EQ(one.record, one.context);
    calls = 0;
    one.get(nullptr, argument, object, nullptr, one.context);
    EXPECT_EQ(0, calls);
    Slot<R> slot;
    one.get(slot, argument, object, nullptr, one.context);
    EXPECT_EQ(1, calls);
    R const result = slot.Value();
    slot.End();
    return result;
}

}  // namespace

TEST(Property, ConstructsTheResultInTheSlot) {
    Property<Thing, Placed> const record{"place", "places", "thing", "placed", placed_of};
    Registration const one = RegisteredAs("property \"place\" \"places\" of \"thing\": \"placed\"");
    EXPECT_EQ(&record, one.record);
    Slot<Placed> slot;
    one.get(slot, nullptr, &seven, nullptr, one.context);
    EXPECT_EQ(7, slot.Value().number);
    EXPECT_TRUE(slot.Value().InPlace());
}

TEST(Property, AsksTheInspectorOfItsOwnRecord) {
    Property<Thing, integer> const two{"double", "doubles", "thing", "integer", double_of};
    Property<Thing, integer> const three{"triple", "triples", "thing", "integer", triple_of};
    EXPECT_EQ(14, Ask<integer>("property \"double\" \"doubles\" of \"thing\": \"integer\"", nullptr, &seven));
    EXPECT_EQ(21, Ask<integer>("property \"triple\" \"triples\" of \"thing\": \"integer\"", nullptr, &seven));
    EXPECT_EQ(Registered()[0].get, Registered()[1].get);
}

TEST(Property, LetsExceptionsThroughAndLeavesTheSlotAlone) {
    Property<Thing, integer> const record{"absence", "absences", "thing", "integer", absent_of};
    Registration const one = Registered()[0];
    Slot<integer> slot;
    EXPECT_THROW(one.get(slot, nullptr, &seven, nullptr, one.context), NoSuchObject);
    EXPECT_TRUE(slot.Untouched());
}

TEST(Property, RegistersItsDependencyMarker) {
    Property<Thing, integer> const record{"double",  "doubles", "thing",
                                          "integer", double_of, DependsOnlyOnParameters};
    EXPECT_EQ(&DependsOnlyOnParameters,
              RegisteredAs("property \"double\" \"doubles\" of \"thing\": \"integer\" pure").dependency);
}

TEST(Property, IsWithdrawnWithItsRecord) {
    { Property<Thing, integer> const record{"double", "doubles", "thing", "integer", double_of}; }
    EXPECT_TRUE(Registered().empty());
}

TEST(NamedProperty, GetsTheNamesBytes) {
    NamedProperty<Thing, std::string> const record{"word", "words", "thing", "text", named_of};
    EXPECT_EQ("Ann7", Ask<std::string>("property \"word\" \"words\" [\"string\"] of \"thing\": \"text\"",
                                       &name, &seven));
}

TEST(NumberedProperty, GetsTheNumber) {
    NumberedProperty<Thing, std::string> const record{"part", "parts", "thing", "text", numbered_of};
    integer const large = std::numeric_limits<long long>::max();
    EXPECT_EQ(
        "9223372036854775807/7",
        Ask<std::string>("property \"part\" \"parts\" [\"integer\"] of \"thing\": \"text\"", &large, &seven));
    integer const zero = 0;
    EXPECT_EQ("0/7", Ask<std::string>("property \"part\" \"parts\" [\"integer\"] of \"thing\": \"text\"",
                                      &zero, &seven));
}

TEST(NumberedProperty, TakesNoNegativeNumberEvenWithoutASlot) {
    NumberedProperty<Thing, std::string> const record{"part", "parts", "thing", "text", numbered_of};
    Registration const one = Registered()[0];
    Slot<std::string> slot;
    calls = 0;
    for (integer const index : {integer(-1), integer(std::numeric_limits<long long>::min())}) {
        EXPECT_THROW(one.get(slot, &index, &seven, nullptr, one.context), NoSuchObject);
        EXPECT_THROW(one.get(nullptr, &index, &seven, nullptr, one.context), NoSuchObject);
    }
    EXPECT_EQ(0, calls);
    EXPECT_TRUE(slot.Untouched());
}

TEST(GlobalProperty, NeedsNoObject) {
    GlobalProperty<integer> const record{"answer", "answers", "integer", answer_of};
    EXPECT_EQ(42, Ask<integer>("property \"answer\" \"answers\": \"integer\"", nullptr, nullptr));
}

TEST(NamedGlobalProperty, GetsTheNamesBytes) {
    NamedGlobalProperty<std::string> const record{"greeting", "greetings", "text", greeting_of};
    EXPECT_EQ("hello Ann",
              Ask<std::string>("property \"greeting\" \"greetings\" [\"string\"]: \"text\"", &name, nullptr));
}

TEST(NumberedGlobalProperty, GetsTheNumberUnlessItIsNegative) {
    NumberedGlobalProperty<std::string> const record{"count", "counts", "text", count_of};
    integer index = 3;
    EXPECT_EQ("3",
              Ask<std::string>("property \"count\" \"counts\" [\"integer\"]: \"text\"", &index, nullptr));
    index = -1;
    calls = 0;
    Registration const one = Registered()[0];
    Slot<std::string> slot;
    EXPECT_THROW(one.get(slot, &index, nullptr, nullptr, one.context), NoSuchObject);
    EXPECT_THROW(one.get(nullptr, &index, nullptr, nullptr, one.context), NoSuchObject);
    EXPECT_EQ(0, calls);
}

TEST(PropertyOfObject, PassesTheTag) {
    PropertyOfObject<integer, Thing> const record{"tag", "tags", "thing", "integer", tagged_of};
    EXPECT_EQ(7, Ask<integer>("property \"tag\" \"tags\" of \"thing\": \"integer\"", nullptr, &seven));
}

TEST(PropertyByIndexOfObject, PassesTheIndexOnUnchanged) {
    PropertyByIndexOfObject<integer, Thing, Thing> const record{"sum",   "sums",    "thing",
                                                                "thing", "integer", sum_of};
    EXPECT_EQ(12,
              Ask<integer>("property \"sum\" \"sums\" [\"thing\"] of \"thing\": \"integer\"", &five, &seven));
}

TEST(PropertyOfWorld, NeedsNoObject) {
    PropertyOfWorld<integer> const record{"answer", "answers", "integer", answer_of};
    EXPECT_EQ(42, Ask<integer>("property \"answer\" \"answers\": \"integer\"", nullptr, nullptr));
}

TEST(PropertyByIndexOfWorld, PassesTheIndexOnUnchanged) {
    PropertyByIndexOfWorld<integer, Thing> const record{"value", "values", "thing", "integer", indexed_of};
    EXPECT_EQ(5, Ask<integer>("property \"value\" \"values\" [\"thing\"]: \"integer\"", &five, nullptr));
}
