// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "FileSystemCalls.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quorvane {

/// One thing that an application leaves behind.
struct UninstallComponent
{
    FilePath url;
    std::int64_t bytes = 0; ///< at least 1
    std::string label;      ///< kind of leftover
    /// What the disk told of it when it was found.
    std::optional<EntryStatus> seen = {};

    QString formattedBytes() const;

    friend bool operator==(const UninstallComponent&, const UninstallComponent&) = default;
};

enum class AppKind : unsigned char { bundle, appImage, folder, flatpak, snap, package };

/// The kind as it stands on a row, for example "AppImage".
QString displayName(AppKind kind);

/// One installed application with everything that it leaves behind. A plain value.
struct UninstallableApp
{
    std::string id;   ///< tells it from every other one
    std::string name; ///< as the desktop shows it; of a bundle its file name less the extension
    FilePath bundleURL;
    std::int64_t bundleBytes = 0;
    std::vector<UninstallComponent> components;
    AppKind kind = AppKind::bundle;
    std::string icon;         ///< name in the icon theme, or a path; empty for none
    FilePath desktopEntry;    ///< what the desktop starts it by; empty for none
    std::string systemName;   ///< package, snap or Flatpak id that its own tool knows it by
    std::string installation; ///< of a Flatpak: "user", "system", or another one's name
    bool isRunning = false;
    /// What the disk told of bundleURL when it was found.
    std::optional<EntryStatus> seen;

    /// Sum of the components.
    std::int64_t extraBytes() const;
    std::int64_t totalBytes() const;
    QString formattedTotal() const;

    /// Whether the application itself goes to the Trash.
    bool goesToTrash() const { return kind <= AppKind::folder; }
    /// Whether its own tool removes it at our request.
    bool goesByOwnTool() const { return kind == AppKind::flatpak; }
    /// Whether only its leftovers can be queued.
    bool isForAdministrator() const { return kind >= AppKind::snap; }
    /// What an administrator types to remove it; empty for what can be queued whole.
    std::string command() const;
    /// What its own tool is started with; empty unless goesByOwnTool().
    std::vector<std::string> removal() const;

    friend bool operator==(const UninstallableApp&, const UninstallableApp&) = default;
};

} // namespace quorvane
