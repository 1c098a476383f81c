#pragma once

// Internal. Making strings in inspector memory.

#include <limits>

#include "Evaluator/Context.h"
#include "Evaluator/Exceptions.h"
#include "Evaluator/Values.h"

namespace Evaluator {

/// Inspector memory for a string of that many bytes. Throws StringyLengthTooLong when 32 bits cannot tell its
/// length, and what Allocate_Inspector_Memory throws.
inline Data InspectorMemory(unsigned long size) {
    if (size > std::numeric_limits<std::uint32_t>::max()) throw StringyLengthTooLong();
    return {static_cast<unsigned char*>(Allocate_Inspector_Memory(static_cast<unsigned int>(size))), size};
}

/// The string of these bytes, of which there are no more than 32 bits can tell.
inline inspector_string AsString(Data bytes) {
    return {bytes.begin(), static_cast<std::uint32_t>(bytes.Size())};
}

}  // namespace Evaluator
