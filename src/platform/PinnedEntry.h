// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "FileSystemCalls.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace quorvane {

/// A descriptor that closes itself.
class OwnedDescriptor
{
public:
    explicit OwnedDescriptor(int descriptor = -1)
        : m_descriptor(descriptor)
    {}
    OwnedDescriptor(OwnedDescriptor&& other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1))
    {}
    OwnedDescriptor& operator=(OwnedDescriptor&& other) noexcept
    {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }
    ~OwnedDescriptor();

    int get() const { return m_descriptor; }
    bool isOpen() const { return m_descriptor >= 0; }
    /// Hands the descriptor over to the caller, who closes it.
    int release() { return std::exchange(m_descriptor, -1); }

private:
    int m_descriptor;
};

/// An entry of the disk, reached from a folder without following a link on the way, and held: what
/// takes its name later is told apart from it. One thread at a time; works on paths beyond
/// PATH_MAX.
class PinnedEntry
{
public:
    enum class Failure : std::uint8_t {
        none,
        missing,    ///< no such entry, or its folder is not there
        behindLink, ///< a folder between the root and the entry is a link
        unreachable ///< no permission, a path that names "." or "..", or another fault
    };

    enum class RootLink : std::uint8_t { follow, refuse };

    /// Opens the folder of the entry. The root itself may lie below links and, unless that is
    /// refused, be one; what is below the root may not. A path that equals the root stands for the
    /// root folder's own entry. Reads nothing of the entry.
    static PinnedEntry reach(const FilePath& root, const FilePath& path,
                             RootLink rootLink = RootLink::follow);

    /// The path of a folder without a link on the way; absent when it cannot be opened.
    static std::optional<FilePath> realPathOf(const FilePath& folder);

    Failure failure() const { return m_failure; }
    /// The path without a link on the way, under which the kernel's tables know the entry. Valid
    /// without a failure.
    const FilePath& realPath() const { return m_realPath; }
    /// The root folder, or the folder around it where the path equals the root. Valid without a
    /// failure.
    const FolderIdentity& topIdentity() const { return m_topIdentity; }
    /// Opens the entry itself, a link as a link, without reading it or triggering a mount, and
    /// tells what it is. False when there is none or it does not answer; failure() tells which.
    bool pin(EntryStatus& status);
    /// After pin(): whether the name leads to the pinned entry still.
    bool isInPlace() const;
    enum class Renaming : std::uint8_t {
        renamed,
        nameTaken, ///< another entry has the name; nothing was touched
        refused    ///< the entry is no longer in its place, or the system refuses
    };
    /// After pin(): gives the entry another name in its folder, never in place of another entry
    /// (RENAME_NOREPLACE of rename(2); a look right before where a file system knows no such flag).
    Renaming renameTo(const std::string& name);

    /// After pin(): where the pinned entry is now; absent where the system does not tell.
    std::optional<FilePath> whereabouts() const;

private:
    void fail(int error);

    OwnedDescriptor m_folder;
    OwnedDescriptor m_entry;
    std::string m_name;
    FilePath m_realPath;
    FolderIdentity m_topIdentity;
    Failure m_failure = Failure::none;
};

} // namespace quorvane
