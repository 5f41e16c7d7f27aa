// SPDX-License-Identifier: MIT
#include "ScanState.h"

#include "FacetHost.h"
#include "FileSystemCalls.h"
#include "FolderChooser.h"
#include "Text.h"

#include <QCoreApplication>

#include <algorithm>
#include <string>
#include <utility>
#include <variant>

namespace quorvane {
namespace {

/// Whether what a scan of the folder finds depends on one of the paths.
bool concerns(const FilePath& folder, const std::vector<FilePath>& paths)
{
    return std::any_of(paths.begin(), paths.end(), [&folder](const FilePath& path) {
        return folder.holds(path) || path.holds(folder);
    });
}

/// Where the path leads if it is a link, else the path itself. Asks the disk.
FilePath behindLink(const FilePath& path, const DiskScanner& scanner, FileSystemCalls& calls)
{
    const std::optional<ItemMetadata> entry = scanner.allMetadata(path);
    std::string resolved;
    return entry && entry->isSymbolicLink && calls.resolve(path.bytes().c_str(), resolved)
               ? FilePath(std::move(resolved))
               : path;
}

} // namespace

ScanState::ScanState(FacetHost& host)
    : nodesByID(std::make_shared<const NodeIndex>())
    , m_host(host)
    , m_scanSlot(host.jobs(), {&isScanning})
{}

const FilePath& ScanState::homeURL() const
{
    return m_host.platform().home;
}

NodePointer ScanState::share(FileNode* node) const
{
    return node == nullptr ? nullptr : NodePointer(rootNode.value(), node);
}

void ScanState::pickFolder()
{
    m_host.platform().folderChooser.chooseFolder(
        QCoreApplication::translate("AppState", "Scan"),
        QCoreApplication::translate("AppState", "Choose a folder or volume to analyze"),
        [this, post = m_host.jobs().poster()](const FilePath& folder) {
            if (folder.isEmpty()) {
                return;
            }
            post([this, folder] { openFolder(folder); });
        });
}

void ScanState::openFolder(const FilePath& folder)
{
    m_host.showSection(AppSection::analysis);
    startScan(folder, Link::follow);
}

void ScanState::scanHome()
{
    openFolder(homeURL());
}

void ScanState::scanFullMac()
{
    m_host.showSection(AppSection::analysis);
    startScan(FilePath("/"));
}

void ScanState::rescan()
{
    if (hasScan()) {
        startScan(rootNode.value()->path());
    }
}

void ScanState::startScan(const FilePath& url)
{
    startScan(url, Link::refuse);
}

void ScanState::startScan(const FilePath& url, Link link)
{
    if (isScanning) {
        return;
    }
    m_startsScanOver = false;
    m_scannedURL = url;
    // Before the work starts: a small folder is scanned before this returns, and what is told last
    // has to be the new tree.
    progress = ScanProgress{};
    dropOldScan();
    m_scanSlot.restart(
        JobPriority::userInitiated,
        [this, url, link, calls = &m_host.platform().fileSystem](const JobRun& run) {
            DiskScanner scanner(0, *calls);
            const FilePath root = link == Link::follow ? behindLink(url, scanner, *calls) : url;
            const auto onProgress = [this, &run, &root](const ScanProgress& report) {
                if (run.isStopped()) {
                    return false;
                }
                run.report([this, report, root] {
                    progress = report;
                    m_scannedURL = root;
                });
                return true;
            };
            FinishedScan finished;
            DiskScanner::Result result = scanner.scan(root, onProgress);
            if (auto* error = std::get_if<DiskScanError>(&result)) {
                finished.error = std::move(*error);
            } else {
                finished.tree = std::get<std::shared_ptr<FileTree>>(std::move(result));
                // Visiting a million nodes on the main thread would hold up the window.
                finished.index = std::make_shared<const NodeIndex>(finished.tree->root());
            }
            return finished;
        },
        [this](FinishedScan finished) { publishScan(std::move(finished)); },
        [this, url] { consumeError({"Not enough memory or threads to scan " + url.bytes()}); });
}

void ScanState::publishScan(FinishedScan finished)
{
    if (m_startsScanOver) {
        m_host.jobs().release(std::move(finished));
        startScan(FilePath(m_scannedURL));
        return;
    }
    if (!finished.tree) {
        consumeError(finished.error);
        return;
    }
    const NodePointer root = finished.tree->rootPointer();
    progress = ScanProgress{root->fileCount(), root->directoryCount(), root->scannedBytes(), {}};
    publishTree(root, std::move(finished.index));
}

void ScanState::cancelScan()
{
    m_startsScanOver = false;
    m_scanSlot.requestStop();
}

void ScanState::consumeError(const DiskScanError& error)
{
    isScanning = false;
    if (error.message != "Scan cancelled") {
        errorMessage = displayText(error.message);
    }
}

void ScanState::rescanAfter(const std::vector<FilePath>& changed)
{
    if (hasScan()) {
        rescan();
    } else if (isScanning && !m_scanSlot.isStopRequested() && concerns(m_scannedURL, changed)) {
        // It was started during the batch and may have listed what has been moved since.
        m_startsScanOver = true;
        m_scanSlot.requestStop();
    }
}

} // namespace quorvane
