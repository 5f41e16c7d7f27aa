// SPDX-License-Identifier: MIT
#pragma once

#include "FileTree.h"
#include "JobSlot.h"

#include <QProperty>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace quorvane {

class AppState;
class FacetHost;

/// The Trash queue and its batches. Main thread.
class StagingState
{
public:
    static StagingState& of(AppState& state);

    explicit StagingState(FacetHost& host);

    QProperty<std::vector<NodePointer>> stagedNodes; ///< the Trash queue, in the order of staging
    QProperty<bool> isTrashingStaged{false};         ///< a batch is on its way to the Trash
    QProperty<double> trashProgress{0};              ///< share of the batch that is done, 0 to 1
    QProperty<std::optional<QString>> trashStatus;   ///< status line of the batch

    void toggleStaged(const NodePointer& node);
    /// Harmless for a node that is not in the queue.
    void unstage(FileNode& node);
    /// Takes nodes out of the queue and puts others, which are not in it, at its end: one change of
    /// stagedNodes, and none where the queue stays as it is.
    void changeStaged(const std::vector<FileNode*>& unstaged,
                      const std::vector<NodePointer>& staged);
    /// Bytes of the queue, each entry counted by itself, whether or not it lies inside another.
    std::int64_t stagedSpace() const;
    /// Moves the queue to the Trash, one entry after another in the background, and scans the root
    /// again. A scan that was asked for meanwhile starts over instead, where it concerns one of the
    /// entries. What cannot be moved stays on the disk. There is no way to stop it.
    void sendStagedToTrash();

private:
    FacetHost& m_host;
    JobSlot m_trashSlot;
};

} // namespace quorvane
