// SPDX-License-Identifier: MIT
#include "SunburstScene.h"

#include "FileTypeCategory.h"
#include "NodeColors.h"
#include "PolarShapes.h"
#include "SceneFixture.h"

#include <numbers>
#include <string>

namespace quorvane {
namespace {

using SunburstSceneTests = SceneFixture<SunburstScene>;

/// On 800 × 800 the hub and each ring are 100 wide; the centre is at 400, 400.
constexpr QSize square(800, 800);

TEST_F(SunburstSceneTests, PointerFindsTheSliceOfItsAngle)
{
    const auto one = scene("half.bin 2\nquarter.bin 1\nrest.bin 1\n", square);
    EXPECT_EQ(nameAt(*one, 550, 400), "half.bin");
    EXPECT_EQ(nameAt(*one, 390, 550), "quarter.bin");
    EXPECT_EQ(nameAt(*one, 250, 390), "rest.bin");
    EXPECT_EQ(nameAt(*one, 400, 420), "nothing");
    EXPECT_EQ(nameAt(*one, 790, 400), "nothing");
}

TEST_F(SunburstSceneTests, FirstFolderOfADeeperRingIsFoundAndTheLastIsSeen)
{
    const auto one = scene("a/\n  x 2\n  y 1\nb/\n  z 1\n  w 1\n", square);
    // Twelve o'clock, a little to the right: where the first folder's first child begins.
    EXPECT_EQ(nameAt(*one, 410, 150), "x");
    EXPECT_FALSE(one->isOnTop(itemNamed(*one, "a/x")));
    EXPECT_TRUE(one->isOnTop(itemNamed(*one, "b/z")));
    EXPECT_TRUE(one->isOnTop(itemNamed(*one, "a")));
}

TEST_F(SunburstSceneTests, WholeTurnIsFoundOnOneAngleAlone)
{
    const auto one = scene("only.bin 5\n", square);
    EXPECT_EQ(nameAt(*one, 550, 400), "nothing");
}

TEST_F(SunburstSceneTests, OnlyChildIsDrawnAsAWholeRing)
{
    const QImage picture = render(scene("only.mp4 5\n", square)).bright;
    for (const QPoint& place : {QPoint(550, 400), QPoint(250, 400), QPoint(400, 550)}) {
        EXPECT_GT(picture.pixelColor(place).lightness(), 20);
    }
    EXPECT_EQ(picture.pixelColor(650, 400), QColor(Qt::black));
}

TEST_F(SunburstSceneTests, HiddenSliceBelowThePointerIsDrawnOverTheOneThatIsSeen)
{
    const auto one = scene("a/\n  x.mp4 2\n  y.mp4 1\nb/\n  z.pdf 1\n  w.pdf 1\n", square);
    const CanvasRendering rendering = render(one);
    const QImage picture = hover(rendering, itemNamed(*one, "a/x.mp4"));
    // On the right, in the middle of the second ring.
    const QColor seen = rendering.bright.pixelColor(650, 400);
    const QColor found = picture.pixelColor(650, 400);
    EXPECT_NE(found, seen);
    EXPECT_NE(found, rendering.dimmed.pixelColor(650, 400));
    // The same slice where nothing lies above it.
    const auto alone = scene("a/\n  x.mp4 2\n  y.mp4 1\nb.pdf 2\n", square);
    const QColor free = render(alone).bright.pixelColor(650, 400);
    EXPECT_NEAR(found.red(), free.red(), 2);
    EXPECT_NEAR(found.green(), free.green(), 2);
    EXPECT_NEAR(found.blue(), free.blue(), 2);
}

TEST_F(SunburstSceneTests, FrameRunsAroundTheWholeSlice)
{
    const auto one = scene("half.mp4 1\nrest.mp4 1\n", square);
    const QImage picture = hover(render(one), 0);
    // Outer and inner arc at three o'clock, and both straight edges.
    for (const QPoint& place :
         {QPoint(599, 400), QPoint(500, 400), QPoint(400, 250), QPoint(400, 550)}) {
        const int beside = picture.pixelColor(place - QPoint(1, 0)).lightness();
        EXPECT_GT(std::max(picture.pixelColor(place).lightness(), beside), 200);
    }
}

TEST_F(SunburstSceneTests, EarlierSliceWinsOnTheLineBetweenRings)
{
    const auto one = scene("a/\n  x 2\n  y 1\nb/\n  z 1\n", square);
    EXPECT_EQ(nameAt(*one, 600, 400), "a");
}

TEST_F(SunburstSceneTests, HoveredSliceIsBrightAndFramed)
{
    const auto one = scene("left.mp4 1\nright.mp4 1\n", square);
    const CanvasRendering rendering = render(one);
    const std::size_t item = *one->itemAt(QPointF(550, 400));
    const QImage picture = hover(rendering, item);
    EXPECT_EQ(picture.pixelColor(550, 400), rendering.bright.pixelColor(550, 400));
    EXPECT_EQ(picture.pixelColor(250, 400), rendering.dimmed.pixelColor(250, 400));
    EXPECT_LT(picture.pixelColor(250, 400).red(), rendering.bright.pixelColor(250, 400).red());
    EXPECT_GT(picture.pixelColor(600, 400).lightness(), 200);
}

/// So many files of one byte each, films and papers in turn.
std::string filmsAndPapers(int count)
{
    std::string text;
    for (int i = 0; i < count; ++i) {
        const std::string number = std::to_string(100'000 + i);
        text += "f" + number + (i % 2 == 0 ? ".mp4 1\n" : ".pdf 1\n");
    }
    return text;
}

TEST_F(SunburstSceneTests, SlicesBelowAPixelHideTheGround)
{
    // Ten slices for each pixel of the ring's outer edge.
    const auto one = scene(filmsAndPapers(12'000), square);
    const CanvasRendering onBlack = render(one, Qt::black);
    const CanvasRendering onWhite = render(one, Qt::white);
    for (int degree = 5; degree <= 355; degree += 5) {
        const double angle = SunburstLayout::defaultStartAngle + degree * std::numbers::pi / 180;
        const QPoint place = polarPoint(one->center(), 150, angle).toPoint();
        EXPECT_NEAR(qGray(onBlack.bright.pixel(place)), qGray(onWhite.bright.pixel(place)), 12)
            << degree;
    }
}

TEST_F(SunburstSceneTests, SlicesBelowAPixelShowTheMeanOfTheirColors)
{
    const auto one = scene(filmsAndPapers(12'000), square);
    const CanvasRendering rendering = render(one);
    const Color film = NodeColors::legendColor(FileTypeCategory::video);
    const Color paper = NodeColors::legendColor(FileTypeCategory::doc);
    // Half of the darkening, and about a quarter goes to the dark lines, each of which is drawn
    // from both of its sides.
    constexpr double left = 0.85 * 0.75;
    for (const QPoint& place : {QPoint(550, 402), QPoint(250, 398), QPoint(402, 550)}) {
        const QColor seen = rendering.bright.pixelColor(place);
        EXPECT_NEAR(seen.redF(), (film.r + paper.r) / 2 * left, 0.08);
        EXPECT_NEAR(seen.greenF(), (film.g + paper.g) / 2 * left, 0.08);
        EXPECT_NEAR(seen.blueF(), (film.b + paper.b) / 2 * left, 0.08);
        EXPECT_LT(rendering.dimmed.pixelColor(place).redF(), seen.redF());
    }
}

TEST_F(SunburstSceneTests, WideSliceKeepsItsColorBesideOnesBelowAPixel)
{
    const auto one = scene("all.mp4 12000\n" + filmsAndPapers(12'000), square);
    EXPECT_EQ(nameAt(*one, 550, 400), "all.mp4");
    const QColor seen = render(one).bright.pixelColor(550, 400);
    const auto alone = scene("all.mp4 1\nrest.pdf 1\n", square);
    EXPECT_EQ(seen, render(alone).bright.pixelColor(550, 400));
}

TEST_F(SunburstSceneTests, SlicesDarkenOutwards)
{
    const auto one = scene("a.mp4 1\nb.mp4 1\n", square);
    const QImage picture = render(one).bright;
    EXPECT_GT(picture.pixelColor(510, 400).red(), picture.pixelColor(590, 400).red());
}

TEST_F(SunburstSceneTests, SelectedSliceTakesTheAccent)
{
    const auto one = scene("left.mp4 1\nright.mp4 1\n", square);
    QImage picture = render(one).bright;
    QPainter painter(&picture);
    one->paintHighlight(painter, *one->itemAt(QPointF(550, 400)), CanvasScene::Highlight::selected,
                        Qt::green);
    painter.end();
    // On the outer and the inner arc.
    for (const QPoint& place : {QPoint(599, 400), QPoint(500, 400)}) {
        const int beside = picture.pixelColor(place - QPoint(1, 0)).green();
        EXPECT_GT(std::max(picture.pixelColor(place).green(), beside), 200);
    }
    EXPECT_LT(picture.pixelColor(201, 400).green(), 200);
}

TEST_F(SunburstSceneTests, BoundsHoldTheSlice)
{
    const auto one = scene("half.bin 2\nquarter.bin 1\nrest.bin 1\n", square);
    const QRectF half = one->boundsOf(0);
    EXPECT_NEAR(half.left(), 400, 1e-9);
    EXPECT_NEAR(half.right(), 600, 1e-9);
    EXPECT_NEAR(half.top(), 200, 1e-9);
    EXPECT_NEAR(half.bottom(), 600, 1e-9);
}

TEST_F(SunburstSceneTests, TooltipTellsNameAndLogicalBytes)
{
    const auto one = scene("a.bin 2048 4096\n", square, SizeMode::disk);
    EXPECT_EQ(one->tooltipOf(0).title, QStringLiteral("a.bin"));
    EXPECT_EQ(one->tooltipOf(0).detail, QStringLiteral("2.0 KB"));
    EXPECT_EQ(one->labelOf(0), QStringLiteral("a.bin, 2.0 KB"));
}

} // namespace
} // namespace quorvane
