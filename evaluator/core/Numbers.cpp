// Integers and booleans.

#include <fmt/format.h>

#include "Evaluator/Exceptions.h"
#include "core/Rows.h"

namespace Evaluator {
namespace {

// ---- Integers

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
integer Multiplied(integer const& a, integer const& b) {
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
std::uint64_t IntegerHash(void const* value) {
    return HashOfNumber(
        static_cast<std::uint64_t>(static_cast<long long>(*static_cast<integer const*>(value))));
}
inspector_string IntegerText(integer const& number) {
    return CoreText(fmt::format("{}", static_cast<long long>(number)));
}

// 1, 2 and so on up to an index.
class IntegersUpTo {
  public:
    integer First(integer const& last) { return Next(last); }
    integer Next(integer const& last) {
        if (at >= last) throw NoSuchObject();
        return ++at;
    }

  private:
    long long at = 0;
};

// ---- Booleans

std::uint64_t BooleanHash(void const* value) {
    return HashOfNumber(*static_cast<boolean const*>(value) ? 1 : 0);
}
inspector_string BooleanText(boolean const& truth) { return CoreText(truth ? "true" : "false"); }

// ---- Tables

constexpr TypeRow kTypes[] = {
    {"integer", sizeof(integer), false, NativeOrder<integer>, IntegerHash},
    {"boolean", sizeof(boolean), false, NativeOrder<boolean>, BooleanHash},
};
constexpr IteratedRow kIterated[] = {
    Iterated<IntegersUpTo, integer, integer, void>::Row("integer up to", "integers up to"),
};
constexpr CastRow kCasts[] = {
    {"string", "integer", "string", Adapted<IntegerText>::Cast},
    {"string", "boolean", "string", Adapted<BooleanText>::Cast},
};
constexpr OperatorRow kOperators[] = {
    Row<Plus>(kOperatorPlus),
    Row<Minus>(kOperatorMinus),
    Row<Multiplied>(kOperatorTimes),
    Row<DividedBy>(kOperatorDividedBy),
    Row<Mod>(kOperatorMod),
    Row<Equal<integer>>(kRelationEqual),
    Row<Less<integer>>(kRelationLess),
    Row<LessOrEqual<integer>>(kRelationLessOrEqual),
    Row<Equal<boolean>>(kRelationEqual),
};

}  // namespace

CorePart Numbers() { return {kTypes, {}, kIterated, kCasts, kOperators}; }

}  // namespace Evaluator
