// SPDX-License-Identifier: MIT
#include "TreemapSquarify.h"

#include "FileNode.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace quorvane {
namespace {

/// Items of those weights, in that order, over nodes of a small tree.
class Squarify : public testing::Test
{
protected:
    std::vector<TreemapLayout::Placed> squarify(const std::vector<double>& weights,
                                                const Rect& rect)
    {
        std::vector<TreemapItem> items;
        for (const double weight : weights) {
            TreemapItem item;
            item.node = &m_tree->root();
            item.weight = weight;
            items.push_back(item);
        }
        std::vector<TreemapLayout::Placed> placed;
        squarifyTreemap(items, rect, placed);
        return placed;
    }

    static void expectRect(const Rect& rect, double x, double y, double width, double height)
    {
        EXPECT_NEAR(rect.x, x, 1e-9);
        EXPECT_NEAR(rect.y, y, 1e-9);
        EXPECT_NEAR(rect.width, width, 1e-9);
        EXPECT_NEAR(rect.height, height, 1e-9);
    }

private:
    std::shared_ptr<FileTree> m_tree = test::treeFromText("a 1\n");
};

TEST_F(Squarify, OneItemFillsTheRectangle)
{
    const auto placed = squarify({0.3}, {5, 7, 120, 80});
    ASSERT_EQ(placed.size(), 1U);
    expectRect(placed[0].rect, 5, 7, 120, 80);
}

// The well-known example of areas 6, 6, 4, 3, 2, 2, 1 in a rectangle of 6 by 4, here at 100 to 1:
// a column of two sixes, a row of four and three beside it, then three columns of one each.
TEST_F(Squarify, TheClassicExample)
{
    const auto placed = squarify({6, 6, 4, 3, 2, 2, 1}, {0, 0, 600, 400});
    ASSERT_EQ(placed.size(), 7U);
    expectRect(placed[0].rect, 0, 0, 300, 200);
    expectRect(placed[1].rect, 0, 200, 300, 200);
    const double rowHeight = 700.0 / 3;
    expectRect(placed[2].rect, 300, 0, 300 * 4.0 / 7, rowHeight);
    expectRect(placed[3].rect, 300 + 300 * 4.0 / 7, 0, 300 * 3.0 / 7, rowHeight);
    const double rest = 500.0 / 3;
    expectRect(placed[4].rect, 300, rowHeight, 120, rest);
    expectRect(placed[5].rect, 420, rowHeight, 120, rest);
    expectRect(placed[6].rect, 540, rowHeight, 60, rest);
}

TEST_F(Squarify, ItemsKeepTheirOrderEvenWhenALargeOneComesLast)
{
    // By the short side, whose square is 4.5: 1 alone is 4.5 at worst, with 8 it would be 18.
    const auto placed = squarify({1, 8}, {0, 0, 180, 90});
    ASSERT_EQ(placed.size(), 2U);
    expectRect(placed[0].rect, 0, 0, 20, 90);
    expectRect(placed[1].rect, 20, 0, 160, 90);
}

TEST_F(Squarify, ATieKeepsTheRowGrowing)
{
    // All numbers are powers of two: 1 alone is 4 at worst, and so it is with 3 behind it.
    const auto placed = squarify({1, 3}, {0, 0, 32, 32});
    ASSERT_EQ(placed.size(), 2U);
    expectRect(placed[0].rect, 0, 0, 32, 8);
    expectRect(placed[1].rect, 0, 8, 32, 24);
}

TEST_F(Squarify, ATallRectangleIsCutIntoRows)
{
    const auto placed = squarify({1, 1}, {0, 0, 100, 200});
    ASSERT_EQ(placed.size(), 2U);
    expectRect(placed[0].rect, 0, 0, 100, 100);
    expectRect(placed[1].rect, 0, 100, 100, 100);
}

TEST_F(Squarify, ATileMustBeWiderAndTallerThanHalfAPoint)
{
    EXPECT_TRUE(squarify({1}, {0, 0, 100, 0.49}).empty());
    EXPECT_EQ(squarify({1}, {0, 0, 100, 0.51}).size(), 1U);
    // Each takes a column of its own; the second is 1 wide at 99 to 1, a quarter at 399 to 1.
    EXPECT_EQ(squarify({99, 1}, {0, 0, 100, 100}).size(), 2U);
    const auto thin = squarify({399, 1}, {0, 0, 100, 100});
    ASSERT_EQ(thin.size(), 1U);
    expectRect(thin[0].rect, 0, 0, 99.75, 100);
}

TEST_F(Squarify, BadGeometryPlacesNothing)
{
    const double infinity = std::numeric_limits<double>::infinity();
    const double none = std::numeric_limits<double>::quiet_NaN();
    for (const Rect& rect :
         {Rect{0, 0, 0, 10}, Rect{0, 0, 10, 0}, Rect{0, 0, -5, 10}, Rect{0, 0, infinity, 10},
          Rect{0, 0, 10, infinity}, Rect{0, 0, none, 10}, Rect{0, 0, 10, none}}) {
        EXPECT_TRUE(squarify({1, 2}, rect).empty());
    }
}

TEST_F(Squarify, NothingToPlace)
{
    EXPECT_TRUE(squarify({}, {0, 0, 10, 10}).empty());
    EXPECT_TRUE(squarify({0, 0}, {0, 0, 10, 10}).empty());
    EXPECT_TRUE(squarify({-1}, {0, 0, 10, 10}).empty());
}

TEST(EnforceMinimum, LeavesValuesAboveTheFloorAlone)
{
    const std::vector<double> values{0.5, 0.3, 0.2};
    EXPECT_EQ(TreemapLayout::enforceMinimum(values, 0.2, 1), values);
    EXPECT_TRUE(TreemapLayout::enforceMinimum({}, 0.2, 1).empty());
}

TEST(EnforceMinimum, DonorsGiveInProportion)
{
    // 0.125 lacks 0.125; the donors 0.5 and 0.375 give 4/7 and 3/7 of it.
    const auto raised = TreemapLayout::enforceMinimum({0.5, 0.375, 0.125}, 0.25, 1);
    ASSERT_EQ(raised.size(), 3U);
    EXPECT_DOUBLE_EQ(raised[0], 0.5 - 0.125 * 4 / 7);
    EXPECT_DOUBLE_EQ(raised[1], 0.375 - 0.125 * 3 / 7);
    EXPECT_EQ(raised[2], 0.25);
}

TEST(EnforceMinimum, ADonorGivesNoMoreThanItHasAbove)
{
    // Three at 0 lack 0.54 in all, more than the donor's 0.5 can give.
    const auto raised = TreemapLayout::enforceMinimum({0.5, 0, 0, 0}, 0.18, 1);
    for (const double value : raised) {
        EXPECT_DOUBLE_EQ(value, 0.18);
    }
}

TEST(EnforceMinimum, WithoutADonorAllAreScaledToTheTotal)
{
    const auto scaled = TreemapLayout::enforceMinimum({0.125, 0.125, 0.25}, 0.25, 1);
    ASSERT_EQ(scaled.size(), 3U);
    EXPECT_DOUBLE_EQ(scaled[0], 0.25);
    EXPECT_DOUBLE_EQ(scaled[1], 0.25);
    EXPECT_DOUBLE_EQ(scaled[2], 0.5);
    EXPECT_EQ(TreemapLayout::enforceMinimum({0, 0}, 0.25, 1), (std::vector<double>{0, 0}));
}

} // namespace
} // namespace quorvane
