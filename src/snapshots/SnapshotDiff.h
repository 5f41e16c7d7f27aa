// SPDX-License-Identifier: MIT
#pragma once

#include "ScanSnapshot.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace quorvane {

/// One file that either of two snapshots has.
struct SnapshotDiff
{
    /// Of a file that the present snapshot does not have.
    static constexpr std::size_t noItem = ~std::size_t{0};

    std::string path; ///< as in ScanSnapshot::Entry
    std::int64_t pastBytes = 0;
    std::int64_t presentBytes = 0;
    std::size_t presentItem = noItem; ///< its place in the present snapshot's items

    std::int64_t deltaBytes() const { return presentBytes - pastBytes; }
    QString formattedPast() const;
    QString formattedPresent() const;
    /// "+1.2 GB", "−0 B" never: no change reads "+0 B".
    QString formattedDelta() const;
};

/// A row for each path of either snapshot, those without a change too, the largest change first and
/// equal ones in the order in which the snapshots have them, the past one first. Of entries with
/// one path the last counts. Whether the snapshots are of one root is not asked. Any thread.
std::vector<SnapshotDiff> diff(const ScanSnapshot& past, const ScanSnapshot& present);

/// The sum of all changes; beyond 64 bits the farthest number that there is.
std::int64_t netChange(std::span<const SnapshotDiff> diffs);
/// "Net growth +1.2 GB" for a net change of 0 or more, else "Net change −1.2 GB".
QString netChangeText(std::int64_t net);
/// "+1.2 GB" or "−1.2 GB".
QString signedBytes(std::int64_t bytes);

} // namespace quorvane
