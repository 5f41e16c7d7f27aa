// SPDX-License-Identifier: MIT
#pragma once

#include "FileTree.h"
#include "ItemMetadata.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorvane {

/// What one line of a dump says. Used again from line to line, so that its texts keep their room.
struct DumpRecord
{
    std::int64_t id = 0;
    std::string path; ///< raw bytes, no slash at the end but for "/"
    std::string name; ///< raw bytes; the path's last component for all but the root
    bool hasRawPath = false;
    bool hasName = false;
    ItemMetadata metadata;
    std::optional<std::int64_t> scannedBytes;
    std::optional<std::int64_t> scannedBytesOnDisk;
    std::optional<std::int64_t> fileCount;
    std::optional<std::int64_t> directoryCount;
};

/// Reads one line. Returns what is wrong with it; empty when nothing is.
std::string readDumpRecord(std::string_view line, DumpRecord& record);

} // namespace quorvane
