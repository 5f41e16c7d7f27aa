// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace quorvane {

/// A report of a running scan, or its closing totals. A plain value.
struct ScanProgress
{
    std::int64_t filesScanned = 0;       ///< regular files seen so far
    std::int64_t directoriesScanned = 0; ///< directories seen so far, the root not counted
    std::int64_t bytesSeen = 0;          ///< logical bytes of those files
    std::string currentPath;             ///< bytes of the folder taken up last; empty at both ends

    friend bool operator==(const ScanProgress&, const ScanProgress&) = default;
};

} // namespace quorvane
