// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "HomeTables.h"
#include "Programs.h"
#include "UninstallableApp.h"

#include <functional>
#include <span>
#include <string>
#include <vector>

namespace quorvane {

class FileContentCalls;
class FileSystemCalls;

/// Installed applications with everything that each leaves behind.
namespace AppUninstaller {

/// "/Applications", then "Applications" in the home where that exists.
std::vector<FilePath> defaultLocations(const FilePath& home, FileSystemCalls& calls);

/// The bundles in the folders, with their sizes and leftovers below the home: larger totals first,
/// equal ones by name. One row for an identifier, with the path of the last and the bytes of all
/// copies. Blocks while several threads measure; empty when cancelled.
std::vector<UninstallableApp> scanApplications(std::span<const FilePath> sourceDirectories,
                                               const HomeFolders& folders,
                                               const std::function<bool()>& isCancelled = {});
std::vector<UninstallableApp> scanApplications(std::span<const FilePath> sourceDirectories,
                                               const HomeFolders& folders,
                                               const std::function<bool()>& isCancelled,
                                               FileSystemCalls& calls, FileContentCalls& contents);

/// Where applications of every kind are looked for. A plain value.
struct Sources
{
    HomeFolders folders;
    std::vector<FilePath> bundleFolders;
    std::vector<FilePath> appImageFolders;
    /// Of desktop entries; those of an earlier folder hide those of a later one.
    std::vector<FilePath> entryFolders;
    std::string locale;                ///< for names, for example "de_DE"
    std::vector<std::string> desktops; ///< names of the running desktop

    /// The folders of a home and of the system below folders.system, with what XDG_DATA_DIRS,
    /// XDG_CURRENT_DESKTOP and the locale say where home is the user's own.
    static Sources of(const HomeFolders& folders, FileSystemCalls& calls);
};

/// Applications of every kind, sorted as above, with what runs marked. Asks Flatpak and snap where
/// they are installed. Blocks; empty when cancelled.
std::vector<UninstallableApp> allApplications(const Sources& sources,
                                              const std::function<bool()>& isCancelled,
                                              FileSystemCalls& calls, FileContentCalls& contents,
                                              Programs& programs);

/// Larger totals first, equal ones by name in byte order.
void sort(std::vector<UninstallableApp>& apps);

/// Whether one of the running programs belongs to the application. programs are the paths, links
/// followed, of what a package starts.
bool isRunning(const UninstallableApp& app, std::span<const FilePath> programs,
               std::span<const Programs::Running> running);

} // namespace AppUninstaller
} // namespace quorvane
