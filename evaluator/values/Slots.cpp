#include "values/Slots.h"

#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <new>

#include "Evaluator/Exceptions.h"

namespace Evaluator {
namespace {

constexpr std::size_t kSlotStep = 16;
constexpr std::size_t kLargestPooledSlot = 512;

[[noreturn]] void ThrowMemoryFull() { throw MemoryFullError(); }

// Slots of one size, cut from blocks of memory. Those that are freed are used again first; the blocks are
// given back when the last slot is freed. Larger and larger blocks are taken, so that few values take little
// memory and many take few blocks.
class Pool {
  public:
    void* Allocate(std::size_t size) {
        void* slot = free;
        if (slot != nullptr) {
            free = free->next;
        } else {
            if (static_cast<std::size_t>(end - unused) < size) AddBlock();
            slot = unused;
            unused += size;
        }
        ++used;
        return slot;
    }

    void Free(void* slot) {
        free = new (slot) FreeSlot{free};
        if (--used == 0) GiveBack();
    }

  private:
    struct FreeSlot {
        FreeSlot* next;
    };
    struct alignas(std::max_align_t) Block {
        Block* older;
        std::size_t size;
    };
    static constexpr std::size_t kFirstBlock = std::size_t{4} << 10;
    static constexpr std::size_t kLargestBlock = std::size_t{2} << 20;  // a large page

    // What is left of the block before is lost: less than a slot.
    void AddBlock() {
        std::size_t const bytes = blocks ? std::min(blocks->size * 2, kLargestBlock) : kFirstBlock;
        void* const memory = bytes == kLargestBlock ? LargePage() : std::malloc(bytes);
        if (memory == nullptr) ThrowMemoryFull();
        blocks = new (memory) Block{blocks, bytes};
        StartWith(*blocks);
    }

    // Many values lie all over the memory; they are found faster in large pages, where the system has them.
    static void* LargePage() {
        void* const page = std::aligned_alloc(kLargestBlock, kLargestBlock);
        if (page != nullptr) madvise(page, kLargestBlock, MADV_HUGEPAGE);
        return page;
    }

    // The first block stays, so that a value at a time takes no memory from the system.
    void GiveBack() {
        while (blocks->older != nullptr) {
            Block* const older = blocks->older;
            std::free(blocks);
            blocks = older;
        }
        StartWith(*blocks);
    }

    void StartWith(Block& block) {
        free = nullptr;
        unused = reinterpret_cast<unsigned char*>(&block + 1);
        end = reinterpret_cast<unsigned char*>(&block) + block.size;
    }

    FreeSlot* free = nullptr;
    unsigned char* unused = nullptr;  // of the newest block
    unsigned char* end = nullptr;
    Block* blocks = nullptr;  // the newest first
    std::size_t used = 0;
};

std::array<Pool, kLargestPooledSlot / kSlotStep + 1> pools;

// The address sanitizer should see every slot's real end of life.
#ifdef ZELQ_ADDRESS_SANITIZER
constexpr bool kIsPooling = false;
#else
constexpr bool kIsPooling = true;
#endif

constexpr std::size_t RoundedUp(std::size_t size) { return (size + kSlotStep - 1) / kSlotStep * kSlotStep; }
bool IsPooled(std::size_t size) { return kIsPooling && size <= kLargestPooledSlot; }

}  // namespace

void* AllocateSlot(std::size_t size) {
    size = RoundedUp(size);
    if (IsPooled(size)) return pools[size / kSlotStep].Allocate(size);
    if (void* slot = std::malloc(size)) return slot;
    ThrowMemoryFull();
}

void FreeSlot(void* slot, std::size_t size) {
    size = RoundedUp(size);
    if (IsPooled(size)) return pools[size / kSlotStep].Free(slot);
    std::free(slot);
}

}  // namespace Evaluator
