// SPDX-License-Identifier: MIT
#pragma once

#include "DevCachesState.h"
#include "DriveState.h"
#include "DuplicatesState.h"
#include "FacetHost.h"
#include "FlashState.h"
#include "MonitorState.h"
#include "NavigationState.h"
#include "QuickWinsState.h"
#include "ScanState.h"
#include "ScreenshotsState.h"
#include "SearchState.h"
#include "SettingsState.h"
#include "SnapshotsState.h"
#include "StagingState.h"
#include "TaggingState.h"
#include "UninstallState.h"

#include <QString>

#include <memory>
#include <vector>

namespace quorvane {

/// The one observable model, the sum of its facets. Created once at process entry, kept for the
/// life of the process; main thread only. Screens read its fields, subscribe to those that they
/// show, and call its operations; a screen includes the facets that it shows and takes them from
/// the model, as in `ScanState::of(state)`. Jobs are given what they need by value and never see
/// it.
class AppState final : public FlashState,
                       public FacetHost,
                       public ScanState,
                       public NavigationState,
                       public StagingState,
                       public DuplicatesState,
                       public SearchState,
                       public SnapshotsState,
                       public TaggingState,
                       public QuickWinsState,
                       public DevCachesState,
                       public UninstallState,
                       public SettingsState,
                       public DriveState,
                       public MonitorState,
                       public ScreenshotsState
{
public:
    /// Reads the stored settings and starts a first reading of the drive. What the platform refers
    /// to outlives the state.
    explicit AppState(const Platform& platform);
    AppState(const AppState&) = delete;
    AppState& operator=(const AppState&) = delete;
    /// Asks the running jobs to stop and waits for them.
    ~AppState();

    /// Stages or unstages the selected node; nothing without one, and nothing for the scan root.
    void stageSelection();
    /// "{hidden keys, sorted, joined by |}-{root id}-{focus id}": changes whenever a layout must.
    QString disabledBloatKey() const;

private:
    // What the facets ask of each other
    NodePointer scannedRoot() const override { return rootNode.value(); }
    std::shared_ptr<const NodeIndex> scannedNodes() const override { return nodesByID.value(); }
    std::shared_ptr<const DuplicateFinder::Groups> foundDuplicates() const override
    {
        return lastFoundDuplicates();
    }
    const std::vector<NodePointer>& queue() const override { return stagedNodes.value(); }
    void stageFound(const NodePointer& item, const TrashRequest& found) override
    {
        stageItem(item, found);
    }
    BloatKeys hiddenFamilies() const override { return disabledBloat(); }
    void showSection(AppSection shown) override { section = shown; }
    void changeQueue(const std::vector<FileNode*>& unstaged,
                     const std::vector<NodePointer>& staged) override;
    void scanAgainAfter(const std::vector<FilePath>& changed) override;

    // What a scan starts and ends
    void dropOldScan() override;
    void publishTree(const NodePointer& root, std::shared_ptr<const NodeIndex> index) override;
};

} // namespace quorvane
