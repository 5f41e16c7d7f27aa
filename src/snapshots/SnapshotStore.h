// SPDX-License-Identifier: MIT
#pragma once

#include "FileContentCalls.h"
#include "FileNode.h"
#include "FilePath.h"
#include "FileSystemCalls.h"
#include "ScanSnapshot.h"
#include "StoredFiles.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quorvane {

/// A snapshot just taken, and the node that each of its items stands for.
struct CapturedSnapshot
{
    ScanSnapshot snapshot;
    std::vector<FileNode*> nodes; ///< in the order of the items
};

/// A snapshot in the folder. Its files stay on the disk until one asks for them.
struct StoredSnapshot : SnapshotHeading
{
    std::string fileName;

    friend bool operator==(const StoredSnapshot&, const StoredSnapshot&) = default;
};

/// The text by which an entry at the path is known in snapshots of the root: every occurrence of
/// the root's path is taken out, and slashes at both ends; what is left gets a slash in front.
/// Below the root "/" no slash is left within. Empty for the root itself.
std::string snapshotEntryPath(std::string_view path, std::string_view rootPath);

/// Takes snapshots and keeps them in one folder. Every function may run on any thread; none
/// throws.
class SnapshotStore
{
public:
    static constexpr std::size_t maximumEntries = 20000;
    static constexpr std::int64_t minimumBytesCaptured = 65536;
    /// A file beyond is none of ours and is left alone.
    static constexpr std::int64_t maximumFileBytes = std::int64_t{256} << 20;

    explicit SnapshotStore(FilePath directory,
                           FileSystemCalls& fileSystem = FileSystemCalls::system(),
                           FileContentCalls& contents = FileContentCalls::system(),
                           StoredFiles& files = StoredFiles::system());

    /// "Quorvane/Snapshots" in the user's folder for application data, or in the temporary one
    /// where the system names none.
    static FilePath snapshotsDirectory();

    /// The files of at least minimumBytesCaptured bytes, links among them, largest first. The walk
    /// ends once it has met maximumEntries of them, so that of more the first met are kept, not the
    /// largest.
    static CapturedSnapshot capture(FileNode& root);

    /// Makes the folder where it is missing. False when the snapshot is not on the disk afterwards;
    /// whatever ends the program in between, every other file is as it was.
    bool save(const ScanSnapshot& snapshot) const;
    /// The snapshots in the folder, newest first; without one, or with a folder that cannot be
    /// read, an empty list. A file that holds none is passed over. Ends early once
    /// isCancelled, which is asked on several threads.
    std::vector<StoredSnapshot> load(const std::function<bool()>& isCancelled = [] {
        return false;
    }) const;
    /// The whole of a snapshot that load() has told of; absent when the file no longer holds it.
    std::optional<ScanSnapshot> read(const StoredSnapshot& stored) const;
    /// Removes the file "{id}.json", provided that it holds the snapshot of that id: a foreign file
    /// stays. Returns whether it is gone.
    bool remove(const QUuid& id) const;

private:
    std::optional<std::string> contentsOf(int folder, const char* name) const;
    std::optional<std::string> contentsOf(const std::string& name) const;

    FilePath m_directory;
    FileSystemCalls& m_fileSystem;
    FileContentCalls& m_contents;
    StoredFiles& m_files;
};

} // namespace quorvane
