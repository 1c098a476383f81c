#pragma once

// The host's strings and the platform's. Encodings are the platform's numbers, such as 0 for Mac Roman; those
// that CoreFoundation/CFString.h lists can be used.

#include <CoreFoundation/CFString.h>

#include "Evaluator/Export.h"
#include "Evaluator/Values.h"

/// The text of a platform string as bytes of the encoding, in inspector memory. A character that the encoding
/// does not have becomes a question mark; there is no byte-order mark. Throws ParsingFailure for an encoding
/// that the platform does not know, StringyLengthTooLong and what Allocate_Inspector_Memory throws.
EVALUATOR_API inspector_string MakeString(CFStringRef text, unsigned long encoding);

/// A new platform string from bytes of the encoding; the caller releases it. Throws ParsingFailure for bytes
/// that are not valid in the encoding and for an encoding that the platform does not know, and
/// MemoryFullError when there is no memory.
EVALUATOR_API CFStringRef MakeCFString(ConstData text, unsigned long encoding);
