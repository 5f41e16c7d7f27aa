// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

namespace quorvane {

/// Which parts of an open file are in the page cache, by the two calls that Linux has for it. Both
/// take a position, a number of bytes and how many of these make a piece, at most 64 of them, and
/// set bit i where anything of piece i is there. Nothing is read or mapped in. Absent where the
/// kernel, the file system or a sandbox has no answer. Any thread.

/// cachestat(2), from Linux 6.5 on. Sees nothing of a file in an overlay.
std::optional<std::uint64_t> cachedPiecesByStatistics(int file, std::int64_t position,
                                                      std::int64_t bytes, std::int64_t pieceBytes);
/// mincore(2). Where the file is neither the caller's own nor his to write, the kernel takes
/// everything for cached.
std::optional<std::uint64_t> cachedPiecesByMapping(int file, std::int64_t position,
                                                   std::int64_t bytes, std::int64_t pieceBytes);

} // namespace quorvane
