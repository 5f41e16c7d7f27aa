// SPDX-License-Identifier: MIT
#include "BubblesLayout.h"

#include "BloatFilter.h"
#include "BubblePacking.h"
#include "LayoutTestSupport.h"
#include "LockedFlag.h"
#include "RandomTree.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <cmath>

namespace quorvane {
namespace {

using test::Names;
using test::namesOf;

std::vector<BubbleNode> bubblesOf(const std::shared_ptr<FileTree>& tree, int maxDepth = 1)
{
    test::keepAlive(tree);
    return BubblesLayout::layout(tree->root(), 100, maxDepth, SizeMode::logical, {});
}

TEST(BubblesLayout, AreasFollowTheBytes)
{
    const auto bubbles = bubblesOf(test::treeFromText("a 3\nb 1\n"));
    ASSERT_EQ(namesOf(bubbles), (Names{"a", "b"}));
    EXPECT_DOUBLE_EQ(bubbles[0].bubble.radius, std::sqrt(0.75) * 90);
    EXPECT_DOUBLE_EQ(bubbles[1].bubble.radius, 45);
    EXPECT_EQ(bubbles[0].bubble.center, Point{});
    // They touch on the axis.
    EXPECT_DOUBLE_EQ(bubbles[1].bubble.center.x, std::sqrt(0.75) * 90 + 45);
    EXPECT_EQ(bubbles[1].bubble.center.y, 0);
}

TEST(BubblesLayout, PaintsByIdWhatIsPackedBySize)
{
    const auto bubbles = bubblesOf(test::treeFromText("small 1\nlarge 3\n"));
    ASSERT_EQ(namesOf(bubbles), (Names{"small", "large"}));
    EXPECT_EQ(bubbles[1].bubble.center, Point{});
}

TEST(BubblesLayout, EqualItemsArePackedByNameAndPaintedById)
{
    const auto bubbles = bubblesOf(test::treeFromText("c 5\nb 5\na 5\n"));
    ASSERT_EQ(namesOf(bubbles), (Names{"c", "b", "a"}));
    // The first of the packing stands on the origin, the second beside it on the axis.
    EXPECT_EQ(bubbles[2].bubble.center, Point{});
    EXPECT_DOUBLE_EQ(bubbles[1].bubble.center.x, 2 * bubbles[1].bubble.radius);
    EXPECT_EQ(bubbles[1].bubble.center.y, 0);
    EXPECT_NE(bubbles[0].bubble.center.y, 0);
}

TEST(BubblesLayout, OnlyChildOpensItsContent)
{
    const auto tree = test::treeFromText("only/\n  a 1\n  b/\n    c 1\n");
    const auto bubbles = bubblesOf(tree);
    ASSERT_EQ(namesOf(bubbles), Names{"only"});
    EXPECT_DOUBLE_EQ(bubbles[0].bubble.radius, 90);
    ASSERT_EQ(namesOf(bubbles[0].children), (Names{"a", "b"}));
    EXPECT_DOUBLE_EQ(bubbles[0].children[0].bubble.radius, std::sqrt(0.5) * 90 * 0.7 * 0.9);
    EXPECT_TRUE(bubbles[0].children[1].children.empty());
    EXPECT_TRUE(bubblesOf(tree, 0)[0].children.empty());
}

TEST(BubblesLayout, ChainGoesOnlyAsDeepAsAsked)
{
    const auto tree = test::treeFromText("1/\n  2/\n    3/\n      4 1\n");
    const auto all = BubblesLayout::flatten(bubblesOf(tree));
    ASSERT_EQ(namesOf(all), (Names{"1", "2"}));
    EXPECT_EQ(all[0].level, 0);
    EXPECT_EQ(all[1].level, 1);
    EXPECT_EQ(BubblesLayout::flatten(bubblesOf(tree, 2)).size(), 3U);
}

TEST(BubblesLayout, EmptyItemsAreLeftOut)
{
    EXPECT_TRUE(bubblesOf(test::treeFromText("a 0\nb/\n")).empty());
    EXPECT_EQ(namesOf(bubblesOf(test::treeFromText("a 0\nb 2\n"))), Names{"b"});
}

TEST(BubblesLayout, FlattensTheLastFirst)
{
    const auto all = BubblesLayout::flatten(bubblesOf(test::treeFromText("a 3\nb 2\nc 1\n")));
    EXPECT_EQ(namesOf(all), (Names{"c", "b", "a"}));
}

TEST(BubblesLayout, BoundsHoldEveryCircle)
{
    EXPECT_EQ(BubblesLayout::bounds({}), Rect{});
    const std::vector<FlatBubble> all{{nullptr, {1, 2, {0, 0}}, 0}, {nullptr, {2, 1, {3, 4}}, 0}};
    EXPECT_EQ(BubblesLayout::bounds(all), (Rect{-2, -2, 6, 7}));
}

TEST(BubblesLayout, CanvasOfAHundredPointsIsTooSmall)
{
    EXPECT_FALSE(BubblesLayout::screenRadius(100, 500));
    EXPECT_DOUBLE_EQ(BubblesLayout::screenRadius(500, 102).value(), 21);
}

TEST(BubblesLayout, ScaleFitsTheClusterIntoTheCanvas)
{
    EXPECT_DOUBLE_EQ(BubblesLayout::screenScale({0, 0, 100, 50}, 240, 90), 1);
    EXPECT_DOUBLE_EQ(BubblesLayout::screenScale({0, 0, 100, 50}, 240, 640), 2);
    EXPECT_EQ(BubblesLayout::screenScale({0, 0, 100, 50}, 30, 90), 0);
}

TEST(BubblesLayout, HiddenFamiliesTakeNoPart)
{
    const auto tree = test::treeFromText("node_modules/\n  a.js 9\nb 1\n");
    const auto bubbles =
        BubblesLayout::layout(tree->root(), 100, 1, SizeMode::logical, BloatKeys{"Node.js"});
    EXPECT_EQ(namesOf(bubbles), Names{"b"});
}

TEST(BubblesLayout, StoppedLayoutIsEmpty)
{
    LockedFlag stop;
    stop.set(true);
    const auto tree = test::treeFromText("a 1\n");
    EXPECT_TRUE(BubblesLayout::layout(tree->root(), 100, 1, SizeMode::disk, {}, &stop).empty());
}

TEST(BubblesLayout, BubblesOfRandomFoldersKeepApart)
{
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        const auto tree = test::randomTree(seed);
        const auto bubbles = bubblesOf(tree);
        for (std::size_t i = 0; i < bubbles.size(); ++i) {
            EXPECT_TRUE(i == 0 || bubbles[i - 1].bubble.id < bubbles[i].bubble.id);
            for (std::size_t j = 0; j < i; ++j) {
                const Bubble& a = bubbles[i].bubble;
                const Bubble& b = bubbles[j].bubble;
                EXPECT_GE(std::hypot(a.center.x - b.center.x, a.center.y - b.center.y),
                          a.radius + b.radius - bubbleTolerance - 1e-9)
                    << "seed " << seed;
            }
        }
    }
}

} // namespace
} // namespace quorvane
