// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <optional>
#include <string_view>
#include <vector>

namespace quorvane {

/// Where something is mounted: what this process sees below its root folder. A plain value. Any
/// thread.
class MountTable
{
public:
    MountTable() = default;
    explicit MountTable(std::vector<FilePath> mountPoints);

    /// Asks the system; a few microseconds for each mount. Absent when it does not tell.
    static std::optional<MountTable> read();
    /// From the text of /proc/self/mountinfo (proc_pid_mountinfo(5)): the fifth field of each line,
    /// in which space, tab, newline and backslash stand as three octal digits. A line with fewer
    /// fields, or whose fifth is no absolute path, is passed over.
    static MountTable fromMountInfo(std::string_view text);

    /// Sorted; all of them absolute.
    const std::vector<FilePath>& mountPoints() const { return m_mountPoints; }
    bool isMountPoint(const FilePath& path) const;
    /// Whether a mount point lies below the path. The path itself does not count.
    bool hasMountBelow(const FilePath& path) const;

private:
    std::vector<FilePath> m_mountPoints;
};

} // namespace quorvane
