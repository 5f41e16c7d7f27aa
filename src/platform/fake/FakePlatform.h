// SPDX-License-Identifier: MIT
#pragma once

#include "FileSystemCalls.h"
#include "MemoryPreferences.h"
#include "Platform.h"
#include "RecordingWorkspace.h"
#include "ScriptedFolderChooser.h"
#include "ScriptedPrograms.h"
#include "ScriptedTrash.h"

#include <utility>

namespace quorvane {

/// A platform without a desktop: the real file system (or a decorated one), preferences in memory,
/// a workspace and a folder chooser that a test looks into. Outlives the models made on it.
struct FakePlatform
{
    explicit FakePlatform(FilePath home = FilePath("/"),
                          FileSystemCalls& fileSystemCalls = FileSystemCalls::system())
        : fileSystem(fileSystemCalls)
        , homeFolder(std::move(home))
    {}

    Platform platform()
    {
        Platform platform{fileSystem, preferences, workspace,      folderChooser,
                          trash,      homeFolder,  lowerThisThread};
        platform.fileContents = fileContents;
        platform.machine = machine;
        platform.searchedRoot = homeFolder;
        platform.hotKey = hotKey;
        platform.textRecognizer = textRecognizer;
        platform.userFolder = userFolder;
        platform.system = system;
        platform.programs = &programs;
        return platform;
    }

    FileSystemCalls& fileSystem;
    MemoryPreferences preferences;
    RecordingWorkspace workspace;
    ScriptedFolderChooser folderChooser;
    ScriptedTrash trash;
    FilePath homeFolder;
    /// Left empty: the threads of a test keep their priority.
    std::function<void()> lowerThisThread;
    /// Absent for the system's own.
    FileContentCalls* fileContents = nullptr;
    /// Absent for the machine that runs the test.
    MachineFigures* machine = nullptr;
    GlobalHotKey* hotKey = nullptr;
    /// Absent: nothing reads pictures.
    TextRecognizer* textRecognizer = nullptr;
    /// Left empty: the desktop names no folders.
    std::function<std::optional<FilePath>(UserFolder)> userFolder;
    /// Empty: nothing of the machine outside the home is looked at.
    FilePath system;
    ScriptedPrograms programs;
};

} // namespace quorvane
