// SPDX-License-Identifier: MIT
#include "FolderDescriptors.h"

#include <fcntl.h>
#include <sys/param.h>
#include <sys/stdio.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>

namespace quorvane {

int openFolder(const char* path)
{
    return open(path, O_EVTONLY | O_DIRECTORY | O_CLOEXEC);
}

int openFolderBelow(int folder, std::string_view relative)
{
    return openFolderStepByStep(folder, relative);
}

int openEntry(int folder, const char* name)
{
    // O_SYMLINK opens a link itself.
    return openat(folder, name, O_EVTONLY | O_SYMLINK | O_NONBLOCK | O_CLOEXEC);
}

bool renameWithoutReplacing(int folder, const char* name, const char* other)
{
    if (renameatx_np(folder, name, folder, other, RENAME_EXCL) == 0) {
        return true;
    }
    return errno == ENOTSUP && renameAfterALook(folder, name, other);
}

std::optional<FilePath> pathOf(int descriptor)
{
    std::array<char, MAXPATHLEN> buffer{};
    if (fcntl(descriptor, F_GETPATH, buffer.data()) != 0) {
        return std::nullopt;
    }
    return FilePath(std::string(buffer.data()));
}

} // namespace quorvane
