#pragma once

// Internal. Whether values are equal, less, or less or equal, by the relations that are registered for their
// type; of tuples field by field. Which relations these are is settled before anything runs.

#include <cstdint>
#include <optional>

#include "language/Expression.h"

namespace Evaluator {

/// Thrown where two values of a type do not compare; message and hint are for the person who asked.
struct NotComparable {
    std::string message, hint;
};

class Comparison {
  public:
    /// `code` is that of equal, less, or less or equal. Throws NotComparable, and
    /// UnknownType where a relation names a type that nobody registered.
    Comparison(Vocabulary const& vocabulary, int code, TypeEntry const& type);

    int Code() const { return code; }
    /// Whether the relation holds; nothing when there is no answer. Who asks often keeps `answer` from one
    /// time to the next: its slot is used again.
    std::optional<bool> Holds(Evaluation& evaluation, Value& left, Value& right, Range const& where,
                              ValueRef& answer) const {
        if (native || !entry) return HoldsByHost(evaluation, left, right, where, answer);
        if (!evaluation.Operate(answer, *entry, *truth, left, right, where)) return std::nullopt;
        return answer->As<boolean>();
    }
    std::optional<bool> Holds(Evaluation& evaluation, ValueRef const& left, ValueRef const& right,
                              Range where) const {
        ValueRef answer;
        return Holds(evaluation, *left, *right, where, answer);
    }
    /// Whether the values are of the host's own types, so that Hash serves.
    bool IsNative() const { return native; }
    /// The same for equal values. Requires IsNative().
    std::uint64_t Hash(Value const& value) const;

    /// The libraries whose registrations are used for it are added to the list.
    void AddLibraries(std::vector<Library*>& libraries) const;

  private:
    void Settle(Vocabulary const& vocabulary, TypeEntry const& type);
    std::optional<bool> HoldsByHost(Evaluation& evaluation, Value const& left, Value const& right,
                                    Range const& where, ValueRef& answer) const;
    int NativeOrder(Value const& left, Value const& right) const;
    std::optional<bool> FieldsHold(Evaluation& evaluation, Value const& left, Value const& right, Range where,
                                   ValueRef& answer) const;

    int code;
    bool native = false;
    OperatorEntry const* entry = nullptr;  ///< null for a tuple
    TypeEntry const* truth = nullptr;      ///< type of the relation's result
    TypeEntry const* own = nullptr;        ///< the host's type with which the values compare, when native
    std::vector<Comparison> fields;        ///< of a tuple
};

/// A relation of two tuples; the operands are exchanged after their evaluation if so wanted.
ExpressionPointer MakeTupleRelation(Range range, TypeEntry const& boolean, Comparison comparison,
                                    bool exchanged, ExpressionPointer left, ExpressionPointer right);

}  // namespace Evaluator
