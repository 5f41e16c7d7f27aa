// SPDX-License-Identifier: MIT
#include "PosixFileContentCalls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>

namespace quorvane {

int PosixFileContentCalls::open(int parent, const char* name)
{
    return openWith(parent, name, 0);
}

int PosixFileContentCalls::openWith(int parent, const char* name, int moreFlags)
{
    constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    int file = -1;
    do {
        file = openat(parent, name, flags | moreFlags);
    } while (file < 0 && errno == EINTR);
    return file;
}

bool PosixFileContentCalls::status(int file, OpenFileStatus& status)
{
    struct stat entry = {};
    if (fstat(file, &entry) != 0) {
        return false;
    }
    status.isRegularFile = S_ISREG(entry.st_mode);
    status.changedSeconds = std::max<std::int64_t>(entry.st_ctime, entry.st_mtime);
    status.device = static_cast<std::uint64_t>(entry.st_dev);
    status.inode = entry.st_ino;
    status.links = entry.st_nlink;
    status.bytes = entry.st_size;
    status.modifiedSeconds = entry.st_mtime;
    return true;
}

std::int64_t PosixFileContentCalls::read(int file, std::span<std::byte> room)
{
    ssize_t got = -1;
    do {
        got = ::read(file, room.data(), room.size());
    } while (got < 0 && errno == EINTR);
    return got;
}

bool PosixFileContentCalls::seek(int file, std::int64_t position)
{
    return lseek(file, position, SEEK_SET) == position;
}

FileContentCalls::DataRange PosixFileContentCalls::dataFrom(int file, std::int64_t position)
{
    constexpr std::int64_t last = std::numeric_limits<std::int64_t>::max();
    const off_t begin = lseek(file, position, SEEK_DATA);
    if (begin < 0) {
        return errno == ENXIO ? DataRange{last, last} : DataRange{position, last};
    }
    const off_t end = lseek(file, begin, SEEK_HOLE);
    return {begin, end > begin ? end : last};
}

void PosixFileContentCalls::close(int file)
{
    ::close(file);
}

} // namespace quorvane
