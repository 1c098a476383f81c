#include "language/Comparison.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "language/Limits.h"
#include "language/Signs.h"
#include "values/Tuples.h"

namespace Evaluator {
namespace {

// A tuple type may hold another many times over, so the count stops where it does not matter any more.
std::size_t CountFields(TypeEntry const& type) {
    std::size_t count = 1;
    for (TypeEntry const* field : type.fields) {
        count += CountFields(*field);
        if (count > kComparedFields) break;
    }
    return count;
}

class TupleRelation : public Expression {
  public:
    TupleRelation(Range range, TypeEntry const& boolean, Comparison comparison, bool exchanged,
                  ExpressionPointer left, ExpressionPointer right)
        : Expression(range, boolean, false),
          comparison(std::move(comparison)),
          left(std::move(left)),
          right(std::move(right)),
          exchanged(exchanged) {}

    ValueRef Evaluate(Evaluation& evaluation) const override {
        ValueRef first = left->Evaluate(evaluation);
        if (!first) return {};
        ValueRef second = right->Evaluate(evaluation);
        if (!second) return {};
        if (exchanged) std::swap(first, second);
        std::optional<bool> holds = comparison.Holds(evaluation, first, second, range);
        return holds ? MakeValue(*type, boolean(*holds)) : ValueRef();
    }

  private:
    void Explain(Explanation& explanation) const override {
        explanation.words = SignOf(comparison.Code());
        AddPart(explanation, exchanged ? right : left);
        AddPart(explanation, exchanged ? left : right);
    }

    Comparison comparison;
    ExpressionPointer left, right;
    bool exchanged;
};

}  // namespace

Comparison::Comparison(Vocabulary const& vocabulary, int code, TypeEntry const& type) : code(code) {
    if (CountFields(type) > kComparedFields)
        throw NotComparable{fmt::format("a tuple is compared that has more than {} fields", kComparedFields),
                            "compare some of the fields"};
    if (type.fields.empty()) {
        Settle(vocabulary, type);
        return;
    }
    for (TypeEntry const* field : type.fields) fields.emplace_back(vocabulary, code, *field);
    native = std::all_of(fields.begin(), fields.end(), [](Comparison const& field) { return field.native; });
}

void Comparison::Settle(Vocabulary const& vocabulary, TypeEntry const& type) {
    entry = vocabulary.FindOperator(code, type, type);
    if (!entry) {
        vocabulary.RequireTypesOfOperators(code);
        throw NotComparable{
            fmt::format("there is no \"{0}\" of {1} and {1}", SignOf(code), WithArticle(type)), {}};
    }
    truth = vocabulary.Result(*entry);
    TypeEntry const* left = vocabulary.Type(entry->left);
    native = entry->library->IsCore() && entry->left == entry->right && left->order;
    if (native) own = left;
}

// Where no registered relation is asked as such: of the host's own types, and of tuples.
std::optional<bool> Comparison::HoldsByHost(Evaluation& evaluation, Value const& left, Value const& right,
                                            Range const& where, ValueRef& answer) const {
    if (!native) return FieldsHold(evaluation, left, right, where, answer);
    int const order = NativeOrder(left, right);
    return code == kRelationEqual ? order == 0 : code == kRelationLess ? order < 0 : order <= 0;
}

int Comparison::NativeOrder(Value const& left, Value const& right) const {
    if (own) return own->order(left.Bytes(), right.Bytes());
    for (std::size_t i = 0; i < fields.size(); ++i)
        if (int order = fields[i].NativeOrder(*FieldOf(left, i), *FieldOf(right, i))) return order;
    return 0;
}

// The first field in which the tuples differ decides: for "=" against it, else by the relation itself, which
// then holds in one direction only.
std::optional<bool> Comparison::FieldsHold(Evaluation& evaluation, Value const& left, Value const& right,
                                           Range where, ValueRef& answer) const {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        ValueRef first = FieldOf(left, i), second = FieldOf(right, i);
        std::optional<bool> holds = fields[i].Holds(evaluation, *first, *second, where, answer);
        if (!holds) return holds;
        if (code == kRelationEqual) {
            if (!*holds) return false;
            continue;
        }
        std::optional<bool> opposite = fields[i].Holds(evaluation, *second, *first, where, answer);
        if (!opposite || *holds != *opposite) return opposite ? holds : opposite;
    }
    return code != kRelationLess;
}

std::uint64_t Comparison::Hash(Value const& value) const {
    if (own) return own->hash(value.Bytes());
    std::uint64_t hash = 0;
    for (std::size_t i = 0; i < fields.size(); ++i)
        hash = (hash ^ fields[i].Hash(*FieldOf(value, i))) * 0x9E3779B97F4A7C15;
    return hash;
}

void Comparison::AddLibraries(std::vector<Library*>& libraries) const {
    if (entry) libraries.insert(libraries.end(), {entry->library, truth->library});
    for (Comparison const& field : fields) field.AddLibraries(libraries);
}

ExpressionPointer MakeTupleRelation(Range range, TypeEntry const& boolean, Comparison comparison,
                                    bool exchanged, ExpressionPointer left, ExpressionPointer right) {
    return std::make_unique<TupleRelation>(range, boolean, std::move(comparison), exchanged, std::move(left),
                                           std::move(right));
}

}  // namespace Evaluator
