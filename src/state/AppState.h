// SPDX-License-Identifier: MIT
#pragma once

#include "AppPalette.h"
#include "AppSection.h"
#include "Appearance.h"
#include "BloatFilter.h"
#include "DiskScanner.h"
#include "DriveSample.h"
#include "DuplicateFinder.h"
#include "DuplicateIndex.h"
#include "FileTree.h"
#include "JobRunner.h"
#include "LockedFlag.h"
#include "Platform.h"
#include "RunningSearches.h"
#include "ScanProgress.h"
#include "SizeMode.h"
#include "VisualizerType.h"

#include <QProperty>
#include <QString>
#include <QTimer>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quorvane {

/// The one observable model. Created once at process entry, kept for the life of the process; main
/// thread only. Screens read its fields, subscribe to those that they show, and call its
/// operations. Jobs are given what they need by value and never see it.
class AppState
{
public:
    /// Reads the stored settings and starts a first reading of the drive. What the platform refers
    /// to outlives the state.
    explicit AppState(const Platform& platform);
    AppState(const AppState&) = delete;
    AppState& operator=(const AppState&) = delete;
    /// Asks the running jobs to stop and waits for them.
    ~AppState();

    // ---- Fields, observable
    QProperty<NodePointer> rootNode;                 ///< the finished tree
    QProperty<bool> isScanning{false};               ///< a scan is under way
    QProperty<std::optional<ScanProgress>> progress; ///< last report; after a scan its totals
    QProperty<std::optional<QString>> errorMessage;  ///< last scan failure
    QProperty<NodePointer> selectedNode;             ///< node whose details are shown
    QProperty<AppSection> section{AppSection::analysis};
    QProperty<AppSection> sectionBeforeSettings{AppSection::analysis};
    QProperty<VisualizerType> visualizer{VisualizerType::treemap};
    QProperty<NodePointer> focusNode;                ///< folder that the visualisers draw as root
    QProperty<std::vector<NodePointer>> stagedNodes; ///< the Trash queue, in the order of staging
    /// The last search's result in the finder's order; never absent, empty without one.
    QProperty<std::shared_ptr<const DuplicateFinder::Groups>> duplicateGroups;
    QProperty<bool> duplicateSearchIsRunning{false};
    QProperty<double> duplicateProgress{0}; ///< of the search, 0 to 1
    /// Root for which a search was last started without being asked for; never cleared.
    QProperty<std::optional<FilePath>> autoPreparedDuplicateURL;
    QProperty<std::optional<QString>> flashMessage; ///< text of the flash banner
    QProperty<DriveSample> driveStat;               ///< usage of the start-up drive
    QProperty<bool> isTrashingStaged{false};        ///< a batch is on its way to the Trash
    QProperty<double> trashProgress{0};             ///< share of the batch that is done, 0 to 1
    QProperty<std::optional<QString>> trashStatus;  ///< status line of the batch
    QProperty<AppTheme> theme{AppTheme::dark};
    QProperty<AccentChoice> accent{AccentChoice::blue};
    QProperty<AppPalette> storagePalette{AppPalette::slate};
    QProperty<SizeMode> storageSizeMode{SizeMode::disk};
    QProperty<bool> storageInspectorVisible{false};
    QProperty<std::map<std::string, bool>> storageBloatFilters;
    /// Every node of the current tree by id; never absent, empty without a tree.
    QProperty<std::shared_ptr<const NodeIndex>> nodesByID;
    QProperty<std::int64_t> duplicateCount{0};       ///< copies beyond the first of each group
    QProperty<std::int64_t> duplicateReclaimable{0}; ///< bytes that these copies take

    // ---- Derived
    bool hasScan() const { return rootNode.value() != nullptr; }
    const FilePath& homeURL() const { return m_platform.home; }
    /// The folder on show: the focus, else the root; absent without a tree.
    NodePointer shownNode() const
    {
        return focusNode.value() ? focusNode.value() : rootNode.value();
    }
    /// Shares ownership of the tree with a node of the current one. node may be null.
    NodePointer share(FileNode* node) const;
    /// The path unchanged, with no shortening of the home folder. For the screen only.
    static QString displayPath(const FilePath& url) { return url.displayText(); }

    // ---- Settings, stored at each change
    void setTheme(AppTheme value);
    void setAccent(AccentChoice value);
    AppPalette palette() const { return storagePalette.value(); }
    /// Also publishes the value to NodeColors.
    void setPalette(AppPalette value);
    SizeMode sizeMode() const { return storageSizeMode.value(); }
    void setSizeMode(SizeMode value);
    bool inspectorVisible() const { return storageInspectorVisible.value(); }
    void setInspectorVisible(bool value);
    const std::map<std::string, bool>& bloatFilters() const { return storageBloatFilters.value(); }
    void setBloatFilters(const std::map<std::string, bool>& value);
    /// Keys of the families that are hidden.
    BloatKeys disabledBloat() const;
    /// "{hidden keys, sorted, joined by |}-{root id}-{focus id}": changes whenever a layout must.
    QString disabledBloatKey() const;

    // ---- Scan
    void pickFolder();
    void scanHome();
    void scanFullMac();
    /// Scans the current root again; nothing without one.
    void rescan();
    /// Ignored while a scan runs. Drops the old tree and everything that belongs to it at once.
    void startScan(const FilePath& url);
    /// Asks the running scan to stop; isScanning stays true until it has.
    void cancelScan();
    void consumeError(const DiskScanError& error);

    // ---- Navigation in the tree
    void select(const NodePointer& node);
    void focus(const NodePointer& node);
    void focusUp();
    /// When the node was created, in whole seconds since 1970: one call to the file system. Absent
    /// when it fails and where the file system keeps no such date.
    std::optional<std::int64_t> creationDate(const FileNode& node) const;
    void revealInFinder(const FileNode& node);
    void openInApp(const FileNode& node);

    // ---- Staging
    /// Stages or unstages the selected node; nothing without one, and nothing for the scan root.
    void stageSelection();
    void toggleStaged(const NodePointer& node);
    /// Harmless for a node that is not in the queue.
    void unstage(FileNode& node);
    /// Bytes of the queue, each entry counted by itself, whether or not it lies inside another.
    std::int64_t stagedSpace() const;
    /// Moves the queue to the Trash, one entry after another in the background, and scans the root
    /// again. A scan that was asked for meanwhile starts over instead, where it concerns one of the
    /// entries. What cannot be moved stays on the disk. There is no way to stop it.
    void sendStagedToTrash();

    // ---- Duplicates
    /// Starts a search in the background, once for each root that comes up: not when the same root
    /// is scanned again. The end of a scan calls it.
    void maybeAutoFindDuplicates(const NodePointer& root);
    /// Searches the current tree; nothing without one, and while a search runs only a flash. In the
    /// background the search yields to all other work.
    void runDuplicateSearch(bool background = false);
    /// Nothing of the running search is published any more.
    void stopDuplicateSearch();
    /// Stages all copies of the file but itself, and takes it out of the queue if it stands there.
    /// Nothing for a file without copies.
    void trashOthers(const FileNode& keep);
    /// Whether the file is the one copy of its group that is not staged.
    bool isKeeper(const FileNode& file) const;
    /// Takes the staged copies of the file out of the queue again.
    void unkeep(const FileNode& file);
    /// Files of the largest group; 0 without groups.
    std::size_t mostDuplicateCopies() const { return duplicateIndex().mostCopies(); }

    // ---- Sections
    void openSettings();
    void closeSettings();

    // ---- Flash banner
    static constexpr std::chrono::milliseconds flashDuration{2600};
    void flash(const QString& message);
    void dismissFlash();

    // ---- Drive
    void refreshDriveUsage();

    /// Where screens start their layouts.
    JobRunner& jobs() { return m_jobs; }

private:
    struct FinishedScan
    {
        std::shared_ptr<FileTree> tree;
        std::shared_ptr<const NodeIndex> index;
        DiskScanError error;
    };

    struct FoundDuplicates
    {
        std::shared_ptr<const DuplicateFinder::Groups> groups;
        std::shared_ptr<const DuplicateIndex> index;
    };

    void readSettings();
    void dropOldScan();
    void dropDuplicates();
    void publishDuplicates(FoundDuplicates found, const std::shared_ptr<LockedFlag>& flag);
    void updateDuplicateSummary();
    const DuplicateIndex& duplicateIndex() const;
    /// The first group that has a file of that id; null for none.
    const DuplicateFinder::Group* duplicateGroupOf(const FileNode& file) const;
    void publishScan(FinishedScan finished);
    void buildIndex(std::shared_ptr<const NodeIndex> index);
    void finishTrashing(const std::vector<FilePath>& sent);

    Platform m_platform;
    std::shared_ptr<LockedFlag> m_cancelFlag = std::make_shared<LockedFlag>();
    FilePath m_scannedURL; ///< of the last scan that was started
    /// The scan under way has read folders that a batch was about to change.
    bool m_startsScanOver = false;
    JobHandle m_scanTask;
    JobHandle m_driveTask;
    JobHandle m_duplicateSearchTask; ///< its address is the run's id
    std::shared_ptr<LockedFlag> m_activeDuplicateCancelFlag;
    std::shared_ptr<RunningSearches> m_runningSearches = std::make_shared<RunningSearches>();
    /// Made for the groups in it; made anew when others are on show.
    mutable std::shared_ptr<const DuplicateIndex> m_duplicateIndex;
    bool m_isReadingDrive = false;
    bool m_readsDriveAgain = false;
    QTimer m_flashTask;
    JobRunner m_jobs;
};

} // namespace quorvane
