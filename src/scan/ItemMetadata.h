// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

namespace quorvane {

/// What one lstat(2) told about an entry. A plain value. The three flags of its kind are false
/// for sockets, pipes and device nodes.
struct ItemMetadata
{
    bool isDirectory = false;
    bool isSymbolicLink = false;
    bool isRegularFile = false;
    bool isSizeCapped = false;                ///< the disk claims more than logicalSize
    std::int64_t logicalSize = 0;             ///< st_size, bytes
    std::int64_t sizeOnDisk = 0;              ///< st_blocks × 512, bytes
    std::optional<std::int64_t> dateModified; ///< whole seconds since 1970

    friend bool operator==(const ItemMetadata&, const ItemMetadata&) = default;
};

} // namespace quorvane
