// SPDX-License-Identifier: MIT
#include "MindMapScene.h"

#include "SceneFixture.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace quorvane {
namespace {

using MindMapSceneTests = SceneFixture<MindMapScene>;

/// The point from which the bands radiate is at 40, 300.
TEST_F(MindMapSceneTests, PointerFindsTheBandOfItsAngle)
{
    const auto one = scene("a.mp4 3\nb.mp4 1\n");
    EXPECT_EQ(nameAt(*one, 80, 290), "a.mp4");
    EXPECT_EQ(nameAt(*one, 45, 350), "b.mp4");
    EXPECT_EQ(nameAt(*one, 200, 300), "nothing");
    EXPECT_EQ(nameAt(*one, 45, 300), "nothing");
}

TEST_F(MindMapSceneTests, PointerLeftOfTheCentreHitsNothing)
{
    const auto one = scene("a.mp4 3\nb.mp4 1\n");
    EXPECT_EQ(nameAt(*one, 39, 250), "nothing");
    EXPECT_EQ(nameAt(*one, 40, 250), "nothing");
}

TEST_F(MindMapSceneTests, PointerHitsTheAreaOfAThinSpoke)
{
    const auto one = scene("a.mp4 3\nb.mp4 1\n");
    // The spoke runs along the middle angle; its band reaches far beside it.
    EXPECT_EQ(nameAt(*one, 42, 260), "a.mp4");
}

TEST_F(MindMapSceneTests, FoldersAreArcsAndFilesAreSpokes)
{
    const auto folder = render(scene("box/\n  a.mp4 1\n")).bright;
    // A folder of one child spans the half turn: its arc passes the axis at its outer radius.
    EXPECT_GT(folder.pixelColor(40 + 78, 290).lightness(), 20);
    EXPECT_EQ(folder.pixelColor(40 + 50, 270), QColor(Qt::black));
    const auto file = render(scene("a.mp4 1\n")).bright;
    EXPECT_GT(file.pixelColor(40 + 30, 295).lightness(), 20);
}

TEST_F(MindMapSceneTests, RadiiDoNotFollowTheCanvas)
{
    const auto large = scene("box/\n  a.mp4 1\n", {800, 600});
    const std::vector<QRectF> wide{large->boundsOf(0), large->boundsOf(1)};
    const auto small = scene("box/\n  a.mp4 1\n", {90, 60});
    ASSERT_EQ(small->itemCount(), 2U);
    for (std::size_t i = 0; i < 2; ++i) {
        const QRectF& there = wide[i];
        const QRectF here = small->boundsOf(i);
        EXPECT_NEAR(here.width(), there.width(), 1e-9);
        EXPECT_NEAR(here.height(), there.height(), 1e-9);
        EXPECT_NEAR(here.center().y(), 30, 1e-9);
    }
    EXPECT_EQ(render(small).bright.size(), QSize(90, 60));
}

TEST_F(MindMapSceneTests, FolderOfHiddenItemsIsASpoke)
{
    m_tree = test::treeFromText("box/\n  Caches/\n    c 1\n");
    SceneRequest request;
    request.target = m_tree->rootPointer();
    request.size = {800, 600};
    request.sizeMode = SizeMode::logical;
    request.hidden = BloatKeys{"Caches"};
    const LockedFlag stop;
    const QImage picture = render(MindMapScene::make(request, stop)).bright;
    // Off the axis, and where no arc would be.
    EXPECT_GT(picture.pixelColor(40 + 30, 295).lightness(), 20);
}

/// Whether anything is painted about the middle of a band.
bool hasLabel(const MindMapScene& scene, const QImage& picture, double angle)
{
    const QPoint middle = polarPoint(scene.center(), 43, angle).toPoint();
    for (int y = middle.y() - 4; y <= middle.y() + 4; ++y) {
        for (int x = middle.x() - 4; x <= middle.x() + 4; ++x) {
            if (picture.pixelColor(x, y).lightness() > 40) {
                return true;
            }
        }
    }
    return false;
}

TEST_F(MindMapSceneTests, BandsWithAnArcOfMoreThanFourteenPointsHaveNames)
{
    constexpr double pi = 3.14159265358979;
    // The first ring ends at 78 points: a share of 0.058 has an arc of 14.2, one of 0.056 of 13.7.
    const auto named = scene("a/\n  x 942\nmmm/\n  y 58\n");
    EXPECT_TRUE(hasLabel(*named, render(named).bright, pi / 2 - 0.029 * pi));
    const auto unnamed = scene("a/\n  x 944\nmmm/\n  y 56\n");
    EXPECT_FALSE(hasLabel(*unnamed, render(unnamed).bright, pi / 2 - 0.028 * pi));
}

TEST_F(MindMapSceneTests, SelectedArcIsFourPointsWide)
{
    const auto one = scene("box/\n  a.mp4 1\n");
    QImage picture(800, 600, QImage::Format_RGB32);
    picture.fill(Qt::black);
    QPainter painter(&picture);
    one->paintHighlight(painter, itemNamed(*one, "box"), CanvasScene::Highlight::selected,
                        Qt::blue);
    painter.end();
    double light = 0;
    int brightest = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const int lightness = picture.pixelColor(x, y).lightness();
            light += lightness;
            brightest = std::max(brightest, lightness);
        }
    }
    ASSERT_GT(brightest, 0);
    // Half a turn at 78 points; others are 3 and 5 wide, and the edges are rounded.
    EXPECT_NEAR(light / brightest / (3.14159265358979 * 78), 4, 0.3);
}

TEST_F(MindMapSceneTests, SpokeIsAsThickAsItsShareOfTheRing)
{
    // 78 points, a share of one half, nine tenths of that: 35.1 points, across the middle angle.
    const auto one = scene("a.mp4 1\nb.mp4 1\n");
    const QImage picture = render(one).bright;
    const auto isLit = [&](double aside) {
        // Along the spoke at an eighth turn upwards, then at right angles to it.
        const double along = 60 * std::sqrt(0.5);
        const double across = aside * std::sqrt(0.5);
        const QPointF place = one->center() + QPointF(along - across, -along - across);
        return picture.pixelColor(place.toPoint()).lightness() > 20;
    };
    EXPECT_TRUE(isLit(16));
    EXPECT_FALSE(isLit(20));
}

TEST_F(MindMapSceneTests, HoveredArcHasAHalo)
{
    const auto one = scene("box/\n  a.mp4 1\n");
    const CanvasRendering rendering = render(one);
    const QImage picture = hover(rendering, itemNamed(*one, "box"));
    const QPoint beside = polarPoint(one->center(), 80.5, -1).toPoint();
    EXPECT_GT(picture.pixelColor(beside).lightness(),
              rendering.bright.pixelColor(beside).lightness());
}

TEST_F(MindMapSceneTests, HoveredSpokeIsBright)
{
    const auto one = scene("a.mp4 3\nb.mp4 1\n");
    const CanvasRendering rendering = render(one);
    const std::size_t item = itemNamed(*one, "a.mp4");
    const QPointF middle = polarPoint(one->center(), 20, -3.14159265358979 / 8);
    const QImage picture = hover(rendering, item);
    EXPECT_EQ(picture.pixelColor(middle.toPoint()), rendering.bright.pixelColor(middle.toPoint()));
    EXPECT_NE(picture.pixelColor(middle.toPoint()), rendering.dimmed.pixelColor(middle.toPoint()));
}

} // namespace
} // namespace quorvane
