#include "language/Expression.h"

#include <utility>

#include "language/Bracketed.h"
#include "language/Cursors.h"

namespace Evaluator {
namespace {

class Literal : public Expression {
  public:
    Literal(Range range, TypeEntry const& type, std::size_t place,
            std::variant<std::string, integer, boolean> content)
        : Expression(range, type, false), place(place), content(std::move(content)) {}

    ValueRef Evaluate(Evaluation& evaluation) const override {
        ValueRef& made = evaluation.literals[place];
        if (!made) made = Make();
        return made;
    }
    void const* Look(Evaluation& evaluation, Sight&) const override {
        ValueRef& made = evaluation.literals[place];
        if (!made) made = Make();
        return made->Bytes();
    }

  private:
    void Explain(Explanation& explanation) const override {
        if (auto const* number = std::get_if<integer>(&content))
            explanation.words = std::to_string(static_cast<long long>(*number));
        else if (auto const* truth = std::get_if<boolean>(&content))
            explanation.words = *truth ? "true" : "false";
        else
            explanation.words = QuotedLiteral(std::get<std::string>(content));
    }
    ValueRef Make() const {
        if (auto const* number = std::get_if<integer>(&content)) return MakeValue(*type, *number);
        if (auto const* truth = std::get_if<boolean>(&content)) return MakeValue(*type, *truth);
        auto const& text = std::get<std::string>(content);
        return MakeValue(*type, inspector_string(reinterpret_cast<unsigned char const*>(text.data()),
                                                 static_cast<std::uint32_t>(text.size())));
    }

    std::size_t place;
    std::variant<std::string, integer, boolean> content;
};

class It : public Expression {
  public:
    It(Range range, TypeEntry const& type, std::size_t binding)
        : Expression(range, type, false), binding(binding) {}
    ValueRef Evaluate(Evaluation& evaluation) const override { return evaluation.bindings[binding]; }
    void const* Look(Evaluation& evaluation, Sight&) const override {
        return evaluation.bindings[binding]->Bytes();
    }

  private:
    void Explain(Explanation& explanation) const override { explanation.words = "it"; }

    std::size_t binding;
};

}  // namespace

ValueRef Expression::Evaluate(Evaluation& evaluation) const {
    return ExactlyOne(evaluation, Open(evaluation));
}

Explanation Expression::Explained() const {
    Explanation explanation;
    explanation.range = range;
    explanation.typeName = type->name;
    explanation.plural = plural;
    Explain(explanation);
    return explanation;
}

void const* Expression::Look(Evaluation& evaluation, Sight& sight) const {
    sight.value = Evaluate(evaluation);
    return sight.value ? sight.value->Bytes() : nullptr;
}

Truth Expression::Test(Evaluation& evaluation) const {
    Sight sight;
    auto const* truth = static_cast<boolean const*>(Look(evaluation, sight));
    return truth ? AsTruth(*truth) : Truth::absent;
}

CursorPointer Expression::Open(Evaluation& evaluation) const { return OneValue(Evaluate(evaluation)); }

ValueRef Expression::ExactlyOne(Evaluation& evaluation, CursorPointer cursor, Reason reason) const {
    if (!cursor) return {};
    ValueRef only, another;
    switch (cursor->Next(evaluation, only)) {
        case Cursor::Step::absent:
            return {};
        case Cursor::Step::end:
            return reason == Reason::kept ? evaluation.AbsentAsToldAt(range) : evaluation.Absent(range);
        case Cursor::Step::value:
            break;
    }
    switch (cursor->Next(evaluation, another)) {
        case Cursor::Step::absent:
            return {};
        case Cursor::Step::end:
            return only;
        case Cursor::Step::value:
            break;
    }
    throw EvaluationError{{ProblemKind::evaluation, range, "more than one object", {}}};
}

ExpressionPointer MakeLiteral(Range range, TypeEntry const& type, std::size_t place,
                              std::variant<std::string, integer, boolean> content) {
    return std::make_unique<Literal>(range, type, place, std::move(content));
}

ExpressionPointer MakeIt(Range range, TypeEntry const& type, std::size_t binding) {
    return std::make_unique<It>(range, type, binding);
}

}  // namespace Evaluator
