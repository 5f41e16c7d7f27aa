// SPDX-License-Identifier: MIT
#pragma once

#include "JobSlot.h"
#include "SnapshotGrowth.h"
#include "SnapshotStore.h"

#include <QProperty>
#include <QString>
#include <QUuid>

#include <memory>
#include <optional>
#include <vector>

namespace quorvane {

class AppState;
class FacetHost;

/// The saved snapshots, the one that is compared with the current tree, and what has changed since.
/// Main thread.
class SnapshotsState
{
public:
    static SnapshotsState& of(AppState& state);

    explicit SnapshotsState(FacetHost& host);

    QProperty<std::vector<StoredSnapshot>> snapshots; ///< as last loaded, newest first
    QProperty<bool> isSnapshotBusy{false};            ///< a load, save or delete is under way
    QProperty<std::optional<QString>> snapshotStatus; ///< shown during that work
    QProperty<std::optional<QUuid>> baseSnapshotID;   ///< the one chosen for comparing
    /// What has changed since the chosen snapshot; null without one, without a tree, and until it
    /// is compared.
    QProperty<std::shared_ptr<const SnapshotGrowth>> growth;
    QProperty<bool> isComparing{false};
    QProperty<bool> showsChanges{false}; ///< the canvases are coloured by growth

    /// Nothing while a load, save or delete is under way.
    void loadSnapshots();
    /// Takes a snapshot of the current tree, stores it and loads the list again. Nothing without a
    /// tree and while other work is under way. An error is not told: it does not show up.
    void saveCurrentSnapshot();
    /// Takes the snapshot out of the list at once and its file off the disk in the background.
    void deleteSnapshot(const StoredSnapshot& snapshot);
    /// Chooses the snapshot that the current tree is compared with, or none.
    void compareWith(const std::optional<QUuid>& id);
    /// The growth that the canvases show; null while they show none.
    std::shared_ptr<const SnapshotGrowth> shownGrowth() const
    {
        return showsChanges ? growth.value() : nullptr;
    }

protected:
    /// Compares anew, as the tree, the list or the choice has changed.
    void recomputeDiffs();
    void dropGrowth();

private:
    SnapshotStore store() const;
    void setSnapshots(std::vector<StoredSnapshot> list);

    FacetHost& m_host;
    JobSlot m_loadSlot;
    JobSlot m_saveSlot;
    JobSlot m_compareSlot;
};

} // namespace quorvane
