// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>

namespace quorvane {

/// How full the start-up drive is. A plain value.
struct DriveSample
{
    std::uint64_t totalBytes = 0;
    std::uint64_t freeBytes = 0;

    /// Total minus free; 0 if free exceeds total.
    std::uint64_t usedBytes() const { return freeBytes > totalBytes ? 0 : totalBytes - freeBytes; }
    /// 0 to 100; 0 for a drive of no bytes.
    double usedPercent() const;
    QString formattedFree() const;
    QString formattedTotal() const;

    friend bool operator==(const DriveSample&, const DriveSample&) = default;
};

} // namespace quorvane
