// SPDX-License-Identifier: MIT
#include "ScanRun.h"

#include "CheckedMath.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

namespace quorvane {
namespace {

/// Part of the descriptors that may stay open as parents of folders that wait: the rest of the
/// process needs some too.
constexpr int descriptorShare = 2;

constexpr const char* sumPlace = "DiskScanner::scan";

double secondsSince1970()
{
    const std::chrono::duration<double> now = std::chrono::system_clock::now().time_since_epoch();
    return now.count();
}

} // namespace

ItemMetadata metadataOf(const EntryStatus& status)
{
    ItemMetadata metadata;
    metadata.isDirectory = status.kind == EntryStatus::Kind::directory;
    metadata.isSymbolicLink = status.kind == EntryStatus::Kind::symbolicLink;
    metadata.isRegularFile = status.kind == EntryStatus::Kind::regularFile;
    metadata.logicalSize = status.size;
    metadata.sizeOnDisk = status.allocatedBytes;
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
    // The root counts as a mount point: a scan of "/proc" itself is an empty folder, too.
    m_pendingDirectories.push_back({&m_tree.root(), nullptr, rootDevice, true});
    std::vector<std::thread> workers = startWorkers(workerCount);
    if (workers.empty()) {
        work(m_tree.addArena());
    }
    for (std::thread& worker : workers) {
        worker.join();
    }
    const std::lock_guard guard(m_lock);
    Outcome outcome;
    outcome.wasStopped = m_stopRequested;
    outcome.totals = totalsLocked();
    return outcome;
}

/// As many as the system grants: a process at its limit of threads still gets its scan.
std::vector<std::thread> ScanRun::startWorkers(int wanted)
{
    std::vector<std::thread> workers;
    for (int i = 0; i < wanted; ++i) {
        try {
            workers.emplace_back([this, &arena = m_tree.addArena()] { work(arena); });
        } catch (const std::system_error&) {
            break;
        }
    }
    return workers;
}

void ScanRun::work(NodeArena& arena)
{
    Scratch scratch;
    PendingDirectory pending{};
    while (takeDirectory(pending)) {
        const std::shared_ptr<OpenDirectory> directory = open(pending);
        if (directory && list(*directory, scratch)) {
            attach(pending, directory, arena, scratch);
            finish(&scratch);
        } else {
            finish(nullptr);
        }
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

std::shared_ptr<OpenDirectory> ScanRun::open(const PendingDirectory& pending)
{
    const ReachablePlace place = pending.parent
                                     ? ReachablePlace(pending.parent, pending.node->name())
                                     : ReachablePlace(m_calls, pending.node->path());
    if (!place.isReachable() ||
        (pending.isMountPoint && m_calls.isKernelMade(place.parent(), place.name()))) {
        return nullptr;
    }
    const int descriptor = m_calls.openDirectory(place.parent(), place.name());
    return descriptor < 0 ? nullptr : std::make_shared<OpenDirectory>(m_calls, descriptor);
}

bool ScanRun::list(const OpenDirectory& directory, Scratch& scratch)
{
    scratch.names.clear();
    scratch.entries.clear();
    scratch.subdirectories.clear();
    if (!m_calls.appendNames(directory.descriptor(), scratch.names)) {
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
            scratch.entries.push_back({i, status});
        }
    }
    return true;
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

void ScanRun::attach(const PendingDirectory& pending,
                     const std::shared_ptr<OpenDirectory>& directory, NodeArena& arena,
                     Scratch& scratch)
{
    const std::int64_t firstID = reserveIds(scratch.entries.size());
    orderEntries(scratch);
    scratch.values.clear();
    scratch.files = 0;
    scratch.bytes = 0;
    scratch.bytesOnDisk = 0;
    for (const std::uint32_t i : scratch.order) {
        const Entry& entry = scratch.entries[i];
        const NameList::Span span = scratch.names.spans[entry.name];
        scratch.values.push_back({firstID + i,
                                  {scratch.names.bytes.data() + span.offset, span.length},
                                  metadataOf(entry.status)});
        if (entry.status.kind == EntryStatus::Kind::regularFile) {
            ++scratch.files;
            scratch.bytes = checkedAdd(scratch.bytes, entry.status.size, sumPlace);
            scratch.bytesOnDisk =
                checkedAdd(scratch.bytesOnDisk, entry.status.allocatedBytes, sumPlace);
        }
    }
    const std::span<FileNode> nodes = FileTree::addChildren(*pending.node, scratch.values, arena);
    pending.node->addProvisional(scratch.bytes, scratch.bytesOnDisk);

    std::shared_ptr<OpenDirectory> kept;
    for (std::size_t i = 0; i < nodes.size() && nodes[i].isDirectory(); ++i) {
        if (i == 0 && directory->keepWithin(m_roomForOpenDirectories)) {
            kept = directory;
        }
        const std::uint64_t device = scratch.entries[scratch.order[i]].status.device;
        scratch.subdirectories.push_back({&nodes[i], kept, device, device != pending.device});
    }
}

std::int64_t ScanRun::reserveIds(std::size_t count)
{
    const std::lock_guard guard(m_lock);
    return std::exchange(m_nextNodeID, m_nextNodeID + static_cast<std::int64_t>(count));
}

void ScanRun::finish(Scratch* filled)
{
    std::unique_lock guard(m_lock);
    --m_activeWorkers;
    if (filled != nullptr) {
        m_filesScanned += filled->files;
        m_directoriesScanned += static_cast<std::int64_t>(filled->subdirectories.size());
        m_bytesSeen = checkedAdd(m_bytesSeen, filled->bytes, sumPlace);
        for (PendingDirectory& subdirectory : filled->subdirectories) {
            m_pendingDirectories.push_back(std::move(subdirectory));
        }
    }
    // Before the report: what it takes must not keep the others from the new folders.
    if (m_waitingWorkers > 0) {
        m_stateCondition.notify_all();
    }
    if (filled != nullptr) {
        emitProgressLocked(guard);
    }
}

void ScanRun::emitProgressLocked(std::unique_lock<std::mutex>& guard)
{
    const double now = secondsSince1970();
    // A clock that was set back must not silence the reports.
    const bool isEarly = now >= m_lastEmitTime && now - m_lastEmitTime < emitInterval;
    if (isEarly || m_isReporting || !m_onProgress) {
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
    return {m_filesScanned, m_directoriesScanned, m_bytesSeen, {}};
}

} // namespace quorvane
