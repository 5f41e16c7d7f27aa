// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <cstdint>
#include <string>
#include <variant>

namespace quorvane {

/// What lies below a folder, the folder itself not counted.
struct WalkTotals
{
    std::int64_t entries = 0;
    std::int64_t files = 0; ///< regular files
    std::int64_t directories = 0;
    std::int64_t logicalBytes = 0; ///< st_size of all but directories
    std::int64_t diskBytes = 0;    ///< st_blocks × 512 of all but directories
};

/// The system calls of a scan and nothing else: openat, getdents64 and one fstatat an entry, by as
/// many threads with one shared stack of folders, without a tree. The time that no scanner of this
/// kind can beat. Folders that cannot be listed are passed over. The message tells why the walk
/// failed.
std::variant<WalkTotals, std::string> floorWalk(const FilePath& root, int workers);

} // namespace quorvane
