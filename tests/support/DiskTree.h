// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace quorvane {

/// A temporary folder on the disk, built entry by entry and removed whole at the end, whatever it
/// holds by then. Paths given are relative to it and are bytes; missing folders on the way are
/// made. Every call that fails throws std::system_error.
class DiskTree
{
public:
    enum class Place {
        temporaryFolder,
        memory ///< a file system in memory where there is one, for trees of thousands of entries
    };

    explicit DiskTree(Place place = Place::temporaryFolder);
    DiskTree(const DiskTree&) = delete;
    DiskTree& operator=(const DiskTree&) = delete;
    /// Removes unreadable folders and chains of any depth, too.
    ~DiskTree();

    const FilePath& root() const { return m_root; }
    FilePath path(std::string_view relative) const { return m_root.appending(relative); }

    void folder(std::string_view relative);
    /// A regular file of that many bytes, all written.
    void file(std::string_view relative, std::int64_t bytes = 0);
    void fileWithContents(std::string_view relative, std::string_view contents);
    /// A regular file of that many bytes of which none is written.
    void hole(std::string_view relative, std::int64_t bytes);
    void hardLink(std::string_view existing, std::string_view relative);
    /// The target is taken as it stands and need not exist.
    void symbolicLink(std::string_view target, std::string_view relative);
    void fifo(std::string_view relative);
    void socket(std::string_view relative);
    /// As many folders inside one another, each called name. Reaches beyond PATH_MAX.
    void chain(std::string_view relative, int depth, std::string_view name = "d");

    void mode(std::string_view relative, mode_t mode);
    void modified(std::string_view relative, std::int64_t seconds);
    /// Removes the entry and all that is in it; nothing when it is not there.
    void remove(std::string_view relative);

private:
    std::string placeFor(std::string_view relative);

    FilePath m_root;
};

} // namespace quorvane
