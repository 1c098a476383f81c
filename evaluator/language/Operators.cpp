// Casts, operators and the words that make one boolean of others.

#include <utility>

#include "language/Bounds.h"
#include "language/Cursors.h"
#include "language/Expression.h"

namespace Evaluator {
namespace {

class Cast : public Expression {
  public:
    Cast(Range range, CastEntry const& entry, TypeEntry const& result, ExpressionPointer operand)
        : Expression(range, result, operand->plural), entry(entry), operand(std::move(operand)) {}

    ValueRef Evaluate(Evaluation& evaluation) const override {
        if (plural) return ExactlyOne(evaluation, Open(evaluation));
        ValueRef value, source = operand->Evaluate(evaluation);
        return source && Convert(evaluation, value, source) ? value : ValueRef();
    }
    CursorPointer Open(Evaluation& evaluation) const override {
        return plural ? Each(operand->Open(evaluation)) : Expression::Open(evaluation);
    }
    CursorPointer OpenAsPlural(Evaluation& evaluation) const override {
        return Each(operand->OpenAsPlural(evaluation));
    }
    bool Convert(Evaluation& evaluation, ValueRef& value, ValueRef const& source) const {
        return evaluation.Convert(value, entry, *type, source, range);
    }

  private:
    CursorPointer Each(CursorPointer sources) const;

    CastEntry const& entry;
    ExpressionPointer operand;
};

class EachCast : public EachOf {
  public:
    EachCast(Cast const& cast, CursorPointer sources) : EachOf(std::move(sources)), cast(cast) {}

  private:
    Step Of(Evaluation& evaluation, ValueRef const& source, ValueRef& value, CursorPointer&) override {
        return cast.Convert(evaluation, value, source) ? Step::value : Step::absent;
    }
    Cast const& cast;
};

CursorPointer Cast::Each(CursorPointer sources) const {
    return sources ? std::make_unique<EachCast>(*this, std::move(sources)) : nullptr;
}

class Operator : public Expression {
  public:
    Operator(Range range, OperatorEntry const& entry, TypeEntry const& result, bool exchanged,
             ExpressionPointer left, ExpressionPointer right)
        : Expression(range, result, false),
          entry(entry),
          left(std::move(left)),
          right(std::move(right)),
          exchanged(exchanged) {}

    ValueRef Evaluate(Evaluation& evaluation) const override {
        ValueRef first = left->Evaluate(evaluation);
        if (!first) return {};
        ValueRef second = right->Evaluate(evaluation);
        if (!second) return {};
        if (entry.code == kOperatorJoin)
            BoundText(
                evaluation,
                std::size_t{first->As<inspector_string>().length} + second->As<inspector_string>().length,
                range);
        return exchanged ? evaluation.Operate(entry, *type, second, first, range)
                         : evaluation.Operate(entry, *type, first, second, range);
    }

  private:
    OperatorEntry const& entry;
    ExpressionPointer left, right;
    bool exchanged;
};

class Not : public Expression {
  public:
    Not(Range range, TypeEntry const& boolean, ExpressionPointer operand)
        : Expression(range, boolean, false), operand(std::move(operand)) {}

    ValueRef Evaluate(Evaluation& evaluation) const override {
        ValueRef truth = operand->Evaluate(evaluation);
        return truth ? MakeValue(*type, boolean(!truth->As<boolean>())) : ValueRef();
    }

  private:
    ExpressionPointer operand;
};

class Logical : public Expression {
  public:
    Logical(Range range, TypeEntry const& boolean, bool conjunction, ExpressionPointer left,
            ExpressionPointer right)
        : Expression(range, boolean, false),
          left(std::move(left)),
          right(std::move(right)),
          conjunction(conjunction) {}

    ValueRef Evaluate(Evaluation& evaluation) const override {
        ValueRef truth = left->Evaluate(evaluation);
        if (!truth || truth->As<boolean>() != conjunction) return truth;
        return right->Evaluate(evaluation);
    }

  private:
    ExpressionPointer left, right;
    bool conjunction;
};

}  // namespace

ExpressionPointer MakeCast(Range range, CastEntry const& entry, TypeEntry const& result,
                           ExpressionPointer operand) {
    return std::make_unique<Cast>(range, entry, result, std::move(operand));
}

ExpressionPointer MakeOperator(Range range, OperatorEntry const& entry, TypeEntry const& result,
                               bool exchanged, ExpressionPointer left, ExpressionPointer right) {
    return std::make_unique<Operator>(range, entry, result, exchanged, std::move(left), std::move(right));
}

ExpressionPointer MakeNot(Range range, TypeEntry const& boolean, ExpressionPointer operand) {
    return std::make_unique<Not>(range, boolean, std::move(operand));
}

ExpressionPointer MakeLogical(Range range, TypeEntry const& boolean, bool conjunction, ExpressionPointer left,
                              ExpressionPointer right) {
    return std::make_unique<Logical>(range, boolean, conjunction, std::move(left), std::move(right));
}

}  // namespace Evaluator
