#include "values/Slots.h"

#include <array>
#include <cstdlib>
#include <new>

#include "Evaluator/Exceptions.h"

namespace Evaluator {
namespace {

// At most kMostSpareSlots of a size are kept, so that a burst is given back. The address sanitizer should see
// every slot's real end of life: nothing is kept then.
#ifdef ZELQ_ADDRESS_SANITIZER
constexpr std::size_t kMostSpareSlots = 0;
#else
constexpr std::size_t kMostSpareSlots = 64;
#endif
constexpr std::size_t kSlotStep = 32;
constexpr std::size_t kLargestKeptSlot = 512;

struct SpareSlot {
    SpareSlot* next;
};
struct SpareList {
    SpareSlot* first = nullptr;
    std::size_t count = 0;
};
std::array<SpareList, kLargestKeptSlot / kSlotStep + 1> spares;

constexpr std::size_t RoundedUp(std::size_t size) { return (size + kSlotStep - 1) / kSlotStep * kSlotStep; }

}  // namespace

void* AllocateSlot(std::size_t size) {
    size = RoundedUp(size);
    if (size <= kLargestKeptSlot) {
        SpareList& list = spares[size / kSlotStep];
        if (SpareSlot* slot = list.first) {
            list.first = slot->next;
            --list.count;
            return slot;
        }
    }
    if (void* slot = std::malloc(size)) return slot;
    throw MemoryFullError();
}

void FreeSlot(void* slot, std::size_t size) {
    size = RoundedUp(size);
    if (size <= kLargestKeptSlot && spares[size / kSlotStep].count < kMostSpareSlots) {
        SpareList& list = spares[size / kSlotStep];
        list.first = new (slot) SpareSlot{list.first};
        ++list.count;
        return;
    }
    std::free(slot);
}

}  // namespace Evaluator
