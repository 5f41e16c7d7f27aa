// SPDX-License-Identifier: MIT
#include "Popover.h"

#include "Painting.h"
#include "ShortenedName.h"
#include "WidgetsFixture.h"

#include <QAbstractButton>
#include <QTest>

namespace quorvane {
namespace {

class Popovers : public WidgetsTest
{
protected:
    Popovers()
    {
        m_window.resize(600, 400);
        m_window.show();
    }

    QWidget m_window;
};

TEST_F(Popovers, TooltipStandsBesideThePointer)
{
    TooltipCard card(&m_window);
    card.setContent(QStringLiteral("Library"), QStringLiteral("41.5 GB"));
    card.showAt({100, 50});
    EXPECT_EQ(card.pos(), QPoint(112, 62));
    EXPECT_TRUE(card.isVisible());
    EXPECT_EQ(card.accessibleName(), QStringLiteral("Library\n41.5 GB"));
}

TEST_F(Popovers, TooltipFlipsAtTheEdges)
{
    TooltipCard card(&m_window);
    card.setContent(QStringLiteral("Library"), QStringLiteral("41.5 GB"));
    card.showAt({590, 390});
    EXPECT_EQ(card.geometry().right() + 1, 590 - 12);
    EXPECT_EQ(card.geometry().bottom() + 1, 390 - 12);
    EXPECT_TRUE(m_window.rect().contains(card.geometry()));
}

TEST_F(Popovers, TooltipNeverLeavesASmallCanvas)
{
    m_window.resize(60, 30);
    TooltipCard card(&m_window);
    card.setContent(QStringLiteral("A name wider than the canvas"), {});
    card.showAt({30, 15});
    EXPECT_GE(card.x(), 0);
    EXPECT_GE(card.y(), 0);
}

TEST_F(Popovers, TooltipLetsTheMouseThrough)
{
    TooltipCard card(&m_window);
    card.setContent(QStringLiteral("Library"), {});
    card.showAt({100, 50});
    EXPECT_EQ(m_window.childAt(card.geometry().center()), nullptr);
}

TEST_F(Popovers, BannerHangsCentredBelowTheEdgeOfItsArea)
{
    FlashBanner banner(
        QStringLiteral("Staged."), [] {}, &m_window);
    banner.placeBelow(QRect(100, 80, 400, 300));
    EXPECT_EQ(banner.y(), 88);
    EXPECT_EQ(banner.height(), 36);
    EXPECT_NEAR(banner.geometry().center().x(), 300, 1);
}

TEST_F(Popovers, BannerStaysInsideANarrowArea)
{
    FlashBanner banner(
        QString(400, u'x'), [] {}, &m_window);
    const QRect area(100, 80, 300, 300);
    banner.placeBelow(area);
    EXPECT_TRUE(area.contains(banner.geometry()));
}

TEST_F(Popovers, BannerMovesAsideFromWhatMustNotBeCovered)
{
    FlashBanner banner(
        QStringLiteral("Staged."), [] {}, &m_window);
    const QRect area(0, 80, 600, 300);
    banner.placeBelow(area, QRect(320, 80, 280, 300));
    EXPECT_EQ(banner.pos(), QPoint(336, 88));
    EXPECT_EQ(banner.height(), 36);
    banner.placeBelow(area, QRect(0, 80, 280, 300));
    EXPECT_EQ(banner.geometry().right() + 1, 280 - 16);
    banner.placeBelow(area, QRect(100, 80, 420, 300));
    EXPECT_NEAR(banner.geometry().center().x(), 300, 1) << "nothing is in the way there";
}

TEST_F(Popovers, BannerTakesTwoLinesOfLikeLengthWhereItIsNarrow)
{
    const QString word = QStringLiteral("nine chars");
    const QString text = QStringList(6, word).join(u' ');
    FlashBanner banner(
        text, [] {}, &m_window);
    banner.show();
    const int words = banner.sizeHint().width();
    const QRect area(0, 80, words + 100, 300);
    banner.placeBelow(area);
    EXPECT_EQ(banner.size(), QSize(words, 36));
    const QRect clear(50, 80, words * 3 / 4, 300);
    banner.placeBelow(area, clear);
    EXPECT_EQ(banner.height(), 36 + 18);
    EXPECT_TRUE(clear.adjusted(16, 0, -16, 0).contains(banner.geometry()));
    auto* const label = banner.findChild<ShortenedName*>();
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->shownText(), text);
    EXPECT_LT(label->width(), textWidth(TextStyle::row, text) * 2 / 3);
    EXPECT_GE(label->y(), 8);
    EXPECT_LE(label->geometry().bottom(), banner.height() - 8);
}

TEST_F(Popovers, BannerLosesTheMiddleOfWhatTwoLinesCannotHold)
{
    FlashBanner banner(
        QStringLiteral("Kept ") % QString(400, u'x') % QStringLiteral(" for Trash."), [] {},
        &m_window);
    banner.show();
    banner.placeBelow(QRect(0, 0, 600, 300), QRect(100, 0, 400, 300));
    EXPECT_EQ(banner.geometry(), QRect(116, 8, 368, 36 + 18));
    auto* const label = banner.findChild<ShortenedName*>();
    ASSERT_NE(label, nullptr);
    EXPECT_TRUE(label->shownText().startsWith(QStringLiteral("Kept x")));
    EXPECT_TRUE(label->shownText().contains(u'…'));
    EXPECT_TRUE(label->shownText().endsWith(QStringLiteral("x for Trash.")));
}

TEST_F(Popovers, BannerTakesNoNoticeOfAGapTooNarrowToReadIn)
{
    FlashBanner banner(
        QStringLiteral("Staged."), [] {}, &m_window);
    banner.placeBelow(QRect(0, 80, 600, 300), QRect(500, 80, 100, 300));
    EXPECT_NEAR(banner.geometry().center().x(), 300, 1);
    EXPECT_EQ(banner.height(), 36);
}

TEST_F(Popovers, BannerCallsBackWhenDismissed)
{
    int dismissed = 0;
    FlashBanner banner(
        QStringLiteral("Staged."), [&] { ++dismissed; }, &m_window);
    banner.show();
    auto* button = banner.findChild<QAbstractButton*>();
    ASSERT_NE(button, nullptr);
    EXPECT_FALSE(button->accessibleName().isEmpty());
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(dismissed, 1);
    QTest::keyClick(button, Qt::Key_Return);
    EXPECT_EQ(dismissed, 2);
}

TEST_F(Popovers, ShadowFollowsItsCard)
{
    QWidget card(&m_window);
    card.setGeometry(100, 100, 80, 40);
    auto* shadow = new DropShadow(card, DropShadow::Depth::popover, 6);
    card.show();
    EXPECT_TRUE(shadow->isVisible());
    card.move(200, 120);
    EXPECT_TRUE(shadow->geometry().contains(card.geometry()));
    EXPECT_EQ(shadow->x(), 200 - 24);
    card.hide();
    EXPECT_FALSE(shadow->isVisible());
}

} // namespace
} // namespace quorvane
