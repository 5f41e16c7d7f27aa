// SPDX-License-Identifier: MIT
#include "BloatFilter.h"
#include "TreeText.h"
#include "TreemapTestSupport.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quorvane {
namespace {

using test::area;
using test::expectRect;
using test::layout;
using test::sliceOf;

TEST(TreemapZones, TwoNamesMakeTheBand)
{
    EXPECT_EQ(TreemapLayout::rootZone("Library"), 1);
    EXPECT_EQ(TreemapLayout::rootZone("Documents"), 1);
    EXPECT_EQ(TreemapLayout::rootZone("library"), 0);
    EXPECT_EQ(TreemapLayout::rootZone("Documents "), 0);
    EXPECT_EQ(TreemapLayout::rootZone(""), 0);
}

TEST(TreemapZones, WithoutABandTheTopZoneLosesTheHalfGutterAllTheSame)
{
    const auto tree = test::treeFromText("a 5\n");
    const auto slices = layout(*tree, 100, 60);
    ASSERT_EQ(slices.size(), 1U);
    expectRect(slices[0].rect, 0, 0, 100, 58);
}

TEST(TreemapZones, TheBandAloneHasAllTheHeightLessTwo)
{
    const auto tree = test::treeFromText("Library/\n  a 900\nDocuments/\n  b 100\n");
    const auto slices = layout(*tree, 100, 100);
    const Rect library = sliceOf(slices, test::nodeAt(tree->root(), "Library")).rect;
    const Rect documents = sliceOf(slices, test::nodeAt(tree->root(), "Documents")).rect;
    EXPECT_NEAR(library.y, 2, 1e-9);
    EXPECT_NEAR(area(library) + area(documents), 100 * 98, 1e-6);
    EXPECT_NEAR(area(documents), 0.18 * 100 * 98, 1e-6);
    EXPECT_NEAR(area(library), 0.82 * 100 * 98, 1e-6);
}

TEST(TreemapZones, OneByteKeepsItsFloorBesideHalfATerabyte)
{
    const auto tree = test::treeFromText("Library/\n  a 500000000000\nDocuments/\n  b 1\n");
    const auto slices = layout(*tree, 1000, 402);
    EXPECT_NEAR(area(sliceOf(slices, test::nodeAt(tree->root(), "Documents")).rect),
                0.18 * 1000 * 400, 1e-5);
}

TEST(TreemapZones, TheBandKeepsAThirdOfTheHeight)
{
    const auto tree = test::treeFromText("Music/\n  a 100000\nLibrary/\n  b 1000\n");
    const auto slices = layout(*tree, 500, 1000);
    expectRect(sliceOf(slices, test::nodeAt(tree->root(), "Music")).rect, 0, 0, 500, 668);
    expectRect(sliceOf(slices, test::nodeAt(tree->root(), "Library")).rect, 0, 672, 500, 328);
}

TEST(TreemapZones, TheTopKeepsAThirdOfTheHeight)
{
    const auto tree = test::treeFromText("Music/\n  a 1000\nLibrary/\n  b 100000\n");
    const auto slices = layout(*tree, 500, 1000);
    expectRect(sliceOf(slices, test::nodeAt(tree->root(), "Music")).rect, 0, 0, 500, 328);
    expectRect(sliceOf(slices, test::nodeAt(tree->root(), "Library")).rect, 0, 332, 500, 668);
}

TEST(TreemapZones, InBetweenTheHeightGoesByBytes)
{
    const auto tree = test::treeFromText("Music/\n  a 500\nLibrary/\n  b 500\n");
    const auto slices = layout(*tree, 500, 1000);
    expectRect(sliceOf(slices, test::nodeAt(tree->root(), "Music")).rect, 0, 0, 500, 498);
    expectRect(sliceOf(slices, test::nodeAt(tree->root(), "Library")).rect, 0, 502, 500, 498);
}

TEST(TreemapZones, TopTilesComeFirstAndAreCountedThrough)
{
    const auto tree = test::treeFromText("Library/\n"
                                         "  a 900\n"
                                         "Music/\n"
                                         "  b 60\n"
                                         "film 50\n"
                                         "Documents/\n"
                                         "  c 100\n");
    const auto slices = layout(*tree, 600, 600);
    ASSERT_GE(slices.size(), 4U);
    const std::vector<std::string> order{"Music", "film", "Library", "Documents"};
    for (std::size_t i = 0; i < order.size(); ++i) {
        EXPECT_EQ(slices[i].node->name(), order[i]);
        EXPECT_EQ(slices[i].depth, 0);
        EXPECT_EQ(slices[i].rootIndex, static_cast<int>(i));
    }
    for (std::size_t i = order.size(); i < slices.size(); ++i) {
        EXPECT_EQ(slices[i].depth, 1);
        EXPECT_EQ(slices[i].rootIndex, 0);
    }
}

TEST(TreemapZones, TheCanvasNeedNotBeginAtTheOrigin)
{
    const auto tree = test::treeFromText("Music/\n  a 500\nLibrary/\n  b 500\n");
    const auto slices =
        TreemapLayout::layoutSlate(tree->root(), {30, 40, 500, 1000}, false, true, {});
    expectRect(sliceOf(slices, test::nodeAt(tree->root(), "Music")).rect, 30, 40, 500, 498);
    expectRect(sliceOf(slices, test::nodeAt(tree->root(), "Library")).rect, 30, 542, 500, 498);
}

} // namespace
} // namespace quorvane
