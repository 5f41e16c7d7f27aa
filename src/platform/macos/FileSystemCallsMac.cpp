// SPDX-License-Identifier: MIT
#include "PosixFileSystemCalls.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/param.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>

namespace quorvane {
namespace {

/// Volumes that hold no disk space: device nodes, descriptors, and folders that wait for a mount.
constexpr std::array<std::string_view, 3> kernelMadeTypes{"devfs", "fdesc", "autofs"};

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

class MacFileSystemCalls final : public PosixFileSystemCalls
{
public:
    using FileSystemCalls::appendNames;
    bool appendNames(int directory, NameList& names, const std::atomic<bool>& stops) override
    {
        // closedir(3) closes the descriptor that it was given, so the listing takes one of its own.
        const int own = fcntl(directory, F_DUPFD_CLOEXEC, 0);
        DIR* const listing = own < 0 ? nullptr : fdopendir(own);
        if (listing == nullptr) {
            if (own >= 0) {
                ::close(own);
            }
            return false;
        }
        // The two descriptors share one position.
        rewinddir(listing);
        bool isComplete = true;
        while (!stops.load(std::memory_order_relaxed)) {
            errno = 0;
            const dirent* const entry = readdir(listing);
            if (entry == nullptr) {
                isComplete = errno == 0;
                break;
            }
            const std::string_view name(entry->d_name, entry->d_namlen);
            if (name != "." && name != "..") {
                names.spans.push_back({names.bytes.size(), static_cast<std::uint32_t>(name.size()),
                                       hintOf(entry->d_type)});
                names.bytes.append(name).push_back('\0');
            }
        }
        closedir(listing);
        return isComplete;
    }

    bool status(int directory, const char* name, EntryStatus& status) override
    {
        struct stat entry = {};
        if (fstatat(directory, name, &entry, AT_SYMLINK_NOFOLLOW) != 0) {
            return false;
        }
        status = statusFrom(entry);
        return true;
    }

    bool creationDate(int directory, const char* name, std::int64_t& seconds) override
    {
        struct stat entry = {};
        if (fstatat(directory, name, &entry, AT_SYMLINK_NOFOLLOW) != 0) {
            return false;
        }
        seconds = entry.st_birthtimespec.tv_sec;
        return true;
    }

    VolumeKind volumeKind(int parent, const char* name) override
    {
        // A descriptor for events alone does not keep the volume from being unmounted.
        const int place = openat(parent, name, O_EVTONLY | O_NOFOLLOW | O_CLOEXEC);
        if (place < 0) {
            return VolumeKind::ordinary;
        }
        struct statfs volume = {};
        const bool isKnown = fstatfs(place, &volume) == 0;
        ::close(place);
        const std::string_view type(volume.f_fstypename);
        const bool isMadeUp = isKnown && std::find(kernelMadeTypes.begin(), kernelMadeTypes.end(),
                                                   type) != kernelMadeTypes.end();
        return isMadeUp ? VolumeKind::kernelMade : VolumeKind::ordinary;
    }

    bool volumeCapacity(const char* path, VolumeCapacity& capacity) override
    {
        // statvfs(3) counts blocks in 32 bits here, too few for a large volume.
        struct statfs volume = {};
        if (statfs(path, &volume) != 0) {
            return false;
        }
        capacity.totalBytes = std::uint64_t{volume.f_blocks} * volume.f_bsize;
        capacity.availableBytes = std::uint64_t{volume.f_bavail} * volume.f_bsize;
        return true;
    }
};

} // namespace

FileSystemCalls& FileSystemCalls::system()
{
    static MacFileSystemCalls calls;
    return calls;
}

} // namespace quorvane
