// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <optional>
#include <string_view>
#include <vector>

namespace quorvane {

/// Which folders are somebody's Trash, by their paths, which hold no link: the home Trash, and at
/// the top of every mount ".Trash-UID" and ".Trash/UID" (Trash specification 1.0 of
/// freedesktop.org) and
/// ".Trashes". A plain value. Any thread.
class TrashFolders
{
public:
    /// dataHome: $XDG_DATA_HOME or what stands for it; home: the user's. Without the mount points
    /// every folder counts as the top of a mount.
    TrashFolders(const FilePath& dataHome, const FilePath& home,
                 std::optional<std::vector<FilePath>> mountPoints);
    /// The system's own, as it is now.
    static TrashFolders ofSystem();

    /// Whether a folder of that name can be a Trash at all; cheap.
    static bool mayBeTrash(std::string_view name);
    /// Whether that folder is a Trash.
    bool isTrash(const FilePath& folder) const;
    /// Whether the path is a Trash or lies in one.
    bool isInTrash(const FilePath& path) const;

private:
    bool isMountTop(const FilePath& folder) const;

    std::vector<FilePath> m_homeTrashes;
    std::optional<std::vector<FilePath>> m_mountPoints; ///< sorted
};

} // namespace quorvane
