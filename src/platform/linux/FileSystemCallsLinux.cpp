// SPDX-License-Identifier: MIT
#include "MountTable.h"
#include "PosixFileSystemCalls.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string>

namespace quorvane {
namespace {

// linux/magic.h leaves out the file systems whose source keeps the number to itself.
constexpr unsigned long mqueueMagic = 0x19800202;
constexpr unsigned long configfsMagic = 0x62656570;
constexpr unsigned long fusectlMagic = 0x65735543;

constexpr std::array<unsigned long, 18> kernelMadeMagics{
    PROC_SUPER_MAGIC, SYSFS_MAGIC,      CGROUP_SUPER_MAGIC, CGROUP2_SUPER_MAGIC, DEBUGFS_MAGIC,
    TRACEFS_MAGIC,    SECURITYFS_MAGIC, BPF_FS_MAGIC,       DEVPTS_SUPER_MAGIC,  mqueueMagic,
    configfsMagic,    fusectlMagic,     PSTOREFS_MAGIC,     EFIVARFS_MAGIC,      BINFMTFS_MAGIC,
    HUGETLBFS_MAGIC,  SELINUX_MAGIC,    NSFS_MAGIC};

constexpr std::size_t listingBytes = std::size_t{64} << 10;

/// One record of getdents64(2); the kernel's header for it is not exported.
struct DirectoryRecord
{
    std::uint64_t inode;
    std::int64_t offset;
    std::uint16_t length;
    std::uint8_t type;
};
constexpr std::size_t recordNameOffset =
    offsetof(DirectoryRecord, type) + sizeof(DirectoryRecord::type);

NameList::Hint hintOf(std::uint8_t type)
{
    switch (type) {
    case DT_UNKNOWN:
        return NameList::Hint::unknown;
    case DT_DIR:
        return NameList::Hint::directory;
    default:
        return NameList::Hint::noDirectory;
    }
}

void appendRecords(const char* records, std::size_t size, NameList& names)
{
    for (std::size_t at = 0; at < size;) {
        std::uint16_t length = 0;
        std::memcpy(&length, records + at + offsetof(DirectoryRecord, length), sizeof length);
        std::uint8_t type = DT_UNKNOWN;
        std::memcpy(&type, records + at + offsetof(DirectoryRecord, type), sizeof type);
        const char* const name = records + at + recordNameOffset;
        at += length;
        if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'))) {
            continue;
        }
        const std::size_t nameLength = std::strlen(name);
        names.spans.push_back(
            {names.bytes.size(), static_cast<std::uint32_t>(nameLength), hintOf(type)});
        names.bytes.append(name, nameLength + 1);
    }
}

/// Where a descriptor leads, as a path of this process's namespace; empty when the kernel does not
/// tell.
std::string pathOf(int descriptor)
{
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    std::array<char, PATH_MAX> path{};
    const ssize_t length = readlink(link.c_str(), path.data(), path.size());
    return length <= 0 ? std::string() : std::string(path.data(), static_cast<std::size_t>(length));
}

/// A directory that lies on a file system of the automounter's own: what is mounted on the
/// directory itself would have been met in its place.
VolumeKind kindOfAutomount(int directory)
{
    const FilePath path(pathOf(directory));
    const std::optional<MountTable> mounts = MountTable::read();
    return mounts && !path.isEmpty() && mounts->hasMountBelow(path) ? VolumeKind::automountMap
                                                                    : VolumeKind::unusedAutomount;
}

class LinuxFileSystemCalls final : public PosixFileSystemCalls
{
public:
    using FileSystemCalls::appendNames;
    bool appendNames(int directory, NameList& names, const std::atomic<bool>& stops) override
    {
        alignas(std::uint64_t) static thread_local std::array<char, listingBytes> buffer;
        while (!stops.load(std::memory_order_relaxed)) {
            const long got = syscall(SYS_getdents64, directory, buffer.data(), buffer.size());
            if (got < 0 && errno == EINTR) {
                continue;
            }
            if (got <= 0) {
                return got == 0;
            }
            appendRecords(buffer.data(), static_cast<std::size_t>(got), names);
        }
        return true;
    }

    bool status(int directory, const char* name, EntryStatus& status) override
    {
        struct stat entry = {};
        if (fstatat(directory, name, &entry, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) != 0) {
            return false;
        }
        status = statusFrom(entry);
        return true;
    }

    bool creationDate(int directory, const char* name, std::int64_t& seconds) override
    {
        struct statx entry = {};
        constexpr int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;
        if (statx(directory, name, flags, STATX_BTIME, &entry) != 0 ||
            (entry.stx_mask & STATX_BTIME) == 0) {
            return false;
        }
        seconds = entry.stx_btime.tv_sec;
        return true;
    }

    VolumeKind volumeKind(int parent, const char* name) override
    {
        // A path descriptor reads nothing and triggers no automount.
        const int place = openat(parent, name, O_PATH | O_NOFOLLOW | O_CLOEXEC);
        if (place < 0) {
            return VolumeKind::ordinary;
        }
        struct statfs volume = {};
        const bool isKnown = fstatfs(place, &volume) == 0;
        const auto magic = static_cast<unsigned long>(volume.f_type) & 0xFFFFFFFFUL;
        VolumeKind kind = VolumeKind::ordinary;
        if (isKnown && magic == AUTOFS_SUPER_MAGIC) {
            kind = kindOfAutomount(place);
        } else if (isKnown && std::find(kernelMadeMagics.begin(), kernelMadeMagics.end(), magic) !=
                                  kernelMadeMagics.end()) {
            kind = VolumeKind::kernelMade;
        }
        ::close(place);
        return kind;
    }

    bool volumeCapacity(const char* path, VolumeCapacity& capacity) override
    {
        struct statvfs volume = {};
        if (statvfs(path, &volume) != 0) {
            return false;
        }
        capacity.totalBytes = std::uint64_t{volume.f_blocks} * volume.f_frsize;
        capacity.availableBytes = std::uint64_t{volume.f_bavail} * volume.f_frsize;
        return true;
    }
};

} // namespace

FileSystemCalls& FileSystemCalls::system()
{
    static LinuxFileSystemCalls calls;
    return calls;
}

} // namespace quorvane
