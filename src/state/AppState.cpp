// SPDX-License-Identifier: MIT
#include "AppState.h"

#include "FileSystemCalls.h"
#include "SystemMonitor.h"
#include "Text.h"
#include "Workspace.h"

#include <tuple>
#include <utility>
#include <variant>

namespace quorvane {

AppState::AppState(const Platform& platform)
    : duplicateGroups(std::make_shared<const DuplicateFinder::Groups>())
    , nodesByID(std::make_shared<const NodeIndex>())
    , m_platform(platform)
    , m_jobs(platform.lowerThisThread)
{
    m_flashTask.setTimerType(Qt::PreciseTimer);
    m_flashTask.setSingleShot(true);
    m_flashTask.setInterval(flashDuration);
    QObject::connect(&m_flashTask, &QTimer::timeout, &m_flashTask,
                     [this] { flashMessage = std::nullopt; });
    readSettings();
    refreshDriveUsage();
}

AppState::~AppState()
{
    m_cancelFlag->set(true);
}

NodePointer AppState::share(FileNode* node) const
{
    return node == nullptr ? nullptr : NodePointer(rootNode.value(), node);
}

void AppState::scanHome()
{
    section = AppSection::analysis;
    startScan(homeURL());
}

void AppState::scanFullMac()
{
    section = AppSection::analysis;
    startScan(FilePath("/"));
}

void AppState::rescan()
{
    if (hasScan()) {
        startScan(rootNode.value()->path());
    }
}

void AppState::dropOldScan()
{
    auto oldTree = std::make_tuple(rootNode.value(), nodesByID.value());
    errorMessage = std::nullopt;
    rootNode = nullptr;
    selectedNode = nullptr;
    focusNode = nullptr;
    stagedNodes = std::vector<NodePointer>{};
    nodesByID = std::make_shared<const NodeIndex>();
    dropDuplicates();
    // The fields have let go of it by now, so a tree of millions of nodes ends in the background.
    m_jobs.release(std::move(oldTree));
}

void AppState::startScan(const FilePath& url)
{
    if (isScanning) {
        return;
    }
    m_cancelFlag->set(false);
    m_startsScanOver = false;
    m_scannedURL = url;
    isScanning = true;
    progress = ScanProgress{};
    dropOldScan();
    if (m_duplicateSearchTask) {
        // Its finder runs on to its end over the old tree; nobody hears of what it finds.
        m_duplicateSearchTask->cancel();
    }
    const auto onProgress = [this, flag = m_cancelFlag,
                             post = m_jobs.poster()](const ScanProgress& report) {
        if (flag->get()) {
            return false;
        }
        post([this, report] { progress = report; });
        return true;
    };
    m_scanTask = m_jobs.start(
        JobPriority::userInitiated,
        [url, onProgress, calls = &m_platform.fileSystem](const Job&) {
            FinishedScan finished;
            DiskScanner scanner(0, *calls);
            DiskScanner::Result result = scanner.scan(url, onProgress);
            if (auto* error = std::get_if<DiskScanError>(&result)) {
                finished.error = std::move(*error);
            } else {
                finished.tree = std::get<std::shared_ptr<FileTree>>(std::move(result));
                finished.index = std::make_shared<const NodeIndex>(finished.tree->root());
            }
            return finished;
        },
        [this](FinishedScan finished) { publishScan(std::move(finished)); });
}

void AppState::publishScan(FinishedScan finished)
{
    if (m_startsScanOver) {
        m_jobs.release(std::move(finished));
        isScanning = false;
        startScan(FilePath(m_scannedURL));
        return;
    }
    if (!finished.tree) {
        consumeError(finished.error);
        return;
    }
    const NodePointer root = finished.tree->rootPointer();
    isScanning = false;
    progress = ScanProgress{root->fileCount(), root->directoryCount(), root->scannedBytes(), {}};
    rootNode = root;
    selectedNode = root;
    focusNode = root;
    buildIndex(std::move(finished.index));
    maybeAutoFindDuplicates(root);
    refreshDriveUsage();
}

/// The index is made in the scan's own job: visiting a million nodes here would hold up the window.
void AppState::buildIndex(std::shared_ptr<const NodeIndex> index)
{
    nodesByID = std::move(index);
}

void AppState::cancelScan()
{
    m_startsScanOver = false;
    m_cancelFlag->set(true);
}

void AppState::consumeError(const DiskScanError& error)
{
    isScanning = false;
    if (error.message != "Scan cancelled") {
        errorMessage = displayText(error.message);
    }
}

void AppState::select(const NodePointer& node)
{
    selectedNode = node;
}

void AppState::focus(const NodePointer& node)
{
    focusNode = node;
    selectedNode = node;
}

void AppState::focusUp()
{
    const NodePointer focus = focusNode.value();
    FileNode* const parent = focus ? focus->parent() : nullptr;
    focusNode = parent != nullptr ? NodePointer(focus, parent) : rootNode.value();
    selectedNode = nullptr;
}

std::optional<std::int64_t> AppState::creationDate(const FileNode& node) const
{
    return DiskScanner(0, m_platform.fileSystem).fileCreationDate(node.path());
}

void AppState::revealInFinder(const FileNode& node)
{
    m_platform.workspace.reveal(node.path());
}

void AppState::openInApp(const FileNode& node)
{
    m_platform.workspace.open(node.path());
}

void AppState::openSettings()
{
    if (section.value() != AppSection::settings) {
        sectionBeforeSettings = section.value();
    }
    section = AppSection::settings;
}

void AppState::closeSettings()
{
    if (section.value() == AppSection::settings) {
        section = sectionBeforeSettings.value();
    }
}

void AppState::flash(const QString& message)
{
    m_flashTask.stop();
    flashMessage = message;
    m_flashTask.start();
}

void AppState::dismissFlash()
{
    m_flashTask.stop();
    flashMessage = std::nullopt;
}

void AppState::refreshDriveUsage()
{
    // A volume that hangs must not take a thread at each reading: one is under way at a time, and
    // one more follows when it was asked for meanwhile.
    if (m_isReadingDrive) {
        m_readsDriveAgain = true;
        return;
    }
    m_isReadingDrive = true;
    m_driveTask = m_jobs.start(
        JobPriority::utility,
        [home = homeURL(), calls = &m_platform.fileSystem](const Job&) {
            return SystemMonitor::driveUsage(*calls, home);
        },
        [this](DriveSample sample) {
            driveStat = sample;
            m_isReadingDrive = false;
            if (std::exchange(m_readsDriveAgain, false)) {
                refreshDriveUsage();
            }
        });
}

} // namespace quorvane
