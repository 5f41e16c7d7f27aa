// SPDX-License-Identifier: MIT
#include "BubblesScene.h"

#include "SceneFixture.h"

#include <cmath>

namespace quorvane {
namespace {

using BubblesSceneTests = SceneFixture<BubblesScene>;

TEST_F(BubblesSceneTests, ClusterIsCentredWhateverItsShape)
{
    const auto one = scene("a.mp4 300\nb.mp4 100\n");
    ASSERT_EQ(one->itemCount(), 2U);
    const QRectF cluster = one->boundsOf(0).united(one->boundsOf(1));
    EXPECT_NEAR(cluster.center().x(), 400, 1e-9);
    EXPECT_NEAR(cluster.center().y(), 300, 1e-9);
    EXPECT_NEAR(cluster.width(), 760, 1e-9);
    EXPECT_NEAR(one->radiusOf(itemNamed(*one, "a.mp4")) / one->radiusOf(itemNamed(*one, "b.mp4")),
                std::sqrt(3.0), 1e-9);
}

TEST_F(BubblesSceneTests, SmallCanvasShowsNothing)
{
    EXPECT_EQ(scene("a 1\nb 1\n", {400, 100})->itemCount(), 0U);
}

TEST_F(BubblesSceneTests, NestedBubbleWinsOverItsParent)
{
    const auto one = scene("only/\n  a.mp4 9\n  b.mp4 1\n");
    const QPointF inner = one->centerOf(itemNamed(*one, "only/a.mp4"));
    EXPECT_EQ(nameAt(*one, inner.x(), inner.y()), "a.mp4");
    const QRectF outer = one->boundsOf(itemNamed(*one, "only"));
    EXPECT_EQ(nameAt(*one, outer.center().x(), outer.top() + 2), "only");
    EXPECT_EQ(nameAt(*one, outer.left() - 5, outer.top()), "nothing");
}

TEST_F(BubblesSceneTests, HoveredBubbleIsBrightButNotWhatItHolds)
{
    const auto one = scene("only/\n  a.mp4 9\n  b.mp4 1\n");
    const CanvasRendering rendering = render(one);
    const std::size_t only = itemNamed(*one, "only");
    const QImage picture = hover(rendering, only);
    const QRectF outer = one->boundsOf(only);
    const QPoint edge(static_cast<int>(outer.center().x()), static_cast<int>(outer.top()) + 8);
    EXPECT_EQ(picture.pixelColor(edge), rendering.bright.pixelColor(edge));
    EXPECT_NE(picture.pixelColor(edge), rendering.dimmed.pixelColor(edge));
    const QRectF inner = one->boundsOf(itemNamed(*one, "only/a.mp4"));
    const QPoint nested(static_cast<int>(inner.left()) + 20, static_cast<int>(inner.center().y()));
    EXPECT_EQ(picture.pixelColor(nested), rendering.dimmed.pixelColor(nested));
}

TEST_F(BubblesSceneTests, LightComesFromTheUpperLeft)
{
    const auto one = scene("a.mp4 1\nb.mp4 1\n");
    const QImage picture = render(one).bright;
    const QPointF center = one->centerOf(0);
    const double step = one->radiusOf(0) * 0.5;
    EXPECT_GT(picture.pixelColor((center - QPointF(step, step)).toPoint()).red(),
              picture.pixelColor((center + QPointF(step, step)).toPoint()).red());
}

} // namespace
} // namespace quorvane
