// Properties, steps in parentheses and filters: what the word "of" and the word "whose" do.

#include <utility>

#include "language/Cursors.h"
#include "language/Expression.h"

namespace Evaluator {
namespace {

// The values of an iterated property of one object.
class IterationCursor : public Cursor {
  public:
    IterationCursor(IterationRef iteration, TypeEntry const& result, Range where)
        : iteration(std::move(iteration)), result(result), where(where) {}
    ~IterationCursor() override { iteration->EndState(); }

    // NoSuchObject from First or Next is the end; an item that the platform misses is not.
    Step Next(Evaluation& evaluation, ValueRef& value) override {
        if (ended) return Step::end;
        if (evaluation.Step(value, iteration, std::exchange(first, false), result, where)) return Step::value;
        ended = true;
        iteration->EndState();
        return evaluation.absence.kind == Absence::Kind::noSuchObject ? Step::end : Step::absent;
    }

  private:
    IterationRef iteration;
    TypeEntry const& result;
    Range where;
    bool first = true;
    bool ended = false;
};

class Property : public Expression {
  public:
    Property(Range range, PropertyEntry const& entry, TypeEntry const& result, bool plural,
             ExpressionPointer object, ExpressionPointer index)
        : Expression(range, result, plural),
          entry(entry),
          object(std::move(object)),
          index(std::move(index)) {}

    PropertyEntry const& entry;

    ValueRef Evaluate(Evaluation& evaluation) const override {
        if (plural) return ExactlyOne(evaluation, Open(evaluation));
        ValueRef asked, indexed;
        if (!Arguments(evaluation, asked, indexed)) return {};
        if (entry.kind == EntryKind::property) return evaluation.Ask(entry, *type, asked, indexed, range);
        return ExactlyOne(evaluation, OpenOn(evaluation, asked, indexed), Reason::kept);
    }

    CursorPointer Open(Evaluation& evaluation) const override {
        return plural ? OpenAsPlural(evaluation) : Expression::Open(evaluation);
    }

    CursorPointer OpenAsPlural(Evaluation& evaluation) const override {
        if (object && object->plural) return OpenEach(evaluation);
        ValueRef asked, indexed;
        return Arguments(evaluation, asked, indexed) ? OpenOn(evaluation, asked, indexed) : nullptr;
    }

    std::string SingularPhrase() const override { return plural ? entry.singular : std::string(); }

    /// The values of one object; null when it is absent.
    CursorPointer OpenOn(Evaluation& evaluation, ValueRef const& asked, ValueRef const& indexed) const {
        if (entry.kind == EntryKind::property) {
            ValueRef value = evaluation.Ask(entry, *type, asked, indexed, range);
            return OneValue(std::move(value));
        }
        IterationRef iteration = evaluation.Begin(entry, asked, indexed, range);
        return iteration ? std::make_unique<IterationCursor>(std::move(iteration), *type, range) : nullptr;
    }

  private:
    // The index, then the object; false when one is absent.
    bool Arguments(Evaluation& evaluation, ValueRef& asked, ValueRef& indexed) const {
        if (index && !(indexed = index->Evaluate(evaluation))) return false;
        if (!object) return true;
        // Of a plural object exactly one value is wanted; if there are others, this property complains.
        asked =
            object->plural ? ExactlyOne(evaluation, object->Open(evaluation)) : object->Evaluate(evaluation);
        return static_cast<bool>(asked);
    }
    CursorPointer OpenEach(Evaluation& evaluation) const;
    void Explain(Explanation& explanation) const override {
        explanation.words = plural ? entry.plural : entry.singular;
        AddRegistration(explanation, entry);
        AddPart(explanation, index);
        AddPart(explanation, object);
    }

    ExpressionPointer object, index;
};

class EachProperty : public EachOf {
  public:
    EachProperty(Property const& property, CursorPointer objects, ValueRef indexed)
        : EachOf(std::move(objects)), property(property), indexed(std::move(indexed)) {}

  private:
    Step Of(Evaluation& evaluation, ValueRef const& object, ValueRef& value, CursorPointer& more) override {
        if (property.entry.IsIterated()) return AllOf(property.OpenOn(evaluation, object, indexed), more);
        bool there = evaluation.Ask(value, property.entry, *property.type, object, indexed, property.range);
        return there ? Step::value : Step::absent;
    }
    Property const& property;
    ValueRef indexed;
};

CursorPointer Property::OpenEach(Evaluation& evaluation) const {
    ValueRef indexed;
    if (index && !(indexed = index->Evaluate(evaluation))) return nullptr;
    CursorPointer objects = object->Open(evaluation);
    if (!objects) return nullptr;
    return std::make_unique<EachProperty>(*this, std::move(objects), std::move(indexed));
}

class ParenthesisStep : public Expression {
  public:
    ParenthesisStep(Range range, ExpressionPointer inside, std::size_t binding, ExpressionPointer object)
        : Expression(range, *inside->type, inside->plural || object->plural),
          inside(std::move(inside)),
          binding(binding),
          object(std::move(object)) {}

    ValueRef Evaluate(Evaluation& evaluation) const override {
        if (plural) return ExactlyOne(evaluation, Open(evaluation));
        ValueRef of = object->Evaluate(evaluation);
        if (!of) return {};
        evaluation.bindings[binding] = std::move(of);
        return inside->Evaluate(evaluation);
    }
    CursorPointer Open(Evaluation& evaluation) const override { return OpenInside(evaluation, false); }
    CursorPointer OpenAsPlural(Evaluation& evaluation) const override { return OpenInside(evaluation, true); }

    CursorPointer OpenOn(Evaluation& evaluation, ValueRef const& of, bool asPlural) const {
        evaluation.bindings[binding] = of;
        return asPlural ? inside->OpenAsPlural(evaluation) : inside->Open(evaluation);
    }

    ExpressionPointer const inside;
    std::size_t const binding;

  private:
    CursorPointer OpenInside(Evaluation& evaluation, bool asPlural) const;
    void Explain(Explanation& explanation) const override {
        explanation.words = "(…) of";
        AddPart(explanation, inside);
        AddPart(explanation, object);
    }

    ExpressionPointer object;
};

class EachParenthesis : public EachOf {
  public:
    EachParenthesis(ParenthesisStep const& step, CursorPointer objects, bool asPlural)
        : EachOf(std::move(objects)), step(step), asPlural(asPlural) {}

  private:
    Step Of(Evaluation& evaluation, ValueRef const& object, ValueRef& value, CursorPointer& more) override {
        if (asPlural || step.inside->plural) return AllOf(step.OpenOn(evaluation, object, asPlural), more);
        evaluation.bindings[step.binding] = object;
        value = step.inside->Evaluate(evaluation);
        return value ? Step::value : Step::absent;
    }
    ParenthesisStep const& step;
    bool asPlural;
};

CursorPointer ParenthesisStep::OpenInside(Evaluation& evaluation, bool asPlural) const {
    if (object->plural) {
        CursorPointer objects = object->Open(evaluation);
        if (!objects) return nullptr;
        return std::make_unique<EachParenthesis>(*this, std::move(objects), asPlural);
    }
    ValueRef of = object->Evaluate(evaluation);
    return of ? OpenOn(evaluation, of, asPlural) : nullptr;
}

// Lets through the values of which the condition is true; one of which it has no answer is left out.
class FilterCursor : public Cursor {
  public:
    FilterCursor(CursorPointer candidates, std::size_t binding, Expression const& condition)
        : candidates(std::move(candidates)), binding(binding), condition(condition) {}

    // Candidates are pulled into the place of `it`, so that the slot of one that is left out serves the next.
    Step Next(Evaluation& evaluation, ValueRef& value) override {
        ValueRef& it = evaluation.bindings[binding];
        for (;;) {
            if (Step step = candidates->Next(evaluation, it); step != Step::value) return step;
            switch (condition.Test(evaluation)) {
                case Truth::yes:
                    std::swap(value, it);
                    return Step::value;
                case Truth::no:
                    break;
                case Truth::absent:
                    if (!evaluation.MayPassAbsence()) return Step::absent;
            }
        }
    }

  private:
    CursorPointer candidates;
    std::size_t binding;
    Expression const& condition;
};

class Filter : public Expression {
  public:
    Filter(Range range, ExpressionPointer source, std::size_t binding, ExpressionPointer condition)
        : Expression(range, *source->type, true),
          source(std::move(source)),
          condition(std::move(condition)),
          binding(binding) {}

    CursorPointer Open(Evaluation& evaluation) const override { return Over(source->Open(evaluation)); }
    CursorPointer OpenAsPlural(Evaluation& evaluation) const override {
        return Over(source->OpenAsPlural(evaluation));
    }

  private:
    void Explain(Explanation& explanation) const override {
        explanation.words = "whose";
        AddPart(explanation, source);
        AddPart(explanation, condition);
    }
    CursorPointer Over(CursorPointer candidates) const {
        if (!candidates) return nullptr;
        return std::make_unique<FilterCursor>(std::move(candidates), binding, *condition);
    }

    ExpressionPointer source, condition;
    std::size_t binding;
};

}  // namespace

ExpressionPointer MakeProperty(Range range, PropertyEntry const& entry, TypeEntry const& result, bool plural,
                               ExpressionPointer object, ExpressionPointer index) {
    return std::make_unique<Property>(range, entry, result, plural, std::move(object), std::move(index));
}

ExpressionPointer MakeStep(Range range, ExpressionPointer inside, std::size_t binding,
                           ExpressionPointer object) {
    return std::make_unique<ParenthesisStep>(range, std::move(inside), binding, std::move(object));
}

ExpressionPointer MakeFilter(Range range, ExpressionPointer source, std::size_t binding,
                             ExpressionPointer condition) {
    return std::make_unique<Filter>(range, std::move(source), binding, std::move(condition));
}

}  // namespace Evaluator
