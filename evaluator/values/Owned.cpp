#include "values/Owned.h"

#include <new>

#include "values/Slots.h"

namespace Evaluator {
namespace {

// Stands before the bytes that were asked for. All that are in use form a ring with `all`.
struct alignas(std::max_align_t) Block {
    Block* before;
    Block* behind;
    std::size_t size;
};
Block all{&all, &all, 0};

}  // namespace

void* AllocateOwned(std::size_t size) {
    size += sizeof(Block);
    Block* block = new (AllocateSlot(size)) Block{&all, all.behind, size};
    all.behind = all.behind->before = block;
    return block + 1;
}

void FreeOwned(void* memory) {
    if (!memory) return;
    Block* block = static_cast<Block*>(memory) - 1;
    block->before->behind = block->behind;
    block->behind->before = block->before;
    FreeSlot(block, block->size);
}

void FreeAllOwned() {
    while (all.behind != &all) FreeOwned(all.behind + 1);
}

}  // namespace Evaluator
