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
