// SPDX-License-Identifier: MIT
#pragma once

#include "SizeMode.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace quorvane {

class BloatKeys;
class FileNode;
class LockedFlag;

/// The largest items anywhere below a folder in one ranked list, folders and files together.
/// Static functions without state, for any thread.
struct TopSizes
{
    /// Rows that the screen shows.
    static constexpr std::size_t shownItems = 100;

    /// The root and everything visible below it that holds at least one byte: more bytes first,
    /// equal ones by name; no more than limit. A stopped walk gives an empty list.
    static std::vector<FileNode*>
    flattenAndRank(FileNode& root, SizeMode sizeMode, const BloatKeys& excludedBloat,
                   std::size_t limit = std::numeric_limits<std::size_t>::max(),
                   const LockedFlag* stop = nullptr);
};

} // namespace quorvane
