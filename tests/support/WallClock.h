// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>

namespace quorvane::test {

/// The seconds since 1970, never behind a date that a file system has given to a file so far.
/// std::time() is: it reads the clock of the last tick, while Linux since 6.13 also dates files by
/// the exact one.
inline std::int64_t secondsNow()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::floor<std::chrono::seconds>(now).count();
}

} // namespace quorvane::test
