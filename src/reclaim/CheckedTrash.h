// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "FileSystemCalls.h"
#include "MountTable.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

namespace quorvane {

class FileNode;
class Trash;

/// What is to go to the Trash, and what it looked like when it was found. A plain value.
struct TrashRequest
{
    FilePath path;
    /// The folder that was scanned: nothing between it and the path may be a link. Equal to the
    /// path where the scanned folder itself is to go.
    FilePath root;
    /// Whether the root itself may be a link. That of a scan was none.
    bool mayRootBeLink = true;
    std::optional<FolderIdentity> rootIdentity;  ///< absent where no scan has seen it
    std::optional<EntryStatus::Kind> kind;       ///< absent where nobody has looked
    std::optional<std::int64_t> size;            ///< st_size of a regular file, bytes
    std::optional<std::int64_t> modifiedSeconds; ///< st_mtim of a regular file, seconds since 1970

    /// From a node of a scan. For a stand-alone node, which no scan saw, the root is the folder
    /// around it and all else is absent. Any thread.
    static TrashRequest of(const FileNode& node);
    /// From what an lstat(2) has told of a path, found in that folder.
    static TrashRequest of(const FilePath& path, const FilePath& root, const EntryStatus& status);

    friend bool operator==(const TrashRequest&, const TrashRequest&) = default;
};

/// What has become of a request. All but moved: the entry is where it was.
enum class TrashOutcome : std::uint8_t {
    moved,
    missing,        ///< nothing is there any more
    notPermitted,   ///< the user may not take the entry out of its folder
    readOnly,       ///< the volume takes no changes
    notOfferedHere, ///< the volume has no Trash and none can be made on it
    protectedPlace, ///< part of the system, the home folder, or a folder around it
    mountPoint,     ///< a volume is mounted on it
    holdsMount,     ///< a volume is mounted below it
    mountsUnknown,  ///< the system does not tell what is mounted
    behindLink,     ///< a folder on the way to it has become a link
    otherKind,      ///< something of another kind has taken its name
    changed,        ///< the file's size or date differs from the scanned one
    lastCopy,       ///< no other copy of a file that the finder found would be left
    failed          ///< anything else
};

/// The name of the value, for what machines read.
std::string_view nameOf(TrashOutcome outcome);

/// How the disk differs by now from what the request says; absent when it does not. Any thread;
/// blocks as long as the disk does.
std::optional<TrashOutcome> differenceOnDisk(const TrashRequest& request);

/// The one door through which anything of a person's goes to the Trash: it compares what is asked
/// for with the disk at the moment of the move. Any thread; a call takes as long as the disk.
///
/// GIO takes a path and writes it into the info file by which the desktop puts things back, so the
/// folder cannot be handed over as a descriptor (/proc/self/fd/N/name would be written there). The
/// checks therefore come right before the move.
class CheckedTrash
{
public:
    using MountReader = std::function<std::optional<MountTable>()>;

    /// home is never moved, nor a folder around it. readMounts: absent for the system's own table.
    CheckedTrash(Trash& trash, FilePath home, MountReader readMounts = {});

    /// Why the entry would stay if it was sent now, as far as looking at it can tell; absent for
    /// nothing in the way. Moves nothing.
    std::optional<TrashOutcome> obstacleTo(const TrashRequest& request) const;
    /// The same door with the table of mounts as it is now, for looking at many entries at once.
    CheckedTrash withOneMountTable() const;
    /// Moves the entry unless something is in the way.
    TrashOutcome moveToTrash(const TrashRequest& request) const;

private:
    Trash* m_trash;
    FilePath m_home;
    MountReader m_readMounts;
};

} // namespace quorvane
