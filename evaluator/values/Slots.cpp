#include "values/Slots.h"

#include <sys/mman.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <new>

#include "Evaluator/Exceptions.h"

namespace Evaluator {
namespace {

constexpr std::size_t kSlotStep = 16;
constexpr std::size_t kLargestPooledSlot = 512;

// Slots of one size are cut from blocks of the size, and at an address that is a multiple, of a large page:
// so the block of a slot is known by its address, and many values, which lie all over the memory, are found
// faster where the system has large pages. Memory of a block that was never used is none.
constexpr std::size_t kBlockSize = std::size_t{2} << 20;

struct SpareSlot {
    SpareSlot* next;
};

struct alignas(64) Block {
    Block* before = nullptr;  // in its pool's list of those with room
    Block* behind = nullptr;
    SpareSlot* free = nullptr;
    std::size_t used = 0;  // slots
    std::size_t cut = 0;   // bytes from which slots were cut, this header among them
};

Block* BlockOf(void* slot) {
    return reinterpret_cast<Block*>(reinterpret_cast<std::uintptr_t>(slot) & ~(kBlockSize - 1));
}

// Null when the system has no memory.
Block* MapBlock(bool isFirst) {
    constexpr int protection = PROT_READ | PROT_WRITE;
    void* const memory =
        mmap(nullptr, 2 * kBlockSize, protection, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED) return nullptr;
    auto* const begin = static_cast<unsigned char*>(memory);
    unsigned char* const block = reinterpret_cast<unsigned char*>(BlockOf(begin + kBlockSize - 1));
    unsigned char* const end = block + kBlockSize;
    if (block != begin) munmap(begin, static_cast<std::size_t>(block - begin));
    munmap(end, static_cast<std::size_t>(begin + 2 * kBlockSize - end));
    madvise(block, kBlockSize, isFirst ? MADV_NOHUGEPAGE : MADV_HUGEPAGE);  // few values take little memory
    return new (block) Block{};
}

class Pool {
  public:
    void* Allocate(std::size_t size) {
        if (roomy == nullptr) AddBlock();
        Block& block = *roomy;
        void* slot = block.free;
        if (slot != nullptr) {
            block.free = block.free->next;
        } else {
            slot = reinterpret_cast<unsigned char*>(&block) + block.cut;
            block.cut += size;
        }
        ++block.used;
        if (!HasRoom(block, size)) Unlink(block);
        return slot;
    }

    // Blocks of which no slot is in use are given back, but for one.
    void Free(void* slot, std::size_t size) {
        Block& block = *BlockOf(slot);
        if (!HasRoom(block, size)) Link(block);
        block.free = new (slot) SpareSlot{block.free};
        if (--block.used != 0) return;
        block.free = nullptr;
        block.cut = sizeof(Block);
        if (block.before == nullptr && block.behind == nullptr) return;
        Unlink(block);
        munmap(&block, kBlockSize);
        --blocks;
    }

  private:
    static bool HasRoom(Block const& block, std::size_t size) {
        return block.free != nullptr || kBlockSize - block.cut >= size;
    }

    void AddBlock() {
        Block* const block = MapBlock(blocks == 0);
        if (block == nullptr) throw MemoryFullError();
        block->cut = sizeof(Block);
        ++blocks;
        Link(*block);
    }

    void Link(Block& block) {
        block.before = nullptr;
        block.behind = roomy;
        if (roomy != nullptr) roomy->before = &block;
        roomy = &block;
    }

    void Unlink(Block& block) {
        (block.before != nullptr ? block.before->behind : roomy) = block.behind;
        if (block.behind != nullptr) block.behind->before = block.before;
        block.before = block.behind = nullptr;
    }

    Block* roomy = nullptr;  // the first of the blocks with room
    std::size_t blocks = 0;
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
    throw MemoryFullError();
}

void FreeSlot(void* slot, std::size_t size) {
    size = RoundedUp(size);
    if (IsPooled(size)) return pools[size / kSlotStep].Free(slot, size);
    std::free(slot);
}

}  // namespace Evaluator
