// SPDX-License-Identifier: MIT
#include "DuplicatesListFixture.h"
#include "RowAccessibility.h"
#include "TreeText.h"
#include "WaitFor.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QScrollBar>

namespace quorvane {
namespace {

class DuplicatesListTests : public DuplicatesListFixture
{
protected:
    QModelIndex moreGroups() { return groupRow(model().rowCount() - 1); }
    QModelIndex moreMembers(int group)
    {
        return member(group, model().rowCount(groupRow(group)) - 1);
    }
    bool isOpen(int group) { return list().isExpanded(groupRow(group)); }
};

TEST_F(DuplicatesListTests, AClickAnywhereOnAGroupOpensAndClosesIt)
{
    open(3, 3);
    click(groupRow(1));
    EXPECT_TRUE(isOpen(1));
    EXPECT_EQ(list().visualRect(groupRow(2)).top(), 2 * 60 + 3 * 48);
    click(groupRow(1));
    EXPECT_FALSE(isOpen(1));
}

TEST_F(DuplicatesListTests, ButtonsActAndOpenNothing)
{
    open(2, 3);
    click(groupRow(0), keepLatestPart);
    EXPECT_FALSE(isOpen(0));
    EXPECT_TRUE(m_state.isKeeper(file(0, 2)));
    click(groupRow(0), keepLatestPart);
    EXPECT_TRUE(m_state.stagedNodes.value().empty());

    click(groupRow(1));
    click(member(1, 0), keepPart);
    EXPECT_TRUE(m_state.isKeeper(file(1, 0)));
    click(member(1, 1), keepPart);
    EXPECT_FALSE(file(1, 1).isStagedForTrash());
    click(member(1, 1), revealPart);
    EXPECT_EQ(m_platform.workspace.revealed, std::vector{FilePath("/scan/g1.1")});
    click(member(1, 1));
    EXPECT_TRUE(isOpen(1)) << "beside its buttons a copy does nothing";
    EXPECT_EQ(m_platform.workspace.revealed.size(), 1U);
}

TEST_F(DuplicatesListTests, AButtonOfARowThatTheEdgeCutsIsPressedWhereItIs)
{
    open(1, 30);
    click(groupRow(0));
    QApplication::processEvents();
    const int last = list().indexAt(QPoint(5, list().viewport()->height() - 3)).row();
    const QRect button = list().partRect(member(0, last), keepPart);
    // Half of the button is to be seen.
    list().verticalScrollBar()->setValue(list().verticalScrollBar()->value() + button.center().y() -
                                         list().viewport()->height());
    const int place = list().verticalScrollBar()->value();
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {},
                      list().partRect(member(0, last), keepPart).center() - QPoint(0, 4));
    EXPECT_TRUE(m_state.isKeeper(file(0, static_cast<std::size_t>(last))));
    EXPECT_EQ(list().verticalScrollBar()->value(), place) << "the row stays under the pointer";
}

TEST_F(DuplicatesListTests, TellsWhatEachPlaceDoes)
{
    open(2, 3);
    click(groupRow(0));
    EXPECT_EQ(toolTip(groupRow(1)),
              QStringLiteral("Click anywhere to see the 3 duplicate copies."));
    EXPECT_EQ(toolTip(groupRow(0)), QStringLiteral("Click to collapse this group."));
    EXPECT_TRUE(toolTip(groupRow(0), keepLatestPart)
                    .startsWith(QStringLiteral("Keeps the most recently modified copy")));
    EXPECT_EQ(toolTip(member(0, 0), revealPart), QStringLiteral("Shows this copy in Finder."));
    EXPECT_TRUE(
        toolTip(member(0, 0), keepPart).startsWith(QStringLiteral("Keeps this copy on your Mac")));
    EXPECT_EQ(list().toolTipAt(list().placesOf(member(0, 2)).badges[0].center()),
              duplicaterows::recommendedToolTip());
    EXPECT_EQ(list().toolTipAt(list().placesOf(member(0, 2)).path.center()),
              QStringLiteral("/scan/g0.2"));
}

TEST_F(DuplicatesListTests, MoreGroupsComeByAClick)
{
    open(1000);
    list().setCurrent(moreGroups());
    click(moreGroups());
    EXPECT_EQ(model().rowCount(), 901);
    EXPECT_TRUE(isAt(groupRow(500)));
    list().setCurrent(moreGroups());
    click(moreGroups());
    EXPECT_EQ(model().rowCount(), 1000);
}

TEST_F(DuplicatesListTests, MoreCopiesComeByAClick)
{
    open(2, 300);
    list().press(groupRow(0));
    list().setCurrent(moreMembers(0));
    click(moreMembers(0));
    EXPECT_EQ(model().shownMembers(0), 250U);
    EXPECT_TRUE(isAt(member(0, 50)));
    EXPECT_TRUE(isOpen(0));
}

TEST_F(DuplicatesListTests, KeysThatBringMoreLeadToTheTopOfWhatCame)
{
    open(1000);
    enter();
    key(Qt::Key_End);
    key(Qt::Key_Return);
    ASSERT_TRUE(isAt(groupRow(500)));
    EXPECT_EQ(list().visualRect(groupRow(500)).top(), 60) << "below the row that was the last";
    open(2, 300);
    enter();
    list().press(groupRow(0));
    for (int i = 0; i < 51; ++i) {
        key(Qt::Key_Down);
    }
    ASSERT_EQ(list().rowOf(list().currentIndex()).kind, RowKind::more);
    key(Qt::Key_Space);
    ASSERT_TRUE(isAt(member(0, 50)));
    EXPECT_EQ(list().visualRect(member(0, 50)).top(), 48);
}

TEST_F(DuplicatesListTests, TheFirstKeyShowsWhereItStandsAndGoesNowhere)
{
    open(3);
    list().setFocus(Qt::OtherFocusReason);
    key(Qt::Key_Down);
    EXPECT_TRUE(isAt(groupRow(0)));
    key(Qt::Key_Down);
    EXPECT_TRUE(isAt(groupRow(1)));
}

TEST_F(DuplicatesListTests, ArrowsMoveOpenAndClose)
{
    open(3, 2);
    enter();
    EXPECT_TRUE(isAt(groupRow(0)));
    key(Qt::Key_Right);
    EXPECT_TRUE(isOpen(0));
    key(Qt::Key_Down);
    EXPECT_TRUE(isAt(member(0, 0)));
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    EXPECT_TRUE(isAt(member(0, 0), keepPart));
    key(Qt::Key_Down);
    EXPECT_TRUE(isAt(member(0, 1), keepPart)) << "the column stays";
    key(Qt::Key_Down);
    EXPECT_TRUE(isAt(groupRow(1)));
    key(Qt::Key_Up);
    EXPECT_TRUE(isAt(member(0, 1)));
    key(Qt::Key_Left);
    EXPECT_TRUE(isAt(groupRow(0)));
    key(Qt::Key_Left);
    EXPECT_FALSE(isOpen(0));
    key(Qt::Key_End);
    EXPECT_TRUE(isAt(groupRow(2)));
    key(Qt::Key_Home);
    EXPECT_TRUE(isAt(groupRow(0)));
}

TEST_F(DuplicatesListTests, TabLeadsAlongTheButtonsAndOn)
{
    open(2);
    enter();
    key(Qt::Key_Tab);
    EXPECT_TRUE(isAt(groupRow(0), keepLatestPart));
    key(Qt::Key_Return);
    EXPECT_TRUE(m_state.isKeeper(file(0, 1)));
    key(Qt::Key_Space);
    EXPECT_FALSE(m_state.isKeeper(file(0, 1)));
    key(Qt::Key_Tab);
    EXPECT_TRUE(m_after.hasFocus());
    QTest::keyClick(&m_after, Qt::Key_Backtab, Qt::ShiftModifier);
    ASSERT_TRUE(list().hasFocus());
    EXPECT_TRUE(isAt(groupRow(0), keepLatestPart));
    key(Qt::Key_Backtab);
    EXPECT_TRUE(isAt(groupRow(0)));
}

TEST_F(DuplicatesListTests, ReturnAndSpaceOpenAGroupAndPressWhatBringsMore)
{
    open(1, 51);
    enter();
    key(Qt::Key_Return);
    EXPECT_TRUE(isOpen(0));
    key(Qt::Key_Space);
    EXPECT_FALSE(isOpen(0));
    key(Qt::Key_Space);
    key(Qt::Key_End);
    EXPECT_EQ(list().rowOf(list().currentIndex()).kind, RowKind::more);
    key(Qt::Key_Return);
    EXPECT_TRUE(isAt(member(0, 50)));
    EXPECT_EQ(model().rowCount(groupRow(0)), 51);
}

TEST_F(DuplicatesListTests, ClosingAGroupLeavesTheFocusOnIt)
{
    open(2, 3);
    list().press(groupRow(0));
    list().setCurrent(member(0, 2), keepPart);
    list().press(groupRow(0));
    EXPECT_TRUE(isAt(groupRow(0)));
}

TEST_F(DuplicatesListTests, WhatIsOpenStaysSoAsLongAsItsIdIsThere)
{
    open(3, 60);
    click(groupRow(1));
    list().press(moreMembers(1));
    const auto groups = m_state.duplicateGroups.value();
    m_state.duplicateGroups = std::make_shared<const DuplicateFinder::Groups>();
    QApplication::processEvents();
    EXPECT_EQ(model().rowCount(), 0);
    m_state.duplicateGroups = groups;
    QApplication::processEvents();
    EXPECT_TRUE(isOpen(1));
    EXPECT_EQ(model().shownMembers(1), 50U) << "how many copies it showed is the row's alone";
    list().press(groupRow(1));
    m_state.duplicateGroups = std::make_shared<const DuplicateFinder::Groups>();
    QApplication::processEvents();
    m_state.duplicateGroups = groups;
    QApplication::processEvents();
    EXPECT_FALSE(isOpen(1)) << "closed, and so it stays";
}

TEST_F(DuplicatesListTests, WhatIsOpenBeyondTheLimitShowsWhenItsGroupDoes)
{
    open(1000);
    list().press(moreGroups());
    list().press(groupRow(600));
    const auto groups = m_state.duplicateGroups.value();
    // The same groups behind 400 others: the open one is beyond the 900 on show.
    DuplicateFinder::Groups moved(groups->begin() + 100, groups->begin() + 500);
    moved.insert(moved.end(), groups->begin(), groups->end());
    m_state.duplicateGroups = std::make_shared<const DuplicateFinder::Groups>(moved);
    QApplication::processEvents();
    list().press(moreGroups());
    EXPECT_TRUE(isOpen(1000));
}

TEST_F(DuplicatesListTests, WhatABatchHasDealtWithIsStagedNoMoreOnTheScreenEither)
{
    open(1, 2);
    m_state.trashOthers(file(0, 1));
    EXPECT_EQ(wordOf(groupRow(0), 0), QStringLiteral("Kept"));
    QAccessibleInterface* const button =
        QAccessible::queryAccessibleInterface(&list())->child(0)->child(0);
    ASSERT_EQ(button->text(QAccessible::Name), QStringLiteral("Kept"));
    // As the batch does it: the flag first, then the progress.
    file(0, 0).setStagedForTrash(false);
    m_state.trashProgress = 1;
    EXPECT_EQ(announceRowNames(list()), 0) << "it has been told";
    EXPECT_EQ(button->text(QAccessible::Name), QStringLiteral("Keep latest"));
}

TEST_F(DuplicatesListTests, OtherGroupsStartAtTheTop)
{
    open(400);
    list().verticalScrollBar()->setValue(5000);
    open(300);
    EXPECT_EQ(list().verticalScrollBar()->value(), 0);
    EXPECT_FALSE(list().currentIndex().isValid());
}

TEST_F(DuplicatesListTests, AssistiveTechnologyFindsGroupsCopiesAndButtons)
{
    open(2, 2);
    QAccessibleInterface* const tree = QAccessible::queryAccessibleInterface(&list());
    EXPECT_EQ(tree->role(), QAccessible::Tree);
    EXPECT_EQ(tree->text(QAccessible::Name), QStringLiteral("Duplicate files"));
    ASSERT_EQ(tree->childCount(), 2);
    QAccessibleInterface* first = tree->child(0);
    EXPECT_EQ(first->text(QAccessible::Name),
              QStringLiteral("2.0 KB, × 2, 2.0 KB reclaimable, scan"));
    EXPECT_TRUE(first->state().collapsed);
    EXPECT_EQ(first->text(QAccessible::Description),
              QStringLiteral("Click anywhere to see the 2 duplicate copies."));
    ASSERT_EQ(first->childCount(), 1);
    EXPECT_EQ(first->child(0)->text(QAccessible::Name), QStringLiteral("Keep latest"));
    first->child(0)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(m_state.isKeeper(file(0, 1)));
    EXPECT_EQ(first->child(0)->text(QAccessible::Name), QStringLiteral("Kept"));

    first->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    first = tree->child(0);
    EXPECT_TRUE(first->state().expanded);
    ASSERT_EQ(first->childCount(), 1 + 2) << "its button and its copies";
    EXPECT_EQ(first->child(1)->text(QAccessible::Description), QString());
    EXPECT_EQ(first->child(2)->text(QAccessible::Description), duplicaterows::recommendedToolTip());
    EXPECT_EQ(first->child(1)->parent(), first);
    EXPECT_EQ(first->child(1)->child(1)->text(QAccessible::Name), QStringLiteral("Unstage"));
}

} // namespace
} // namespace quorvane
