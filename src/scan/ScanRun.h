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
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace quorvane {

/// What is left of the largest sum that a scan may come to.
struct SizeRoom
{
    /// From here on a size is taken for a hole or a false claim.
    static constexpr std::int64_t hugeSize = std::int64_t{1} << 50;

    SizeRoom();

    std::atomic<std::int64_t> ordinary; ///< for files below hugeSize
    std::atomic<std::int64_t> huge;
};

/// One worker's share of the room: grants what files claim until nothing is left, so that no sum
/// over a tree can overflow. Huge files cannot take the room of the others. One thread.
class SizeClaims
{
public:
    explicit SizeClaims(SizeRoom& room)
        : m_room(room)
    {}
    /// The claimed bytes, or what is left. claimed is not negative.
    std::int64_t granted(std::int64_t claimed);

private:
    SizeRoom& m_room;
    std::int64_t m_lease = 0;
};

/// The flags and sizes of an entry as the tree keeps them. The own size of a folder, which counts
/// in no sum, is at most SizeRoom::hugeSize.
ItemMetadata metadataOf(const EntryStatus& status);

/// One walk: the stack of folders that wait, the counters, and the workers that share them. Lives
/// for one call of DiskScanner::scan.
class ScanRun
{
public:
    struct Outcome
    {
        bool wasStopped = false;
        bool ranOutOfMemory = false; ///< the tree is not whole
        ScanProgress totals;         ///< the path is empty
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
        /// Lies on another device than its parent or on an automounter's map: what it lies on has
        /// to be known before it is opened.
        bool asksForKind;
    };

    struct Entry
    {
        std::uint32_t name; ///< index into the name list
        EntryStatus status;
        bool isSizeCapped = false;
    };

    /// What a worker has found in the folder that it is in. Only that worker writes it; finish()
    /// moves it into the totals.
    struct Counters
    {
        std::atomic<std::int64_t> files = 0;
        std::atomic<std::int64_t> directories = 0;
        std::atomic<std::int64_t> bytes = 0;
    };

    /// One worker, and what it reuses from folder to folder.
    struct Scratch
    {
        Scratch(NodeArena& arena, SizeRoom& room, SizeRoom& roomOnDisk)
            : arena(arena)
            , sizes(room)
            , sizesOnDisk(roomOnDisk)
        {}

        NodeArena& arena;
        SizeClaims sizes;
        SizeClaims sizesOnDisk;
        Counters counters;
        NameList names;
        std::vector<Entry> entries;
        std::vector<std::uint32_t> order;
        std::vector<NodeValues> values;
        std::vector<PendingDirectory> subdirectories;
    };

    std::vector<std::thread> startWorkers(int wanted);
    Scratch& addScratch();
    void work(Scratch& scratch);
    void walkFolders(Scratch& scratch);
    void reportUntilTheEnd();
    void stopForLackOfMemory();
    bool takeDirectory(PendingDirectory& taken);
    std::shared_ptr<OpenDirectory> open(const PendingDirectory& pending, VolumeKind& kind);
    bool list(const OpenDirectory& directory, Scratch& scratch);
    void addEntry(std::uint32_t name, EntryStatus& status, Scratch& scratch);
    void attach(const PendingDirectory& pending, VolumeKind kind,
                const std::shared_ptr<OpenDirectory>& directory, Scratch& scratch);
    static void orderEntries(Scratch& scratch);
    std::int64_t reserveIds(std::size_t count);
    void finish(Scratch& scratch, bool isListed);
    void emitProgressLocked(std::unique_lock<std::mutex>& guard);
    ScanProgress totalsLocked() const;

    FileSystemCalls& m_calls;
    FileTree& m_tree;
    const DiskScanner::OnProgress& m_onProgress;
    std::atomic<int> m_roomForOpenDirectories;
    SizeRoom m_sizes;
    SizeRoom m_sizesOnDisk;
    std::deque<Scratch> m_scratches;

    std::mutex m_lock;
    std::condition_variable m_stateCondition;
    std::vector<PendingDirectory> m_pendingDirectories;
    std::condition_variable m_ended;
    int m_runningWorkers = 0;
    bool m_worksAlone = false; ///< on the calling thread, so that nobody else reports
    bool m_ranOutOfMemory = false;
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
