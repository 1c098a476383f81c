#include "language/Sorting.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "language/Bounds.h"
#include "values/Detach.h"
#include "values/Owned.h"

namespace Evaluator {
namespace {

// Values that are merged between two looks at whether to stop.
constexpr std::size_t kBetweenCheckIns = 1024;

// Sorts by merging ever longer runs, from one list into the other and back. It stays in bounds whatever the
// relation answers: some registered relations are no order.
class SortedCursor : public Cursor {
  public:
    SortedCursor(CursorPointer values, Comparison const& less, Range where)
        : values(std::move(values)), less(less), where(where) {}

    Step Next(Evaluation& evaluation, ValueRef& value) override {
        if (values) {
            if (Step step = Gather(evaluation); step != Step::end) return step;
            values.reset();
            if (!Sort(evaluation)) return Step::absent;
        }
        if (delivered == sorted.size()) return Step::end;
        value = std::move(sorted[delivered++]);
        return Step::value;
    }

  private:
    Step Gather(Evaluation& evaluation) {
        ValueRef value;
        Step step;
        while ((step = values->Next(evaluation, value)) == Step::value) {
            BoundGathered(evaluation, sorted.size() + 1, where);
            sorted.push_back(Detached(value));
        }
        return step;
    }

    // False when the relation has no answer.
    bool Sort(Evaluation& evaluation) {
        merged.resize(sorted.size());
        for (std::size_t run = 1; run < sorted.size(); run *= 2) {
            for (std::size_t begin = 0; begin < sorted.size(); begin += 2 * run)
                if (!Merge(evaluation, begin, run)) return false;
            std::swap(sorted, merged);
        }
        merged = {};
        return true;
    }

    // The two runs from `begin` on become one; the left one goes first where neither is less.
    bool Merge(Evaluation& evaluation, std::size_t begin, std::size_t run) {
        std::size_t const middle = std::min(begin + run, sorted.size());
        std::size_t const end = std::min(middle + run, sorted.size());
        std::size_t left = begin, right = middle;
        for (std::size_t to = begin; to < end; ++to) {
            if (to % kBetweenCheckIns == 0) evaluation.CheckIn(where);
            bool takeRight = left == middle;
            if (left < middle && right < end) {
                std::optional<bool> isLess =
                    less.Holds(evaluation, sorted[right], sorted[left], where, answer);
                if (!isLess) return false;
                takeRight = *isLess;
            }
            std::size_t const taken = takeRight ? right : left;  // no branch: which one cannot be foretold
            right += takeRight;
            left += !takeRight;
            FetchBehind(taken);
            merged[to] = std::move(sorted[taken]);
        }
        return true;
    }

    // Values of a run lie all over the memory, but which ones come next is known. Inlined: as a function that
    // does nothing but fetch, the compiler would leave its calls out.
    [[gnu::always_inline]] void FetchBehind(std::size_t place) const {
        constexpr std::size_t ahead = 8;
        constexpr std::ptrdiff_t cacheLine = 64;
        if (place + ahead >= sorted.size() || !sorted[place + ahead]) return;
        auto const* const bytes = static_cast<char const*>(sorted[place + ahead]->Bytes());
        __builtin_prefetch(bytes);
        __builtin_prefetch(bytes + cacheLine - 1);
    }

    CursorPointer values;  ///< null once all are gathered
    Comparison const& less;
    Range where;
    OwnedVector<ValueRef> sorted, merged;
    ValueRef answer;  ///< of the relation, the last time
    std::size_t delivered = 0;
};

}  // namespace

CursorPointer SortedValues(CursorPointer values, Comparison const& less, Range where) {
    return std::make_unique<SortedCursor>(std::move(values), less, where);
}

}  // namespace Evaluator
