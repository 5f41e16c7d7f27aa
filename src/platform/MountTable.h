// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quorvane {

/// A mount of a file system whose files lie on another machine.
struct RemoteMount
{
    FilePath mountPoint;
    std::uint64_t device = 0; ///< st_dev of its entries

    friend bool operator==(const RemoteMount&, const RemoteMount&) = default;
};

/// Where something is mounted: what this process sees below its root folder. A plain value. Any
/// thread.
class MountTable
{
public:
    MountTable() = default;
    explicit MountTable(std::vector<FilePath> mountPoints, std::vector<RemoteMount> remote = {});

    /// Asks the system; a few microseconds for each mount. Absent when it does not tell.
    static std::optional<MountTable> read();
    /// From the text of /proc/self/mountinfo (proc_pid_mountinfo(5)): the fifth field of each line,
    /// in which space, tab, newline and backslash stand as three octal digits. A line with fewer
    /// fields, or whose fifth is no absolute path, is passed over. What is remote is told by the
    /// third field and by the type behind the field "-".
    static MountTable fromMountInfo(std::string_view text);

    /// Sorted; all of them absolute.
    const std::vector<FilePath>& mountPoints() const { return m_mountPoints; }
    /// In the order of the system.
    const std::vector<RemoteMount>& remote() const { return m_remote; }
    bool isMountPoint(const FilePath& path) const;
    /// Whether a mount point lies below the path. The path itself does not count.
    bool hasMountBelow(const FilePath& path) const;

private:
    std::vector<FilePath> m_mountPoints;
    std::vector<RemoteMount> m_remote;
};

} // namespace quorvane
