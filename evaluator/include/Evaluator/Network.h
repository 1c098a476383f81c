#pragma once

// Internet addresses.

#include <cstdint>

#include "Evaluator/Values.h"

/// The IPv4 address that `text` writes as four decimal numbers from 0 to 255, without leading zeros, with '.'
/// between them and nothing before, behind or in between. The first number is in the most significant byte.
/// Throws ParsingFailure for any other text.
EVALUATOR_API std::uint32_t TextToIPAddress(ConstData text);
