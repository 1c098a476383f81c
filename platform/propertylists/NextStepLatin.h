#pragma once

// The NextStep Latin character set, which octal escapes in old-style property lists are numbers of. Pure.

namespace Platform {

/// The character of a byte; U+FFFD for the two bytes that have none.
char16_t FromNextStepLatin(unsigned char byte);

}  // namespace Platform
