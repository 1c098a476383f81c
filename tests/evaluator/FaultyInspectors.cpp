// Inspector libraries that break the contract, one for each value of FAULT.

#include "frame/Adapters.h"

namespace {

integer answer() { return 42; }
void ClearNothing(void*) {}

#if FAULT == 1  // registers the same property twice
struct Module {
    GlobalProperty<integer> one{"faulty answer", "faulty answers", "integer", answer};
    GlobalProperty<integer> two{"faulty answer", "more faulty answers", "integer", answer};
} module;
#elif FAULT == 2   // a record of the wrong size
struct Module {
    alignas(16) unsigned char record[64] = {};
    Module() { Register_Cache(record, 63, ClearNothing, nullptr); }
} module;
#elif FAULT == 3   // a reserved word in a phrase
struct Module {
    GlobalProperty<integer> one{"answer of all", "answers of all", "integer", answer};
} module;
#elif FAULT == 4   // a type that nobody registers, found out at first use
struct Module {
    GlobalProperty<integer> one{"strange answer", "strange answers", "stranger", answer};
} module;
#elif FAULT == 5   // one record for two registrations
struct Module {
    alignas(16) unsigned char record[128] = {};
    Module() {
        Register_Cache(record, 64, ClearNothing, nullptr);
        Register_Type(record, 512, "faulty type", 4, nullptr, "", nullptr);
    }
} module;
#elif FAULT == 6   // nothing wrong: a second sound library
struct Module {
    GlobalProperty<integer> one{"second answer", "second answers", "integer", answer};
} module;
#elif FAULT == 7   // what the library of FAULT 6 registers too
struct Module {
    GlobalProperty<integer> one{"second answer", "second answers", "integer", answer};
} module;
#elif FAULT == 8   // an operator code that does not exist, a relation that is no boolean
struct Module {
    alignas(16) unsigned char records[2][128] = {};
    static void Operate(void*, void const*, void const*, void const*) {}
    Module() {
        Register_Binary_Operator(records[0], 128, 4, "integer", "time", "integer", Operate, records[0],
                                 nullptr);
        Register_Binary_Operator(records[1], 128, 6, "integer", "time", "integer", Operate, records[1],
                                 nullptr);
    }
} module;
#elif FAULT == 9   // a cache that cannot be cleared
void ClearBadly(void*) { throw OSError(-36); }
struct Module {
    CacheRecord cache{ClearBadly};
} module;
#elif FAULT == 10  // sound: a type
struct thing {
    long long weight;
};
integer weight_of(thing const& object) { return object.weight; }
struct Module {
    TypeRecord<thing> type{"thing"};
    Property<thing, integer> weight{"weight", "weights", "thing", "integer", weight_of};
} module;
#elif FAULT == 11  // sound: a property whose result is the type of the library of FAULT 10
struct thing {
    long long weight;
};
thing foreign_thing() { return {5}; }
struct Module {
    GlobalProperty<thing> one{"foreign thing", "foreign things", "thing", foreign_thing};
} module;
#elif FAULT == 12  // nothing at all
#elif FAULT == 13  // rows that lead nowhere
inspector_string same(inspector_string const& text) { return text; }
struct Module {
    GlobalProperty<integer> number{"number", "all numbers", "integer", answer};
    Cast<inspector_string, inspector_string> cast{"string", "string", "string", same};
    GlobalProperty<integer> nothing{"nothing", "nothings", "", answer};
    GlobalProperty<integer> strange{"strange", "stranges", "no\xFFtype", answer};
} module;
#elif FAULT == 14  // casts, operators, an index and an object of types that nobody registers
struct stranger {};
stranger lost(integer const&) { return {}; }
integer found(stranger const&) { return 1; }
boolean compared(stranger const&, integer const&) { return true; }
stranger added(boolean const&, boolean const&) { return {}; }
struct Module {
    Cast<integer, stranger> casting{"lost", "integer", "stranger", lost};
    Cast<stranger, integer> cast{"found", "stranger", "integer", found};
    Operator2<stranger, integer, boolean> less{kRelationLess, "stranger", "integer", "boolean", compared};
    Operator2<boolean, boolean, stranger> plus{kOperatorPlus, "boolean", "boolean", "stranger", added};
    Property<stranger, integer> weight{"strange weight", "strange weights", "stranger", "integer", found};
    PropertyByIndexOfWorld<integer, stranger> indexed{"strange place", "strange places", "stranger",
                                                      "integer", found};
} module;
#elif FAULT == 15  // a type that is smaller than its base
struct wide {
    long long weight;
};
struct narrow {
    int weight;
};
narrow narrow_thing() { return {5}; }
integer weight_of(wide const& object) { return object.weight; }
struct Module {
    TypeRecord<wide> wideType{"wide thing"};
    TypeRecord<narrow> narrowType{"narrow thing", "wide thing"};
    GlobalProperty<narrow> one{"narrow thing", "narrow things", "narrow thing", narrow_thing};
    Property<wide, integer> weight{"weight", "weights", "wide thing", "integer", weight_of};
} module;
#endif

[[maybe_unused]] void const* const used[] = {reinterpret_cast<void const*>(&answer),
                                             reinterpret_cast<void const*>(&ClearNothing)};

}  // namespace
