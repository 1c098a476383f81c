#include "language/UniqueValues.h"

#include <utility>

#include "language/Bounds.h"
#include "values/Detach.h"
#include "values/Owned.h"

namespace Evaluator {
namespace {

// Places in a list by the hashes of what stands there: open addressing, at most half full.
class HashIndex {
  public:
    /// Whether no place with that hash satisfies `isEqual`; `place` is then added.
    template <class IsEqual>
    bool Add(std::uint64_t fullHash, std::size_t place, IsEqual isEqual) {
        if (2 * count >= slots.size()) Grow();
        auto const hash = static_cast<std::uint32_t>(fullHash ^ (fullHash >> 32));
        std::size_t at = hash & (slots.size() - 1);
        for (; slots[at].used; at = (at + 1) & (slots.size() - 1))
            if (slots[at].hash == hash && isEqual(slots[at].place)) return false;
        slots[at] = {place, hash, true};
        ++count;
        return true;
    }

  private:
    struct Slot {
        std::size_t place = 0;
        std::uint32_t hash = 0;
        bool used = false;
    };

    void Grow() {
        OwnedVector<Slot> grown(slots.empty() ? 64 : 2 * slots.size());
        for (Slot const& slot : slots) {
            if (!slot.used) continue;
            std::size_t at = slot.hash & (grown.size() - 1);
            while (grown[at].used) at = (at + 1) & (grown.size() - 1);
            grown[at] = slot;
        }
        slots = std::move(grown);
    }

    OwnedVector<Slot> slots;  ///< a power of two of them
    std::size_t count = 0;
};

class UniqueCursor : public Cursor {
  public:
    UniqueCursor(CursorPointer values, Comparison const& equal, Range where)
        : values(std::move(values)), equal(equal), where(where) {}

    Step Next(Evaluation& evaluation, ValueRef& value) override {
        for (;;) {
            if (Step step = values->Next(evaluation, value); step != Step::value) return step;
            std::optional<bool> isNew =
                equal.IsNative() ? IsNewByHash(evaluation, value) : IsNewByComparing(evaluation, value);
            if (!isNew) return Step::absent;
            if (!*isNew) continue;
            BoundGathered(evaluation, seen.size() + 1, where);
            value = seen.emplace_back(Detached(value));
            return Step::value;
        }
    }

  private:
    std::optional<bool> IsNewByHash(Evaluation& evaluation, ValueRef const& value) {
        return index.Add(equal.Hash(*value), seen.size(), [&](std::size_t place) {
            return *equal.Holds(evaluation, seen[place], value, where);  // native relations always answer
        });
    }
    std::optional<bool> IsNewByComparing(Evaluation& evaluation, ValueRef const& value) {
        for (ValueRef const& earlier : seen) {
            std::optional<bool> same = equal.Holds(evaluation, *earlier, *value, where, answer);
            if (!same) return std::nullopt;
            if (*same) return false;
        }
        return true;
    }

    CursorPointer values;
    Comparison const& equal;
    Range where;
    OwnedVector<ValueRef> seen;
    ValueRef answer;  ///< of the relation, the last time
    HashIndex index;
};

}  // namespace

CursorPointer UniqueValues(CursorPointer values, Comparison const& equal, Range where) {
    return std::make_unique<UniqueCursor>(std::move(values), equal, where);
}

}  // namespace Evaluator
