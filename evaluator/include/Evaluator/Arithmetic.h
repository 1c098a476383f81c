#pragma once

// Arithmetic on 32-bit numbers that travel as unsigned long.

#include "Evaluator/Export.h"

/// Whether two 32-bit unsigned numbers can be added without overflow of 32 bits. A number that needs more
/// than 32 bits cannot be added to anything.
EVALUATOR_API bool CanAdd(unsigned long left, unsigned long right);
