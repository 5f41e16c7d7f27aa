// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

class DiskReader;

/// What the Desktop Entry Specification 1.5 lets a file say that this program needs. Bytes, UTF-8
/// as a rule.
struct DesktopEntry
{
    std::string id; ///< without ".desktop"; folders on the way joined by "-"
    FilePath path;  ///< of the file
    std::string name;
    std::string icon;    ///< name in the icon theme, or a path
    std::string program; ///< first word of Exec that names one: a path or a plain name
    std::string snap;    ///< X-SnapInstanceName
    bool isApplication = false;
    bool isHidden = false;    ///< Hidden: as good as deleted
    bool isNoDisplay = false; ///< shown in no menu
    std::vector<std::string> onlyShowIn;
    std::vector<std::string> notShowIn;

    /// Whether a desktop of one of these names shows it in its menus.
    bool isVisible(std::span<const std::string> desktops) const;
    /// What follows the last slash of the program.
    std::string_view programName() const;
};

/// Reads the group "Desktop Entry" of a text; a text without one gives an entry that is no
/// application. The name is the one for the locale ("de_DE", "sr@latin"; empty for none), by the
/// specification's order of fallback. id and path stay empty. Any thread.
DesktopEntry parseDesktopEntry(std::string_view text, std::string_view locale);

/// The program of an Exec line: quotes and escapes undone, "env" and its assignments skipped. Empty
/// when the line names none.
std::string programOfExec(std::string_view exec);

/// Every entry below the folders, in the order of their ids. An id that several folders have is
/// that of the first folder: as the desktop sees it.
std::vector<DesktopEntry> desktopEntries(std::span<const FilePath> folders, std::string_view locale,
                                         const DiskReader& reader);

} // namespace quorvane
