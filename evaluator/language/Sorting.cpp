#include "language/Sorting.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
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
    ~SortedCursor() override {
        while (delivered < sorted.size()) Release(sorted[delivered++]);
    }
    SortedCursor(SortedCursor const&) = delete;
    SortedCursor& operator=(SortedCursor const&) = delete;

    Step Next(Evaluation& evaluation, ValueRef& value) override {
        if (values) {
            if (Step step = Gather(evaluation); step != Step::end) return step;
            values.reset();
            if (!Sort(evaluation)) return Step::absent;
        }
        if (delivered == sorted.size()) return Step::end;
        FetchToDeliver();
        value = ValueRef::Adopt(sorted[delivered++]);
        return Step::value;
    }

  private:
    Step Gather(Evaluation& evaluation) {
        ValueRef value;
        Step step;
        while ((step = values->Next(evaluation, value)) == Step::value) {
            BoundGathered(evaluation, sorted.size() + 1, where);
            ValueRef detached = Detached(value);
            sorted.push_back(detached.Get());
            detached.Detach();
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
        OwnedVector<Value*>().swap(merged);
        return true;
    }

    // The two runs from `begin` on become one; the left one goes first where neither is less.
    bool Merge(Evaluation& evaluation, std::size_t begin, std::size_t run) {
        std::size_t const middle = std::min(begin + run, sorted.size());
        std::size_t const end = std::min(middle + run, sorted.size());
        Value* const* const from = sorted.data();
        std::size_t left = begin, right = middle;
        for (std::size_t to = begin; to < end; ++to) {
            if (to % kBetweenCheckIns == 0) evaluation.CheckIn(where);
            bool takeRight = left == middle;
            if (left < middle && right < end) {
                std::optional<bool> isLess = less.Holds(evaluation, *from[right], *from[left], where, answer);
                if (!isLess) return false;
                takeRight = *isLess;
            }
            std::size_t const taken = takeRight ? right : left;  // no branch: which one cannot be foretold
            right += takeRight;
            left += !takeRight;
            FetchToMerge(taken);
            merged[to] = from[taken];
        }
        return true;
    }

    // Values in order lie all over the memory, but which ones come next is known, so they are fetched in
    // time. These functions are inlined: one that does nothing but fetch is left out by the compiler.

    // Null is fetched too, which does no harm.
    [[gnu::always_inline]] static void Fetch(void const* memory) {
        constexpr std::uintptr_t cacheLine = 64;
        auto const address = reinterpret_cast<std::uintptr_t>(memory);
        __builtin_prefetch(memory);
        __builtin_prefetch(reinterpret_cast<void const*>(address + cacheLine - 1));
    }

    [[gnu::always_inline]] void FetchToMerge(std::size_t place) const {
        if (place + 16 < sorted.size()) Fetch(sorted[place + 16]->Bytes());
    }

    // A value that was delivered comes to its end, with what it kept and with its places in the list of all.
    [[gnu::always_inline]] void FetchToDeliver() const {
        if (delivered + 12 >= sorted.size()) return;
        Fetch(sorted[delivered + 12]);
        Fetch(sorted[delivered + 8]->sources[0]);
        Fetch(sorted[delivered + 8]->newer);
        if (Holder const* const source = sorted[delivered + 4]->sources[0]) {
            Fetch(source->older);
            Fetch(source->memory);
        }
    }

    CursorPointer values;  ///< null once all are gathered
    Comparison const& less;
    Range where;
    OwnedVector<Value*> sorted, merged;  ///< each sorted one is owned, until it is delivered
    ValueRef answer;                     ///< of the relation, the last time
    std::size_t delivered = 0;
};

}  // namespace

CursorPointer SortedValues(CursorPointer values, Comparison const& less, Range where) {
    return std::make_unique<SortedCursor>(std::move(values), less, where);
}

}  // namespace Evaluator
