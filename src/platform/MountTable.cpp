// SPDX-License-Identifier: MIT
#include "MountTable.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <string>
#include <system_error>
#include <utility>

namespace quorvane {
namespace {

/// File systems that a server holds, and those of FUSE that do so. Not 9p: virtual machines reach
/// the disk of their own host by it.
constexpr std::array<std::string_view, 26> remoteTypes{"afs",
                                                       "beegfs",
                                                       "ceph",
                                                       "cifs",
                                                       "coda",
                                                       "davfs",
                                                       "fuse.ceph-fuse",
                                                       "fuse.curlftpfs",
                                                       "fuse.davfs",
                                                       "fuse.gcsfuse",
                                                       "fuse.glusterfs",
                                                       "fuse.google-drive-ocamlfuse",
                                                       "fuse.gvfsd-fuse",
                                                       "fuse.kio-fuse",
                                                       "fuse.rclone",
                                                       "fuse.s3fs",
                                                       "fuse.smbnetfs",
                                                       "fuse.sshfs",
                                                       "glusterfs",
                                                       "lustre",
                                                       "ncpfs",
                                                       "nfs",
                                                       "nfs4",
                                                       "orangefs",
                                                       "smb3",
                                                       "smbfs"};

/// File systems without a disk behind them that the kernel fills by itself.
constexpr std::array<std::string_view, 19> kernelMadeTypes{
    "autofs", "binfmt_misc", "bpf",       "cgroup",    "cgroup2", "configfs", "debugfs",
    "devpts", "efivarfs",    "fusectl",   "hugetlbfs", "mqueue",  "nsfs",     "proc",
    "pstore", "securityfs",  "selinuxfs", "sysfs",     "tracefs"};

bool isOctal(char c)
{
    return c >= '0' && c <= '7';
}

std::string withoutOctalEscapes(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isEscape = text[i] == '\\' && i + 3 < text.size() && text[i + 1] <= '3' &&
                              isOctal(text[i + 1]) && isOctal(text[i + 2]) && isOctal(text[i + 3]);
        if (!isEscape) {
            bytes.push_back(text[i]);
            continue;
        }
        const int value = (text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 + (text[i + 3] - '0');
        bytes.push_back(static_cast<char>(value));
        i += 3;
    }
    return bytes;
}

/// What stands before the next blank, taken off the front.
std::string_view takeField(std::string_view& line)
{
    const std::size_t end = std::min(line.find(' '), line.size());
    const std::string_view field = line.substr(0, end);
    line.remove_prefix(std::min(end + 1, line.size()));
    return field;
}

/// "MAJOR:MINOR".
std::optional<std::uint64_t> deviceFrom(std::string_view field)
{
    const char* const end = field.data() + field.size();
    unsigned major = 0;
    unsigned minor = 0;
    const auto first = std::from_chars(field.data(), end, major);
    if (first.ec != std::errc() || first.ptr == end || *first.ptr != ':') {
        return std::nullopt;
    }
    const auto second = std::from_chars(first.ptr + 1, end, minor);
    if (second.ec != std::errc() || second.ptr != end) {
        return std::nullopt;
    }
    // The layout of glibc's makedev(3), which st_dev has.
    constexpr unsigned lowMinor = 0xFFU;
    constexpr unsigned lowMajor = 0xFFFU;
    return (std::uint64_t{minor} & lowMinor) | (std::uint64_t{major & lowMajor} << 8U) |
           (std::uint64_t{minor & ~lowMinor} << 12U) | (std::uint64_t{major & ~lowMajor} << 32U);
}

MountKind kindOf(std::string_view type)
{
    if (std::find(remoteTypes.begin(), remoteTypes.end(), type) != remoteTypes.end()) {
        return MountKind::remote;
    }
    const bool isMadeUp =
        std::find(kernelMadeTypes.begin(), kernelMadeTypes.end(), type) != kernelMadeTypes.end();
    return isMadeUp ? MountKind::kernelMade : MountKind::local;
}

std::vector<MountedVolume> localVolumes(std::vector<FilePath> mountPoints)
{
    std::vector<MountedVolume> volumes;
    for (FilePath& point : mountPoints) {
        volumes.push_back({std::move(point), MountKind::local, 0});
    }
    return volumes;
}

} // namespace

MountTable::MountTable(std::vector<FilePath> mountPoints)
    : MountTable(localVolumes(std::move(mountPoints)))
{}

MountTable::MountTable(std::vector<MountedVolume> volumes)
    : m_volumes(std::move(volumes))
{
    for (const MountedVolume& volume : m_volumes) {
        m_mountPoints.push_back(volume.mountPoint);
    }
    std::sort(m_mountPoints.begin(), m_mountPoints.end());
    m_mountPoints.erase(std::unique(m_mountPoints.begin(), m_mountPoints.end()),
                        m_mountPoints.end());
}

MountTable MountTable::fromMountInfo(std::string_view text)
{
    std::vector<MountedVolume> volumes;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        // ID, parent, device, root of the mount, mount point, options, any number of optional
        // fields, "-", type, …
        std::string_view line = text.substr(0, end);
        takeField(line);
        takeField(line);
        const std::optional<std::uint64_t> device = deviceFrom(takeField(line));
        takeField(line);
        const std::string_view point = takeField(line);
        if (point.starts_with('/')) {
            while (!line.empty() && takeField(line) != "-") {
            }
            volumes.push_back({FilePath(withoutOctalEscapes(point)), kindOf(takeField(line)),
                               device.value_or(0)});
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return MountTable(std::move(volumes));
}

std::vector<RemoteMount> MountTable::remote() const
{
    std::vector<RemoteMount> remote;
    for (const MountedVolume& volume : m_volumes) {
        if (volume.kind == MountKind::remote && volume.device != 0) {
            remote.push_back({volume.mountPoint, volume.device});
        }
    }
    return remote;
}

bool MountTable::isMountPoint(const FilePath& path) const
{
    return std::binary_search(m_mountPoints.begin(), m_mountPoints.end(), path);
}

bool MountTable::hasMountBelow(const FilePath& path) const
{
    return std::any_of(m_mountPoints.begin(), m_mountPoints.end(), [&path](const FilePath& point) {
        return path.holds(point) && point != path;
    });
}

} // namespace quorvane
