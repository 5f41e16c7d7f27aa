// SPDX-License-Identifier: MIT
#include "AppState.h"

#include "FileContentCalls.h"
#include "Programs.h"

#include <tuple>
#include <utility>

namespace quorvane {

AppState::AppState(const Platform& platform)
    : FacetHost(platform, FlashState::of(*this))
    , ScanState(FacetHost::of(*this))
    , NavigationState(FacetHost::of(*this))
    , StagingState(FacetHost::of(*this))
    , DuplicatesState(FacetHost::of(*this))
    , SearchState(FacetHost::of(*this))
    , SnapshotsState(FacetHost::of(*this))
    , TaggingState(FacetHost::of(*this))
    , QuickWinsState(FacetHost::of(*this))
    , DevCachesState(FacetHost::of(*this))
    , UninstallState(FacetHost::of(*this))
    , SettingsState(FacetHost::of(*this))
    , DriveState(FacetHost::of(*this))
    , MonitorState(FacetHost::of(*this))
    , ScreenshotsState(FacetHost::of(*this))
{
    refreshDriveUsage();
}

AppState::~AppState()
{
    // The facets go before the runner: nothing is published to them from here on.
    jobs().close();
}

/// Clears the fields in the order in which screens are notified, then discards the jobs that read
/// the old tree.
void AppState::dropOldScan()
{
    auto oldTree = std::make_tuple(rootNode.value(), nodesByID.value());
    errorMessage = std::nullopt;
    rootNode = nullptr;
    selectedNode = nullptr;
    focusNode = nullptr;
    dropCreationDate();
    dropQueue();
    nodesByID = std::make_shared<const NodeIndex>();
    dropDuplicates();
    dropFolderSearch();
    dropTagResults();
    tagScanSummary = std::nullopt;
    dropGrowth();
    dropQuickWins();
    // The fields no longer hold it, so a tree of millions of nodes is destroyed in the background.
    jobs().release(std::move(oldTree));
    for (JobSlot* const slot : {&duplicateSlot(), &cautionSlot(), &folderSearchSlot()}) {
        slot->stop();
    }
    // Its flag stays: a tag scan that was cut off is the last one.
    tagScanSlot().discard();
}

void AppState::publishTree(const NodePointer& root, std::shared_ptr<const NodeIndex> index)
{
    rootNode = root;
    selectedNode = root;
    focusNode = root;
    nodesByID = std::move(index);
    refreshQuickWins();
    refreshKnownApps();
    maybeAutoFindDuplicates(root);
    refreshDriveUsage();
    indexScan(root);
    recomputeDiffs();
}

void AppState::changeQueue(const std::vector<FileNode*>& unstaged,
                           const std::vector<NodePointer>& staged)
{
    changeStaged(unstaged, staged);
}

void AppState::scanAgainAfter(const std::vector<FilePath>& changed)
{
    rescanAfter(changed);
}

void AppState::stageSelection()
{
    const NodePointer node = selectedNode.value();
    const NodePointer root = rootNode.value();
    if (!node || (root && node->id() == root->id())) {
        return;
    }
    toggleStaged(node);
}

QString AppState::disabledBloatKey() const
{
    QString joined;
    for (const std::string& key : disabledBloat()) {
        if (!joined.isEmpty()) {
            joined += QLatin1Char('|');
        }
        joined += QString::fromStdString(key);
    }
    const auto id = [](const NodePointer& node) { return QString::number(node ? node->id() : 0); };
    return joined + QLatin1Char('-') + id(rootNode.value()) + QLatin1Char('-') +
           id(focusNode.value());
}

FacetHost& FacetHost::of(AppState& state)
{
    return state;
}

FileContentCalls& FacetHost::fileContents() const
{
    return m_platform.fileContents == nullptr ? FileContentCalls::system()
                                              : *m_platform.fileContents;
}

Programs& FacetHost::programs() const
{
    return m_platform.programs == nullptr ? Programs::system() : *m_platform.programs;
}

HomeFolders FacetHost::homeFolders() const
{
    HomeFolders folders = HomeFolders::fromEnvironment(m_platform.home);
    folders.system = m_platform.system;
    return folders;
}

QuickWinsState& QuickWinsState::of(AppState& state)
{
    return state;
}

DevCachesState& DevCachesState::of(AppState& state)
{
    return state;
}

UninstallState& UninstallState::of(AppState& state)
{
    return state;
}

FlashState& FlashState::of(AppState& state)
{
    return state;
}

ScanState& ScanState::of(AppState& state)
{
    return state;
}

NavigationState& NavigationState::of(AppState& state)
{
    return state;
}

StagingState& StagingState::of(AppState& state)
{
    return state;
}

DuplicatesState& DuplicatesState::of(AppState& state)
{
    return state;
}

SearchState& SearchState::of(AppState& state)
{
    return state;
}

SnapshotsState& SnapshotsState::of(AppState& state)
{
    return state;
}

TaggingState& TaggingState::of(AppState& state)
{
    return state;
}

SettingsState& SettingsState::of(AppState& state)
{
    return state;
}

DriveState& DriveState::of(AppState& state)
{
    return state;
}

MonitorState& MonitorState::of(AppState& state)
{
    return state;
}

ScreenshotsState& ScreenshotsState::of(AppState& state)
{
    return state;
}

} // namespace quorvane
