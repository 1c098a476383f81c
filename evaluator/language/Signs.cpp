#include "language/Signs.h"

namespace Evaluator {
namespace {

struct OperatorSign {
    int code;
    std::string_view sign;
};
constexpr OperatorSign kOperatorSigns[] = {
    {kOperatorPlus, "+"},
    {kOperatorMinus, "-"},
    {kOperatorTimes, "*"},
    {kOperatorDividedBy, "/"},
    {kOperatorMod, "mod"},
    {kOperatorJoin, "&"},
    {kRelationEqual, "="},
    {kRelationLess, "<"},
    {kRelationLessOrEqual, "<="},
    {kRelationContains, "contains"},
    {kRelationStartsWith, "starts with"},
    {kRelationEndsWith, "ends with"},
};

// The relations that are written otherwise than the registered one that they come from.
struct RelationSign {
    Relation relation;
    std::string_view sign;
};
constexpr RelationSign kRelationSigns[] = {
    {{kRelationEqual, false, true}, "!="},
    {{kRelationLess, true, false}, ">"},
    {{kRelationLessOrEqual, true, false}, ">="},
    {{kRelationContains, false, true}, "does not contain"},
    {{kRelationContains, true, false}, "is contained by"},
    {{kRelationContains, true, true}, "is not contained by"},
    {{kRelationStartsWith, false, true}, "does not start with"},
    {{kRelationEndsWith, false, true}, "does not end with"},
};

}  // namespace

std::string_view SignOf(int code) {
    for (OperatorSign const& row : kOperatorSigns)
        if (row.code == code) return row.sign;
    return {};
}

std::string_view SignOf(Relation const& relation) {
    for (RelationSign const& row : kRelationSigns)
        if (row.relation == relation) return row.sign;
    return SignOf(relation.code);
}

std::string WithArticle(TypeEntry const& type) {
    if (!type.fields.empty()) return "a tuple";
    bool vowel = std::string_view("aeiou").find(type.name[0]) != std::string_view::npos;
    return (vowel ? "an " : "a ") + type.name;
}

}  // namespace Evaluator
