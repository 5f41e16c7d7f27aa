// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "FileSystemCalls.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace quorvane {

/// What a walk of one folder adds up. Sizes in bytes; the folders themselves are not in them.
struct FolderSums
{
    std::int64_t bytes = 0;          ///< st_size of everything that is no folder
    std::int64_t allocatedBytes = 0; ///< st_blocks × 512 of the regular files
    std::int64_t itemCount = 0;      ///< entries that are no folders
    /// Latest st_mtim among these entries, whole seconds since 1970; absent without any.
    std::optional<std::int64_t> lastModified;

    friend bool operator==(const FolderSums&, const FolderSums&) = default;
};

/// Adds up folders on the disk, several at once, with a few threads of its own and without building
/// a tree. Follows no link but one that stands in the very place of a folder it is given, and lists
/// no kernel-made file system. What cannot be read adds nothing. Blocks: not for the main thread.
class FolderMeter
{
public:
    struct Rules
    {
        bool skipsHidden = false; ///< passes over names that begin with a dot, and what is in them
        bool skipsPackages = false; ///< does not enter folders whose extension is "app"
        /// Does not enter folders on another file system than the one it was given.
        bool staysOnVolume = false;
    };

    /// Called from the meter's threads, one call at a time; each may be absent.
    struct Hooks
    {
        /// Polled for each folder and every few entries of a large one. From several threads.
        std::function<bool()> isCancelled;
        /// The first so many of the given folders are measured: once for each number, in order.
        std::function<void(std::size_t)> onMeasured;
        /// Folders listed so far, at most every 0.08 s.
        std::function<void(std::int64_t)> onFolders;
    };

    /// Folders that a search looks for, by the bytes of their names.
    struct Names
    {
        std::span<const std::string_view> wanted;
        std::span<const std::string_view> neverEntered;
    };

    struct Found
    {
        FilePath path;
        FolderSums sums;
    };

    explicit FolderMeter(const Rules& rules, Hooks hooks = {});
    FolderMeter(const Rules& rules, Hooks hooks, FileSystemCalls& calls);

    /// The sums of each folder, in the order given; absent for what is no folder, cannot be listed,
    /// or was not finished when the meter was cancelled.
    std::vector<std::optional<FolderSums>> measure(std::span<const FilePath> folders) const;

    /// Walks the folders below root and measures those with a wanted name, which are not searched
    /// any further. Of the rest, hidden ones and those never to be entered are passed over. In no
    /// particular order; when cancelled, those that were finished.
    std::vector<Found> search(const FilePath& root, const Names& names) const;

private:
    Rules m_rules;
    Hooks m_hooks;
    FileSystemCalls& m_calls;
};

/// lstat(2) of a path of any length; absent when it fails. Any thread.
std::optional<EntryStatus> statusOf(const FilePath& path, FileSystemCalls& calls);

/// Bytes on disk of what is at a path: of a folder the allocated sizes of all regular files in it,
/// those aside that a leading dot hides and what is in hidden folders; of anything else its size;
/// 0 where nothing is. A link to a folder gives the folder's bytes. Blocks like a meter.
std::int64_t directoryBytes(const FilePath& path);
std::int64_t directoryBytes(const FilePath& path, FileSystemCalls& calls);
/// The same for many paths at once, in their order; zeros when cancelled.
std::vector<std::int64_t> directoryBytes(std::span<const FilePath> paths,
                                         const std::function<bool()>& isCancelled,
                                         FileSystemCalls& calls);

} // namespace quorvane
