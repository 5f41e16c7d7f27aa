// SPDX-License-Identifier: MIT
#include "MountTable.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>

namespace quorvane {

std::optional<MountTable> MountTable::read()
{
    const int file = open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return std::nullopt;
    }
    std::string text;
    std::array<char, 1 << 16> buffer;
    ssize_t got = 0;
    do {
        got = ::read(file, buffer.data(), buffer.size());
        text.append(buffer.data(), got > 0 ? static_cast<std::size_t>(got) : 0);
    } while (got > 0 || (got < 0 && errno == EINTR));
    close(file);
    // The file is never empty: the root folder is a mount point itself.
    return got < 0 || text.empty() ? std::nullopt : std::optional(fromMountInfo(text));
}

} // namespace quorvane
