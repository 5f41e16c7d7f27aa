// SPDX-License-Identifier: MIT
#include "ScanRun.h"

#include "CheckedMath.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <exception>
#include <limits>
#include <new>
#include <string_view>
#include <thread>
#include <utility>

namespace quorvane {
namespace {

/// Part of the descriptors that may stay open as parents of folders that wait: the rest of the
/// process needs some too.
constexpr int descriptorShare = 2;

constexpr const char* sumPlace = "DiskScanner::scan";

/// Room that huge files share, and what stays below the largest number altogether: views give an
/// entry without size a byte of its own, and folders have a size that counts in no sum.
constexpr std::int64_t roomForHugeFiles = std::int64_t{7} << 60;
constexpr std::int64_t headroom = 2 * SizeRoom::hugeSize;
/// What a worker takes of the shared room at a time: large enough to be taken rarely.
constexpr std::int64_t leaseBytes = std::int64_t{1} << 40;

/// wanted, or what is left of it.
std::int64_t takeFrom(std::atomic<std::int64_t>& room, std::int64_t wanted)
{
    std::int64_t left = room.load(std::memory_order_relaxed);
    std::int64_t taken = 0;
    do {
        taken = std::min(wanted, left);
    } while (!room.compare_exchange_weak(left, left - taken, std::memory_order_relaxed));
    return taken;
}

/// Adds to a counter that only this thread writes.
void add(std::atomic<std::int64_t>& counter, std::int64_t count)
{
    counter.store(counter.load(std::memory_order_relaxed) + count, std::memory_order_relaxed);
}

double secondsSince1970()
{
    const std::chrono::duration<double> now = std::chrono::system_clock::now().time_since_epoch();
    return now.count();
}

} // namespace

SizeRoom::SizeRoom()
    : ordinary(std::numeric_limits<std::int64_t>::max() - roomForHugeFiles - headroom)
    , huge(roomForHugeFiles)
{}

std::int64_t SizeClaims::granted(std::int64_t claimed)
{
    if (claimed >= SizeRoom::hugeSize) {
        return takeFrom(m_room.huge, claimed);
    }
    if (claimed > m_lease) {
        m_lease += takeFrom(m_room.ordinary, std::max(claimed, leaseBytes));
    }
    const std::int64_t granted = std::min(claimed, m_lease);
    m_lease -= granted;
    return granted;
}

ItemMetadata metadataOf(const EntryStatus& status)
{
    const std::int64_t limit = status.kind == EntryStatus::Kind::directory
                                   ? SizeRoom::hugeSize
                                   : std::numeric_limits<std::int64_t>::max();
    ItemMetadata metadata;
    metadata.isDirectory = status.kind == EntryStatus::Kind::directory;
    metadata.isSymbolicLink = status.kind == EntryStatus::Kind::symbolicLink;
    metadata.isRegularFile = status.kind == EntryStatus::Kind::regularFile;
    metadata.logicalSize = std::min(status.size, limit);
    metadata.sizeOnDisk = std::min(status.allocatedBytes, limit);
    metadata.dateModified = status.modifiedSeconds;
    return metadata;
}

ScanRun::ScanRun(FileSystemCalls& calls, FileTree& tree, const DiskScanner::OnProgress& onProgress)
    : m_calls(calls)
    , m_tree(tree)
    , m_onProgress(onProgress)
    , m_roomForOpenDirectories(calls.descriptorLimit() / descriptorShare)
{}

ScanRun::Outcome ScanRun::walk(int workerCount, std::uint64_t rootDevice)
{
    // The root is asked about, too: a scan of "/proc" itself is an empty folder.
    m_pendingDirectories.push_back({&m_tree.root(), nullptr, rootDevice, true});
    std::vector<std::thread> workers = startWorkers(workerCount);
    if (workers.empty()) {
        m_worksAlone = true;
        ++m_runningWorkers;
        work(addScratch());
    } else {
        reportUntilTheEnd();
    }
    for (std::thread& worker : workers) {
        worker.join();
    }
    const std::lock_guard guard(m_lock);
    Outcome outcome;
    outcome.wasStopped = m_stopRequested;
    outcome.ranOutOfMemory = m_ranOutOfMemory;
    outcome.totals = totalsLocked();
    return outcome;
}

/// As many as the system grants: a process at its limit of threads or memory still gets its scan.
std::vector<std::thread> ScanRun::startWorkers(int wanted)
{
    std::vector<std::thread> workers;
    workers.reserve(static_cast<std::size_t>(wanted));
    for (int i = 0; i < wanted; ++i) {
        bool isCounted = false;
        try {
            Scratch& scratch = addScratch();
            const std::lock_guard guard(m_lock);
            ++m_runningWorkers;
            isCounted = true;
            workers.emplace_back([this, &scratch] { work(scratch); });
        } catch (const std::exception&) {
            // std::system_error for the thread, std::bad_alloc for its arena.
            const std::lock_guard guard(m_lock);
            m_runningWorkers -= isCounted ? 1 : 0;
            break;
        }
    }
    return workers;
}

/// Before any worker reads the list: totalsLocked() does.
ScanRun::Scratch& ScanRun::addScratch()
{
    NodeArena& arena = m_tree.addArena();
    const std::lock_guard guard(m_lock);
    return m_scratches.emplace_back(arena, m_sizes, m_sizesOnDisk);
}

void ScanRun::work(Scratch& scratch)
{
    try {
        walkFolders(scratch);
    } catch (const std::bad_alloc&) {
        stopForLackOfMemory();
    }
    const std::lock_guard guard(m_lock);
    --m_runningWorkers;
    m_ended.notify_all();
}

void ScanRun::stopForLackOfMemory()
{
    const std::lock_guard guard(m_lock);
    m_ranOutOfMemory = true;
    m_stopRequested = true;
    m_stateCondition.notify_all();
}

/// A worker reports when it is done with a folder. One that stays in a folder, because that is
/// large or the disk slow, must neither keep the counters still nor a cancel from being heard.
void ScanRun::reportUntilTheEnd()
{
    const std::chrono::duration<double> interval(emitInterval);
    try {
        std::unique_lock guard(m_lock);
        while (!m_ended.wait_for(guard, interval, [this] { return m_runningWorkers == 0; })) {
            emitProgressLocked(guard);
        }
    } catch (const std::bad_alloc&) {
        stopForLackOfMemory();
    }
}

void ScanRun::walkFolders(Scratch& scratch)
{
    PendingDirectory pending{};
    while (takeDirectory(pending)) {
        VolumeKind kind = VolumeKind::ordinary;
        const std::shared_ptr<OpenDirectory> directory = open(pending, kind);
        scratch.subdirectories.clear();
        const bool isListed = directory && list(*directory, scratch);
        if (isListed) {
            attach(pending, kind, directory, scratch);
        }
        finish(scratch, isListed);
    }
}

bool ScanRun::takeDirectory(PendingDirectory& taken)
{
    std::unique_lock guard(m_lock);
    for (;;) {
        if (m_stopRequested) {
            return false;
        }
        if (!m_pendingDirectories.empty()) {
            break;
        }
        if (m_activeWorkers == 0) {
            m_stateCondition.notify_all();
            return false;
        }
        ++m_waitingWorkers;
        m_stateCondition.wait(guard);
        --m_waitingWorkers;
    }
    taken = std::move(m_pendingDirectories.back());
    m_pendingDirectories.pop_back();
    ++m_activeWorkers;
    m_currentDirectory = taken.node;
    return true;
}

std::shared_ptr<OpenDirectory> ScanRun::open(const PendingDirectory& pending, VolumeKind& kind)
{
    const ReachablePlace place = pending.parent
                                     ? ReachablePlace(pending.parent, pending.node->name())
                                     : ReachablePlace(m_calls, pending.node->path());
    if (!place.isReachable()) {
        return nullptr;
    }
    if (pending.asksForKind) {
        kind = m_calls.volumeKind(place.parent(), place.name());
    }
    if (kind == VolumeKind::kernelMade || kind == VolumeKind::unusedAutomount) {
        return nullptr;
    }
    const int descriptor = m_calls.openDirectory(place.parent(), place.name());
    return descriptor < 0 ? nullptr : std::make_shared<OpenDirectory>(m_calls, descriptor);
}

bool ScanRun::list(const OpenDirectory& directory, Scratch& scratch)
{
    scratch.names.clear();
    scratch.entries.clear();
    if (!m_calls.appendNames(directory.descriptor(), scratch.names, m_stopRequested)) {
        return false;
    }
    const std::size_t count = scratch.names.spans.size();
    scratch.entries.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        if (m_stopRequested.load(std::memory_order_relaxed)) {
            break;
        }
        EntryStatus status;
        if (m_calls.status(directory.descriptor(), scratch.names.nameAt(i), status)) {
            addEntry(i, status, scratch);
        }
        if (m_worksAlone) {
            std::unique_lock guard(m_lock);
            emitProgressLocked(guard);
        }
    }
    return true;
}

void ScanRun::addEntry(std::uint32_t name, EntryStatus& status, Scratch& scratch)
{
    const std::int64_t claimed = status.size;
    if (status.kind == EntryStatus::Kind::directory) {
        add(scratch.counters.directories, 1);
    } else {
        status.size = scratch.sizes.granted(status.size);
        status.allocatedBytes = scratch.sizesOnDisk.granted(status.allocatedBytes);
    }
    if (status.kind == EntryStatus::Kind::regularFile) {
        add(scratch.counters.files, 1);
        add(scratch.counters.bytes, status.size);
    }
    scratch.entries.push_back({name, status, status.size != claimed});
}

/// Folders first, in listing order, then the rest as the finished tree wants it: sorting here, on
/// all workers at once, leaves little to the final pass.
void ScanRun::orderEntries(Scratch& scratch)
{
    scratch.order.resize(scratch.entries.size());
    for (std::uint32_t i = 0; i < scratch.order.size(); ++i) {
        scratch.order[i] = i;
    }
    const auto firstFile =
        std::stable_partition(scratch.order.begin(), scratch.order.end(), [&](std::uint32_t i) {
            return scratch.entries[i].status.kind == EntryStatus::Kind::directory;
        });
    std::sort(firstFile, scratch.order.end(), [&](std::uint32_t i, std::uint32_t j) {
        const Entry& a = scratch.entries[i];
        const Entry& b = scratch.entries[j];
        return a.status.size != b.status.size
                   ? a.status.size > b.status.size
                   : std::strcmp(scratch.names.nameAt(a.name), scratch.names.nameAt(b.name)) < 0;
    });
}

void ScanRun::attach(const PendingDirectory& pending, VolumeKind kind,
                     const std::shared_ptr<OpenDirectory>& directory, Scratch& scratch)
{
    const std::int64_t firstID = reserveIds(scratch.entries.size());
    orderEntries(scratch);
    scratch.values.clear();
    std::int64_t bytes = 0;
    std::int64_t bytesOnDisk = 0;
    for (const std::uint32_t i : scratch.order) {
        const Entry& entry = scratch.entries[i];
        const NameList::Span span = scratch.names.spans[entry.name];
        scratch.values.push_back({firstID + i,
                                  {scratch.names.bytes.data() + span.offset, span.length},
                                  metadataOf(entry.status)});
        scratch.values.back().metadata.isSizeCapped = entry.isSizeCapped;
        if (entry.status.kind == EntryStatus::Kind::regularFile) {
            bytes = checkedAdd(bytes, entry.status.size, sumPlace);
            bytesOnDisk = checkedAdd(bytesOnDisk, entry.status.allocatedBytes, sumPlace);
        }
    }
    const std::span<FileNode> nodes =
        FileTree::addChildren(*pending.node, scratch.values, scratch.arena);
    pending.node->addProvisional(bytes, bytesOnDisk);

    std::shared_ptr<OpenDirectory> kept;
    for (std::size_t i = 0; i < nodes.size() && nodes[i].isDirectory(); ++i) {
        if (i == 0 && directory->keepWithin(m_roomForOpenDirectories)) {
            kept = directory;
        }
        const std::uint64_t device = scratch.entries[scratch.order[i]].status.device;
        const bool asksForKind = device != pending.device || kind == VolumeKind::automountMap;
        scratch.subdirectories.push_back({&nodes[i], kept, device, asksForKind});
    }
}

std::int64_t ScanRun::reserveIds(std::size_t count)
{
    const std::lock_guard guard(m_lock);
    return std::exchange(m_nextNodeID, m_nextNodeID + static_cast<std::int64_t>(count));
}

void ScanRun::finish(Scratch& scratch, bool isListed)
{
    std::unique_lock guard(m_lock);
    --m_activeWorkers;
    Counters& found = scratch.counters;
    m_filesScanned += found.files.exchange(0, std::memory_order_relaxed);
    m_directoriesScanned += found.directories.exchange(0, std::memory_order_relaxed);
    m_bytesSeen =
        checkedAdd(m_bytesSeen, found.bytes.exchange(0, std::memory_order_relaxed), sumPlace);
    for (PendingDirectory& subdirectory : scratch.subdirectories) {
        m_pendingDirectories.push_back(std::move(subdirectory));
    }
    // Before the report: what it takes must not keep the others from the new folders.
    if (m_waitingWorkers > 0) {
        m_stateCondition.notify_all();
    }
    if (isListed) {
        emitProgressLocked(guard);
    }
}

void ScanRun::emitProgressLocked(std::unique_lock<std::mutex>& guard)
{
    const double now = secondsSince1970();
    // A clock that was set back must not silence the reports.
    const bool isEarly = now >= m_lastEmitTime && now - m_lastEmitTime < emitInterval;
    if (isEarly || m_isReporting || !m_onProgress || m_currentDirectory == nullptr) {
        return;
    }
    m_lastEmitTime = now;
    m_isReporting = true;
    ScanProgress report = totalsLocked();
    const FileNode* const current = m_currentDirectory;
    guard.unlock();
    // Nodes stay in place until the final pass, so the path can be joined outside the lock.
    report.currentPath = current->path().bytes();
    const bool goesOn = m_onProgress(report);
    guard.lock();
    m_isReporting = false;
    if (!goesOn) {
        m_stopRequested = true;
        m_stateCondition.notify_all();
    }
}

ScanProgress ScanRun::totalsLocked() const
{
    ScanProgress totals{m_filesScanned, m_directoriesScanned, m_bytesSeen, {}};
    for (const Scratch& scratch : m_scratches) {
        totals.filesScanned += scratch.counters.files.load(std::memory_order_relaxed);
        totals.directoriesScanned += scratch.counters.directories.load(std::memory_order_relaxed);
        totals.bytesSeen = checkedAdd(
            totals.bytesSeen, scratch.counters.bytes.load(std::memory_order_relaxed), sumPlace);
    }
    return totals;
}

} // namespace quorvane
