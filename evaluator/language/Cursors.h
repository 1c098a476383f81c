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
            Step step = inner ? inner->Next(evaluation, value) : Step::end;
            if (step == Step::value) return step;
            inner.reset();
            if (step == Step::absent && !evaluation.MayPassAbsence()) return step;
            if (step = objects->Next(evaluation, object); step != Step::value) return step;
            if (step = Of(evaluation, object, value, inner); step == Step::value) return step;
            if (step == Step::absent && !evaluation.MayPassAbsence()) return step;
        }
    }

  protected:
    /// What one object contributes: one value, or absence, or `end` with a cursor over any number of values
    /// in `more`.
    virtual Step Of(Evaluation& evaluation, ValueRef const& object, ValueRef& value, CursorPointer& more) = 0;
    /// For Of: the values of a cursor that was opened; null is absence.
    static Step AllOf(CursorPointer opened, CursorPointer& more) {
        more = std::move(opened);
        return more ? Step::end : Step::absent;
    }

  private:
    CursorPointer objects, inner;
    ValueRef object;
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
