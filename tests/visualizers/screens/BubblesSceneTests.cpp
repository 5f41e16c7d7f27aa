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

/// Pixels nearly as white as a name.
int whitePixels(const QImage& picture, const QRectF& area)
{
    int count = 0;
    const QRect pixels = area.toAlignedRect().intersected(picture.rect());
    for (int y = pixels.top(); y <= pixels.bottom(); ++y) {
        for (int x = pixels.left(); x <= pixels.right(); ++x) {
            count += picture.pixelColor(x, y).lightness() > 230 ? 1 : 0;
        }
    }
    return count;
}

TEST_F(BubblesSceneTests, NamesStandInBubblesOfMoreThanEighteenPoints)
{
    // Both stand beside each other on 760 points: the radii share 380 as the roots of the bytes.
    const auto small = scene("a.mp4 361000\nmmm 900\n", {800, 800});
    const std::size_t smallItem = itemNamed(*small, "mmm");
    EXPECT_NEAR(small->radiusOf(smallItem), 18.07, 0.01);
    EXPECT_GT(whitePixels(render(small).bright, small->boundsOf(smallItem)), 0);
    const auto smaller = scene("a.mp4 361000\nmmm 880\n", {800, 800});
    const std::size_t smallerItem = itemNamed(*smaller, "mmm");
    EXPECT_NEAR(smaller->radiusOf(smallerItem), 17.88, 0.01);
    EXPECT_EQ(whitePixels(render(smaller).bright, smaller->boundsOf(smallerItem)), 0);
}

TEST_F(BubblesSceneTests, NameReachesBeyondItsBubble)
{
    const auto one = scene("a.mp4 361000\nmmmmmmmmmmmmmmm 1600\n", {800, 800});
    const QRectF bubble = one->boundsOf(itemNamed(*one, "mmmmmmmmmmmmmmm"));
    const QRectF beside(bubble.right() + 2, bubble.top(), 15, bubble.height());
    EXPECT_GT(whitePixels(render(one).bright, beside), 0);
}

TEST_F(BubblesSceneTests, HoveredBubbleHasAWhiteRimAndASelectedOneTheAccent)
{
    const auto one = scene("a.mp4 3\nb.mp4 1\n");
    const CanvasRendering rendering = render(one);
    const std::size_t item = itemNamed(*one, "a.mp4");
    const QRectF bubble = one->boundsOf(item);
    const QPoint rim(static_cast<int>(bubble.left()), static_cast<int>(bubble.center().y()));
    EXPECT_GT(hover(rendering, item).pixelColor(rim).lightness(), 180);
    QImage selected = rendering.bright;
    QPainter painter(&selected);
    one->paintHighlight(painter, item, CanvasScene::Highlight::selected, QColor(0, 0, 255));
    painter.end();
    EXPECT_GT(selected.pixelColor(rim).blue(), 180);
    EXPECT_LT(selected.pixelColor(rim).red(), 60);
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
