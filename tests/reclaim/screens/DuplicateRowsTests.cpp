// SPDX-License-Identifier: MIT
#include "DuplicateRows.h"

#include "DuplicatesFixture.h"
#include "DuplicatesModel.h"
#include "GroupTexts.h"
#include "TreeText.h"

#include <QAbstractItemModelTester>
#include <QDateTime>

namespace quorvane {
namespace {

using DuplicateFinder::Group;

class DuplicateRowsTests : public DuplicatesFixture
{
protected:
    Row groupRow(bool isOpen = false)
    {
        return duplicaterows::groupRow(m_state, group(0), isOpen, m_widths);
    }
    Row memberRow(std::size_t member)
    {
        return duplicaterows::memberRow(m_state, group(0), file(0, member), m_widths);
    }
    RowAction keepLatest() { return groupRow().actions[0]; }
    RowAction keep(std::size_t member) { return memberRow(member).actions[1]; }
    void pressKeep(std::size_t member) { duplicaterows::pressKeep(m_state, file(0, member)); }
    void pressKeepLatest() { duplicaterows::pressKeepLatest(m_state, group(0)); }

    duplicaterows::Widths m_widths = duplicaterows::measure(m_state);
};

TEST_F(DuplicateRowsTests, AGroupTellsSizeCountAndGain)
{
    showGroups(1, 3);
    const Row row = groupRow();
    EXPECT_EQ(row.title, QStringLiteral("2.0 KB"));
    EXPECT_EQ(row.titleCells[0].text, QStringLiteral("× 3"));
    EXPECT_EQ(row.titleCells[1].text, QStringLiteral("4.0 KB reclaimable"));
    EXPECT_EQ(row.detail, QStringLiteral("scan"));
    EXPECT_EQ(row.detailTail, QString());
    EXPECT_EQ(row.describe(), QStringLiteral("2.0 KB, × 3, 4.0 KB reclaimable, scan"));
}

TEST_F(DuplicateRowsTests, AGroupNamesTwoFoldersAndCountsTheOthers)
{
    m_tree = test::treeFromText(
        "a/\n  x/\n    f 2048\nb/\n  x/\n    f 2048\nc/\n  y/\n    f 2048\nd/\n  f 2048\n");
    std::vector<FileNode*> files;
    for (const char* const path : {"a/x/f", "b/x/f", "c/y/f"}) {
        files.push_back(&test::nodeAt(m_tree->root(), path));
    }
    show({Group(2048, files, m_tree->rootPointer())});
    EXPECT_EQ(groupRow().detail, QStringLiteral("x · x"));
    EXPECT_EQ(groupRow().detailTail, QStringLiteral("+1 folders"));
    files.push_back(&test::nodeAt(m_tree->root(), "d/f"));
    show({Group(2048, files, m_tree->rootPointer())});
    EXPECT_EQ(groupRow().detailTail, QStringLiteral("+2 folders"));
}

TEST_F(DuplicateRowsTests, AGroupTellsWhatAClickDoes)
{
    showGroups(1, 3);
    EXPECT_EQ(groupRow(false).toolTip,
              QStringLiteral("Click anywhere to see the 3 duplicate copies."));
    EXPECT_EQ(groupRow(true).toolTip, QStringLiteral("Click to collapse this group."));
}

TEST_F(DuplicateRowsTests, KeepLatestBecomesKeptAndBack)
{
    showGroups(1, 3);
    RowAction button = keepLatest();
    EXPECT_EQ(button.text, QStringLiteral("Keep latest"));
    EXPECT_EQ(button.symbol, QStringLiteral("checkmark.seal"));
    EXPECT_EQ(button.role, ButtonRole::bordered);
    EXPECT_EQ(button.toolTip,
              QStringLiteral("Keeps the most recently modified copy (marked “Keep”), stages the "
                             "other 2 copyies for Trash review. Override on any copy with “Keep "
                             "this”."));
    pressKeepLatest();
    EXPECT_TRUE(m_state.isKeeper(file(0, 2))) << "the latest";
    button = keepLatest();
    EXPECT_EQ(button.text, QStringLiteral("Kept"));
    EXPECT_EQ(button.symbol, QStringLiteral("checkmark.seal.fill"));
    EXPECT_EQ(button.role, ButtonRole::kept);
    EXPECT_EQ(button.toolTip,
              QStringLiteral("This copy is the keeper — click to undo and send the other 2 "
                             "copyies back from Trash."));
    m_state.unstage(file(0, 0));
    EXPECT_EQ(keepLatest().text, QStringLiteral("Keep latest"))
        << "one of the others left the queue by another way";
    m_state.trashOthers(file(0, 2));
    pressKeepLatest();
    EXPECT_EQ(keepLatest().text, QStringLiteral("Keep latest"));
    EXPECT_TRUE(m_state.stagedNodes.value().empty());
}

TEST_F(DuplicateRowsTests, OfTwoCopiesTheOtherOneIsACopy)
{
    showGroups(1, 2);
    EXPECT_EQ(keepLatest().toolTip,
              QStringLiteral("Keeps the most recently modified copy (marked “Keep”), stages the "
                             "other 1 copy for Trash review. Override on any copy with “Keep "
                             "this”."));
    EXPECT_EQ(keep(0).toolTip,
              QStringLiteral("Keeps this copy on your Mac and stages the other 1 copy for Trash "
                             "review — nothing is deleted until you confirm Trash."));
    m_state.trashOthers(file(0, 1));
    EXPECT_EQ(keepLatest().toolTip,
              QStringLiteral("This copy is the keeper — click to undo and send the other 1 copy "
                             "back from Trash."));
}

TEST_F(DuplicateRowsTests, WithoutANewestFileTheButtonRests)
{
    m_tree = test::treeFromText("f 2048\n");
    show({Group(2048, {}, m_tree->rootPointer())});
    const RowAction button = keepLatest();
    EXPECT_EQ(button.text, QStringLiteral("Keep latest"));
    EXPECT_FALSE(button.isEnabled);
    EXPECT_EQ(button.toolTip,
              QStringLiteral("No modification date on these copies — pick one with “Keep this” "
                             "instead."));
    pressKeepLatest();
    EXPECT_TRUE(m_state.stagedNodes.value().empty());
}

TEST_F(DuplicateRowsTests, ACopyTellsWhereAndWhen)
{
    setModified(QDateTime(QDate(2025, 10, 12), QTime(18, 41)).toSecsSinceEpoch());
    showGroups(1, 3);
    EXPECT_EQ(memberRow(0).path, QStringLiteral("/scan/g0.0"));
    EXPECT_EQ(memberRow(0).cells[0].text, QStringLiteral("Oct 12, 2025 at 6:41 PM"));
    EXPECT_EQ(memberRow(0).describe(), QStringLiteral("g0.0, /scan/g0.0, Oct 12, 2025 at 6:41 PM"));
    EXPECT_EQ(memberRow(2).describe(),
              QStringLiteral("g0.2, Keep ✓, /scan/g0.2, Oct 12, 2025 at 6:41 PM"));
    EXPECT_EQ(memberRow(1).actions[0].text, QStringLiteral("Reveal"));
    EXPECT_EQ(memberRow(1).actions[0].toolTip, QStringLiteral("Shows this copy in Finder."));
}

TEST_F(DuplicateRowsTests, OnlyTheLatestCopyBearsTheBadge)
{
    showGroups(1, 3);
    const auto expectBadges = [this] {
        EXPECT_TRUE(memberRow(0).badges.empty());
        EXPECT_TRUE(memberRow(1).badges.empty());
        ASSERT_EQ(memberRow(2).badges.size(), 1U);
        EXPECT_EQ(memberRow(2).badges[0].text, QStringLiteral("Keep ✓"));
        EXPECT_EQ(memberRow(2).badges[0].toolTip,
                  QStringLiteral("Recommended keeper: the latest copy. The header's “Keep latest” "
                                 "keeps this one — click it once to make that official."));
    };
    expectBadges();
    m_state.trashOthers(file(0, 0));
    expectBadges();
}

TEST_F(DuplicateRowsTests, AnotherNameOfTheSameFileAndACopyThatBrokeOffBearMarks)
{
    m_tree = test::treeFromText("a 2048\nb 2048\nc 2048\n");
    std::vector<FileNode*> files;
    for (const char* const path : {"a", "b", "c"}) {
        files.push_back(&test::nodeAt(m_tree->root(), path));
    }
    DuplicateFinder::GroupTexts texts;
    show({Group(2048, files, m_tree->rootPointer(), texts, {{files[0], files[1]}, {files[2]}})});
    for (const std::size_t member : {0U, 1U}) {
        const Row row = memberRow(member);
        ASSERT_FALSE(row.badges.empty());
        EXPECT_EQ(row.badges.back().text, QStringLiteral("same file"));
        EXPECT_TRUE(row.badges.back().toolTip.contains(QStringLiteral("frees no space")));
        EXPECT_TRUE(row.describe().contains(QStringLiteral("same file")));
        EXPECT_TRUE(keep(member).isEnabled);
    }
    ASSERT_EQ(memberRow(2).badges.size(), 1U);
    EXPECT_EQ(memberRow(2).badges[0].text, QStringLiteral("not fully read"));
    EXPECT_FALSE(keep(2).isEnabled);
}

TEST_F(DuplicateRowsTests, TheButtonOfACopyFollowsTheQueue)
{
    showGroups(1, 3);
    EXPECT_EQ(keep(0).text, QStringLiteral("Keep this"));
    EXPECT_EQ(keep(0).symbol, QStringLiteral("checkmark.seal"));
    EXPECT_EQ(keep(0).toolTip,
              QStringLiteral("Keeps this copy on your Mac and stages the other 2 copyies for "
                             "Trash review — nothing is deleted until you confirm Trash."));
    pressKeep(0);
    EXPECT_EQ(keep(0).text, QStringLiteral("Kept ✓"));
    EXPECT_EQ(keep(0).symbol, QStringLiteral("checkmark.seal.fill"));
    EXPECT_EQ(keep(0).role, ButtonRole::kept);
    EXPECT_EQ(keep(0).toolTip,
              QStringLiteral("This copy is the keeper — the other 2 are staged for Trash. Click "
                             "to undo, which sends them back from Trash."));
    EXPECT_EQ(keep(1).text, QStringLiteral("Unstage"));
    EXPECT_EQ(keep(1).symbol, QStringLiteral("trash.slash"));
    EXPECT_EQ(keep(1).role, ButtonRole::bordered);
    EXPECT_EQ(keep(1).toolTip,
              QStringLiteral("Removes this copy from the Trash queue — it stays on disk. (The "
                             "others remain staged.)"));
    pressKeep(1);
    EXPECT_FALSE(file(0, 1).isStagedForTrash());
    EXPECT_TRUE(file(0, 2).isStagedForTrash());
    EXPECT_EQ(keep(0).text, QStringLiteral("Keep this"));
}

TEST_F(DuplicateRowsTests, TheButtonsThatBringMoreCountIt)
{
    using namespace duplicaterows;
    EXPECT_EQ(moreGroupsRow(400).title, QStringLiteral("Show 400 more groups…"));
    EXPECT_EQ(moreGroupsRow(100).title, QStringLiteral("Show 100 more groups…"));
    EXPECT_EQ(moreMembersRow(1, 200).title, QStringLiteral("Show remaining 1"));
    EXPECT_EQ(moreMembersRow(200, 200).title, QStringLiteral("Show remaining 200"));
    EXPECT_EQ(moreMembersRow(201, 200).title,
              QStringLiteral("Show 200 more — 201 left in this group"));
    EXPECT_EQ(moreMembersRow(250, 200).title,
              QStringLiteral("Show 200 more — 250 left in this group"));
}

class DuplicatesModelTests : public DuplicatesFixture
{
protected:
    void open(int groups, int copies = 2)
    {
        showGroups(groups, copies);
        m_model.setGroups(m_state.duplicateGroups.value());
    }
    QModelIndex lastOf(const QModelIndex& parent)
    {
        return m_model.index(m_model.rowCount(parent) - 1, 0, parent);
    }

    DuplicatesModel m_model{m_state, nullptr};
    QAbstractItemModelTester m_tester{&m_model,
                                      QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(DuplicatesModelTests, GroupsHaveTheirCopiesBelow)
{
    EXPECT_EQ(m_model.rowCount(), 0);
    open(3, 4);
    EXPECT_EQ(m_model.rowCount(), 3);
    EXPECT_EQ(m_model.rowCount(m_model.index(1)), 4);
    EXPECT_EQ(m_model.fileOf(m_model.index(2, 0, m_model.index(1))), &file(1, 2));
    EXPECT_EQ(m_model.groupOf(m_model.index(2, 0, m_model.index(1))), &group(1));
    EXPECT_EQ(m_model.fileOf(m_model.index(1)), nullptr);
    EXPECT_EQ(m_model.height(m_model.index(1)), 60);
    EXPECT_EQ(m_model.height(m_model.index(0, 0, m_model.index(1))), 48);
}

TEST_F(DuplicatesModelTests, NineHundredGroupsLeaveFourHundredToAsk)
{
    open(900);
    EXPECT_EQ(m_model.rowCount(), 501);
    const QModelIndex more = lastOf({});
    EXPECT_EQ(m_model.groupOf(more), nullptr);
    EXPECT_EQ(m_model.rowCount(more), 0);
    EXPECT_EQ(m_model.row(more).title, QStringLiteral("Show 400 more groups…"));
    m_model.showMore(more);
    EXPECT_EQ(m_model.rowCount(), 900);
    EXPECT_EQ(m_model.groupOf(more), &group(500)) << "its row is the first that came";
}

TEST_F(DuplicatesModelTests, AThousandGroupsLeaveFourHundredThenOneHundred)
{
    open(1000);
    m_model.showMore(lastOf({}));
    EXPECT_EQ(m_model.rowCount(), 901);
    EXPECT_EQ(m_model.row(lastOf({})).title, QStringLiteral("Show 100 more groups…"));
    m_model.showMore(lastOf({}));
    EXPECT_EQ(m_model.rowCount(), 1000);
}

TEST_F(DuplicatesModelTests, FiftyCopiesHaveNoButtonAndFiftyOneDo)
{
    open(1, 50);
    EXPECT_EQ(m_model.rowCount(m_model.index(0)), 50);
    open(1, 51);
    EXPECT_EQ(m_model.rowCount(m_model.index(0)), 51);
    EXPECT_EQ(m_model.row(lastOf(m_model.index(0))).title, QStringLiteral("Show remaining 1"));
    EXPECT_EQ(m_model.height(lastOf(m_model.index(0))), 44);
}

TEST_F(DuplicatesModelTests, ThreeHundredCopiesComeInThreeStepsAndGoWhenTheGroupCloses)
{
    open(2, 300);
    const QModelIndex group = m_model.index(0);
    m_model.setOpen(group, true);
    EXPECT_EQ(m_model.row(lastOf(group)).title,
              QStringLiteral("Show 200 more — 250 left in this group"));
    m_model.showMore(lastOf(group));
    EXPECT_EQ(m_model.rowCount(group), 251);
    EXPECT_EQ(m_model.row(lastOf(group)).title, QStringLiteral("Show remaining 50"));
    m_model.showMore(lastOf(group));
    EXPECT_EQ(m_model.rowCount(group), 300);
    EXPECT_EQ(m_model.rowCount(m_model.index(1)), 51) << "each group for itself";
    m_model.setOpen(group, false);
    EXPECT_EQ(m_model.rowCount(group), 51);
}

} // namespace
} // namespace quorvane
