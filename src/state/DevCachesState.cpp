// SPDX-License-Identifier: MIT
#include "DevCachesState.h"

#include "FacetHost.h"
#include "FileContentCalls.h"

#include <algorithm>
#include <utility>

namespace quorvane {
namespace {

using Items = std::optional<std::vector<DevCacheCleaner::CacheItem>>;

TrashRequest requestFor(const DevCacheCleaner::CacheItem& item)
{
    const FilePath root = item.root.isEmpty() ? item.path.parent() : item.root;
    if (item.seen) {
        return TrashRequest::of(item.path, root, *item.seen);
    }
    TrashRequest request;
    request.path = item.path;
    request.root = root;
    request.kind = EntryStatus::Kind::directory;
    return request;
}

/// Moves an item, unless it has gone with one that held it.
TrashOutcome move(const DevCacheCleaner::CacheItem& item, const std::vector<FilePath>& moved,
                  const CheckedTrash& door)
{
    const bool isInside = std::any_of(moved.begin(), moved.end(), [&](const FilePath& folder) {
        return folder.holds(item.path);
    });
    if (isInside) {
        return TrashOutcome::moved;
    }
    return item.isMovable() ? door.moveToTrash(requestFor(item)) : TrashOutcome::protectedPlace;
}

} // namespace

DevCachesState::DevCachesState(FacetHost& host)
    : m_host(host)
    , m_devCleanupSlot(host.jobs(), {&devCleanupScanIsRunning, nullptr, nullptr})
    , m_devTrashSlot(host.jobs())
{}

void DevCachesState::scanDevCaches(OnFound onFound)
{
    if (m_devCleanupSlot.isRunning()) {
        onFound(std::nullopt);
        return;
    }
    devCleanupCount = 0;
    m_devCleanupSlot.restart(
        JobPriority::userInitiated,
        [this, folders = m_host.homeFolders(), calls = &m_host.platform().fileSystem,
         contents = &m_host.fileContents()](const JobRun& run) mutable {
            folders.findPlacesOutside(*calls, *contents);
            const auto isUnwanted = [&run] { return run.isUnwanted(); };
            const auto onMeasured = [this, &run](std::size_t count) {
                run.report([this, count] { devCleanupCount = static_cast<std::int64_t>(count); });
            };
            Items items = DevCacheCleaner::scanCurated(folders, {}, isUnwanted, onMeasured, *calls,
                                                       *contents);
            return run.isUnwanted() ? Items() : std::move(items);
        },
        [this, onFound = std::move(onFound)](Items items) {
            if (items) {
                devCacheLocations = static_cast<int>(items->size());
                devCacheReclaimable = DevCacheCleaner::totalBytes(*items);
            }
            onFound(std::move(items));
        });
}

void DevCachesState::deepScanBuildDirs(OnFound onFound)
{
    if (m_devCleanupSlot.isRunning()) {
        onFound(std::nullopt);
        return;
    }
    devCleanupCount = 0;
    m_devCleanupSlot.restart(
        JobPriority::userInitiated,
        [this, folders = m_host.homeFolders(), calls = &m_host.platform().fileSystem,
         contents = &m_host.fileContents()](const JobRun& run) mutable {
            folders.findPlacesOutside(*calls, *contents);
            const auto isUnwanted = [&run] { return run.isUnwanted(); };
            const auto onFolders = [this, &run](std::int64_t count) {
                run.report([this, count] { devCleanupCount = count; });
            };
            Items items = DevCacheCleaner::findBuildDirectories(
                folders, DevCacheCleaner::buildDirectoryNames(), {}, isUnwanted, onFolders, *calls,
                *contents);
            return run.isUnwanted() ? Items() : std::move(items);
        },
        [onFound = std::move(onFound)](Items items) { onFound(std::move(items)); });
}

void DevCachesState::cancelDevCleanupScan()
{
    m_devCleanupSlot.requestStop();
}

void DevCachesState::trashDevCaches(const std::vector<CacheItem>& items,
                                    std::function<void(std::size_t)> onMove,
                                    std::function<void(const std::vector<Move>&)> onEnd)
{
    m_devTrashSlot.restart(
        JobPriority::userInitiated,
        [items, onMove = std::move(onMove), post = m_host.jobs().poster(),
         door = CheckedTrash(m_host.platform().trash, m_host.platform().home)](const JobRun&) {
            std::vector<Move> moves;
            std::vector<FilePath> moved;
            for (const CacheItem& item : items) {
                moves.push_back({item.id(), move(item, moved, door)});
                if (moves.back().outcome == TrashOutcome::moved) {
                    moved.push_back(item.path);
                }
                post([onMove, count = moves.size()] { onMove(count); });
            }
            return moves;
        },
        [onEnd = std::move(onEnd)](const std::vector<Move>& moves) { onEnd(moves); });
}

} // namespace quorvane
