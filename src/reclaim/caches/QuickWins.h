// SPDX-License-Identifier: MIT
#pragma once

#include "BloatFilter.h"
#include "Evidence.h"
#include "FileNode.h"
#include "FilePath.h"
#include "FileSystemCalls.h"
#include "FolderMeter.h"
#include "HomeTables.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

/// One big folder that may go, with the reason. A plain value.
struct QuickWin
{
    std::string id;         ///< the path below the home, or "scan:{id of the node}"
    std::string name;       ///< bytes; for a scan hit the folder's own name
    FilePath url;           ///< the folder
    std::int64_t bytes = 0; ///< on disk for a row of a table, scannedBytes for a scan hit
    std::string detail;     ///< one sentence on why it can go
    Upkeep upkeep = Upkeep::remade;
    std::string_view command; ///< what removes it where the upkeep is ownTool; else empty
    Evidence evidence;
    /// What the disk told of the entry itself when it was found; absent for a scan hit.
    std::optional<EntryStatus> seen;

    QString formattedBytes() const;
    /// Whether it belongs to the installed system, of which nothing is ever moved.
    bool isOfSystem() const;
    /// Whether it can be put into the Trash queue at all.
    bool isStageable() const { return upkeep != Upkeep::ownTool && !isOfSystem(); }
    /// The switch that hides it: judged by name and whole path. Absent when it belongs to none.
    std::optional<std::string_view> bloatCategory() const;

    friend bool operator==(const QuickWin&, const QuickWin&) = default;
};

/// A short list of big folders that may go: fixed places in the home, and folders with well-known
/// names in the last scan.
namespace QuickWins {

struct FolderTarget
{
    std::string_view relativePath; ///< below the home
    std::string_view name;
    std::string_view detail;
    std::string_view caution; ///< empty where the folder is made again
};

inline constexpr std::size_t defaultLimit = 8;

std::span<const FolderTarget> homeTargets();
std::span<const std::string_view> scanTargetNames();

/// The home targets and the places of the Linux desktop that hold anything, largest first. Blocks
/// while several threads measure; empty when the hooks cancel it.
std::vector<QuickWin> detect(const HomeFolders& folders, FolderMeter::Hooks hooks = {});
std::vector<QuickWin> detect(const HomeFolders& folders, FolderMeter::Hooks hooks,
                             FileSystemCalls& calls, FileContentCalls& contents);

/// The largest folders of the tree with a well-known name, the root included; none without a root.
/// Those that touch one of the irreplaceable paths are left out. Evidence is not looked up. Any
/// thread, once the tree is finished.
std::vector<QuickWin> detect(const NodePointer& scanRoot, std::size_t limit = defaultLimit,
                             std::span<const FilePath> irreplaceable = {});

/// Adds to scan hits what speaks for them: files on the disk, and the latest date in the tree. A
/// hit that touches a place that may go by its own tool only gets the command of that place.
void addEvidence(std::vector<QuickWin>& scanHits, const FileNode& scanRoot,
                 std::span<const FoundPlace> ownToolPlaces, FileSystemCalls& calls,
                 FileContentCalls& contents);

/// Larger first, equal ones by name in byte order.
void sort(std::vector<QuickWin>& wins);

/// The wins less those whose family is hidden, order kept.
std::vector<QuickWin> filtered(const std::vector<QuickWin>& wins, const BloatKeys& hidden);

} // namespace QuickWins
} // namespace quorvane
