// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// Reads the bytes as foreign input, and ends the process when a promise about the result is
/// broken.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace quorvane {

/// Ends the process with the promise on standard error unless it holds, whatever the build.
inline void require(bool holds, const char* promise)
{
    if (!holds) {
        std::fprintf(stderr, "broken promise: %s\n", promise);
        std::abort();
    }
}

} // namespace quorvane
