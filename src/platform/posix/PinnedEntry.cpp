// SPDX-License-Identifier: MIT
#include "PinnedEntry.h"

#include "FolderDescriptors.h"
#include "PosixFileSystemCalls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <utility>

namespace quorvane {
namespace {

/// Whether a path that is taken apart at its slashes leads downwards all the way.
bool leadsDownwards(std::string_view relative)
{
    for (;;) {
        const std::size_t slash = relative.find('/');
        const std::string_view component = relative.substr(0, slash);
        if (component.empty() || component == "." || component == "..") {
            return false;
        }
        if (slash == std::string_view::npos) {
            return true;
        }
        relative.remove_prefix(slash + 1);
    }
}

} // namespace

OwnedDescriptor::~OwnedDescriptor()
{
    if (isOpen()) {
        close(m_descriptor);
    }
}

int openFolderStepByStep(int folder, std::string_view relative)
{
    OwnedDescriptor here(openEntry(folder, "."));
    while (here.isOpen() && !relative.empty()) {
        const std::size_t slash = std::min(relative.find('/'), relative.size());
        const std::string component(relative.substr(0, slash));
        relative.remove_prefix(std::min(slash + 1, relative.size()));
        OwnedDescriptor next(openEntry(here.get(), component.c_str()));
        struct stat entry = {};
        if (next.isOpen() && (fstat(next.get(), &entry) != 0 || !S_ISDIR(entry.st_mode))) {
            errno = S_ISLNK(entry.st_mode) ? ELOOP : ENOTDIR;
            return -1;
        }
        here = std::move(next);
    }
    return here.release();
}

bool renameAfterALook(int folder, const char* name, const char* other)
{
    struct stat taken = {};
    if (fstatat(folder, other, &taken, AT_SYMLINK_NOFOLLOW) == 0) {
        errno = EEXIST;
        return false;
    }
    return errno == ENOENT && renameat(folder, name, folder, other) == 0; // the one rename
}

PinnedEntry PinnedEntry::reach(const FilePath& root, const FilePath& path, RootLink rootLink)
{
    PinnedEntry entry;
    const FilePath top = path == root ? root.parent() : root;
    std::string_view relative = path.bytes();
    const std::size_t prefix = top.bytes() == "/" ? 1 : top.bytes().size() + 1;
    if (!top.bytes().starts_with('/') || !top.holds(path) || relative.size() <= prefix) {
        entry.m_failure = Failure::unreachable;
        return entry;
    }
    relative.remove_prefix(prefix);
    if (!leadsDownwards(relative)) {
        entry.m_failure = Failure::unreachable;
        return entry;
    }
    const std::size_t slash = relative.rfind('/');
    const std::string_view folders =
        slash == std::string_view::npos ? std::string_view() : relative.substr(0, slash);
    entry.m_name = std::string(relative.substr(folders.empty() ? 0 : slash + 1));
    const OwnedDescriptor topFolder(openFolder(top.bytes().c_str()));
    if (!topFolder.isOpen()) {
        entry.fail(errno);
        return entry;
    }
    struct stat found = {};
    if (fstat(topFolder.get(), &found) != 0) {
        entry.fail(errno);
        return entry;
    }
    entry.m_topIdentity = {static_cast<std::uint64_t>(found.st_dev),
                           static_cast<std::uint64_t>(found.st_ino)};
    if (rootLink == RootLink::refuse && lstat(top.bytes().c_str(), &found) == 0 &&
        S_ISLNK(found.st_mode)) {
        entry.m_failure = Failure::behindLink;
        return entry;
    }
    entry.m_folder = OwnedDescriptor(openFolderBelow(topFolder.get(), folders));
    if (!entry.m_folder.isOpen()) {
        entry.fail(errno);
        return entry;
    }
    // No link lies below it, so the real path goes on as the given one does.
    const std::optional<FilePath> realTop = pathOf(topFolder.get());
    if (!realTop) {
        entry.m_failure = Failure::unreachable;
        return entry;
    }
    entry.m_realPath = realTop->appending(relative);
    return entry;
}

std::optional<FilePath> PinnedEntry::realPathOf(const FilePath& folder)
{
    const OwnedDescriptor opened(openFolder(folder.bytes().c_str()));
    return opened.isOpen() ? pathOf(opened.get()) : std::nullopt;
}

bool PinnedEntry::pin(EntryStatus& status)
{
    m_entry = OwnedDescriptor(openEntry(m_folder.get(), m_name.c_str()));
    struct stat found = {};
    if (!m_entry.isOpen() || fstat(m_entry.get(), &found) != 0) {
        fail(errno);
        return false;
    }
    status = PosixFileSystemCalls::statusFrom(found);
    return true;
}

bool PinnedEntry::isInPlace() const
{
    const OwnedDescriptor now(openEntry(m_folder.get(), m_name.c_str()));
    struct stat pinned = {};
    struct stat found = {};
    return now.isOpen() && fstat(now.get(), &found) == 0 && fstat(m_entry.get(), &pinned) == 0 &&
           found.st_dev == pinned.st_dev && found.st_ino == pinned.st_ino;
}

PinnedEntry::Renaming PinnedEntry::renameTo(const std::string& name)
{
    if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos ||
        !isInPlace()) {
        return Renaming::refused;
    }
    if (!renameWithoutReplacing(m_folder.get(), m_name.c_str(), name.c_str())) {
        return errno == EEXIST ? Renaming::nameTaken : Renaming::refused;
    }
    m_realPath = m_realPath.parent().appending(name);
    m_name = name;
    return Renaming::renamed;
}

std::optional<FilePath> PinnedEntry::whereabouts() const
{
    return pathOf(m_entry.get());
}

void PinnedEntry::fail(int error)
{
    m_failure = error == ENOENT || error == ENOTDIR ? Failure::missing
                : error == ELOOP                    ? Failure::behindLink
                                                    : Failure::unreachable;
}

} // namespace quorvane
