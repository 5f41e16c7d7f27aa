// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "HomeTables.h"
#include "UninstallableApp.h"

#include <functional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

class FileSystemCalls;

/// Where an application leaves things behind: by its exact identifiers in fixed places of the home,
/// and nowhere else.
namespace Leftovers {

/// Whether a name can stand for one entry of a folder: not empty, not "." or "..", and without a
/// separator or a NUL.
bool isPlainName(std::string_view name);

/// Whether a folder of that name in a shared place is likely to be somebody else's: "data",
/// "Update", "fonts", "applications". Without regard to case.
bool isGenericName(std::string_view name);

/// The names that an application is known by. Each is used exactly as it stands.
struct Names
{
    std::string identifier;              ///< of a bundle
    std::string displayName;             ///< of a bundle: the file name less its extension
    std::vector<std::string> programs;   ///< package, desktop ids, binary
    std::vector<std::string> desktopIds; ///< of the entries that start it
    std::string flatpak;
    std::string snap;
};

/// One place where something of the application's may be.
struct Place
{
    FilePath path;
    std::string_view label;
};

/// Every place that the names lead to, in table order, whether or not anything is there. A name
/// that is not plain, or generic where it is no identifier, leads nowhere.
std::vector<Place> placesOf(const Names& names, const HomeFolders& folders);

/// Gives each application what is there of its places and holds anything. A place that several of
/// the applications lead to, or of which isClaimed says that somebody else does, goes to none.
/// names[i] are those of apps[i]. Blocks while several threads measure.
void attach(std::vector<UninstallableApp>& apps, std::span<const Names> names,
            const HomeFolders& folders,
            const std::function<bool(const UninstallableApp&, std::string_view name)>& isClaimed,
            const std::function<bool()>& isCancelled, FileSystemCalls& calls);

} // namespace Leftovers
} // namespace quorvane
