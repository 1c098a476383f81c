#include "language/Expression.h"

#include <utility>

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

  private:
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

  private:
    std::size_t binding;
};

}  // namespace

ValueRef Expression::Evaluate(Evaluation& evaluation) const {
    return ExactlyOne(evaluation, Open(evaluation));
}

Truth Expression::Test(Evaluation& evaluation) const {
    ValueRef truth = Evaluate(evaluation);
    if (!truth) return Truth::absent;
    return truth->As<boolean>() ? Truth::yes : Truth::no;
}

CursorPointer Expression::Open(Evaluation& evaluation) const { return OneValue(Evaluate(evaluation)); }

ValueRef Expression::ExactlyOne(Evaluation& evaluation, CursorPointer cursor) const {
    if (!cursor) return {};
    ValueRef only, another;
    switch (cursor->Next(evaluation, only)) {
        case Cursor::Step::absent:
            return {};
        case Cursor::Step::end:
            return evaluation.Absent(range);
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
