#pragma once

// Internal. Memory in slots: small ones are kept by size when they are freed, and used again, so that a
// stream of values takes no memory from the system.
//
// Not locked: used under the evaluation lock.

#include <cstddef>

namespace Evaluator {

/// So many bytes, aligned for any type. Throws MemoryFullError when there is no memory.
void* AllocateSlot(std::size_t size);
/// Takes back what AllocateSlot gave for that size.
void FreeSlot(void* slot, std::size_t size);

}  // namespace Evaluator
