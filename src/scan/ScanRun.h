// SPDX-License-Identifier: MIT
#pragma once

#include "DirectoryWalk.h"
#include "DiskScanner.h"
#include "FileSystemCalls.h"
#include "FileTree.h"
#include "ItemMetadata.h"
#include "ScanProgress.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace quorvane {

/// The flags and sizes of an entry as the tree keeps them.
ItemMetadata metadataOf(const EntryStatus& status);

/// One walk: the stack of folders that wait, the counters, and the workers that share them. Lives
/// for one call of DiskScanner::scan.
class ScanRun
{
public:
    struct Outcome
    {
        bool wasStopped = false;
        ScanProgress totals; ///< the path is empty
    };

    ScanRun(FileSystemCalls& calls, FileTree& tree, const DiskScanner::OnProgress& onProgress);

    /// Fills the tree below its root. Blocks until all workers have ended.
    /// rootDevice is the st_dev of the root.
    Outcome walk(int workerCount, std::uint64_t rootDevice);

private:
    /// Seconds that pass between two throttled reports.
    static constexpr double emitInterval = 0.08;

    struct PendingDirectory
    {
        FileNode* node;
        /// The folder that holds it, while there is room to keep that open; else it is reached by
        /// path.
        std::shared_ptr<OpenDirectory> parent;
        std::uint64_t device;
        /// Lies on another device than its parent: something is mounted there.
        bool isMountPoint;
    };

    struct Entry
    {
        std::uint32_t name; ///< index into the name list
        EntryStatus status;
    };

    /// What a worker reuses from folder to folder.
    struct Scratch
    {
        NameList names;
        std::vector<Entry> entries;
        std::vector<std::uint32_t> order;
        std::vector<NodeValues> values;
        std::vector<PendingDirectory> subdirectories;
        std::int64_t files = 0;
        std::int64_t bytes = 0;
        std::int64_t bytesOnDisk = 0;
    };

    std::vector<std::thread> startWorkers(int wanted);
    void work(NodeArena& arena);
    bool takeDirectory(PendingDirectory& taken);
    std::shared_ptr<OpenDirectory> open(const PendingDirectory& pending);
    bool list(const OpenDirectory& directory, Scratch& scratch);
    void attach(const PendingDirectory& pending, const std::shared_ptr<OpenDirectory>& directory,
                NodeArena& arena, Scratch& scratch);
    static void orderEntries(Scratch& scratch);
    std::int64_t reserveIds(std::size_t count);
    void finish(Scratch* filled);
    void emitProgressLocked(std::unique_lock<std::mutex>& guard);
    ScanProgress totalsLocked() const;

    FileSystemCalls& m_calls;
    FileTree& m_tree;
    const DiskScanner::OnProgress& m_onProgress;
    std::atomic<int> m_roomForOpenDirectories;

    std::mutex m_lock;
    std::condition_variable m_stateCondition;
    std::vector<PendingDirectory> m_pendingDirectories;
    int m_activeWorkers = 0;
    int m_waitingWorkers = 0;
    std::atomic<bool> m_stopRequested{false};
    std::int64_t m_nextNodeID = 1;
    std::int64_t m_filesScanned = 0;
    std::int64_t m_directoriesScanned = 0;
    std::int64_t m_bytesSeen = 0;
    const FileNode* m_currentDirectory = nullptr;
    double m_lastEmitTime = 0;
    bool m_isReporting = false;
};

} // namespace quorvane
