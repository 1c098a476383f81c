#include "language/Many.h"

#include <cstring>
#include <utility>

#include "language/Bounds.h"
#include "language/Cursors.h"
#include "language/Sorting.h"
#include "language/UniqueValues.h"
#include "values/Detach.h"
#include "values/Owned.h"

namespace Evaluator {
namespace {

class ManyExpression : public Expression {
  public:
    explicit ManyExpression(Many parts)
        : Expression(parts.range, *parts.type, parts.plural), many(std::move(parts)) {}

    std::string SingularPhrase() const override {
        return plural ? std::string(many.phrase->singular) : std::string();
    }

  protected:
    // Calls `take` with each value; `take` answers whether to go on. Whether the end was reached.
    template <class Take>
    bool ForEach(Evaluation& evaluation, Take take) const {
        CursorPointer cursor = many.source->Open(evaluation);
        if (!cursor) return false;
        ValueRef value;
        Cursor::Step step;
        while ((step = cursor->Next(evaluation, value)) == Cursor::Step::value)
            if (!take(value)) return false;
        return step == Cursor::Step::end;
    }

    Many const many;
};

// ---- One value made of many. Asked in the plural, it is one value all the same.

class Number : public ManyExpression {
  public:
    using ManyExpression::ManyExpression;
    ValueRef Evaluate(Evaluation& evaluation) const override {
        long long count = 0;
        bool all = ForEach(evaluation, [&](ValueRef const&) { return ++count > 0; });
        return all ? MakeValue(*type, integer(count)) : ValueRef();
    }
};

class Sum : public ManyExpression {
  public:
    using ManyExpression::ManyExpression;
    ValueRef Evaluate(Evaluation& evaluation) const override {
        ValueRef sum = Zero();
        bool all = ForEach(evaluation, [&](ValueRef const& value) {
            sum = evaluation.Operate(*many.plus, *type, sum, value, range);
            return static_cast<bool>(sum);
        });
        return all ? sum : ValueRef();
    }

  private:
    ValueRef Zero() const {
        return type->name == "integer" ? MakeValue(*type, integer(0)) : MakeValue(*type, time_interval());
    }
};

// The minimum or the maximum; of equal values the first.
class Extreme : public ManyExpression {
  public:
    using ManyExpression::ManyExpression;
    ValueRef Evaluate(Evaluation& evaluation) const override {
        bool const least = many.phrase->what == TakesMany::minimum;
        ValueRef best;
        bool all = ForEach(evaluation, [&](ValueRef const& value) {
            if (!best) return static_cast<bool>(best = value);
            std::optional<bool> better = least ? many.comparison->Holds(evaluation, value, best, range)
                                               : many.comparison->Holds(evaluation, best, value, range);
            if (better && *better) best = value;
            return better.has_value();
        });
        if (!all) return {};
        return best ? best : evaluation.Absent(range);
    }
};

class Concatenation : public ManyExpression {
  public:
    using ManyExpression::ManyExpression;
    ValueRef Evaluate(Evaluation& evaluation) const override {
        ValueRef between;
        if (many.index && !(between = many.index->Evaluate(evaluation))) return {};
        OwnedVector<unsigned char> text;
        bool first = true;
        bool all = ForEach(evaluation, [&](ValueRef const& value) {
            if (!std::exchange(first, false) && between) Append(evaluation, text, *between);
            Append(evaluation, text, *value);
            return true;
        });
        return all ? MakeText(text) : ValueRef();
    }

  private:
    void Append(Evaluation const& evaluation, OwnedVector<unsigned char>& text, Value const& value) const {
        auto const& bytes = value.As<inspector_string>();
        BoundText(evaluation, text.size() + bytes.length, range);
        text.insert(text.end(), bytes.begin(), bytes.end());
    }
    ValueRef MakeText(OwnedVector<unsigned char> const& text) const {
        ValueRef value = NewValue(*type);
        auto* bytes = static_cast<unsigned char*>(value->Allocate(text.size()));
        if (!text.empty()) std::memcpy(bytes, text.data(), text.size());
        new (value->Bytes()) inspector_string(bytes, static_cast<std::uint32_t>(text.size()));
        value->alive = true;
        return value;
    }
};

// ---- Some of many. Asked in the singular, it must turn out to be exactly one.

class Selection : public ManyExpression {
  public:
    using ManyExpression::ManyExpression;
    ValueRef Evaluate(Evaluation& evaluation) const override {
        return ExactlyOne(evaluation, OpenAsPlural(evaluation));
    }
    CursorPointer Open(Evaluation& evaluation) const override {
        return plural ? OpenAsPlural(evaluation) : Expression::Open(evaluation);
    }
};

class Unique : public Selection {
  public:
    using Selection::Selection;
    CursorPointer OpenAsPlural(Evaluation& evaluation) const override {
        CursorPointer values = many.source->Open(evaluation);
        return values ? UniqueValues(std::move(values), *many.comparison, range) : nullptr;
    }
};

class Sorted : public Selection {
  public:
    using Selection::Selection;
    CursorPointer OpenAsPlural(Evaluation& evaluation) const override {
        CursorPointer values = many.source->Open(evaluation);
        return values ? SortedValues(std::move(values), *many.comparison, range) : nullptr;
    }
};

class FirstCursor : public Cursor {
  public:
    FirstCursor(CursorPointer values, long long count) : values(std::move(values)), left(count) {}
    Step Next(Evaluation& evaluation, ValueRef& value) override {
        if (left == 0) return Step::end;
        --left;
        return values->Next(evaluation, value);
    }

  private:
    CursorPointer values;
    long long left;
};

// Keeps the latest `count` values in a ring, whose oldest is the next to be replaced.
class LastCursor : public Cursor {
  public:
    LastCursor(CursorPointer values, long long count, Range where)
        : values(std::move(values)), count(count), where(where) {}

    Step Next(Evaluation& evaluation, ValueRef& value) override {
        if (values) {
            if (Step step = Gather(evaluation); step != Step::end) return step;
            values.reset();
        }
        if (delivered == ring.size()) return Step::end;
        value = std::move(ring[(oldest + delivered++) % ring.size()]);
        return Step::value;
    }

  private:
    Step Gather(Evaluation& evaluation) {
        if (count == 0) return Step::end;
        ValueRef value;
        Step step;
        while ((step = values->Next(evaluation, value)) == Step::value) {
            if (ring.size() < static_cast<unsigned long long>(count)) {
                BoundGathered(evaluation, ring.size() + 1, where);
                ring.push_back(Detached(value));
            } else {
                ring[oldest] = Detached(value);
                oldest = (oldest + 1) % ring.size();
            }
        }
        return step;
    }

    CursorPointer values;  ///< null once the last are known
    long long count;
    Range where;
    OwnedVector<ValueRef> ring;
    std::size_t oldest = 0, delivered = 0;
};

// The first or the last values; without an index, one.
class Ends : public Selection {
  public:
    using Selection::Selection;
    CursorPointer OpenAsPlural(Evaluation& evaluation) const override {
        long long count = 1;
        if (many.index) {
            ValueRef index = many.index->Evaluate(evaluation);
            if (!index) return nullptr;
            count = index->As<integer>();
        }
        if (count < 0) {
            evaluation.Absent(range);
            return nullptr;
        }
        CursorPointer values = many.source->Open(evaluation);
        if (!values) return nullptr;
        if (many.phrase->what == TakesMany::first)
            return std::make_unique<FirstCursor>(std::move(values), count);
        return std::make_unique<LastCursor>(std::move(values), count, range);
    }
};

}  // namespace

ExpressionPointer MakeMany(Many many) {
    switch (many.phrase->what) {
        case TakesMany::number:
            return std::make_unique<Number>(std::move(many));
        case TakesMany::sum:
            return std::make_unique<Sum>(std::move(many));
        case TakesMany::minimum:
        case TakesMany::maximum:
            return std::make_unique<Extreme>(std::move(many));
        case TakesMany::unique:
            return std::make_unique<Unique>(std::move(many));
        case TakesMany::sorted:
            return std::make_unique<Sorted>(std::move(many));
        case TakesMany::first:
        case TakesMany::last:
            return std::make_unique<Ends>(std::move(many));
        case TakesMany::concatenation:
            return std::make_unique<Concatenation>(std::move(many));
    }
    return nullptr;
}

}  // namespace Evaluator
