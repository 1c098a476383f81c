#pragma once

// Internal. The checked tree: expressions whose types, and the very registrations behind them, are settled,
// and which produce their values one at a time.
//
// A singular expression is asked with Evaluate, a plural one with Open and the cursor's Next; either may be
// asked the other way round too. Where there is no value, the evaluation's `absence` says why; an
// EvaluationError ends all.

#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "language/Evaluation.h"

namespace Evaluator {

/// Produces the values of a plural expression, as they are asked for.
class Cursor : public OwnedObject {
  public:
    enum class Step { value, end, absent };
    virtual ~Cursor() = default;
    /// The next value in `value`, or the end, or absence in the midst of things. What `value` held is given
    /// up; its slot may be used again.
    virtual Step Next(Evaluation& evaluation, ValueRef& value) = 0;
};
using CursorPointer = std::unique_ptr<Cursor>;

/// What a condition comes to.
enum class Truth { no, yes, absent };
inline Truth AsTruth(bool truth) { return truth ? Truth::yes : Truth::no; }

/// Where the bytes of a value stand that is only looked at: in a value, or here.
struct Sight {
    ValueRef value;
    alignas(std::max_align_t) unsigned char bytes[16];
};

class Expression {
  public:
    Expression(Range range, TypeEntry const& type, bool plural) : range(range), type(&type), plural(plural) {}
    virtual ~Expression() = default;

    /// Exactly one value, or nothing when there is none; more than one is an EvaluationError.
    virtual ValueRef Evaluate(Evaluation& evaluation) const;
    // Evaluate for who looks at the value once: what the host computes itself takes no value to hold it.

    /// The bytes of the one value, or null when there is none; they stay for as long as `sight` and what `it`
    /// stands for do.
    virtual void const* Look(Evaluation& evaluation, Sight& sight) const;
    /// Of a singular boolean: its truth.
    virtual Truth Test(Evaluation& evaluation) const;
    /// All values; null when something below is absent.
    virtual CursorPointer Open(Evaluation& evaluation) const;
    /// As Open, with the outermost step asked as if plural.
    virtual CursorPointer OpenAsPlural(Evaluation& evaluation) const { return Open(evaluation); }

    /// Of a property that was asked in the plural: how to ask for one.
    virtual std::string SingularPhrase() const { return {}; }

    /// This expression and its parts for a reader.
    Explanation Explained() const;

    Range const range;            ///< where messages about it point
    TypeEntry const* const type;  ///< of its values, or a base of theirs
    bool const plural;

  protected:
    /// Fills in the words, the registration if there is one, and the parts.
    virtual void Explain(Explanation& explanation) const = 0;
    static void AddRegistration(Explanation& explanation, Entry const& entry) {
        explanation.registration = entry.Describe();
        explanation.library = entry.library->name;
    }
    static void AddPart(Explanation& explanation, std::unique_ptr<Expression> const& part) {
        if (part) explanation.parts.push_back(part->Explained());
    }

    /// Whether the reason is kept that an inspector gave where there is not even one value.
    enum class Reason { none, kept };
    /// The one value of the cursor (null: absent), for an expression of which exactly one is wanted.
    ValueRef ExactlyOne(Evaluation& evaluation, CursorPointer cursor, Reason reason = Reason::none) const;
};
using ExpressionPointer = std::unique_ptr<Expression>;

// What the checker builds. Each takes ownership of its parts. `binding` is the place of `it` in the
// evaluation.

/// A literal; `place` is its own among the evaluation's literals.
ExpressionPointer MakeLiteral(Range range, TypeEntry const& type, std::size_t place,
                              std::variant<std::string, integer, boolean> content);
ExpressionPointer MakeIt(Range range, TypeEntry const& type, std::size_t binding);
/// A property; `object` and `index` may be null.
ExpressionPointer MakeProperty(Range range, PropertyEntry const& entry, TypeEntry const& result, bool plural,
                               ExpressionPointer object, ExpressionPointer index);
/// `inside` once for each value of `object`.
ExpressionPointer MakeStep(Range range, ExpressionPointer inside, std::size_t binding,
                           ExpressionPointer object);
ExpressionPointer MakeFilter(Range range, ExpressionPointer source, std::size_t binding,
                             ExpressionPointer condition);
ExpressionPointer MakeCast(Range range, CastEntry const& entry, TypeEntry const& result,
                           ExpressionPointer operand);
/// An operator or relation; the operands are evaluated in the order written, then exchanged if so wanted.
ExpressionPointer MakeOperator(Range range, OperatorEntry const& entry, TypeEntry const& result,
                               bool exchanged, ExpressionPointer left, ExpressionPointer right);
ExpressionPointer MakeNot(Range range, TypeEntry const& boolean, ExpressionPointer operand);
/// `left and right`, or `left or right`; the right side only when it matters.
ExpressionPointer MakeLogical(Range range, TypeEntry const& boolean, bool conjunction, ExpressionPointer left,
                              ExpressionPointer right);
ExpressionPointer MakeExists(Range range, TypeEntry const& boolean, ExpressionPointer operand);
ExpressionPointer MakeTuple(Range range, TypeEntry const& type, std::vector<ExpressionPointer> fields);
/// With `ofStep`, a member that is absent adds nothing, as in a step in parentheses of a plural object.
ExpressionPointer MakeCollection(Range range, TypeEntry const& type, bool ofStep,
                                 std::vector<ExpressionPointer> members);
ExpressionPointer MakeChoice(Range range, TypeEntry const& type, ExpressionPointer condition,
                             ExpressionPointer then, ExpressionPointer otherwise);
ExpressionPointer MakeFallback(Range range, TypeEntry const& type, ExpressionPointer left,
                               ExpressionPointer right);

}  // namespace Evaluator
