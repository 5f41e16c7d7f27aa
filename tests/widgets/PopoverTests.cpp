// SPDX-License-Identifier: MIT
#include "Popover.h"

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
