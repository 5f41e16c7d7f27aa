// SPDX-License-Identifier: MIT
#include "ToolFrame.h"

#include "EmptyState.h"
#include "Label.h"
#include "Progress.h"
#include "RowView.h"
#include "WidgetsFixture.h"

#include <QSignalSpy>
#include <QTest>

namespace quorvane {
namespace {

const QString none = QStringLiteral("none");
const QString noScan = QStringLiteral("no scan");

class ToolFrameTests : public WidgetsTest
{
protected:
    ToolFrameTests()
    {
        m_frame.resize(900, 600);
        m_empty = m_frame.addEmpty(none, QStringLiteral("bolt"), QStringLiteral("Nothing found"),
                                   QStringLiteral("We looked."));
        m_other = m_frame.addEmpty(noScan, QStringLiteral("bolt"), QStringLiteral("No scan"), {});
        m_model.setRows({Row(), Row()});
        m_frame.addList(m_view);
        m_frame.show();
        QApplication::setActiveWindow(&m_frame);
    }

    ToolFrame m_frame{QStringLiteral("bolt"), QStringLiteral("Quick Wins")};
    EmptyState* m_empty;
    EmptyState* m_other;
    RowModel m_model;
    RowView& m_view{*new RowView(m_model)};
};

TEST_F(ToolFrameTests, ShowsEitherTheBodyOrOneEmptyState)
{
    m_frame.showEmpty(none);
    EXPECT_TRUE(m_empty->isVisible());
    EXPECT_FALSE(m_other->isVisible());
    EXPECT_FALSE(m_view.isVisible());
    EXPECT_EQ(m_frame.shownEmpty(), none);
    m_frame.showEmpty(noScan);
    EXPECT_FALSE(m_empty->isVisible());
    EXPECT_TRUE(m_other->isVisible());
    m_frame.showBody();
    EXPECT_FALSE(m_other->isVisible());
    EXPECT_TRUE(m_view.isVisible());
    EXPECT_EQ(m_frame.shownEmpty(), QString());
    m_frame.showNothing();
    EXPECT_FALSE(m_view.isVisible());
}

TEST_F(ToolFrameTests, TheCardEndsWhereTheRowsDo)
{
    m_frame.showBody();
    QApplication::processEvents();
    EXPECT_EQ(m_view.height(), 2 * 48);
    m_model.setRows(std::vector<Row>(100));
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_view.height() > 400; }, patience));
    EXPECT_LT(m_view.height(), 600);
}

TEST_F(ToolFrameTests, AFocusThatLosesItsPlaceWaitsOnTheScreenAndGoesBack)
{
    m_frame.addAction({}, QStringLiteral("Refresh"));
    m_frame.showBody();
    m_view.setFocus();
    ASSERT_TRUE(m_view.hasFocus());
    m_frame.showEmpty(none);
    EXPECT_TRUE(m_frame.hasFocus());
    m_frame.showBody();
    EXPECT_TRUE(m_view.hasFocus());
}

TEST_F(ToolFrameTests, ProgressTellsAndCancels)
{
    m_frame.setProgressName(QStringLiteral("Search"));
    auto* const cancel = m_frame.addProgressCancel(QStringLiteral("Cancel"));
    EXPECT_FALSE(cancel->isVisible());
    m_frame.setProgress(
        ToolFrame::Progress{0.25, QStringLiteral("Reading…"), QStringLiteral("25%")});
    EXPECT_TRUE(cancel->isVisible());
    EXPECT_EQ(m_frame.findChild<ProgressBar*>()->fraction(), 0.25);
    EXPECT_EQ(m_frame.findChild<Label*>(QStringLiteral("progressStatus"))->text(),
              QStringLiteral("Reading…"));
    QSignalSpy cancelled(&m_frame, &ToolFrame::progressCancelled);
    cancel->click();
    EXPECT_EQ(cancelled.count(), 1);
    m_frame.setProgress({});
    EXPECT_FALSE(cancel->isVisible());
}

TEST_F(ToolFrameTests, TheSummaryFollowsAndTakesNoRoomWithoutWords)
{
    const int top = m_view.mapTo(&m_frame, QPoint()).y();
    m_frame.setSummary({{QStringLiteral("9 candidates")}},
                       {ToolFrame::dim(QStringLiteral("Reclaimable")),
                        ToolFrame::strong(QStringLiteral("9 GB"), QStringLiteral("gain"))});
    QApplication::processEvents();
    EXPECT_EQ(m_frame.findChild<Label*>(QStringLiteral("gain"))->text(), QStringLiteral("9 GB"));
    EXPECT_GT(m_view.mapTo(&m_frame, QPoint()).y(), top);
    m_frame.setSummary({});
    QApplication::processEvents();
    EXPECT_EQ(m_frame.findChild<Label*>(QStringLiteral("gain")), nullptr);
    EXPECT_EQ(m_view.mapTo(&m_frame, QPoint()).y(), top);
}

TEST_F(ToolFrameTests, TheBottomBarIsThereWhileItHoldsAnything)
{
    auto* const clear = m_frame.addBottomAction(ToolFrame::Side::left, {},
                                                QStringLiteral("Clear queue"), ButtonRole::revoke);
    EXPECT_TRUE(clear->isVisible());
    EXPECT_EQ(clear->mapTo(&m_frame, clear->rect().center()).y() / 10, (600 - 28) / 10);
    clear->hide();
    EXPECT_FALSE(clear->parentWidget()->isVisible());
    clear->show();
    EXPECT_TRUE(clear->parentWidget()->isVisible());
    EXPECT_TRUE(clear->isVisible());
}

} // namespace
} // namespace quorvane
