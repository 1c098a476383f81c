#pragma once

// Which folder a failed listing was about. The exceptions that tell of it are the contract's and have room
// for a number only.

#include <CoreFoundation/CFURL.h>

#include <cstdint>
#include <string>

namespace Evaluator {

/// Notes the folder that this thread failed to list last. Returns the number for the exception's detail word;
/// never 0.
std::int32_t NoteFolderFailure(CFURLRef folder);
/// The path of the folder with that number; empty when it was not the last one of this thread. Of a long path
/// the end, behind "…".
std::string FolderOfFailure(std::int32_t number);

}  // namespace Evaluator
