// SPDX-License-Identifier: MIT
#include "DuplicatesListFixture.h"
#include "Theme.h"
#include "WaitFor.h"

#include <QImage>
#include <QScrollBar>
#include <QVariantAnimation>

namespace quorvane {
namespace {

using Kind = DuplicateRow::Kind;

class DuplicatesListTests : public DuplicatesListFixture
{};

/// Counts how often a widget is painted as long as it lives.
class PaintCounter final : public QObject
{
public:
    PaintCounter(QWidget& widget, int& count)
        : m_count(count)
    {
        widget.installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        m_count += event->type() == QEvent::Paint ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }

private:
    int& m_count;
};

TEST_F(DuplicatesListTests, AClickAnywhereOnAGroupOpensAndClosesIt)
{
    open(3, 3);
    click({groupRow(1), 0});
    EXPECT_TRUE(m_list.rows().isExpanded(1));
    EXPECT_EQ(m_list.rows().count(), 3 + 3);
    EXPECT_EQ(m_list.rows().top(groupRow(2)), 2 * 60 + 3 * 48);
    click({groupRow(1), 0});
    EXPECT_FALSE(m_list.rows().isExpanded(1));
}

TEST_F(DuplicatesListTests, ButtonsActAndOpenNothing)
{
    open(2, 3);
    click({groupRow(0), keepLatestPart});
    EXPECT_FALSE(m_list.rows().isExpanded(0));
    EXPECT_TRUE(m_state.isKeeper(file(0, 2)));
    click({groupRow(0), keepLatestPart});
    EXPECT_TRUE(m_state.stagedNodes.value().empty());

    click({groupRow(1), 0});
    click({member(1, 0), keepPart});
    EXPECT_TRUE(m_state.isKeeper(file(1, 0)));
    click({member(1, 1), keepPart});
    EXPECT_FALSE(file(1, 1).isStagedForTrash());
    click({member(1, 1), revealPart});
    EXPECT_EQ(m_platform.workspace.revealed, std::vector{FilePath("/scan/g1.1")});
    click({member(1, 1), 0});
    EXPECT_TRUE(m_list.rows().isExpanded(1)) << "beside its buttons a copy does nothing";
    EXPECT_EQ(m_platform.workspace.revealed.size(), 1U);
}

TEST_F(DuplicatesListTests, AButtonOfARowThatTheEdgeCutsIsPressedWhereItIs)
{
    open(1, 3);
    click({groupRow(0), 0});
    const int middle = m_list.placeRect({member(0, 1), keepPart}).center().y();
    m_list.resize(m_list.width(), middle + 2);
    ASSERT_GT(m_list.verticalScrollBar()->maximum(), 0);
    click({member(0, 1), keepPart});
    EXPECT_TRUE(m_state.isKeeper(file(0, 1)));
    EXPECT_EQ(m_list.verticalScrollBar()->value(), 0) << "the row stays under the pointer";
}

TEST_F(DuplicatesListTests, AButtonLeftBeforeTheReleaseIsNotPressed)
{
    open(2, 3);
    QTest::mousePress(m_list.viewport(), Qt::LeftButton, {},
                      m_list.placeRect({groupRow(0), keepLatestPart}).center());
    QTest::mouseRelease(m_list.viewport(), Qt::LeftButton, {},
                        m_list.placeRect({groupRow(1), keepLatestPart}).center());
    EXPECT_TRUE(m_state.stagedNodes.value().empty());
}

TEST_F(DuplicatesListTests, OpeningTakesItsTimeWithEase)
{
    DesktopSettings::instance().setReducedMotion(false);
    open(2, 3);
    click({groupRow(0), 0});
    const auto* const movement = m_list.findChild<QVariantAnimation*>();
    ASSERT_NE(movement, nullptr);
    EXPECT_EQ(movement->duration(), 160);
    EXPECT_EQ(movement->easingCurve().type(), QEasingCurve::InOutQuad);
    EXPECT_TRUE(m_list.rows().isExpanded(0));
    EXPECT_LT(m_list.rows().openness(0), 1);
    ASSERT_TRUE(waitFor([this] { return m_list.rows().openness(0) >= 1; }));
    click({groupRow(0), 0});
    EXPECT_FALSE(m_list.rows().isExpanded(0));
    EXPECT_GT(m_list.rows().openness(0), 0);
    // The other way round before it has closed.
    click({groupRow(0), 0});
    ASSERT_TRUE(waitFor([this] { return m_list.rows().openness(0) >= 1; }));
    EXPECT_TRUE(m_list.rows().isExpanded(0));
}

TEST_F(DuplicatesListTests, WhatIsClosingTakesNoPress)
{
    open(2, 3);
    m_list.activate({groupRow(0), 0});
    const QPoint place = m_list.placeRect({member(0, 0), keepPart}).center();
    ASSERT_EQ(m_list.placeAt(place), (DuplicatePlace{member(0, 0), keepPart}));
    DesktopSettings::instance().setReducedMotion(false);
    click({groupRow(0), 0});
    ASSERT_GT(m_list.rows().bodyBottom(0), place.y()) << "it is still to be seen";
    EXPECT_EQ(m_list.placeAt(place), std::nullopt);
    EXPECT_EQ(m_list.toolTipAt(place), QString());
    QTest::mouseClick(m_list.viewport(), Qt::LeftButton, {}, place);
    EXPECT_EQ(current(), (DuplicatePlace{groupRow(0), 0}));
    EXPECT_TRUE(m_state.stagedNodes.value().empty());
}

TEST_F(DuplicatesListTests, TellsWhatEachPlaceDoes)
{
    open(2, 3);
    click({groupRow(0), 0});
    EXPECT_EQ(toolTip({groupRow(1), 0}),
              QStringLiteral("Click anywhere to see the 3 duplicate copies."));
    EXPECT_EQ(toolTip({groupRow(0), 0}), QStringLiteral("Click to collapse this group."));
    EXPECT_TRUE(toolTip({groupRow(0), keepLatestPart})
                    .startsWith(QStringLiteral("Keeps the most recently modified copy")));
    EXPECT_EQ(toolTip({member(0, 0), revealPart}), QStringLiteral("Shows this copy in Finder."));
    EXPECT_TRUE(toolTip({member(0, 0), keepPart})
                    .startsWith(QStringLiteral("Keeps this copy on your Mac")));
    EXPECT_TRUE(m_list.badgeRect(member(0, 0)).isEmpty());
    EXPECT_EQ(m_list.toolTipAt(m_list.badgeRect(member(0, 2)).center()),
              DuplicateMemberRow::badgeToolTip());
    EXPECT_EQ(m_list.toolTipAt(QPoint(100, m_list.placeRect({member(0, 2), 0}).bottom() - 8)),
              QStringLiteral("/scan/g0.2"));
}

TEST_F(DuplicatesListTests, MoreGroupsComeByAClick)
{
    open(1000);
    EXPECT_EQ(m_list.rows().count(), 501);
    const DuplicateRow button{Kind::moreGroups, 0, 0};
    m_list.setCurrent({button, 0});
    EXPECT_EQ(m_list.accessibleNameOf({button, 0}), QStringLiteral("Show 400 more groups…"));
    click({button, 0});
    EXPECT_EQ(m_list.rows().count(), 901);
    EXPECT_EQ(current().row, groupRow(500));
    m_list.setCurrent({button, 0});
    EXPECT_EQ(m_list.accessibleNameOf({button, 0}), QStringLiteral("Show 100 more groups…"));
    click({button, 0});
    EXPECT_EQ(m_list.rows().count(), 1000);
}

TEST_F(DuplicatesListTests, MoreCopiesComeByAClick)
{
    open(2, 300);
    m_list.activate({groupRow(0), 0});
    const DuplicateRow button{Kind::moreMembers, 0, 0};
    m_list.setCurrent({button, 0});
    EXPECT_EQ(m_list.accessibleNameOf({button, 0}),
              QStringLiteral("Show 200 more — 250 left in this group"));
    click({button, 0});
    EXPECT_EQ(m_list.rows().shownMembers(0), 250U);
    EXPECT_EQ(current().row, member(0, 50));
    m_list.setCurrent({button, 0});
    EXPECT_EQ(m_list.accessibleNameOf({button, 0}), QStringLiteral("Show remaining 50"));
    m_list.activate({button, 0});
    EXPECT_EQ(m_list.rows().remainingMembers(0), 0U);
}

TEST_F(DuplicatesListTests, KeysThatBringMoreLeadToTheTopOfWhatCame)
{
    open(1000);
    enter();
    key(Qt::Key_End);
    key(Qt::Key_Return);
    ASSERT_EQ(current().row, groupRow(500));
    EXPECT_EQ(m_list.placeRect(current()).top(), 60) << "below the row that was the last";
    open(2, 300);
    enter();
    m_list.activate({groupRow(0), 0});
    for (int i = 0; i < 51; ++i) {
        key(Qt::Key_Down);
    }
    ASSERT_EQ(current().row.kind, Kind::moreMembers);
    key(Qt::Key_Space);
    ASSERT_EQ(current().row, member(0, 50));
    EXPECT_EQ(m_list.placeRect(current()).top(), 48);
}

TEST_F(DuplicatesListTests, TheFirstKeyShowsWhereItStandsAndGoesNowhere)
{
    open(3);
    m_list.setFocus(Qt::OtherFocusReason);
    ASSERT_FALSE(m_list.current());
    key(Qt::Key_Down);
    EXPECT_EQ(current().row, groupRow(0));
    key(Qt::Key_Down);
    EXPECT_EQ(current().row, groupRow(1));
}

TEST_F(DuplicatesListTests, TheFocusLineKeepsClearOfTheCorners)
{
    open(3);
    enter();
    for (const std::size_t group : {0U, 2U}) {
        m_list.setCurrent({groupRow(group), 0});
        const QImage seen = m_list.viewport()->grab().toImage();
        const QRect row = m_list.placeRect(current());
        const QRgb accent = themeColor(ThemeColor::accent).rgb();
        const int x = row.center().x();
        const int y = row.center().y();
        for (const int inset : {2, 3}) {
            EXPECT_EQ(seen.pixel(row.left() + inset, y), accent);
            EXPECT_EQ(seen.pixel(row.right() - inset, y), accent);
            EXPECT_EQ(seen.pixel(x, row.top() + inset), accent);
            EXPECT_EQ(seen.pixel(x, row.bottom() - inset), accent);
        }
        EXPECT_NE(seen.pixel(row.left() + 1, y), accent);
        EXPECT_NE(seen.pixel(x, row.top() + 1), accent);
        EXPECT_NE(seen.pixel(row.left() + 2, row.top() + 2), accent) << "a corner is round";
    }
}

TEST_F(DuplicatesListTests, ArrowsMoveOpenAndClose)
{
    open(3, 2);
    enter();
    EXPECT_EQ(current(), (DuplicatePlace{groupRow(0), 0}));
    key(Qt::Key_Right);
    EXPECT_TRUE(m_list.rows().isExpanded(0));
    key(Qt::Key_Down);
    EXPECT_EQ(current(), (DuplicatePlace{member(0, 0), 0}));
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    EXPECT_EQ(current(), (DuplicatePlace{member(0, 0), keepPart}));
    key(Qt::Key_Down);
    EXPECT_EQ(current(), (DuplicatePlace{member(0, 1), keepPart})) << "the column stays";
    key(Qt::Key_Down);
    EXPECT_EQ(current(), (DuplicatePlace{groupRow(1), 0}));
    key(Qt::Key_Up);
    EXPECT_EQ(current().row, member(0, 1));
    key(Qt::Key_Left);
    EXPECT_EQ(current(), (DuplicatePlace{groupRow(0), 0}));
    key(Qt::Key_Left);
    EXPECT_FALSE(m_list.rows().isExpanded(0));
    key(Qt::Key_End);
    EXPECT_EQ(current().row, groupRow(2));
    key(Qt::Key_Home);
    EXPECT_EQ(current().row, groupRow(0));
    key(Qt::Key_Up);
    EXPECT_EQ(current().row, groupRow(0));
}

TEST_F(DuplicatesListTests, TabLeadsAlongTheButtonsAndOn)
{
    open(2);
    enter();
    key(Qt::Key_Tab);
    EXPECT_EQ(current(), (DuplicatePlace{groupRow(0), keepLatestPart}));
    key(Qt::Key_Return);
    EXPECT_TRUE(m_state.isKeeper(file(0, 1)));
    key(Qt::Key_Space);
    EXPECT_FALSE(m_state.isKeeper(file(0, 1)));
    key(Qt::Key_Tab);
    EXPECT_TRUE(m_after.hasFocus());
    QTest::keyClick(&m_after, Qt::Key_Backtab, Qt::ShiftModifier);
    ASSERT_TRUE(m_list.hasFocus());
    EXPECT_EQ(current(), (DuplicatePlace{groupRow(0), keepLatestPart}));
    key(Qt::Key_Backtab);
    EXPECT_EQ(current(), (DuplicatePlace{groupRow(0), 0}));
    key(Qt::Key_Backtab);
    EXPECT_TRUE(m_before.hasFocus());
}

TEST_F(DuplicatesListTests, ReturnAndSpaceOpenAGroupAndPressWhatBringsMore)
{
    open(1, 51);
    enter();
    key(Qt::Key_Return);
    EXPECT_TRUE(m_list.rows().isExpanded(0));
    key(Qt::Key_Space);
    EXPECT_FALSE(m_list.rows().isExpanded(0));
    key(Qt::Key_Space);
    key(Qt::Key_End);
    EXPECT_EQ(current().row.kind, Kind::moreMembers);
    key(Qt::Key_Return);
    EXPECT_EQ(current().row, member(0, 50));
    EXPECT_EQ(m_list.rows().count(), 1 + 51);
}

TEST_F(DuplicatesListTests, TheCurrentRowIsBroughtIntoSight)
{
    open(400);
    enter();
    key(Qt::Key_End);
    EXPECT_EQ(m_list.verticalScrollBar()->value(), m_list.verticalScrollBar()->maximum());
    EXPECT_TRUE(m_list.viewport()->rect().contains(m_list.placeRect(current())));
    key(Qt::Key_PageUp);
    EXPECT_LT(current().row.group, 399U);
    EXPECT_TRUE(m_list.viewport()->rect().contains(m_list.placeRect(current())));
}

TEST_F(DuplicatesListTests, ClosingAGroupLeavesTheFocusOnIt)
{
    open(2, 3);
    m_list.activate({groupRow(0), 0});
    m_list.setCurrent({member(0, 2), keepPart});
    m_list.activate({groupRow(0), 0});
    EXPECT_EQ(current(), (DuplicatePlace{groupRow(0), 0}));
}

TEST_F(DuplicatesListTests, FiftyThousandGroupsAndTwentyThousandCopiesCostWhatIsInSight)
{
    open(50000);
    EXPECT_EQ(m_list.rows().count(), 501);
    EXPECT_LE(m_list.rowsInSight().size(), 560U / 60 + 2);
    open(2, 20000);
    m_list.activate({groupRow(0), 0});
    EXPECT_EQ(m_list.rows().count(), 2 + 50 + 1);
    for (int i = 0; i < 100; ++i) {
        m_list.activate({{Kind::moreMembers, 0, 0}, 0});
    }
    EXPECT_EQ(m_list.rows().count(), 2 + 20000);
    m_list.setCurrent({member(0, 12345), 0});
    const std::vector<DuplicateRow> seen = m_list.rowsInSight();
    EXPECT_LE(seen.size(), 560U / 48 + 2);
    EXPECT_EQ(seen.front(), member(0, 12345)) << "the first row in sight, coming from below";
}

TEST_F(DuplicatesListTests, WhatABatchHasDealtWithIsStagedNoMoreOnTheScreenEither)
{
    open(1, 2);
    m_state.trashOthers(file(0, 1));
    EXPECT_EQ(m_list.accessibleNameOf({groupRow(0), keepLatestPart}), QStringLiteral("Kept"));
    QCoreApplication::processEvents();
    int painted = 0;
    const PaintCounter counter(*m_list.viewport(), painted);
    // As the batch does it: the flag first, then the progress.
    file(0, 0).setStagedForTrash(false);
    m_state.trashProgress = 1;
    ASSERT_TRUE(waitFor([&painted] { return painted > 0; }));
    EXPECT_EQ(m_list.accessibleNameOf({groupRow(0), keepLatestPart}),
              QStringLiteral("Keep latest"));
}

TEST_F(DuplicatesListTests, OtherGroupsStartAtTheTop)
{
    open(400);
    m_list.verticalScrollBar()->setValue(5000);
    open(300);
    EXPECT_EQ(m_list.verticalScrollBar()->value(), 0);
    EXPECT_FALSE(m_list.current());
}

} // namespace
} // namespace quorvane
