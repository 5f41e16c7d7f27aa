// SPDX-License-Identifier: MIT
#include "PosixFileSystemCalls.h"

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
#include <cstddef>
#include <cstring>

namespace quorvane {
namespace {

// linux/magic.h leaves out the file systems whose source keeps the number to itself.
constexpr unsigned long mqueueMagic = 0x19800202;
constexpr unsigned long configfsMagic = 0x62656570;
constexpr unsigned long fusectlMagic = 0x65735543;

constexpr std::array<unsigned long, 19> kernelMadeMagics{
    PROC_SUPER_MAGIC, SYSFS_MAGIC,        CGROUP_SUPER_MAGIC, CGROUP2_SUPER_MAGIC, DEBUGFS_MAGIC,
    TRACEFS_MAGIC,    SECURITYFS_MAGIC,   BPF_FS_MAGIC,       DEVPTS_SUPER_MAGIC,  mqueueMagic,
    configfsMagic,    fusectlMagic,       PSTOREFS_MAGIC,     EFIVARFS_MAGIC,      BINFMTFS_MAGIC,
    HUGETLBFS_MAGIC,  AUTOFS_SUPER_MAGIC, SELINUX_MAGIC,      NSFS_MAGIC};

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

void appendRecords(const char* records, std::size_t size, NameList& names)
{
    for (std::size_t at = 0; at < size;) {
        std::uint16_t length = 0;
        std::memcpy(&length, records + at + offsetof(DirectoryRecord, length), sizeof length);
        const char* const name = records + at + recordNameOffset;
        at += length;
        if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'))) {
            continue;
        }
        const std::size_t nameLength = std::strlen(name);
        names.spans.push_back({names.bytes.size(), static_cast<std::uint32_t>(nameLength)});
        names.bytes.append(name, nameLength + 1);
    }
}

class LinuxFileSystemCalls final : public PosixFileSystemCalls
{
public:
    bool appendNames(int directory, NameList& names) override
    {
        alignas(std::uint64_t) static thread_local std::array<char, listingBytes> buffer;
        for (;;) {
            const long got = syscall(SYS_getdents64, directory, buffer.data(), buffer.size());
            if (got < 0 && errno == EINTR) {
                continue;
            }
            if (got <= 0) {
                return got == 0;
            }
            appendRecords(buffer.data(), static_cast<std::size_t>(got), names);
        }
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

    bool isKernelMade(int parent, const char* name) override
    {
        // A path descriptor reads nothing and triggers no automount.
        const int place = openat(parent, name, O_PATH | O_NOFOLLOW | O_CLOEXEC);
        if (place < 0) {
            return false;
        }
        struct statfs volume = {};
        const bool known = fstatfs(place, &volume) == 0;
        ::close(place);
        const auto magic = static_cast<unsigned long>(volume.f_type) & 0xFFFFFFFFUL;
        return known && std::find(kernelMadeMagics.begin(), kernelMadeMagics.end(), magic) !=
                            kernelMadeMagics.end();
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
