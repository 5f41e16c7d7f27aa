// SPDX-License-Identifier: MIT
#include "DuplicateRowTexts.h"

#include "DuplicatesFixture.h"
#include "TreeText.h"

#include <QDateTime>

namespace quorvane {
namespace {

using Action = DuplicateAction::Kind;
using DuplicateFinder::Group;

class DuplicateRowTextsTests : public DuplicatesFixture
{
protected:
    DuplicateGroupRow groupRow(bool expanded = false) { return {m_state, group(0), expanded}; }
    DuplicateMemberRow memberRow(std::size_t member)
    {
        return {m_state, group(0), file(0, member)};
    }
};

TEST_F(DuplicateRowTextsTests, AGroupTellsSizeCountAndGain)
{
    showGroups(1, 3);
    EXPECT_EQ(groupRow().sizeText(), QStringLiteral("2.0 KB"));
    EXPECT_EQ(groupRow().countText(), QStringLiteral("× 3"));
    EXPECT_EQ(groupRow().reclaimableText(), QStringLiteral("4.0 KB reclaimable"));
    EXPECT_EQ(groupRow().foldersText(), QStringLiteral("scan"));
    EXPECT_EQ(groupRow().moreFoldersText(), QString());
    EXPECT_EQ(groupRow().accessibleName(), QStringLiteral("2.0 KB, × 3, 4.0 KB reclaimable, scan"));
}

TEST_F(DuplicateRowTextsTests, AGroupNamesTwoFoldersAndCountsTheOthers)
{
    m_tree = test::treeFromText(
        "a/\n  x/\n    f 2048\nb/\n  x/\n    f 2048\nc/\n  y/\n    f 2048\nd/\n  f 2048\n");
    std::vector<FileNode*> files;
    for (const char* const path : {"a/x/f", "b/x/f", "c/y/f"}) {
        files.push_back(&test::nodeAt(m_tree->root(), path));
    }
    show({Group(2048, files, m_tree->rootPointer())});
    EXPECT_EQ(groupRow().foldersText(), QStringLiteral("x · x"));
    EXPECT_EQ(groupRow().moreFoldersText(), QStringLiteral("+1 folders"));
    files.push_back(&test::nodeAt(m_tree->root(), "d/f"));
    show({Group(2048, files, m_tree->rootPointer())});
    EXPECT_EQ(groupRow().moreFoldersText(), QStringLiteral("+2 folders"));
}

TEST_F(DuplicateRowTextsTests, AGroupTellsWhatAClickDoes)
{
    showGroups(1, 3);
    EXPECT_EQ(groupRow(false).toolTip(),
              QStringLiteral("Click anywhere to see the 3 duplicate copies."));
    EXPECT_EQ(groupRow(true).toolTip(), QStringLiteral("Click to collapse this group."));
}

TEST_F(DuplicateRowTextsTests, KeepLatestBecomesKeptAndBack)
{
    showGroups(1, 3);
    DuplicateButton button = groupRow().keepLatest();
    EXPECT_EQ(button.face.text, QStringLiteral("Keep latest"));
    EXPECT_EQ(button.face.symbol, QStringLiteral("checkmark.seal"));
    EXPECT_EQ(button.face.role, ButtonRole::bordered);
    EXPECT_EQ(button.action.kind, Action::trashOthers);
    EXPECT_EQ(button.action.file, &file(0, 2)) << "the latest";
    EXPECT_EQ(button.toolTip,
              QStringLiteral("Keeps the most recently modified copy (marked “Keep”), stages the "
                             "other 2 copyies for Trash review. Override on any copy with “Keep "
                             "this”."));
    perform(m_state, button.action);
    button = groupRow().keepLatest();
    EXPECT_EQ(button.face.text, QStringLiteral("Kept"));
    EXPECT_EQ(button.face.symbol, QStringLiteral("checkmark.seal.fill"));
    EXPECT_EQ(button.face.role, ButtonRole::kept);
    EXPECT_EQ(button.toolTip,
              QStringLiteral("This copy is the keeper — click to undo and send the other 2 "
                             "copyies back from Trash."));
    m_state.unstage(file(0, 0));
    EXPECT_EQ(groupRow().keepLatest().face.text, QStringLiteral("Keep latest"))
        << "one of the others left the queue by another way";
    m_state.trashOthers(file(0, 2));
    perform(m_state, groupRow().keepLatest().action);
    EXPECT_EQ(groupRow().keepLatest().face.text, QStringLiteral("Keep latest"));
    EXPECT_TRUE(m_state.stagedNodes.value().empty());
}

TEST_F(DuplicateRowTextsTests, OfTwoCopiesTheOtherOneIsACopy)
{
    showGroups(1, 2);
    EXPECT_EQ(groupRow().keepLatest().toolTip,
              QStringLiteral("Keeps the most recently modified copy (marked “Keep”), stages the "
                             "other 1 copy for Trash review. Override on any copy with “Keep "
                             "this”."));
    EXPECT_EQ(memberRow(0).keep().toolTip,
              QStringLiteral("Keeps this copy on your Mac and stages the other 1 copy for Trash "
                             "review — nothing is deleted until you confirm Trash."));
    m_state.trashOthers(file(0, 1));
    EXPECT_EQ(groupRow().keepLatest().toolTip,
              QStringLiteral("This copy is the keeper — click to undo and send the other 1 copy "
                             "back from Trash."));
}

TEST_F(DuplicateRowTextsTests, WithoutANewestFileTheButtonRests)
{
    m_tree = test::treeFromText("f 2048\n");
    show({Group(2048, {}, m_tree->rootPointer())});
    const DuplicateButton button = groupRow().keepLatest();
    EXPECT_EQ(button.face.text, QStringLiteral("Keep latest"));
    EXPECT_FALSE(button.isEnabled());
    EXPECT_EQ(button.toolTip,
              QStringLiteral("No modification date on these copies — pick one with “Keep this” "
                             "instead."));
    perform(m_state, button.action);
    EXPECT_TRUE(m_state.stagedNodes.value().empty());
}

TEST_F(DuplicateRowTextsTests, ACopyTellsWhereAndWhen)
{
    setModified(QDateTime(QDate(2025, 10, 12), QTime(18, 41)).toSecsSinceEpoch());
    showGroups(1, 3);
    EXPECT_EQ(memberRow(0).pathText(), QStringLiteral("/scan/g0.0"));
    EXPECT_EQ(memberRow(0).otherCopyCount(), 2U);
    EXPECT_EQ(memberRow(0).dateText(), QStringLiteral("Oct 12, 2025 at 6:41 PM"));
    EXPECT_EQ(memberRow(0).accessibleName(),
              QStringLiteral("g0.0, /scan/g0.0, Oct 12, 2025 at 6:41 PM"));
    EXPECT_EQ(memberRow(2).accessibleName(),
              QStringLiteral("g0.2, Keep ✓, /scan/g0.2, Oct 12, 2025 at 6:41 PM"));
}

TEST_F(DuplicateRowTextsTests, OnlyTheLatestCopyBearsTheBadge)
{
    showGroups(1, 3);
    EXPECT_EQ(DuplicateMemberRow::badgeText(), QStringLiteral("Keep ✓"));
    EXPECT_EQ(DuplicateMemberRow::badgeToolTip(),
              QStringLiteral("Recommended keeper: the latest copy. The header's “Keep latest” "
                             "keeps this one — click it once to make that official."));
    const auto expectBadges = [this] {
        EXPECT_FALSE(memberRow(0).isRecommendedKeep());
        EXPECT_FALSE(memberRow(1).isRecommendedKeep());
        EXPECT_TRUE(memberRow(2).isRecommendedKeep());
    };
    expectBadges();
    m_state.trashOthers(file(0, 0));
    expectBadges();
}

TEST_F(DuplicateRowTextsTests, ACopyIsRevealed)
{
    showGroups(1);
    const DuplicateButton button = memberRow(1).reveal();
    EXPECT_EQ(button.face.text, QStringLiteral("Reveal"));
    EXPECT_EQ(button.toolTip, QStringLiteral("Shows this copy in Finder."));
    perform(m_state, button.action);
    EXPECT_EQ(m_platform.workspace.revealed, std::vector{FilePath("/scan/g0.1")});
}

TEST_F(DuplicateRowTextsTests, TheButtonOfACopyFollowsTheQueue)
{
    showGroups(1, 3);
    DuplicateButton button = memberRow(0).keep();
    EXPECT_EQ(button.face.text, QStringLiteral("Keep this"));
    EXPECT_EQ(button.face.symbol, QStringLiteral("checkmark.seal"));
    EXPECT_EQ(button.toolTip,
              QStringLiteral("Keeps this copy on your Mac and stages the other 2 copyies for "
                             "Trash review — nothing is deleted until you confirm Trash."));
    perform(m_state, button.action);

    button = memberRow(0).keep();
    EXPECT_EQ(button.face.text, QStringLiteral("Kept ✓"));
    EXPECT_EQ(button.face.symbol, QStringLiteral("checkmark.seal.fill"));
    EXPECT_EQ(button.face.role, ButtonRole::kept);
    EXPECT_EQ(button.action.kind, Action::unkeep);
    EXPECT_EQ(button.toolTip,
              QStringLiteral("This copy is the keeper — the other 2 are staged for Trash. Click "
                             "to undo, which sends them back from Trash."));

    button = memberRow(1).keep();
    EXPECT_EQ(button.face.text, QStringLiteral("Unstage"));
    EXPECT_EQ(button.face.symbol, QStringLiteral("trash.slash"));
    EXPECT_EQ(button.face.role, ButtonRole::bordered);
    EXPECT_EQ(button.toolTip,
              QStringLiteral("Removes this copy from the Trash queue — it stays on disk. (The "
                             "others remain staged.)"));
    perform(m_state, button.action);
    EXPECT_FALSE(file(0, 1).isStagedForTrash());
    EXPECT_TRUE(file(0, 2).isStagedForTrash());
    EXPECT_EQ(memberRow(0).keep().face.text, QStringLiteral("Keep this"));
}

TEST_F(DuplicateRowTextsTests, TheButtonsThatBringMoreCountIt)
{
    EXPECT_EQ(moreGroupsText(400), QStringLiteral("Show 400 more groups…"));
    EXPECT_EQ(moreGroupsText(100), QStringLiteral("Show 100 more groups…"));
    EXPECT_EQ(moreMembersText(1), QStringLiteral("Show remaining 1"));
    EXPECT_EQ(moreMembersText(50), QStringLiteral("Show remaining 50"));
    EXPECT_EQ(moreMembersText(200), QStringLiteral("Show remaining 200"));
    EXPECT_EQ(moreMembersText(201), QStringLiteral("Show 200 more — 201 left in this group"));
    EXPECT_EQ(moreMembersText(250), QStringLiteral("Show 200 more — 250 left in this group"));
}

} // namespace
} // namespace quorvane
