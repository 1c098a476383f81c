#pragma once

// Internal. Memory in slots: small ones are cut by size from large blocks, and used again when they are
// freed, so that a stream of values takes no memory from the system, and many values take little beside their
// own. A block of which no slot is in use any more is given back, but for one of each size.
//
// Not locked: used under the evaluation lock.

#include <cstddef>

namespace Evaluator {

/// So many bytes, aligned for any type. Throws MemoryFullError when there is no memory.
void* AllocateSlot(std::size_t size);
/// Takes back what AllocateSlot gave for that size.
void FreeSlot(void* slot, std::size_t size);

}  // namespace Evaluator
