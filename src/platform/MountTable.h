// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quorvane {

/// Where the files of a mounted file system lie.
enum class MountKind : unsigned char {
    local,
    remote,    ///< on another machine: reading one may take any time
    kernelMade ///< nowhere: the kernel makes them up
};

/// Something mounted.
struct MountedVolume
{
    FilePath mountPoint;
    MountKind kind = MountKind::local;
    std::uint64_t device = 0; ///< st_dev of its entries; 0 where the system does not tell

    friend bool operator==(const MountedVolume&, const MountedVolume&) = default;
};

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
    /// Local volumes at these places.
    explicit MountTable(std::vector<FilePath> mountPoints);
    /// The volumes in the order of mounting.
    explicit MountTable(std::vector<MountedVolume> volumes);

    /// Asks the system; a few microseconds for each mount. Absent when it does not tell.
    static std::optional<MountTable> read();
    /// From the text of /proc/self/mountinfo (proc_pid_mountinfo(5)): the fifth field of each line,
    /// in which space, tab, newline and backslash stand as three octal digits. A line with fewer
    /// fields, or whose fifth is no absolute path, is passed over. A volume's
    /// device is the third field, and its kind follows from the type behind the field "-".
    static MountTable fromMountInfo(std::string_view text);

    /// Sorted; all of them absolute.
    const std::vector<FilePath>& mountPoints() const { return m_mountPoints; }
    /// In the order of mounting: of two at one place the later one hides the earlier one.
    const std::vector<MountedVolume>& volumes() const { return m_volumes; }
    /// In the order of mounting; without those whose device is not known.
    std::vector<RemoteMount> remote() const;
    bool isMountPoint(const FilePath& path) const;
    /// Whether a mount point lies below the path. The path itself does not count.
    bool hasMountBelow(const FilePath& path) const;

private:
    std::vector<FilePath> m_mountPoints;
    std::vector<MountedVolume> m_volumes;
};

} // namespace quorvane
