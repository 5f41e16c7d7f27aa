// SPDX-License-Identifier: MIT
#pragma once

#include "FileTree.h"
#include "JobSlot.h"
#include "TrashBatch.h"

#include <QProperty>
#include <QString>

#include <cstdint>
#include <future>
#include <map>
#include <memory>
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
    /// Why entries of earlier batches stayed, until a later one moves them.
    QProperty<std::map<FilePath, TrashOutcome>> trashFailures;

    /// What the last look at the disk says about the queue that it was given; never absent.
    QProperty<std::shared_ptr<const QueueCautions>> queueCautions;

    void toggleStaged(const NodePointer& node);
    /// Puts a stand-alone node, which no scan saw, into the queue, unless it is there. found is
    /// what the entry looked like: it is not moved if it looks otherwise when its turn comes.
    void stageItem(const NodePointer& item, const TrashRequest& found);
    /// Takes this very node out; another with the same id stays. Harmless for a node that is not in
    /// the queue.
    void unstage(FileNode& node);
    /// Takes nodes out of the queue and puts others, which are not in it, at its end: one change of
    /// stagedNodes, and none where the queue stays as it is.
    void changeStaged(const std::vector<FileNode*>& unstaged,
                      const std::vector<NodePointer>& staged);
    /// Bytes of the queue, each entry counted by itself, whether or not it lies inside another;
    /// at most the largest number.
    std::int64_t stagedSpace() const;
    /// Looks in the background at what stands in the way of the queue; queueCautions tells. A look
    /// that is under way ends first and tells nothing: one that hangs in the system keeps one
    /// thread, however often the queue changes.
    void refreshQueueCautions();
    /// Moves the queue to the Trash, one entry after another in the background, and scans the root
    /// again. A scan that was asked for meanwhile starts over instead, where it concerns one of the
    /// entries. What differs from what was found, what cannot be moved, and the last copy of a file
    /// whose loss is not accepted stay on the disk. Without memory for it the queue comes back.
    /// There is no way to stop it: not even the end of the model does.
    void sendStagedToTrash(const AcceptedLosses& accepted = {});
    /// Blocks until no batch is under way. For the end of the program, when the runner is closed.
    void waitForBatch() const;

protected:
    /// Empties the queue, and forgets what was said about it.
    void dropQueue();
    JobSlot& cautionSlot() { return m_cautionSlot; }

private:
    struct Sent
    {
        FilePath path;
        TrashOutcome outcome;
    };

    CheckedTrash door() const;
    void remember(const std::vector<Sent>& sent);
    void setQueue(std::vector<NodePointer> queue);
    void takeBack(const std::vector<NodePointer>& nodes,
                  const std::map<NodePointer, TrashRequest>& found);

    FacetHost& m_host;
    JobSlot m_trashSlot;
    JobSlot m_cautionSlot;
    bool m_looksAgain = false; ///< once the look under way has ended
    /// Of the stand-alone entries of the queue.
    std::map<NodePointer, TrashRequest> m_found;
    /// Ready once the latest batch has moved its last entry; invalid before the first.
    std::shared_future<void> m_batchEnd;
};

} // namespace quorvane
