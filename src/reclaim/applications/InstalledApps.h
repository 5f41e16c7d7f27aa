// SPDX-License-Identifier: MIT
#pragma once

#include "DesktopEntry.h"
#include "FilePath.h"
#include "HomeTables.h"
#include "Leftovers.h"
#include "UninstallableApp.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace quorvane {

class DiskReader;

/// One application with the names that its leftovers go by.
struct FoundApp
{
    UninstallableApp app;
    Leftovers::Names names;
    /// Names of the programs below "/usr" that belong to it, for telling whether it runs.
    std::vector<FilePath> programs;
};

/// The kinds of applications that a desktop knows, each looked for in its own way. Sizes are left
/// out where they have to be measured: bundleBytes is 0 then. All functions run on any thread.
namespace InstalledApps {

/// Folders with the extension "app" in the folders, in their order; of several with one identifier
/// the last, and the paths of the earlier ones in earlierCopies.
struct Bundle
{
    FoundApp found;
    std::vector<FilePath> earlierCopies;
};
std::vector<Bundle> bundles(std::span<const FilePath> folders, const DiskReader& reader);

/// Executable files with the magic of an AppImage of type 2 in the folders themselves.
std::vector<FoundApp> appImages(std::span<const FilePath> folders,
                                std::span<const DesktopEntry> entries, const DiskReader& reader);
/// Whether the first bytes of a file are those of an AppImage of type 2.
bool isAppImage(std::string_view head);
/// The name of an AppImage without extension, architecture and version, by the naming that
/// AppImages keep to: "Halyard-4.2-x86_64.AppImage" gives "Halyard".
std::string productName(std::string_view fileName);

/// What the lists of the Debian package manager tell.
struct PackageLists
{
    struct Package
    {
        std::string name;                 ///< with ":arch" where the list has it
        std::vector<std::size_t> entries; ///< indices of the visible desktop entries that it owns
        std::string files; ///< its list, a path a line; empty unless it owns an entry
    };
    std::vector<Package> packages;                         ///< those that own an entry
    std::unordered_set<std::string> names;                 ///< of all, without ":arch"
    std::unordered_map<std::string, std::string> programs; ///< name in /usr/bin, to the package
    std::unordered_set<std::string> optFolders;            ///< names in /opt that a package owns
};
/// Reads every list below "var/lib/dpkg/info" of the system once.
PackageLists packageLists(const FilePath& system, std::span<const DesktopEntry> entries,
                          const DiskReader& reader);
/// Bytes on disk of the regular files that a list names. Any thread.
std::int64_t bytesOfListedFiles(std::string_view files, const FilePath& system,
                                const DiskReader& reader);
/// Packages that own one of the entries, measured: entries are those that lists was made with.
std::vector<FoundApp> debianPackages(const PackageLists& lists, const FilePath& system,
                                     std::span<const DesktopEntry> entries,
                                     const DiskReader& reader);

/// Folders in /opt that a visible desktop entry starts and no package owns.
std::vector<FoundApp> optFolders(const PackageLists& lists, const FilePath& system,
                                 std::span<const DesktopEntry> entries, const DiskReader& reader);

/// What "flatpak list --app --columns=application,name,size,installation" prints to a pipe.
std::vector<FoundApp> flatpaks(std::string_view listing, const HomeFolders& folders,
                               std::span<const DesktopEntry> entries);
/// "612.4 MB", "1.6 GB", "12 bytes" in powers of 1000, as GLib writes them; 0 for anything else.
std::int64_t bytesFromText(std::string_view text);

/// What "snap list" prints: its applications, without bases and the system's own snaps.
std::vector<FoundApp> snaps(std::string_view listing, const FilePath& system,
                            std::span<const DesktopEntry> entries, const DiskReader& reader);

} // namespace InstalledApps
} // namespace quorvane
