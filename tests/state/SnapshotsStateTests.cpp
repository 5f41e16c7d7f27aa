// SPDX-License-Identifier: MIT
#include "StateFixture.h"

#include <filesystem>

namespace quorvane {
namespace {

class SnapshotsModel : public StateFixture
{
protected:
    SnapshotsModel() { forgetAll(); }
    ~SnapshotsModel() override
    {
        end();
        forgetAll();
    }

    static void forgetAll()
    {
        std::filesystem::remove_all(SnapshotStore::snapshotsDirectory().bytes());
    }

    void awaitSnapshots()
    {
        ASSERT_TRUE(waitFor([this] { return !state().isSnapshotBusy.value(); }));
    }

    void awaitComparison()
    {
        ASSERT_TRUE(waitFor([this] { return !state().isComparing.value(); }));
    }

    StoredSnapshot saved()
    {
        state().saveCurrentSnapshot();
        awaitSnapshots();
        return state().snapshots.value().at(0);
    }
};

TEST_F(SnapshotsModel, AnEmptyFolderLoadsAsAnEmptyList)
{
    state().loadSnapshots();
    EXPECT_TRUE(state().isSnapshotBusy);
    EXPECT_EQ(state().snapshotStatus.value(), QStringLiteral("Loading snapshots…"));
    awaitSnapshots();
    EXPECT_TRUE(state().snapshots.value().empty());
    EXPECT_FALSE(state().snapshotStatus.value());
}

TEST_F(SnapshotsModel, ASavedScanShowsUpInTheList)
{
    disk.file("a", 70000);
    scan(disk.root());
    std::vector<QString> statuses;
    const auto watch = state().snapshotStatus.onValueChanged(
        [&] { statuses.push_back(state().snapshotStatus.value().value_or(QStringLiteral("-"))); });
    state().saveCurrentSnapshot();
    EXPECT_TRUE(state().isSnapshotBusy);
    awaitSnapshots();
    ASSERT_EQ(state().snapshots.value().size(), 1U);
    EXPECT_EQ(state().snapshots.value()[0].rootBytes, 70000);
    EXPECT_EQ(statuses,
              (std::vector<QString>{QStringLiteral("Saving snapshot…"), QStringLiteral("-"),
                                    QStringLiteral("Loading snapshots…"), QStringLiteral("-")}));
}

TEST_F(SnapshotsModel, WithoutATreeOrWhileBusyNothingIsSaved)
{
    state().saveCurrentSnapshot();
    EXPECT_FALSE(state().isSnapshotBusy);
    disk.file("a", 70000);
    scan(disk.root());
    state().loadSnapshots();
    state().saveCurrentSnapshot();
    EXPECT_EQ(state().snapshotStatus.value(), QStringLiteral("Loading snapshots…"));
    awaitSnapshots();
    EXPECT_TRUE(state().snapshots.value().empty());
}

TEST_F(SnapshotsModel, TheTreeIsComparedWithTheChosenSnapshot)
{
    disk.file("a", 70000);
    disk.file("b", 80000);
    scan(disk.root());
    const StoredSnapshot base = saved();
    EXPECT_EQ(state().growth.value(), nullptr);
    disk.file("a", 100000);
    disk.remove("b");
    state().compareWith(base.id);
    awaitComparison();
    EXPECT_EQ(state().growth.value()->net(), 0);
    scan(disk.root());
    awaitComparison();
    const auto growth = state().growth.value();
    ASSERT_TRUE(growth);
    EXPECT_EQ(growth->net(), 30000 - 80000);
    EXPECT_EQ(growth->base().id, base.id);
    EXPECT_EQ(state().shownGrowth(), nullptr);
    state().showsChanges = true;
    EXPECT_EQ(state().shownGrowth(), growth);
}

TEST_F(SnapshotsModel, ANewScanDropsTheComparisonAtOnce)
{
    disk.file("a", 70000);
    scan(disk.root());
    state().compareWith(saved().id);
    awaitComparison();
    ASSERT_TRUE(state().growth.value());
    state().startScan(disk.root());
    EXPECT_EQ(state().growth.value(), nullptr);
    awaitScan();
    awaitComparison();
    EXPECT_TRUE(state().growth.value());
}

TEST_F(SnapshotsModel, DeletingTheChosenOneEndsTheComparison)
{
    disk.file("a", 70000);
    scan(disk.root());
    const StoredSnapshot base = saved();
    state().compareWith(base.id);
    awaitComparison();
    state().deleteSnapshot(base);
    EXPECT_TRUE(state().isSnapshotBusy);
    EXPECT_EQ(state().snapshotStatus.value(), QStringLiteral("Deleting snapshot…"));
    EXPECT_TRUE(state().snapshots.value().empty());
    EXPECT_EQ(state().growth.value(), nullptr);
    awaitSnapshots();
    EXPECT_TRUE(std::filesystem::is_empty(SnapshotStore::snapshotsDirectory().bytes()));
}

TEST_F(SnapshotsModel, TwoDeletesAtOnceBothReachTheDisk)
{
    disk.file("a", 70000);
    scan(disk.root());
    saved();
    saved();
    const auto both = state().snapshots.value();
    ASSERT_EQ(both.size(), 2U);
    state().deleteSnapshot(both[0]);
    state().deleteSnapshot(both[1]);
    EXPECT_TRUE(waitFor(
        [] { return std::filesystem::is_empty(SnapshotStore::snapshotsDirectory().bytes()); }));
}

TEST_F(SnapshotsModel, AChoiceThatIsNotInTheListComparesNothing)
{
    disk.file("a", 70000);
    scan(disk.root());
    state().compareWith(QUuid::createUuid());
    EXPECT_FALSE(state().isComparing);
    EXPECT_EQ(state().growth.value(), nullptr);
    state().compareWith(std::nullopt);
    EXPECT_EQ(state().growth.value(), nullptr);
}

} // namespace
} // namespace quorvane
