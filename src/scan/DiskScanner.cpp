// SPDX-License-Identifier: MIT
#include "DiskScanner.h"

#include "DirectoryWalk.h"
#include "FileSystemCalls.h"
#include "ScanRun.h"

#include <algorithm>
#include <chrono>
#include <new>
#include <string_view>
#include <thread>

namespace quorvane {
namespace {

int chosenWorkerCount(int wanted)
{
    constexpr int fewest = 2;
    constexpr int most = 8;
    if (wanted >= 1) {
        return wanted;
    }
    return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), fewest, most);
}

DiskScanError cancelled()
{
    return {"Scan cancelled"};
}

} // namespace

DiskScanner::DiskScanner(int workerCount)
    : DiskScanner(workerCount, FileSystemCalls::system())
{}

DiskScanner::DiskScanner(int workerCount, FileSystemCalls& calls)
    : m_calls(calls)
    , m_workerCount(chosenWorkerCount(workerCount))
{}

DiskScanner::Result DiskScanner::scan(const FilePath& root, const OnProgress& onProgress)
{
    try {
        return walk(root, onProgress);
    } catch (const std::bad_alloc&) {
        // The tree has gone by now, so that there is room for this much again.
        return DiskScanError{"Not enough memory to scan " + root.bytes()};
    }
}

DiskScanner::Result DiskScanner::walk(const FilePath& root, const OnProgress& onProgress)
{
    EntryStatus status;
    {
        const ReachablePlace place(m_calls, root);
        if (!place.isReachable() || !m_calls.status(place.parent(), place.name(), status)) {
            return DiskScanError{"Cannot access " + root.bytes()};
        }
    }
    if (status.kind != EntryStatus::Kind::directory) {
        return DiskScanError{"Not a directory: " + root.bytes()};
    }
    NodeValues values;
    values.name =
        root.lastComponent().empty() ? std::string_view(root.bytes()) : root.lastComponent();
    values.metadata = metadataOf(status);
    const std::shared_ptr<FileTree> tree = FileTree::create(root, values);
    tree->setRootIdentity({status.device, status.inode});
    if (onProgress && !onProgress(ScanProgress{})) {
        return cancelled();
    }
    ScanRun run(m_calls, *tree, onProgress);
    const ScanRun::Outcome outcome = run.walk(m_workerCount, status.device);
    if (outcome.ranOutOfMemory) {
        throw std::bad_alloc();
    }
    if (outcome.wasStopped || (onProgress && !onProgress(outcome.totals))) {
        return cancelled();
    }
    const auto start = std::chrono::steady_clock::now();
    tree->root().finalizeTree();
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    m_finalPassSeconds = took.count();
    return tree;
}

std::optional<ItemMetadata> DiskScanner::allMetadata(const FilePath& path) const
{
    const ReachablePlace place(m_calls, path);
    EntryStatus status;
    if (!place.isReachable() || !m_calls.status(place.parent(), place.name(), status)) {
        return std::nullopt;
    }
    return metadataOf(status);
}

std::optional<std::vector<std::pair<std::string, ItemMetadata>>>
DiskScanner::directoryNameEntries(const FilePath& path) const
{
    const ReachablePlace place(m_calls, path);
    const int descriptor =
        place.isReachable() ? m_calls.openDirectory(place.parent(), place.name()) : -1;
    if (descriptor < 0) {
        return std::nullopt;
    }
    const OpenDirectory directory(m_calls, descriptor);
    NameList names;
    if (!m_calls.appendNames(descriptor, names)) {
        return std::nullopt;
    }
    std::vector<std::pair<std::string, ItemMetadata>> entries;
    entries.reserve(names.spans.size());
    for (std::size_t i = 0; i < names.spans.size(); ++i) {
        EntryStatus status;
        if (m_calls.status(descriptor, names.nameAt(i), status)) {
            entries.emplace_back(names.nameAt(i), metadataOf(status));
        }
    }
    return entries;
}

std::optional<std::int64_t> DiskScanner::fileCreationDate(const FilePath& path) const
{
    const ReachablePlace place(m_calls, path);
    std::int64_t seconds = 0;
    if (!place.isReachable() || !m_calls.creationDate(place.parent(), place.name(), seconds)) {
        return std::nullopt;
    }
    return seconds;
}

} // namespace quorvane
