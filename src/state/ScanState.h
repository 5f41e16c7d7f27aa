// SPDX-License-Identifier: MIT
#pragma once

#include "DiskScanner.h"
#include "FilePath.h"
#include "FileTree.h"
#include "JobSlot.h"
#include "ScanProgress.h"

#include <QProperty>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace quorvane {

class AppState;
class FacetHost;

/// The scan and its tree. Main thread.
class ScanState
{
public:
    static ScanState& of(AppState& state);

    explicit ScanState(FacetHost& host);

    QProperty<NodePointer> rootNode;                 ///< the finished tree
    QProperty<bool> isScanning{false};               ///< a scan is under way
    QProperty<std::optional<ScanProgress>> progress; ///< last report; after a scan its totals
    QProperty<std::optional<QString>> errorMessage;  ///< last scan failure
    /// Every node of the current tree by id; never absent, empty without a tree.
    QProperty<std::shared_ptr<const NodeIndex>> nodesByID;

    bool hasScan() const { return rootNode.value() != nullptr; }
    const FilePath& homeURL() const;
    /// Shares ownership of the tree with a node of the current one. node may be null.
    NodePointer share(FileNode* node) const;
    /// The path unchanged, with no shortening of the home folder. For the screen only.
    static QString displayPath(const FilePath& url) { return url.displayText(); }

    /// Shows the analysis and scans a folder that a person has named. A link is followed there.
    void openFolder(const FilePath& folder);
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

protected:
    ~ScanState() = default;

    /// A new scan begins: clears the fields of all facets that belong to the old tree.
    virtual void dropOldScan() = 0;
    /// The scan has found a tree: publishes it and starts what follows a scan.
    virtual void publishTree(const NodePointer& root, std::shared_ptr<const NodeIndex> index) = 0;
    /// Scans the root again. Without one, a running scan that concerns one of the paths starts
    /// over.
    void rescanAfter(const std::vector<FilePath>& changed);

private:
    struct FinishedScan
    {
        std::shared_ptr<FileTree> tree;
        std::shared_ptr<const NodeIndex> index;
        DiskScanError error;
    };

    enum class Link { follow, refuse };
    void startScan(const FilePath& url, Link link);
    void publishScan(FinishedScan finished);

    FacetHost& m_host;
    JobSlot m_scanSlot;
    FilePath m_scannedURL; ///< of the last scan that was started
    /// The scan under way has read folders that a batch was about to change.
    bool m_startsScanOver = false;
};

} // namespace quorvane
