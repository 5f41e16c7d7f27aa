// SPDX-License-Identifier: MIT
#include "Progress.h"

#include "WidgetsFixture.h"

#include <QImage>

#include <limits>

namespace quorvane {
namespace {

class Progress : public WidgetsTest
{};

TEST_F(Progress, BarHoldsItsFractionBetweenTheEnds)
{
    ProgressBar bar(QStringLiteral("Work"));
    bar.setFraction(0.25);
    EXPECT_DOUBLE_EQ(bar.fraction(), 0.25);
    bar.setFraction(-1);
    EXPECT_DOUBLE_EQ(bar.fraction(), 0);
    bar.setFraction(7);
    EXPECT_DOUBLE_EQ(bar.fraction(), 1);
    bar.setFraction(std::numeric_limits<double>::quiet_NaN());
    EXPECT_DOUBLE_EQ(bar.fraction(), 0);
}

TEST_F(Progress, BarFillsItsShare)
{
    ProgressBar bar(QStringLiteral("Work"));
    bar.setColor(ThemeColor::green);
    bar.setFraction(0.5);
    bar.resize(200, 6);
    const QImage image = bar.grab().toImage();
    EXPECT_EQ(image.pixelColor(90, 3), themeColor(ThemeColor::green));
    EXPECT_EQ(image.pixelColor(110, 3), themeColor(ThemeColor::raised));
}

TEST_F(Progress, HighlightEntersAndLeavesOutsideTheRail)
{
    const QRectF start = SweepRail::highlight(300, 0);
    const QRectF middle = SweepRail::highlight(300, 0.5);
    const QRectF end = SweepRail::highlight(300, 1);
    EXPECT_DOUBLE_EQ(start.right(), 0);
    EXPECT_DOUBLE_EQ(middle.center().x(), 150);
    EXPECT_DOUBLE_EQ(end.left(), 300);
}

TEST_F(Progress, HighlightMovesForwardOnly)
{
    qreal last = SweepRail::highlight(300, 0).left();
    for (int step = 1; step <= 100; ++step) {
        const qreal left = SweepRail::highlight(300, step / 100.0).left();
        EXPECT_GT(left, last);
        last = left;
    }
}

TEST_F(Progress, RailSweepsWhileItShows)
{
    DesktopSettings::instance().setReducedMotion(false);
    SweepRail rail(QStringLiteral("Scanning"));
    EXPECT_FALSE(rail.isSweeping());
    rail.show();
    EXPECT_TRUE(rail.isSweeping());
    rail.hide();
    EXPECT_FALSE(rail.isSweeping());
}

TEST_F(Progress, RailRestsInTheMiddleWithReducedMotion)
{
    SweepRail rail(QStringLiteral("Scanning"));
    rail.show();
    EXPECT_FALSE(rail.isSweeping());
    EXPECT_DOUBLE_EQ(rail.phase(), 0.5);
    DesktopSettings::instance().setReducedMotion(false);
    EXPECT_TRUE(rail.isSweeping());
    DesktopSettings::instance().setReducedMotion(true);
    EXPECT_FALSE(rail.isSweeping());
    EXPECT_DOUBLE_EQ(rail.phase(), 0.5);
}

TEST_F(Progress, SpinnerTellsItsTextWithAndWithoutWords)
{
    Spinner spinner(QStringLiteral("Computing layout…"));
    const int withWords = spinner.sizeHint().width();
    spinner.setWordsVisible(false);
    EXPECT_LT(spinner.sizeHint().width(), withWords);
    EXPECT_EQ(spinner.accessibleName(), QStringLiteral("Computing layout…"));
}

} // namespace
} // namespace quorvane
