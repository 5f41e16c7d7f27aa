// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace quorvane {

/// Why a scan gave no tree: one message, shown to the user as it stands (UTF-8, or the bytes of a
/// path that is not).
struct DiskScanError
{
    std::string message;

    friend bool operator==(const DiskScanError&, const DiskScanError&) = default;
};

} // namespace quorvane
