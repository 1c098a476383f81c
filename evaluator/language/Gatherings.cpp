// Expressions over whole pluralities: existence, tuples, collections, choices and fallbacks.

#include <utility>

#include "language/Cursors.h"
#include "language/Expression.h"
#include "values/Owned.h"
#include "values/Tuples.h"

namespace Evaluator {
namespace {

class Exists : public Expression {
  public:
    Exists(Range range, TypeEntry const& boolean, ExpressionPointer operand)
        : Expression(range, boolean, false), operand(std::move(operand)) {}

    ValueRef Evaluate(Evaluation& evaluation) const override {
        return MakeValue(*type, boolean(IsFound(evaluation)));
    }
    Truth Test(Evaluation& evaluation) const override { return AsTruth(IsFound(evaluation)); }

  private:
    void Explain(Explanation& explanation) const override {
        explanation.words = "exists";
        AddPart(explanation, operand);
    }
    // Every form of absence is "no".
    bool IsFound(Evaluation& evaluation) const {
        Evaluation::Lenience lenience(evaluation);
        CursorPointer cursor = operand->OpenAsPlural(evaluation);
        ValueRef value;
        return cursor && cursor->Next(evaluation, value) == Cursor::Step::value;
    }

    ExpressionPointer operand;
};

class Tuple : public Expression {
  public:
    Tuple(Range range, TypeEntry const& type, bool plural, std::vector<ExpressionPointer> fields)
        : Expression(range, type, plural), fields(std::move(fields)) {}

    ValueRef Evaluate(Evaluation& evaluation) const override {
        if (plural) return ExactlyOne(evaluation, Open(evaluation));
        OwnedVector<ValueRef> values;
        for (ExpressionPointer const& field : fields) {
            values.push_back(field->Evaluate(evaluation));
            if (!values.back()) return {};
        }
        return Gather(std::move(values));
    }
    CursorPointer Open(Evaluation& evaluation) const override;

    ValueRef Gather(OwnedVector<ValueRef> values) const { return MakeTupleValue(*type, std::move(values)); }

    std::vector<ExpressionPointer> const fields;

  private:
    void Explain(Explanation& explanation) const override {
        explanation.words = ",";
        for (ExpressionPointer const& field : fields) AddPart(explanation, field);
    }
};

// Every combination of the fields' values, the last field fastest: an odometer whose wheels are cursors. A
// wheel that has run out is opened again after the one before it has moved.
class TupleCursor : public Cursor {
  public:
    explicit TupleCursor(Tuple const& tuple)
        : tuple(tuple), wheels(tuple.fields.size()), values(tuple.fields.size()) {}

    Step Next(Evaluation& evaluation, ValueRef& value) override {
        std::size_t wheel = wheels[0] ? tuple.fields.size() - 1 : 0;
        for (;;) {
            if (!wheels[wheel] && !(wheels[wheel] = tuple.fields[wheel]->Open(evaluation)))
                return Step::absent;
            switch (wheels[wheel]->Next(evaluation, values[wheel])) {
                case Step::absent:
                    return Step::absent;
                case Step::end:
                    if (wheel == 0) return Step::end;
                    wheels[wheel--].reset();
                    break;
                case Step::value:
                    if (++wheel < tuple.fields.size()) break;
                    value = tuple.Gather(values);
                    return Step::value;
            }
        }
    }

  private:
    Tuple const& tuple;
    OwnedVector<CursorPointer> wheels;
    OwnedVector<ValueRef> values;
};

CursorPointer Tuple::Open(Evaluation& evaluation) const {
    return plural ? std::make_unique<TupleCursor>(*this) : OneValue(Evaluate(evaluation));
}

class Collection : public Expression {
  public:
    Collection(Range range, TypeEntry const& type, bool ofStep, std::vector<ExpressionPointer> members)
        : Expression(range, type, true), members(std::move(members)), ofStep(ofStep) {}
    CursorPointer Open(Evaluation&) const override;
    CursorPointer OpenAsPlural(Evaluation&) const override;

    std::vector<ExpressionPointer> const members;
    bool const ofStep;

  private:
    void Explain(Explanation& explanation) const override {
        explanation.words = ";";
        for (ExpressionPointer const& member : members) AddPart(explanation, member);
    }
};

class CollectionCursor : public Cursor {
  public:
    CollectionCursor(Collection const& collection, bool asPlural)
        : collection(collection), asPlural(asPlural) {}

    // In a step, and asked as if plural, a member that is absent adds nothing and the next one is asked.
    Step Next(Evaluation& evaluation, ValueRef& value) override {
        for (;;) {
            Step step = Step::absent;
            if (!inner) {
                if (member == collection.members.size()) return Step::end;
                Expression const& next = *collection.members[member++];
                inner = asPlural ? next.OpenAsPlural(evaluation) : next.Open(evaluation);
            }
            if (inner) step = inner->Next(evaluation, value);
            if (step == Step::value || (step == Step::absent && !MayPass(evaluation))) return step;
            inner.reset();
        }
    }

  private:
    bool MayPass(Evaluation const& evaluation) const {
        return (asPlural || collection.ofStep) && evaluation.MayPassAbsence();
    }

    Collection const& collection;
    bool asPlural;
    std::size_t member = 0;
    CursorPointer inner;
};

CursorPointer Collection::Open(Evaluation&) const { return std::make_unique<CollectionCursor>(*this, false); }
CursorPointer Collection::OpenAsPlural(Evaluation&) const {
    return std::make_unique<CollectionCursor>(*this, true);
}

class Choice : public Expression {
  public:
    Choice(Range range, TypeEntry const& type, ExpressionPointer condition, ExpressionPointer then,
           ExpressionPointer otherwise)
        : Expression(range, type, then->plural || otherwise->plural),
          condition(std::move(condition)),
          then(std::move(then)),
          otherwise(std::move(otherwise)) {}

    ValueRef Evaluate(Evaluation& evaluation) const override {
        Expression const* chosen = Choose(evaluation);
        return chosen ? chosen->Evaluate(evaluation) : ValueRef();
    }
    CursorPointer Open(Evaluation& evaluation) const override {
        Expression const* chosen = Choose(evaluation);
        return chosen ? chosen->Open(evaluation) : nullptr;
    }
    CursorPointer OpenAsPlural(Evaluation& evaluation) const override {
        Expression const* chosen = Choose(evaluation);
        return chosen ? chosen->OpenAsPlural(evaluation) : nullptr;
    }

  private:
    Expression const* Choose(Evaluation& evaluation) const {
        ValueRef truth = condition->Evaluate(evaluation);
        if (!truth) return nullptr;
        return truth->As<boolean>() ? then.get() : otherwise.get();
    }

    void Explain(Explanation& explanation) const override {
        explanation.words = "if";
        for (auto const* part : {&condition, &then, &otherwise}) AddPart(explanation, *part);
    }

    ExpressionPointer condition, then, otherwise;
};

// The values of a cursor behind the first, which was pulled already.
class RestoredCursor : public Cursor {
  public:
    RestoredCursor(ValueRef first, CursorPointer rest) : first(std::move(first)), rest(std::move(rest)) {}
    Step Next(Evaluation& evaluation, ValueRef& value) override {
        if (!first) return rest->Next(evaluation, value);
        value = std::exchange(first, {});
        return Step::value;
    }

  private:
    ValueRef first;
    CursorPointer rest;
};

class Fallback : public Expression {
  public:
    Fallback(Range range, TypeEntry const& type, ExpressionPointer left, ExpressionPointer right)
        : Expression(range, type, left->plural || right->plural),
          left(std::move(left)),
          right(std::move(right)) {}

    ValueRef Evaluate(Evaluation& evaluation) const override {
        if (plural) return ExactlyOne(evaluation, Open(evaluation));
        ValueRef value = OneOfLeft(evaluation);
        return value ? value : right->Evaluate(evaluation);
    }

    CursorPointer Open(Evaluation& evaluation) const override { return OpenEither(evaluation, false); }
    CursorPointer OpenAsPlural(Evaluation& evaluation) const override { return OpenEither(evaluation, true); }

  private:
    CursorPointer OpenEither(Evaluation& evaluation, bool asPlural) const {
        ValueRef first;
        CursorPointer cursor = FirstOfLeft(evaluation, first, asPlural);
        if (!cursor) return OpenSide(*right, evaluation, asPlural);
        return std::make_unique<RestoredCursor>(std::move(first), std::move(cursor));
    }
    static CursorPointer OpenSide(Expression const& side, Evaluation& evaluation, bool asPlural) {
        return asPlural ? side.OpenAsPlural(evaluation) : side.Open(evaluation);
    }
    // On the left, until it has a value, every form of absence is "no value".
    ValueRef OneOfLeft(Evaluation& evaluation) const {
        Evaluation::Lenience lenience(evaluation);
        return left->Evaluate(evaluation);
    }
    CursorPointer FirstOfLeft(Evaluation& evaluation, ValueRef& first, bool asPlural) const {
        Evaluation::Lenience lenience(evaluation);
        CursorPointer cursor = OpenSide(*left, evaluation, asPlural);
        bool found = cursor && cursor->Next(evaluation, first) == Cursor::Step::value;
        return found ? std::move(cursor) : nullptr;
    }

    void Explain(Explanation& explanation) const override {
        explanation.words = "otherwise";
        AddPart(explanation, left);
        AddPart(explanation, right);
    }

    ExpressionPointer left, right;
};

}  // namespace

ExpressionPointer MakeExists(Range range, TypeEntry const& boolean, ExpressionPointer operand) {
    return std::make_unique<Exists>(range, boolean, std::move(operand));
}

ExpressionPointer MakeTuple(Range range, TypeEntry const& type, std::vector<ExpressionPointer> fields) {
    bool plural = false;
    for (ExpressionPointer const& field : fields) plural = plural || field->plural;
    return std::make_unique<Tuple>(range, type, plural, std::move(fields));
}

ExpressionPointer MakeCollection(Range range, TypeEntry const& type, bool ofStep,
                                 std::vector<ExpressionPointer> members) {
    return std::make_unique<Collection>(range, type, ofStep, std::move(members));
}

ExpressionPointer MakeChoice(Range range, TypeEntry const& type, ExpressionPointer condition,
                             ExpressionPointer then, ExpressionPointer otherwise) {
    return std::make_unique<Choice>(range, type, std::move(condition), std::move(then), std::move(otherwise));
}

ExpressionPointer MakeFallback(Range range, TypeEntry const& type, ExpressionPointer left,
                               ExpressionPointer right) {
    return std::make_unique<Fallback>(range, type, std::move(left), std::move(right));
}

}  // namespace Evaluator
