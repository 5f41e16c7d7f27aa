// SPDX-License-Identifier: MIT
#include "PosixFileSystemCalls.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>
#include <limits>
#include <memory>

namespace quorvane {
namespace {

constexpr int fewestDescriptors = 256;
constexpr rlim_t mostDescriptors = rlim_t{1} << 20;
constexpr std::int64_t statBlockBytes = 512;

EntryStatus::Kind kindOf(mode_t mode)
{
    switch (mode & S_IFMT) {
    case S_IFDIR:
        return EntryStatus::Kind::directory;
    case S_IFREG:
        return EntryStatus::Kind::regularFile;
    case S_IFLNK:
        return EntryStatus::Kind::symbolicLink;
    default:
        return EntryStatus::Kind::other;
    }
}

} // namespace

int FileSystemCalls::noDirectory()
{
    return AT_FDCWD;
}

bool FileSystemCalls::resolve(const char* path, std::string& resolved)
{
    const std::unique_ptr<char, decltype(&std::free)> found(realpath(path, nullptr), &std::free);
    if (found) {
        resolved = found.get();
    }
    return found != nullptr;
}

int PosixFileSystemCalls::openDirectory(int parent, const char* name)
{
    return openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

void PosixFileSystemCalls::close(int directory)
{
    ::close(directory);
}

bool PosixFileSystemCalls::readLink(int directory, const char* name, std::string& target)
{
    // A link is at most PATH_MAX long, its NUL left out.
    std::array<char, PATH_MAX> text;
    const ssize_t length = readlinkat(directory, name, text.data(), text.size());
    if (length < 0) {
        return false;
    }
    target.assign(text.data(), static_cast<std::size_t>(length));
    return true;
}

int PosixFileSystemCalls::descriptorLimit()
{
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) {
        return fewestDescriptors;
    }
    return static_cast<int>(std::min(limit.rlim_cur, mostDescriptors));
}

EntryStatus PosixFileSystemCalls::statusFrom(const struct stat& entry)
{
    EntryStatus status;
    status.kind = kindOf(entry.st_mode);
    status.isExecutable = (entry.st_mode & (S_IXUSR | S_IXGRP | S_IXOTH)) != 0;
    // A file system of a program (FUSE) may claim anything.
    constexpr std::int64_t maximum = std::numeric_limits<std::int64_t>::max();
    status.size = std::max<std::int64_t>(entry.st_size, 0);
    const auto blocks = std::max<std::int64_t>(entry.st_blocks, 0);
    status.allocatedBytes = std::min(blocks, maximum / statBlockBytes) * statBlockBytes;
    // Seconds alone, under the name that every system has for them.
    status.modifiedSeconds = entry.st_mtime;
    status.device = static_cast<std::uint64_t>(entry.st_dev);
    status.inode = static_cast<std::uint64_t>(entry.st_ino);
    return status;
}

} // namespace quorvane
