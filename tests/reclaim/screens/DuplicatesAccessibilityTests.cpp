// SPDX-License-Identifier: MIT
#include "DuplicatesAccessibility.h"
#include "DuplicatesListFixture.h"
#include "TreeText.h"

#include <QAccessible>
#include <QAccessibleActionInterface>

namespace quorvane {
namespace {

class DuplicatesAccessibilityTests : public DuplicatesListFixture
{};

TEST_F(DuplicatesAccessibilityTests, AssistiveTechnologyFindsRowsAndButtons)
{
    open(2, 2);
    QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(&m_list);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->role(), QAccessible::List);
    EXPECT_EQ(list->text(QAccessible::Name), QStringLiteral("Duplicate files"));
    ASSERT_EQ(list->childCount(), 2);
    QAccessibleInterface* const first = list->child(0);
    EXPECT_EQ(first->text(QAccessible::Name),
              QStringLiteral("2.0 KB, × 2, 2.0 KB reclaimable, scan"));
    EXPECT_EQ(first->parent(), list);
    EXPECT_EQ(list->indexOfChild(first), 0);
    EXPECT_TRUE(first->state().collapsed);
    EXPECT_EQ(first->text(QAccessible::Description),
              QStringLiteral("Click anywhere to see the 2 duplicate copies."));
    ASSERT_EQ(first->childCount(), 1);
    QAccessibleInterface* const keep = first->child(0);
    EXPECT_EQ(keep->role(), QAccessible::Button);
    EXPECT_EQ(keep->text(QAccessible::Name), QStringLiteral("Keep latest"));
    EXPECT_TRUE(keep->text(QAccessible::Description).startsWith(QStringLiteral("Keeps the most")));
    EXPECT_EQ(keep->parent(), first);
    EXPECT_EQ(first->indexOfChild(keep), 0);
    keep->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(m_state.isKeeper(file(0, 1)));
    EXPECT_EQ(keep->text(QAccessible::Name), QStringLiteral("Kept"));

    first->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_FALSE(first->isValid()) << "rows have come";
    ASSERT_EQ(list->childCount(), 4);
    EXPECT_TRUE(list->child(0)->state().expanded);
    EXPECT_EQ(list->child(0)->text(QAccessible::Description),
              QStringLiteral("Click to collapse this group."));
    EXPECT_EQ(list->child(1)->text(QAccessible::Description), QString());
    EXPECT_EQ(list->child(2)->text(QAccessible::Description), DuplicateMemberRow::badgeToolTip());
    EXPECT_EQ(list->child(1)->childCount(), 2);
    EXPECT_EQ(list->child(1)->child(0)->text(QAccessible::Name), QStringLiteral("Reveal"));
    EXPECT_EQ(list->child(1)->child(1)->text(QAccessible::Name), QStringLiteral("Unstage"));
    EXPECT_EQ(list->child(4), nullptr);
    const QPoint place = list->child(3)->rect().center();
    EXPECT_EQ(list->childAt(place.x(), place.y()), list->child(3));
    enter();
    EXPECT_EQ(list->focusChild(), list->child(0));
}

TEST_F(DuplicatesAccessibilityTests, ButtonsTellThatTheyBearOtherWords)
{
    open(2, 2);
    m_list.activate({groupRow(0), 0});
    QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(&m_list);
    QAccessibleInterface* const keepLatest = list->child(0)->child(0);
    QAccessibleInterface* const older = list->child(1)->child(1);
    QAccessibleInterface* const newer = list->child(2)->child(1);
    QAccessibleInterface* const other = list->child(3)->child(0);
    ASSERT_EQ(other->text(QAccessible::Name), QStringLiteral("Keep latest"));
    // Three of the four bear other words, and that is told once.
    file(0, 0).setStagedForTrash(true);
    EXPECT_EQ(announceDuplicateButtons(m_list), 3);
    EXPECT_EQ(announceDuplicateButtons(m_list), 0);
    file(0, 0).setStagedForTrash(false);
    EXPECT_EQ(announceDuplicateButtons(m_list), 3);
    // The model's operations are followed at once.
    m_state.trashOthers(file(0, 1));
    EXPECT_EQ(announceDuplicateButtons(m_list), 0) << "it has been told";
    EXPECT_EQ(keepLatest->text(QAccessible::Name), QStringLiteral("Kept"));
    EXPECT_EQ(older->text(QAccessible::Name), QStringLiteral("Unstage"));
    EXPECT_EQ(newer->text(QAccessible::Name), QStringLiteral("Kept ✓"));
    // As a batch does it: the flag, then the progress.
    file(0, 0).setStagedForTrash(false);
    m_state.trashProgress = 0.5;
    EXPECT_EQ(announceDuplicateButtons(m_list), 0) << "it has been told";
    EXPECT_EQ(newer->text(QAccessible::Name), QStringLiteral("Keep this"));
    file(0, 0).setStagedForTrash(true);
    m_state.unkeep(file(0, 1));
    EXPECT_EQ(announceDuplicateButtons(m_list), 0);
    EXPECT_EQ(keepLatest->text(QAccessible::Name), QStringLiteral("Keep latest"));
}

TEST_F(DuplicatesAccessibilityTests, AButtonThatRestsIsReportedAsDisabled)
{
    open(1, 51);
    m_list.activate({groupRow(0), 0});
    QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(&m_list);
    EXPECT_FALSE(list->child(0)->child(0)->state().disabled);
    QAccessibleInterface* const more = list->child(51);
    EXPECT_EQ(more->text(QAccessible::Name), QStringLiteral("Show remaining 1"));
    EXPECT_FALSE(more->state().disabled);
    m_tree = test::treeFromText("f 2048\n");
    show({DuplicateFinder::Group(2048, {}, m_tree->rootPointer())});
    m_list.setGroups(m_state.duplicateGroups.value());
    QAccessibleInterface* const row = list->child(0);
    QAccessibleInterface* const button = row->child(0);
    EXPECT_EQ(button->text(QAccessible::Name), QStringLiteral("Keep latest"));
    EXPECT_TRUE(button->state().disabled);
    EXPECT_FALSE(row->state().disabled);
    EXPECT_FALSE(button->actionInterface()->actionNames().contains(
        QAccessibleActionInterface::pressAction()));
}

} // namespace
} // namespace quorvane
