// SPDX-License-Identifier: MIT
#pragma once

#include "Evidence.h"
#include "FilePath.h"
#include "FileSystemCalls.h"
#include "FolderMeter.h"
#include "HomeTables.h"

#include <QString>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

/// Developers' caches in fixed places of the home, and build folders anywhere in it.
namespace DevCacheCleaner {

using Category = CacheCategory;

inline constexpr std::array allCategories{Category::xcode, Category::packageManagers,
                                          Category::languageCaches, Category::buildDirs};

/// The case's name, for example "packageManagers".
std::string_view rawValue(Category category);
QString displayName(Category category);
/// A symbol name.
std::string_view systemImage(Category category);

/// One row of the fixed list.
struct Location
{
    std::string_view name;
    std::string_view subpath; ///< below the home
    Category category;
};

std::span<const Location> curatedLocations();
std::span<const std::string_view> buildDirectoryNames();

/// One cache on the disk. Its path is its identity. A plain value.
struct CacheItem
{
    std::string name;
    FilePath path;
    Category category = Category::buildDirs;
    std::int64_t bytes = 0;     ///< sum of file sizes
    std::int64_t itemCount = 0; ///< entries that are no folders
    /// Latest modification of any of these, whole seconds since 1970.
    std::optional<std::int64_t> lastModified;
    Upkeep upkeep = Upkeep::remade;
    std::string_view detail;  ///< one sentence; empty for rows that have none
    std::string_view command; ///< what removes it where the upkeep is ownTool; else empty
    Evidence evidence;
    /// What the disk told of the entry itself when it was found.
    std::optional<EntryStatus> seen;
    /// No link lay between this folder and the path then.
    FilePath root = {};

    const std::string& id() const { return path.bytes(); }
    /// Whether it may be moved to the Trash at all.
    bool isMovable() const { return upkeep != Upkeep::ownTool; }
    QString formattedBytes() const;
    /// "1 item", else "{n} items".
    QString formattedItems() const;

    friend bool operator==(const CacheItem&, const CacheItem&) = default;
};

/// Fraction done, 0 to 1. Called from the threads that measure, one call at a time.
using Progress = std::function<void(double)>;
using IsCancelled = std::function<bool()>;

struct Metrics
{
    std::int64_t bytes = 0;
    std::int64_t count = 0;
    std::optional<std::int64_t> modified;
};

/// Sums of a folder, hidden files included, packages not entered; absent unless the path is an
/// existing folder that can be listed. An empty one gives zeros.
std::optional<Metrics> metrics(const FilePath& path);
std::optional<CacheItem> item(const Location& location, const FilePath& home);

/// The fixed list and the developer places of the Linux desktop that exist, largest first and equal
/// ones in table order. Reports i over the number of rows once row i and all before it are
/// measured, for i = 0, 5, 10, …, then 1. Empty when cancelled.
std::vector<CacheItem> scanCurated(const HomeFolders& folders, const Progress& progress = {},
                                   const IsCancelled& isCancelled = {});
/// onMeasured is told how many rows are measured.
std::vector<CacheItem> scanCurated(const HomeFolders& folders, const Progress& progress,
                                   const IsCancelled& isCancelled,
                                   const std::function<void(std::size_t)>& onMeasured,
                                   FileSystemCalls& calls, FileContentCalls& contents);

/// Folders with one of the names anywhere below the home, without those inside another one, hidden
/// folders, ".git", ".Trash" and "Library", and without leaving the home's file system. Largest
/// first, equal ones by path; then reports 1. When cancelled: what has been measured so far, in no
/// order. onFolders is told how many folders have been listed.
std::vector<CacheItem>
findBuildDirectories(const HomeFolders& folders,
                     std::span<const std::string_view> names = buildDirectoryNames(),
                     const Progress& progress = {}, const IsCancelled& isCancelled = {},
                     const std::function<void(std::int64_t)>& onFolders = {});
std::vector<CacheItem> findBuildDirectories(const HomeFolders& folders,
                                            std::span<const std::string_view> names,
                                            const Progress& progress,
                                            const IsCancelled& isCancelled,
                                            const std::function<void(std::int64_t)>& onFolders,
                                            FileSystemCalls& calls, FileContentCalls& contents);

/// The items with the incoming ones in the place of those with the same path, largest first; just
/// the incoming ones where there are none.
std::vector<CacheItem> merged(const std::vector<CacheItem>& items,
                              const std::vector<CacheItem>& incoming);

/// Bytes of all items, those that lie inside another one not counted again.
std::int64_t totalBytes(std::span<const CacheItem> items);

} // namespace DevCacheCleaner
} // namespace quorvane
