// SPDX-License-Identifier: MIT
#include "DuplicateRows.h"

#include "DuplicatesFixture.h"

#include <vector>

namespace quorvane {
namespace {

using Kind = DuplicateRow::Kind;

class DuplicateRowsTests : public DuplicatesFixture
{
protected:
    DuplicateRows& open(int groups, int copies = 2)
    {
        showGroups(groups, copies);
        m_rows.setGroups(m_state.duplicateGroups.value());
        return m_rows;
    }

    void expand(std::size_t group)
    {
        m_rows.toggle(group);
        m_rows.setOpenness(group, m_rows.isExpanded(group) ? 1 : 0);
    }

    /// Every row by index lies where the rows before it end, and is found there again.
    void expectConsistent()
    {
        int y = 0;
        for (int i = 0; i < m_rows.count(); ++i) {
            const std::optional<DuplicateRow> row = m_rows.at(i);
            ASSERT_TRUE(row) << i;
            EXPECT_EQ(m_rows.indexOf(*row), i);
            EXPECT_TRUE(m_rows.contains(*row));
            EXPECT_EQ(m_rows.top(*row), y) << i;
            EXPECT_EQ(m_rows.rowAt(y), row);
            y += DuplicateRows::heightOf(*row);
            EXPECT_EQ(m_rows.rowAt(y - 1), row);
        }
        EXPECT_EQ(m_rows.height(), y);
        EXPECT_EQ(m_rows.rowAt(y), std::nullopt);
        EXPECT_EQ(m_rows.rowAt(-1), std::nullopt);
        EXPECT_EQ(m_rows.at(m_rows.count()), std::nullopt);
        EXPECT_EQ(m_rows.at(-1), std::nullopt);
    }

    DuplicateRows m_rows;
};

TEST_F(DuplicateRowsTests, WithoutGroupsThereAreNoRows)
{
    EXPECT_EQ(m_rows.count(), 0);
    EXPECT_EQ(m_rows.height(), 0);
    EXPECT_EQ(m_rows.rowAt(0), std::nullopt);
}

TEST_F(DuplicateRowsTests, ClosedGroupsAreOneRowEach)
{
    open(3);
    EXPECT_EQ(m_rows.count(), 3);
    EXPECT_EQ(m_rows.height(), 3 * 60);
    expectConsistent();
}

TEST_F(DuplicateRowsTests, OpenGroupsHaveTheirCopiesBelow)
{
    open(4, 3);
    expand(1);
    expand(3);
    EXPECT_EQ(m_rows.count(), 4 + 6);
    EXPECT_EQ(m_rows.at(2), (DuplicateRow{Kind::member, 1, 0}));
    EXPECT_EQ(m_rows.at(5), (DuplicateRow{Kind::group, 2, 0}));
    EXPECT_EQ(m_rows.top({Kind::group, 2, 0}), 2 * 60 + 3 * 48);
    expectConsistent();
    expand(1);
    EXPECT_EQ(m_rows.count(), 4 + 3);
    EXPECT_FALSE(m_rows.contains({Kind::member, 1, 0}));
    expectConsistent();
}

TEST_F(DuplicateRowsTests, NineHundredGroupsLeaveFourHundredToAsk)
{
    open(900);
    EXPECT_EQ(m_rows.shownGroups(), 500U);
    EXPECT_EQ(m_rows.nextGroups(), 400U);
    EXPECT_EQ(m_rows.count(), 501);
    expectConsistent();
    m_rows.showMoreGroups();
    EXPECT_EQ(m_rows.visibleLimit(), 900U);
    EXPECT_EQ(m_rows.nextGroups(), 0U);
    EXPECT_EQ(m_rows.count(), 900);
}

TEST_F(DuplicateRowsTests, AThousandGroupsLeaveFourHundredThenOneHundred)
{
    open(1000);
    EXPECT_EQ(m_rows.nextGroups(), 400U);
    m_rows.showMoreGroups();
    EXPECT_EQ(m_rows.nextGroups(), 100U);
    m_rows.showMoreGroups();
    EXPECT_EQ(m_rows.nextGroups(), 0U);
    EXPECT_EQ(m_rows.count(), 1000);
}

TEST_F(DuplicateRowsTests, FiftyCopiesHaveNoButtonAndFiftyOneDo)
{
    open(1, 50);
    expand(0);
    EXPECT_EQ(m_rows.count(), 1 + 50);
    EXPECT_EQ(m_rows.remainingMembers(0), 0U);
    open(1, 51);
    expand(0);
    EXPECT_EQ(m_rows.count(), 1 + 50 + 1);
    EXPECT_EQ(m_rows.remainingMembers(0), 1U);
    EXPECT_EQ(m_rows.at(51), (DuplicateRow{Kind::moreMembers, 0, 0}));
    expectConsistent();
    m_rows.showMoreMembers(0);
    EXPECT_EQ(m_rows.count(), 1 + 51);
    expectConsistent();
}

TEST_F(DuplicateRowsTests, ThreeHundredCopiesComeInThreeSteps)
{
    open(2, 300);
    expand(0);
    EXPECT_EQ(m_rows.shownMembers(0), 50U);
    EXPECT_EQ(m_rows.remainingMembers(0), 250U);
    m_rows.showMoreMembers(0);
    EXPECT_EQ(m_rows.visibleCount(0), 250U);
    EXPECT_EQ(m_rows.remainingMembers(0), 50U);
    expectConsistent();
    m_rows.showMoreMembers(0);
    EXPECT_EQ(m_rows.shownMembers(0), 300U);
    EXPECT_EQ(m_rows.remainingMembers(0), 0U);
    expand(0);
    expand(0);
    EXPECT_EQ(m_rows.visibleCount(0), 50U) << "closing forgets what was shown";
}

TEST_F(DuplicateRowsTests, ABodyOnItsWayTakesAPartOfItsHeight)
{
    open(2, 4);
    m_rows.toggle(0);
    m_rows.setOpenness(0, 0.5);
    EXPECT_EQ(m_rows.top({Kind::group, 1, 0}), 60 + 2 * 48);
    EXPECT_EQ(m_rows.bodyBottom(0), 60 + 2 * 48);
    m_rows.setMovingHeight(100);
    EXPECT_EQ(m_rows.top({Kind::group, 1, 0}), 60 + 50) << "never more than what is in sight";
    m_rows.setOpenness(0, 1);
    EXPECT_EQ(m_rows.top({Kind::group, 1, 0}), 60 + 4 * 48);
    m_rows.toggle(0);
    m_rows.setOpenness(0, 0.25);
    EXPECT_FALSE(m_rows.contains({Kind::member, 0, 0})) << "what closes is gone for the keys";
    EXPECT_EQ(m_rows.count(), 2);
}

TEST_F(DuplicateRowsTests, WhatIsOpenStaysSoAsLongAsItsIdIsThere)
{
    open(3);
    expand(1);
    const QString id = group(1).id();
    EXPECT_EQ(m_rows.expanded(), QSet<QString>{id});
    const DuplicateFinder::Group kept = group(1);
    show({kept});
    m_rows.setGroups(m_state.duplicateGroups.value());
    EXPECT_TRUE(m_rows.isExpanded(0));
    EXPECT_EQ(m_rows.count(), 1 + 2);
    open(1, 7);
    EXPECT_FALSE(m_rows.isExpanded(0)) << "another group";
    EXPECT_EQ(m_rows.count(), 1);
}

TEST_F(DuplicateRowsTests, WhatIsOpenStaysSoThroughASearchThatShowsNothing)
{
    open(3, 60);
    expand(1);
    m_rows.showMoreMembers(1);
    const DuplicateRows::GroupsPointer groups = m_rows.groups();
    m_rows.setGroups(std::make_shared<const DuplicateFinder::Groups>());
    EXPECT_EQ(m_rows.count(), 0);
    EXPECT_EQ(m_rows.height(), 0);
    m_rows.setGroups(groups);
    EXPECT_TRUE(m_rows.isExpanded(1));
    EXPECT_EQ(m_rows.openness(1), 1);
    EXPECT_EQ(m_rows.visibleCount(1), 50U) << "how many copies it showed is the row's alone";
    EXPECT_EQ(m_rows.count(), 3 + 50 + 1);
    expectConsistent();
    expand(1);
    m_rows.setGroups(std::make_shared<const DuplicateFinder::Groups>());
    m_rows.setGroups(groups);
    EXPECT_EQ(m_rows.count(), 3) << "closed, and so it stays";
}

TEST_F(DuplicateRowsTests, WhatIsOpenBeyondTheLimitShowsWhenItsGroupDoes)
{
    open(1000);
    m_rows.showMoreGroups();
    expand(600);
    const DuplicateRows::GroupsPointer groups = m_rows.groups();
    // The same groups behind 400 others: the open one is beyond the 900 on show.
    DuplicateFinder::Groups moved(groups->begin() + 100, groups->begin() + 500);
    moved.insert(moved.end(), groups->begin(), groups->end());
    m_rows.setGroups(std::make_shared<const DuplicateFinder::Groups>(moved));
    EXPECT_EQ(m_rows.count(), 900 + 1) << "not there yet";
    m_rows.showMoreGroups();
    EXPECT_TRUE(m_rows.isExpanded(1000));
    EXPECT_EQ(m_rows.count(), 1300 + 2 + 1);
    expectConsistent();
}

TEST_F(DuplicateRowsTests, ManyGroupsAndCopiesAreNotNotedOneByOne)
{
    open(3, 20000);
    expand(1);
    for (int i = 0; i < 100; ++i) {
        m_rows.showMoreMembers(1);
    }
    EXPECT_EQ(m_rows.count(), 3 + 20000);
    const DuplicateRow last{Kind::member, 1, 19999};
    EXPECT_EQ(m_rows.rowAt(m_rows.top(last) + 47), last);
    EXPECT_EQ(m_rows.at(20001), last);
}

} // namespace
} // namespace quorvane
