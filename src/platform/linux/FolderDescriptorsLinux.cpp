// SPDX-License-Identifier: MIT
#include "FolderDescriptors.h"

#include "PinnedEntry.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <string>

namespace quorvane {
namespace {

/// The first part of a relative path that fits one call, cut at a slash.
std::string_view firstStretch(std::string_view relative)
{
    if (relative.size() < PATH_MAX) {
        return relative;
    }
    // A component that is too long by itself goes to the system as it is, which refuses it.
    return relative.substr(0, std::min(relative.rfind('/', PATH_MAX - 1), relative.size()));
}

int openWithoutLinks(int folder, const std::string& relative)
{
    open_how how = {};
    how.flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
    how.resolve = RESOLVE_NO_SYMLINKS;
    return static_cast<int>(syscall(SYS_openat2, folder, relative.c_str(), &how, sizeof how));
}

} // namespace

int openFolder(const char* path)
{
    return open(path, O_PATH | O_DIRECTORY | O_CLOEXEC);
}

int openFolderBelow(int folder, std::string_view relative)
{
    std::string_view rest = relative;
    int last = fcntl(folder, F_DUPFD_CLOEXEC, 0);
    while (last >= 0 && !rest.empty()) {
        const OwnedDescriptor from(last);
        const std::string stretch(firstStretch(rest));
        last = openWithoutLinks(from.get(), stretch);
        // Linux before 5.6 has no such call, and a sandbox may refuse what it does not know.
        if (last < 0 && (errno == ENOSYS || errno == EPERM)) {
            return openFolderStepByStep(folder, relative);
        }
        rest.remove_prefix(std::min(stretch.size() + 1, rest.size()));
    }
    return last;
}

int openEntry(int folder, const char* name)
{
    return openat(folder, name, O_PATH | O_NOFOLLOW | O_CLOEXEC);
}

bool renameWithoutReplacing(int folder, const char* name, const char* other)
{
    constexpr unsigned noReplace = 1; // RENAME_NOREPLACE of linux/fs.h
    if (syscall(SYS_renameat2, folder, name, folder, other, noReplace) == 0) {
        return true;
    }
    // The file system or the kernel does not know the flag.
    return (errno == EINVAL || errno == ENOSYS) && renameAfterALook(folder, name, other);
}

std::optional<FilePath> pathOf(int descriptor)
{
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    std::array<char, PATH_MAX + 1> buffer;
    const ssize_t length = readlink(link.c_str(), buffer.data(), buffer.size());
    if (length <= 0 || static_cast<std::size_t>(length) > PATH_MAX || buffer[0] != '/') {
        return std::nullopt;
    }
    return FilePath(std::string(buffer.data(), static_cast<std::size_t>(length)));
}

} // namespace quorvane
