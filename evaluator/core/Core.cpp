#include "core/Core.h"

#include <fmt/format.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <new>

#include "Evaluator/Exceptions.h"
#include "Evaluator/Text.h"
#include "Evaluator/Time.h"
#include "language/Evaluation.h"
#include "registry/Registry.h"
#include "values/TimeText.h"

namespace Evaluator {
namespace {

// ---- Functions

inspector_string String(std::string const& text) {
    return MakeString(ConstData(reinterpret_cast<unsigned char const*>(text.data()), text.size()));
}

integer Checked(bool overflow, long long result) {
    if (overflow) throw ArithmeticOverflow();
    return result;
}
integer Plus(integer const& a, integer const& b) {
    long long result;
    bool overflow = __builtin_add_overflow(static_cast<long long>(a), static_cast<long long>(b), &result);
    return Checked(overflow, result);
}
integer Minus(integer const& a, integer const& b) {
    long long result;
    bool overflow = __builtin_sub_overflow(static_cast<long long>(a), static_cast<long long>(b), &result);
    return Checked(overflow, result);
}
integer Times(integer const& a, integer const& b) {
    long long result;
    bool overflow = __builtin_mul_overflow(static_cast<long long>(a), static_cast<long long>(b), &result);
    return Checked(overflow, result);
}
// The quotient is cut toward zero, the remainder has the dividend's sign. Only -2^63 / -1 overflows.
integer DividedBy(integer const& a, integer const& b) {
    if (b == 0) throw DivisionByZero();
    return b == -1 ? Minus(0, a) : integer(a / b);
}
integer Mod(integer const& a, integer const& b) {
    if (b == 0) throw DivisionByZero();
    return b == -1 ? integer(0) : integer(a % b);
}

int Order(inspector_string const& a, inspector_string const& b) {
    std::size_t common = std::min(a.length, b.length);
    int order = common == 0 ? 0 : std::memcmp(a.bytes, b.bytes, common);
    return order != 0 ? order : (a.length > b.length) - (a.length < b.length);
}
bool EndsWith(inspector_string const& text, inspector_string const& end) {
    return end.length <= text.length && StartsWith({text.end() - end.length, end.length}, end);
}

template <class T>
boolean Equal(T const& a, T const& b) {
    if constexpr (std::is_same_v<T, inspector_string>)
        return Order(a, b) == 0;
    else
        return a == b;
}
template <class T>
boolean Less(T const& a, T const& b) {
    if constexpr (std::is_same_v<T, inspector_string>)
        return Order(a, b) < 0;
    else
        return a < b;
}
template <class T>
boolean LessOrEqual(T const& a, T const& b) {
    return !Less(b, a);
}

boolean ContainsText(inspector_string const& a, inspector_string const& b) { return Contains(a, b); }
boolean StartsWithText(inspector_string const& a, inspector_string const& b) { return StartsWith(a, b); }
boolean EndsWithText(inspector_string const& a, inspector_string const& b) { return EndsWith(a, b); }

template <class A, class B, class R>
R Add(A const& a, B const& b) {
    return a + b;
}
template <class A, class B, class R>
R Subtract(A const& a, B const& b) {
    return a - b;
}
template <class A, class B, class R>
R Multiply(A const& a, B const& b) {
    return a * b;
}
template <class A, class B, class R>
R Divide(A const& a, B const& b) {
    return a / b;
}
template <class A, class B, class R>
R Remainder(A const& a, B const& b) {
    return a % b;
}

inspector_string IntegerText(integer const& number) {
    return String(fmt::format("{}", static_cast<long long>(number)));
}
inspector_string BooleanText(boolean const& truth) { return String(truth ? "true" : "false"); }
inspector_string TimeAsText(moment const& time) { return String(TimeText(time)); }
inspector_string IntervalAsText(time_interval const& interval) { return String(IntervalText(interval)); }

// Decimal digits, with a minus before them for a negative number, and nothing else.
integer TextAsInteger(inspector_string const& text) {
    long long number = 0;
    auto const* begin = reinterpret_cast<char const*>(text.begin());
    auto const* end = reinterpret_cast<char const*>(text.end());
    auto [stopped, error] = std::from_chars(begin, end, number);
    if (error != std::errc() || stopped != end) throw NoSuchObject();
    return number;
}

template <Data (*fold)(ConstData, Data)>
inspector_string Folded(inspector_string const& text) {
    Data room(static_cast<unsigned char*>(Allocate_Inspector_Memory(text.length)), text.length);
    fold(text, room);
    return {room.begin(), text.length};
}

moment Now() { return Evaluation::Running()->now; }

moment TimeFromText(inspector_string const& text) {
    std::optional<moment> time = ParseTime(text);
    if (!time) throw NoSuchObject();
    return *time;
}

template <time_interval (*unit)(), int count = 1>
time_interval Unit() {
    return unit() * integer(count);
}

// ---- Adapters: the functions above as the registry calls them

template <auto function>
struct Adapted;

template <class R, R (*function)()>
struct Adapted<function> {
    static void Get(void* result, void const*, void const*, void*, void const*) {
        if (result) new (result) R(function());
    }
};

template <class R, class A, R (*function)(A const&)>
struct Adapted<function> {
    static void Cast(void* result, void const* source, void const*) {
        if (result) new (result) R(function(*static_cast<A const*>(source)));
    }
    static void GetIndexed(void* result, void const* index, void const*, void*, void const*) {
        if (result) new (result) R(function(*static_cast<A const*>(index)));
    }
};

template <class R, class A, class B, R (*function)(A const&, B const&)>
struct Adapted<function> {
    static void Operate(void* result, void const* left, void const* right, void const*) {
        if (result) new (result) R(function(*static_cast<A const*>(left), *static_cast<B const*>(right)));
    }
};

// ---- Tables

template <class T>
constexpr char const* kNameOf = nullptr;
template <>
constexpr char const* kNameOf<inspector_string> = "string";
template <>
constexpr char const* kNameOf<integer> = "integer";
template <>
constexpr char const* kNameOf<boolean> = "boolean";
template <>
constexpr char const* kNameOf<moment> = "time";
template <>
constexpr char const* kNameOf<time_interval> = "time interval";

struct OperatorRow {
    int code;
    char const *left, *right, *result;
    BinaryOperatorFunction function;
};

template <class R, class A, class B>
constexpr OperatorRow Row(int code, R (*)(A const&, B const&), BinaryOperatorFunction thunk) {
    return {code, kNameOf<A>, kNameOf<B>, kNameOf<R>, thunk};
}
template <auto function>
constexpr OperatorRow Row(int code) {
    return Row(code, function, Adapted<function>::Operate);
}

using Interval = time_interval;
constexpr OperatorRow kOperators[] = {
    Row<Plus>(kOperatorPlus),
    Row<Minus>(kOperatorMinus),
    Row<Times>(kOperatorTimes),
    Row<DividedBy>(kOperatorDividedBy),
    Row<Mod>(kOperatorMod),
    Row<Equal<integer>>(kRelationEqual),
    Row<Less<integer>>(kRelationLess),
    Row<LessOrEqual<integer>>(kRelationLessOrEqual),
    Row<Concatenate>(kOperatorJoin),
    Row<Equal<inspector_string>>(kRelationEqual),
    Row<Less<inspector_string>>(kRelationLess),
    Row<LessOrEqual<inspector_string>>(kRelationLessOrEqual),
    Row<ContainsText>(kRelationContains),
    Row<StartsWithText>(kRelationStartsWith),
    Row<EndsWithText>(kRelationEndsWith),
    Row<Equal<boolean>>(kRelationEqual),
    Row<Add<moment, Interval, moment>>(kOperatorPlus),
    Row<Add<Interval, moment, moment>>(kOperatorPlus),
    Row<Subtract<moment, Interval, moment>>(kOperatorMinus),
    Row<Subtract<moment, moment, Interval>>(kOperatorMinus),
    Row<Equal<moment>>(kRelationEqual),
    Row<Less<moment>>(kRelationLess),
    Row<LessOrEqual<moment>>(kRelationLessOrEqual),
    Row<Add<Interval, Interval, Interval>>(kOperatorPlus),
    Row<Subtract<Interval, Interval, Interval>>(kOperatorMinus),
    Row<Multiply<Interval, integer, Interval>>(kOperatorTimes),
    Row<Multiply<integer, Interval, Interval>>(kOperatorTimes),
    Row<Divide<Interval, Interval, integer>>(kOperatorDividedBy),
    Row<Remainder<Interval, Interval, Interval>>(kOperatorMod),
    Row<Equal<Interval>>(kRelationEqual),
    Row<Less<Interval>>(kRelationLess),
    Row<LessOrEqual<Interval>>(kRelationLessOrEqual),
};

struct CastRow {
    char const *phrase, *source, *target;
    CastFunction function;
};
constexpr CastRow kCasts[] = {
    {"string", "integer", "string", Adapted<IntegerText>::Cast},
    {"string", "boolean", "string", Adapted<BooleanText>::Cast},
    {"string", "time", "string", Adapted<TimeAsText>::Cast},
    {"string", "time interval", "string", Adapted<IntervalAsText>::Cast},
    {"integer", "string", "integer", Adapted<TextAsInteger>::Cast},
    {"uppercase", "string", "string", Adapted<Folded<Ascii::RaiseCase>>::Cast},
    {"lowercase", "string", "string", Adapted<Folded<Ascii::LowerCase>>::Cast},
};

struct PropertyRow {
    char const *singular, *plural, *index, *result;
    PropertyFunction function;
};
constexpr PropertyRow kProperties[] = {
    {"now", "nows", "", "time", Adapted<Now>::Get},
    {"time", "times", "string", "time", Adapted<TimeFromText>::GetIndexed},
    {"second", "seconds", "", "time interval", Adapted<Unit<second_of>>::Get},
    {"minute", "minutes", "", "time interval", Adapted<Unit<minute_of>>::Get},
    {"hour", "hours", "", "time interval", Adapted<Unit<hour_of>>::Get},
    {"day", "days", "", "time interval", Adapted<Unit<day_of>>::Get},
    {"week", "weeks", "", "time interval", Adapted<Unit<day_of, 7>>::Get},
};

// Records that live as long as the process; their addresses are the registrations' identities.
struct alignas(std::max_align_t) Record {
    unsigned char hostArea[kTypeRecordSize];
};
void* NewRecord() {
    static std::deque<Record> records;
    return &records.emplace_back();
}

template <class T>
void RegisterType() {
    Register_Type(NewRecord(), kTypeRecordSize, kNameOf<T>, sizeof(T), nullptr, "", nullptr);
}

void RegisterAll() {
    RegisterType<inspector_string>();
    RegisterType<integer>();
    RegisterType<boolean>();
    RegisterType<moment>();
    RegisterType<time_interval>();
    for (PropertyRow const& row : kProperties) {
        void* record = NewRecord();
        Register_Property(record, kPropertyRecordSize, row.singular, row.plural, row.index, "", row.result,
                          row.function, record, nullptr);
    }
    for (CastRow const& row : kCasts) {
        void* record = NewRecord();
        Register_Cast(record, kCastRecordSize, row.phrase, row.source, row.target, row.function, record,
                      nullptr);
    }
    for (OperatorRow const& row : kOperators) {
        void* record = NewRecord();
        Register_Binary_Operator(record, kBinaryOperatorRecordSize, row.code, row.left, row.right, row.result,
                                 row.function, record, nullptr);
    }
}

bool RegisterOnce() {
    static Library core{"core", "", nullptr, 0};
    Registry& registry = Registry::Instance();
    {
        Registry::Turn turn(registry, core);
        RegisterAll();
    }
    for (std::string const& problem : registry.TakeProblems()) {
        std::fprintf(stderr, "%s\n", problem.c_str());  // a fault in the tables above
        std::abort();
    }
    for (auto const& entry : registry.All())
        if (entry->kind == EntryKind::type) {
            auto& type = static_cast<TypeEntry&>(*entry);
            type.selfContained = type.name != kNameOf<inspector_string>;
        }
    return true;
}

}  // namespace

void RegisterCore() { [[maybe_unused]] static bool const once = RegisterOnce(); }

}  // namespace Evaluator
