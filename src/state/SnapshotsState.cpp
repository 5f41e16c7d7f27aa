// SPDX-License-Identifier: MIT
#include "SnapshotsState.h"

#include "FacetHost.h"

#include <algorithm>
#include <utility>

namespace quorvane {
namespace {

using Growth = std::shared_ptr<const SnapshotGrowth>;

} // namespace

SnapshotsState::SnapshotsState(FacetHost& host)
    : m_host(host)
    , m_loadSlot(host.jobs())
    , m_saveSlot(host.jobs())
    , m_compareSlot(host.jobs(), {&isComparing})
{}

SnapshotStore SnapshotsState::store() const
{
    const Platform& platform = m_host.platform();
    FileContentCalls& contents =
        platform.fileContents != nullptr ? *platform.fileContents : FileContentCalls::system();
    return SnapshotStore(SnapshotStore::snapshotsDirectory(), platform.fileSystem, contents);
}

void SnapshotsState::loadSnapshots()
{
    if (isSnapshotBusy) {
        return;
    }
    isSnapshotBusy = true;
    snapshotStatus = QStringLiteral("Loading snapshots…");
    m_loadSlot.restart(
        JobPriority::userInitiated,
        [store = store()](const JobRun& run) {
            return store.load([&run] { return run.isUnwanted(); });
        },
        [this](std::vector<StoredSnapshot> loaded) {
            setSnapshots(std::move(loaded));
            isSnapshotBusy = false;
            snapshotStatus = std::nullopt;
        });
}

void SnapshotsState::saveCurrentSnapshot()
{
    const NodePointer root = m_host.scannedRoot();
    if (!root || isSnapshotBusy) {
        return;
    }
    isSnapshotBusy = true;
    snapshotStatus = QStringLiteral("Saving snapshot…");
    m_saveSlot.restart(
        JobPriority::userInitiated,
        [root, store = store()](const JobRun&) {
            return store.save(SnapshotStore::capture(*root).snapshot);
        },
        [this](bool) {
            isSnapshotBusy = false;
            snapshotStatus = std::nullopt;
            loadSnapshots();
        });
}

void SnapshotsState::deleteSnapshot(const StoredSnapshot& snapshot)
{
    isSnapshotBusy = true;
    snapshotStatus = QStringLiteral("Deleting snapshot…");
    std::vector<StoredSnapshot> rest = snapshots.value();
    std::erase_if(rest, [id = snapshot.id](const StoredSnapshot& each) { return each.id == id; });
    setSnapshots(std::move(rest));
    // Not in a slot: two may be under way, and neither takes the other's place.
    m_host.jobs().start(
        JobPriority::userInitiated,
        [id = snapshot.id, store = store()](const Job&) { return store.remove(id); },
        [this](bool) {
            isSnapshotBusy = false;
            snapshotStatus = std::nullopt;
        });
}

void SnapshotsState::compareWith(const std::optional<QUuid>& id)
{
    if (baseSnapshotID.value() == id) {
        return;
    }
    baseSnapshotID = id;
    recomputeDiffs();
}

void SnapshotsState::setSnapshots(std::vector<StoredSnapshot> list)
{
    if (snapshots.value() == list) {
        return;
    }
    snapshots = std::move(list);
    recomputeDiffs();
}

void SnapshotsState::recomputeDiffs()
{
    const std::vector<StoredSnapshot>& known = snapshots.value();
    const auto base = std::find_if(known.begin(), known.end(), [&](const StoredSnapshot& each) {
        return each.id == baseSnapshotID.value();
    });
    const NodePointer root = m_host.scannedRoot();
    if (base == known.end() || !root) {
        dropGrowth();
        return;
    }
    m_compareSlot.restart(
        JobPriority::userInitiated,
        [root, base = *base, store = store()](const JobRun& run) -> Growth {
            std::optional<ScanSnapshot> past = store.read(base);
            if (!past || run.isUnwanted()) {
                return nullptr;
            }
            return std::make_shared<const SnapshotGrowth>(*past, std::move(past->items), root);
        },
        [this](Growth found) {
            // Tens of thousands of rows end in the background.
            m_host.jobs().release(growth.value());
            growth = std::move(found);
        });
}

void SnapshotsState::dropGrowth()
{
    m_compareSlot.stop();
    m_host.jobs().release(growth.value());
    growth = nullptr;
}

} // namespace quorvane
