// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace quorvane {

/// Stops the program with "Quorvane: byte sum overflows in {place}" on standard error. Sizes are
/// signed 64-bit; a sum that leaves the range is a programming fault, never a wrong number on show.
[[noreturn]] void overflowFault(const char* place);

/// a + b, exact. Any thread. An overflow ends the process through overflowFault().
inline std::int64_t checkedAdd(std::int64_t a, std::int64_t b, const char* place)
{
    std::int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum)) {
        overflowFault(place);
    }
    return sum;
}

/// a × b, exact. Any thread. An overflow ends the process through overflowFault().
inline std::int64_t checkedMultiply(std::int64_t a, std::int64_t b, const char* place)
{
    std::int64_t product = 0;
    if (__builtin_mul_overflow(a, b, &product)) {
        overflowFault(place);
    }
    return product;
}

} // namespace quorvane
