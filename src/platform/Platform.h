// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "UserFolders.h"

#include <functional>
#include <optional>

namespace quorvane {

class FileContentCalls;
class FileSystemCalls;
class FolderChooser;
class GlobalHotKey;
class MachineFigures;
class Preferences;
class TextRecognizer;
class Programs;
class Trash;
class WindowSystem;
class Workspace;

/// What the system below offers, handed to the model at its start. Everything outlives the model.
struct Platform
{
    FileSystemCalls& fileSystem;
    Preferences& preferences;
    Workspace& workspace;
    FolderChooser& folderChooser;
    Trash& trash;
    /// The user's home folder, fixed for the life of the process.
    FilePath home;
    /// Gives the calling thread a lower priority for processor and disk.
    std::function<void()> lowerThisThread;
    /// How the bytes of files are read; absent for the system's own way.
    FileContentCalls* fileContents = nullptr;
    /// Figures of the machine; absent for the system's own.
    MachineFigures* machine = nullptr;
    /// The folder that the search overlay knows all about.
    FilePath searchedRoot{"/"};
    /// Absent without a desktop.
    GlobalHotKey* hotKey = nullptr;
    /// Absent without a desktop.
    WindowSystem* windowSystem = nullptr;
    /// Reads the text on pictures; absent where there is nothing that could.
    TextRecognizer* textRecognizer = nullptr;
    /// The user's folders; left empty where the desktop has none.
    std::function<std::optional<FilePath>(UserFolder)> userFolder = {};
    /// What the paths of the whole machine are below, "/" as a rule. Empty: only the home is looked
    /// at.
    FilePath system = {};
    /// Which other programs run, and how one is started; absent for the system's own way.
    Programs* programs = nullptr;
};

} // namespace quorvane
