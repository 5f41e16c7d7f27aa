// SPDX-License-Identifier: MIT
#include "FlameScene.h"

#include "SceneFixture.h"

namespace quorvane {
namespace {

using FlameSceneTests = SceneFixture<FlameScene>;

TEST_F(FlameSceneTests, PointerFindsTheBarBelowIt)
{
    const auto one = scene("box/\n  a.mp4 400\n  b.mp4 400\n");
    EXPECT_EQ(nameAt(*one, 10, 20), "box");
    EXPECT_EQ(nameAt(*one, 10, 50), "a.mp4");
    // Between the rows, and below the last one.
    EXPECT_EQ(nameAt(*one, 10, 40), "nothing");
    EXPECT_EQ(nameAt(*one, 10, 90), "nothing");
}

TEST_F(FlameSceneTests, HoveredBarIsBrightAndTheOthersDimmed)
{
    const auto one = scene("box/\n  a.mp4 400\n  b.mp4 400\n");
    const CanvasRendering rendering = render(one);
    const QImage picture = hover(rendering, itemNamed(*one, "box/a.mp4"));
    EXPECT_EQ(picture.pixelColor(30, 60), rendering.bright.pixelColor(30, 60));
    EXPECT_EQ(picture.pixelColor(700, 60), rendering.dimmed.pixelColor(700, 60));
    EXPECT_LT(rendering.dimmed.pixelColor(700, 60).red(),
              rendering.bright.pixelColor(700, 60).red());
}

TEST_F(FlameSceneTests, BarsShineAtTheTop)
{
    const QImage picture = render(scene("a.mp4 400\n")).bright;
    EXPECT_GT(picture.pixelColor(30, 10).green(), picture.pixelColor(30, 36).green());
}

TEST_F(FlameSceneTests, HoveredBarHasAWhiteFrame)
{
    const auto one = scene("a.mp4 400\n");
    const QImage picture = hover(render(one), 0);
    // The bar spans 4 to 800 and 8 to 39; the line is two wide.
    for (const QPoint& place : {QPoint(400, 8), QPoint(400, 38), QPoint(4, 20)}) {
        EXPECT_GT(picture.pixelColor(place).green(), 230) << place.x() << ' ' << place.y();
    }
}

TEST_F(FlameSceneTests, NameNeedsMoreThanThirtyFourPoints)
{
    // The widest item has 800 points; a byte is a point.
    const auto one = scene("big.mp4 800\nbox/\n  one.mp4 36\n  two.mp4 34\n");
    const QImage picture = render(one).bright;
    /// Whether the lines of pixels in a bar are of one colour each.
    const auto isPlain = [&](const char* path) {
        const QRect bar =
            one->boundsOf(itemNamed(*one, path)).toAlignedRect().adjusted(3, 3, -3, -3);
        for (int y = bar.top(); y <= bar.bottom(); ++y) {
            for (int x = bar.left(); x <= bar.right(); ++x) {
                if (picture.pixel(x, y) != picture.pixel(bar.left(), y)) {
                    return false;
                }
            }
        }
        return true;
    };
    EXPECT_EQ(one->boundsOf(itemNamed(*one, "box/two.mp4")).width(), 34);
    EXPECT_TRUE(isPlain("box/two.mp4"));
    EXPECT_FALSE(isPlain("box/one.mp4"));
}

TEST_F(FlameSceneTests, SelectedBarTakesTheAccent)
{
    const auto one = scene("a.mp4 400\n");
    QImage picture = render(one).bright;
    QPainter painter(&picture);
    one->paintHighlight(painter, 0, CanvasScene::Highlight::selected, Qt::green);
    painter.end();
    EXPECT_GT(picture.pixelColor(200, 8).green(), 200);
}

} // namespace
} // namespace quorvane
