// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace quorvane::test {

/// What the whole program has from malloc(3), whoever in it asks for it: every allocation of every
/// thread is counted with the room that it really takes. Linked into a test program.
class CountedMemory
{
public:
    /// False where another allocator has taken malloc over, as that of a sanitizer has.
    static bool isCounted();
    /// Bytes that are held now.
    static std::int64_t now();
    /// The most that was held at once since the start or since the last forgetMost().
    static std::int64_t most();
    static void forgetMost();
};

} // namespace quorvane::test
