// SPDX-License-Identifier: MIT
#pragma once

#include "CheckedTrash.h"
#include "DevCacheCleaner.h"
#include "JobSlot.h"

#include <QProperty>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quorvane {

class AppState;
class FacetHost;

/// The model's looks for developer caches, and their way to the Trash. The list itself belongs to
/// the screen. Main thread.
class DevCachesState
{
public:
    using CacheItem = DevCacheCleaner::CacheItem;
    /// Is given what a look found; nothing when it was cancelled, or when another one is under way.
    using OnFound = std::function<void(std::optional<std::vector<CacheItem>>)>;

    /// What has become of one item on its way to the Trash.
    struct Move
    {
        std::string id;
        TrashOutcome outcome;
    };

    static DevCachesState& of(AppState& state);

    explicit DevCachesState(FacetHost& host);

    QProperty<bool> devCleanupScanIsRunning{false};
    QProperty<int> devCacheLocations{0}; ///< found by the last look at the fixed places
    QProperty<std::int64_t> devCacheReclaimable{0};
    QProperty<std::int64_t> devCleanupCount{0}; ///< places or folders that the look has come to

    /// Measures the fixed places in the background.
    void scanDevCaches(OnFound onFound);
    /// Walks the whole home for build folders in the background.
    void deepScanBuildDirs(OnFound onFound);
    /// Ends the look under way at the next folder.
    void cancelDevCleanupScan();

    /// Moves the items one by one in the background. onMove is told of each when it is done, onEnd
    /// of all. What goes by its own tool only, what differs from what was found, and what the door
    /// refuses stays. An item inside another one that has moved has moved with it.
    void trashDevCaches(const std::vector<CacheItem>& items,
                        std::function<void(std::size_t)> onMove,
                        std::function<void(const std::vector<Move>&)> onEnd);

private:
    FacetHost& m_host;
    JobSlot m_devCleanupSlot;
    JobSlot m_devTrashSlot;
};

} // namespace quorvane
