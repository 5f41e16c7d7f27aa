// SPDX-License-Identifier: MIT
#include "Leftovers.h"

#include "FileSystemCalls.h"
#include "FolderMeter.h"
#include "Text.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <unordered_map>
#include <utility>

namespace quorvane::Leftovers {
namespace {

/// One row of the table of a bundle's leftovers, below the home.
struct BundleRow
{
    std::string_view folder;
    std::string_view label;
    std::string_view suffix;
    bool isByName; ///< by the display name, else by the identifier
};

constexpr std::array<BundleRow, 8> bundleRows{{
    {"Library/Containers", "Container data", "", false},
    {"Library/Group Containers", "Group container", "", false},
    {"Library/Caches", "Caches", "", false},
    {"Library/Application Support", "Application Support", "", true},
    {"Library/Preferences", "Preferences", ".plist", false},
    {"Library/Logs", "Logs", "", true},
    {"Library/Saved Application State", "Saved State", ".savedState", false},
    {"Library/WebKit", "WebKit data", "", false},
}};

/// Folders that many programs share, or that some part of the desktop keeps its own things in.
constexpr std::string_view genericNames[] = {
    "app",
    "applications",
    "apps",
    "appimage",
    "apprun",
    "assets",
    "autostart",
    "backgrounds",
    "backup",
    "bash",
    "bin",
    "cache",
    "caches",
    "cloud",
    "common",
    "config",
    "containers",
    "cookies",
    "core",
    "crash",
    "data",
    "dconf",
    "default",
    "desktop",
    "documents",
    "downloads",
    "electron",
    "env",
    "environment.d",
    "files",
    "flatpak",
    "fontconfig",
    "fonts",
    "games",
    "gio",
    "glib-2.0",
    "gnome",
    "gnupg",
    "gtk",
    "gtk-2.0",
    "gtk-3.0",
    "gtk-4.0",
    "gvfs-metadata",
    "home",
    "icc",
    "icons",
    "images",
    "info",
    "install",
    "installer",
    "java",
    "kde",
    "keyrings",
    "launcher",
    "lib",
    "libvirt",
    "local",
    "locale",
    "log",
    "logs",
    "main",
    "man",
    "menus",
    "mesa_shader_cache",
    "mime",
    "misc",
    "music",
    "node",
    "package",
    "packages",
    "pictures",
    "pip",
    "pipewire",
    "plasma",
    "player",
    "plugins",
    "profiles",
    "public",
    "pulse",
    "python",
    "python3",
    "qt",
    "recent",
    "root",
    "run",
    "screenshots",
    "scripts",
    "sessions",
    "settings",
    "setup",
    "sh",
    "share",
    "sounds",
    "src",
    "start",
    "state",
    "storage",
    "sync",
    "system",
    "systemd",
    "telepathy",
    "temp",
    "templates",
    "test",
    "themes",
    "thumbnails",
    "tmp",
    "tools",
    "trash",
    "uninstall",
    "update",
    "updater",
    "updates",
    "user",
    "user-dirs.dirs",
    "videos",
    "viewer",
    "wrapper",
    "xdg",
    "xorg",
};

/// Of these, the ones that are shared below "Library", too: an application may well be called like
/// the others.
constexpr std::string_view genericBundleNames[] = {"caches", "data",    "fonts",  "logs",
                                                   "update", "updater", "updates"};

bool isGenericBundleName(std::string_view name)
{
    const std::string lower = lowercased(name);
    return std::find(std::begin(genericBundleNames), std::end(genericBundleNames), lower) !=
           std::end(genericBundleNames);
}

void addBundlePlaces(std::vector<Place>& places, const Names& names, const HomeFolders& folders)
{
    for (const BundleRow& row : bundleRows) {
        const std::string& name = row.isByName ? names.displayName : names.identifier;
        if (isPlainName(name) && !(row.isByName && isGenericBundleName(name))) {
            places.push_back(
                {folders.home.appending(row.folder).appending(name + std::string(row.suffix)),
                 row.label});
        }
    }
}

void addProgramPlaces(std::vector<Place>& places, const Names& names, const HomeFolders& folders)
{
    const std::pair<const FilePath*, std::string_view> tops[] = {
        {&folders.config, "Configuration"},
        {&folders.cache, "Caches"},
        {&folders.data, "Application data"},
        {&folders.state, "State"}};
    for (const auto& [top, label] : tops) {
        for (const std::string& name : names.programs) {
            if (isPlainName(name) && !isGenericName(name)) {
                places.push_back({top->appending(name), label});
            }
        }
    }
}

void addEntryPlaces(std::vector<Place>& places, const Names& names, const HomeFolders& folders)
{
    const std::pair<FilePath, std::string_view> tops[] = {
        {folders.config.appending("autostart"), "Autostart entry"},
        {folders.data.appending("applications"), "Desktop entry"}};
    for (const auto& [top, label] : tops) {
        for (const std::string& id : names.desktopIds) {
            if (isPlainName(id)) {
                places.push_back({top.appending(id + ".desktop"), label});
            }
        }
    }
}

/// For each path how many of the applications lead there.
std::unordered_map<std::string, std::size_t>
claimsOf(std::span<const std::vector<Place>> placesByApp)
{
    std::unordered_map<std::string, std::size_t> claims;
    for (const std::vector<Place>& places : placesByApp) {
        std::set<std::string_view> own;
        for (const Place& place : places) {
            if (own.insert(place.path.bytes()).second) {
                ++claims[place.path.bytes()];
            }
        }
    }
    return claims;
}

} // namespace

bool isPlainName(std::string_view name)
{
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

bool isGenericName(std::string_view name)
{
    const std::string lower = lowercased(name);
    return std::find(std::begin(genericNames), std::end(genericNames), lower) !=
           std::end(genericNames);
}

std::vector<Place> placesOf(const Names& names, const HomeFolders& folders)
{
    std::vector<Place> places;
    addBundlePlaces(places, names, folders);
    addProgramPlaces(places, names, folders);
    if (isPlainName(names.flatpak)) {
        places.push_back(
            {folders.home.appending(".var/app").appending(names.flatpak), "Flatpak data"});
    }
    if (isPlainName(names.snap)) {
        places.push_back({folders.home.appending("snap").appending(names.snap), "Snap data"});
    }
    addEntryPlaces(places, names, folders);
    // A name that stands for two things of the application's leads to one place all the same.
    std::set<std::string> seen;
    std::erase_if(places,
                  [&](const Place& place) { return !seen.insert(place.path.bytes()).second; });
    return places;
}

void attach(std::vector<UninstallableApp>& apps, std::span<const Names> names,
            const HomeFolders& folders,
            const std::function<bool(const UninstallableApp&, std::string_view name)>& isClaimed,
            const std::function<bool()>& isCancelled, FileSystemCalls& calls)
{
    std::vector<std::vector<Place>> placesByApp;
    placesByApp.reserve(apps.size());
    std::transform(names.begin(), names.end(), std::back_inserter(placesByApp),
                   [&](const Names& each) { return placesOf(each, folders); });
    const auto claims = claimsOf(placesByApp);
    std::vector<FilePath> paths;
    std::vector<std::pair<std::size_t, std::string_view>> owners; ///< application and label
    for (std::size_t i = 0; i < apps.size(); ++i) {
        for (const Place& place : placesByApp[i]) {
            if (claims.at(place.path.bytes()) == 1 &&
                !(isClaimed && isClaimed(apps[i], place.path.lastComponent()))) {
                paths.push_back(place.path);
                owners.emplace_back(i, place.label);
            }
        }
    }
    const std::vector<std::int64_t> bytes = directoryBytes(paths, isCancelled, calls);
    for (std::size_t i = 0; i < paths.size(); ++i) {
        if (bytes[i] >= 1) {
            const auto& [app, label] = owners[i];
            const std::optional<EntryStatus> seen = statusOf(paths[i], calls);
            apps[app].components.push_back(
                {std::move(paths[i]), bytes[i], std::string(label), seen});
        }
    }
}

} // namespace quorvane::Leftovers
