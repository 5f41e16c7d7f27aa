// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

class FileContentCalls;
class FileSystemCalls;
class MountTable;

/// Where one user's folders are: the home and, by the XDG Base Directory Specification, the places
/// that applications keep their files in. A plain value.
struct HomeFolders
{
    FilePath home;
    FilePath cache;
    FilePath config;
    FilePath data;
    FilePath state;
    /// What paths of the whole machine are below: "/", or empty to leave those rows out.
    FilePath system;
    /// Where Steam keeps games, and the tops of mounted volumes: what findPlacesOutside() found.
    std::vector<FilePath> steamLibraries = {};
    std::vector<FilePath> mounts = {};

    /// The defaults: ".cache", ".config", ".local/share" and ".local/state"; no system.
    static HomeFolders below(const FilePath& home);
    /// The same with the XDG variables of the environment. A variable that is not absolute is
    /// ignored, as freedesktop.org demands; so is one that leads out of a home that is not
    /// $HOME, because it belongs to another user.
    static HomeFolders fromEnvironment(const FilePath& home);

    /// Asks Steam's own list where its libraries are, and takes the mounts that are no other
    /// machine's and that no automounter would have to make first. Blocks; not for the main thread.
    void findPlacesOutside(const MountTable& mountTable, FileSystemCalls& calls,
                           FileContentCalls& contents);
    /// The same with the system's own table, and with none where no system is looked at.
    void findPlacesOutside(FileSystemCalls& calls, FileContentCalls& contents);
};

/// What it takes to have a folder back.
enum class Upkeep : unsigned char {
    remade, ///< made again by itself
    costly, ///< costs a download or a long rebuild
    ownTool ///< may go by its own tool or an administrator only: never staged
};

/// Families of developer caches, in the order of their sections.
enum class CacheCategory : unsigned char { xcode, packageManagers, languageCaches, buildDirs };

/// One row of the tables that go beyond the fixed ones.
struct HomePlace
{
    enum class Base : unsigned char { home, cache, config, data, system, steam, mount };

    Base base;
    /// Below the base. A component "*" stands for any one that does not begin with a dot.
    std::string_view path;
    std::string_view name;   ///< "*" in it is replaced by what the path's "*" stood for
    std::string_view detail; ///< one sentence: what it is, and how it comes back
    Upkeep upkeep;
    std::optional<CacheCategory> category; ///< absent for what is not a developer's cache
    std::string_view command;              ///< what removes it, where the upkeep is ownTool
};

/// The rows for the Linux desktop. Each path stands in the documentation of its tool.
std::span<const HomePlace> linuxPlaces();

/// A row with its "*" resolved.
struct FoundPlace
{
    const HomePlace* place = nullptr;
    FilePath path;
    std::string name;
    std::string id; ///< the path below the home, or the whole path outside
};

/// Every path that the rows stand for: one each, and for a row with a "*" one for each folder that
/// is there. In table order. Any thread; lists a folder for each "*".
std::vector<FoundPlace> resolvedPlaces(const HomeFolders& folders, FileSystemCalls& calls);

/// Those of the resolved places that are there and may go by their own tool only. Any thread.
std::vector<FoundPlace> ownToolPlaces(const HomeFolders& folders, FileSystemCalls& calls);

/// The first of the places that the folder is, lies in, or holds; null for none.
const FoundPlace* placeTouching(const FilePath& folder, std::span<const FoundPlace> places);

/// What is there of the things that nothing brings back: logins, profiles, saved games, machines,
/// volumes, the Trash. No row may be one of these, lie in one, or hold one. Any thread.
std::vector<FilePath> irreplaceablePaths(const HomeFolders& folders, FileSystemCalls& calls);

/// Whether the folder is one of the paths, lies in one, or holds one.
bool touches(const FilePath& folder, std::span<const FilePath> irreplaceable);

} // namespace quorvane
