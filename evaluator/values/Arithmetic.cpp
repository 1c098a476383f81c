#include "Evaluator/Arithmetic.h"

#include <cstdint>
#include <limits>

bool CanAdd(unsigned long left, unsigned long right) {
    constexpr unsigned long largest = std::numeric_limits<std::uint32_t>::max();
    return left <= largest && right <= largest - left;
}
