#pragma once

// Internal. The cursors that several kinds of expression share.

#include <utility>

#include "language/Expression.h"

namespace Evaluator {

/// Asks something of one object after the other. An object of which there is no such thing adds nothing.
class EachOf : public Cursor {
  public:
    explicit EachOf(CursorPointer objects) : objects(std::move(objects)) {}

    Step Next(Evaluation& evaluation, ValueRef& value) final {
        for (;;) {
            if (inner) {
                Step step = inner->Next(evaluation, value);
                if (step == Step::value) return step;
                inner.reset();
                if (step == Step::absent && !evaluation.MayPassAbsence()) return step;
            }
            ValueRef object;
            if (Step step = objects->Next(evaluation, object); step != Step::value) return step;
            inner = OpenOn(evaluation, object);
            if (!inner && !evaluation.MayPassAbsence()) return Step::absent;
        }
    }

  protected:
    /// The values that one object contributes; null when it is absent.
    virtual CursorPointer OpenOn(Evaluation& evaluation, ValueRef const& object) = 0;

  private:
    CursorPointer objects, inner;
};

class OneValueCursor : public Cursor {
  public:
    explicit OneValueCursor(ValueRef only) : only(std::move(only)) {}
    Step Next(Evaluation&, ValueRef& value) override {
        value = std::exchange(only, {});
        return value ? Step::value : Step::end;
    }

  private:
    ValueRef only;
};

/// A cursor over one value; null for none.
inline CursorPointer OneValue(ValueRef value) {
    return value ? std::make_unique<OneValueCursor>(std::move(value)) : nullptr;
}

}  // namespace Evaluator
