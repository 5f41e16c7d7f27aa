// SPDX-License-Identifier: MIT
#include "TreemapLayout.h"

#include "BloatFilter.h"
#include "LockedFlag.h"
#include "SliceText.h"
#include "TreeText.h"
#include "TreemapTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace quorvane {
namespace {

using test::area;
using test::equalFiles;
using test::expectRect;
using test::layout;
using test::layoutText;
using test::sliceOf;
using Slice = TreemapLayout::Slice;

TEST(TreemapLayout, NothingForAnEmptyFolderOrATinyCanvas)
{
    const auto empty = test::treeFromText("");
    EXPECT_TRUE(layout(*empty, 100, 100).empty());
    const auto tree = test::treeFromText("a 1\n");
    EXPECT_TRUE(layout(*tree, 4, 100).empty());
    EXPECT_TRUE(layout(*tree, 100, 4).empty());
    EXPECT_TRUE(layout(*tree, std::numeric_limits<double>::quiet_NaN(), 100).empty());
    EXPECT_TRUE(layout(*tree, std::numeric_limits<double>::infinity(), 100).empty());
    EXPECT_EQ(layout(*tree, 4.1, 4.1).size(), 1U);
}

TEST(TreemapLayout, AFileIsItsOwnSlice)
{
    const auto tree = test::treeFromText("a.mp4 5\n");
    const Slice slice = layout(*tree, 100, 100).at(0);
    EXPECT_EQ(slice.id, 1);
    EXPECT_EQ(slice.nodeID, 1);
    EXPECT_EQ(slice.node, &tree->root().children().front());
    EXPECT_FALSE(slice.isFolder);
    EXPECT_FALSE(slice.isAggregateTile);
    EXPECT_EQ(slice.labelOverride, std::nullopt);
    EXPECT_EQ(slice.folderBodyCategory, std::nullopt);
    EXPECT_EQ(slice.aggregateCategory, FileTypeCategory::other);
}

// Canvas 200 × 202: the top zone is 200 × 200. Stuff is its only tile; its header takes 16, its
// body is 198 × 182 from (1, 17). In it x has three quarters: a column 148.5 wide; y the rest.
TEST(TreemapLayout, AFolderOpensBelowItsHeader)
{
    const auto tree = test::treeFromText("Stuff/\n"
                                         "  x.mp4 3000\n"
                                         "  y.zip 1000\n");
    const auto slices = layout(*tree, 200, 202);
    EXPECT_EQ(layoutText(slices), "Stuff 0 0 200 200 video\n"
                                  "  x.mp4 1 17 148.5 182\n"
                                  "  y.zip 149.5 17 49.5 182\n");
    ASSERT_EQ(slices.size(), 3U);
    expectRect(slices[1].rect, 1, 17, 148.5, 182);
    expectRect(slices[2].rect, 149.5, 17, 49.5, 182);
}

// Canvas 400 × 302, top zone 400 × 300, one byte of 12,000 being ten points. Work has two thirds:
// against the short side its column is 266.67 wide. Photos and the rest follow in a column of
// 133.33.
TEST(TreemapLayout, ASmallTreeOnPaper)
{
    const auto tree = test::treeFromText("Work/\n"
                                         "  src/\n"
                                         "    a.swift 4000\n"
                                         "    b.swift 2000\n"
                                         "  notes.txt 2000\n"
                                         "Photos/\n"
                                         "  p.jpg 3000\n"
                                         "z.bin 1000\n");
    // Work: body (1, 17) 264.67 × 282. src has 3/4: by the side 264.67 it lies along the top, 211.5
    // high; notes 70.5 below it. src: body (2, 34) 262.67 × 193.5; a two thirds: 175.11 wide.
    // Photos: 225 high, body (267.67, 17) 131.33 × 207. z.bin: 75 high.
    EXPECT_EQ(layoutText(layout(*tree, 400, 302)), "Work 0 0 266.7 300 project\n"
                                                   "Photos 266.7 0 133.3 225 image\n"
                                                   "z.bin 266.7 225 133.3 75\n"
                                                   "  src 1 17 264.7 211.5 dev\n"
                                                   "    a.swift 2 34 175.1 193.5\n"
                                                   "    b.swift 177.1 34 87.6 193.5\n"
                                                   "  notes.txt 1 228.5 264.7 70.5\n"
                                                   "  p.jpg 267.7 17 131.3 207\n");
}

TEST(TreemapDepth, FoldersAtDepthThreeStayClosed)
{
    const auto tree = test::treeFromText("a0/\n"
                                         "  f0 10\n"
                                         "  a1/\n"
                                         "    f1 10\n"
                                         "    a2/\n"
                                         "      f2 10\n"
                                         "      a3/\n"
                                         "        f3 1000\n"
                                         "        a4/\n"
                                         "          f4 1000\n");
    const auto slices = layout(*tree, 1000, 1000);
    EXPECT_EQ(sliceOf(slices, test::nodeAt(tree->root(), "a0")).depth, 0);
    EXPECT_EQ(sliceOf(slices, test::nodeAt(tree->root(), "a0/a1")).depth, 1);
    EXPECT_EQ(sliceOf(slices, test::nodeAt(tree->root(), "a0/a1/a2")).depth, 2);
    EXPECT_EQ(sliceOf(slices, test::nodeAt(tree->root(), "a0/a1/a2/a3")).depth, 3);
    EXPECT_THROW(sliceOf(slices, test::nodeAt(tree->root(), "a0/a1/a2/a3/f3")), std::out_of_range);
}

TEST(TreemapFolding, AFolderOfMicroChildrenStaysSolidZoomedOut)
{
    // The body is 98 × 82 = 8036 points: 192 × 100 / 8036 = 2.4 bytes, 80.4 points for each file.
    const auto tree = test::treeFromText("Box/\n" + equalFiles(100, 1, 1));
    EXPECT_EQ(layout(*tree, 100, 102, true).size(), 1U);
    EXPECT_EQ(layout(*tree, 100, 102, false).size(), 101U);
}

TEST(TreemapFolding, ByAreaAloneSmallFilesFoldIntoOneTile)
{
    // 8036 / 200 = 40.2 points each.
    const auto tree = test::treeFromText("Box/\n" + equalFiles(200, 1, 1));
    const auto slices = layout(*tree, 100, 102, false);
    ASSERT_EQ(slices.size(), 2U);
    const Slice& folded = slices[1];
    EXPECT_TRUE(folded.isAggregateTile);
    EXPECT_EQ(folded.node, &test::nodeAt(tree->root(), "Box"));
    EXPECT_EQ(folded.nodeID, 1);
    EXPECT_EQ(folded.id, -1000004);
    EXPECT_EQ(folded.aggregateCount, 200);
    EXPECT_EQ(folded.aggregateBytes, 200);
    EXPECT_EQ(folded.folderBodyCategory, std::nullopt);
    EXPECT_TRUE(folded.isFolder);
    EXPECT_EQ(folded.depth, 1);
    expectRect(folded.rect, 1, 17, 98, 82);
}

TEST(TreemapFolding, TheChainSliceStaysWhenWhatItHoldsIsMicro)
{
    const auto tree = test::treeFromText("A/\n  Box/\n" + equalFiles(100, 1, 2));
    const auto slices = layout(*tree, 100, 102, true);
    ASSERT_EQ(slices.size(), 2U);
    EXPECT_EQ(slices[1].labelOverride, "Box");
}

TEST(TreemapFolding, TopTilesNeverFold)
{
    const auto tree = test::treeFromText(equalFiles(400, 1));
    const auto slices = layout(*tree, 100, 102, true);
    EXPECT_EQ(slices.size(), 400U);
    for (const Slice& slice : slices) {
        EXPECT_FALSE(slice.isAggregateTile);
    }
}

TEST(TreemapHeader, GrowsWithTheTileUpToItsMost)
{
    EXPECT_EQ(TreemapLayout::headerHeightFor({0, 0, 100, 25.9}), 0);
    EXPECT_EQ(TreemapLayout::headerHeightFor({0, 0, 39.9, 100}), 0);
    EXPECT_DOUBLE_EQ(TreemapLayout::headerHeightFor({0, 0, 40, 30}), 9);
    EXPECT_EQ(TreemapLayout::headerHeightFor({0, 0, 40, 100}), 16);
}

TEST(TreemapHeader, ANarrowFolderOpensWithoutOne)
{
    // Top zone 30 × 100; the body begins 1 below the top.
    const auto tree = test::treeFromText("Stuff/\n  x.mp4 1\n");
    const auto slices = layout(*tree, 30, 102);
    ASSERT_EQ(slices.size(), 2U);
    expectRect(slices[1].rect, 1, 1, 28, 98);
}

TEST(TreemapHeader, TilesTooSmallStayClosed)
{
    const auto tree = test::treeFromText("Stuff/\n  x.mp4 1\n");
    const auto slicesFor = [&](double width, double height) {
        return layout(*tree, width, height + 2).size();
    };
    EXPECT_EQ(slicesFor(100, 3.9), 1U); // 390 square points
    EXPECT_EQ(slicesFor(11.9, 90), 1U); // narrower than 12
    EXPECT_EQ(slicesFor(12.1, 90), 2U);
    EXPECT_EQ(slicesFor(90, 9.9), 1U); // lower than 10: a body of 7.9
    EXPECT_EQ(slicesFor(90, 10.1), 2U);
    EXPECT_EQ(slicesFor(19.9, 20), 1U); // 398 square points
    EXPECT_EQ(slicesFor(20.1, 20), 2U);
}

TEST(TreemapBudget, WhatIsLeftIsSharedAmongAllTopTiles)
{
    // 600 folders of 100 files on a canvas where each has room. The first gets (12000 - 600) / 600
    // = 19, the second (11400 - 19) / 600 = 18.
    std::string text;
    for (int i = 0; i < 600; ++i) {
        text += "d" + std::to_string(1000 + i) + "/\n" + equalFiles(100, 10, 1);
    }
    const auto tree = test::treeFromText(text);
    const auto slices = layout(*tree, 12000, 8002);
    ASSERT_LE(slices.size(), 12000U);
    const auto childrenShown = [&](const char* name) {
        const FileNode& folder = test::nodeAt(tree->root(), name);
        return std::count_if(slices.begin(), slices.end(), [&](const Slice& slice) {
            return slice.depth == 1 && slice.node->parent() == &folder;
        });
    };
    EXPECT_EQ(childrenShown("d1000"), 19);
    EXPECT_EQ(childrenShown("d1001"), 18);
    // 11400 × (1 - 1/600)^599 is about 4200, and 4200 / 600 = 7.
    EXPECT_EQ(childrenShown("d1599"), 7);
}

TEST(TreemapBudget, TheOutputEndsAtTwelveThousand)
{
    std::string text = "top/\n";
    for (int i = 0; i < 25; ++i) {
        text += "  d" + std::to_string(10 + i) + "/\n" + equalFiles(600, 10, 2);
    }
    const auto tree = test::treeFromText(text);
    EXPECT_EQ(layout(*tree, 6000, 6000).size(), 12000U);
}

TEST(TreemapBudget, AChainCostsOne)
{
    const auto tree = test::treeFromText("A/\n  B/\n    x 3\n    y 2\n    z 1\n");
    FileNode& folder = test::nodeAt(tree->root(), "A");
    const auto run = [&](std::int64_t budget) {
        std::vector<Slice> slices;
        TreemapLayout::subdivideSquarify(folder, {0, 0, 300, 300}, 1, false, budget, {}, false, {},
                                         slices);
        return std::pair(slices.size(), budget);
    };
    EXPECT_EQ(run(0), std::pair(std::size_t{0}, std::int64_t{0}));
    EXPECT_EQ(run(1), std::pair(std::size_t{1}, std::int64_t{0}));
    EXPECT_EQ(run(3), std::pair(std::size_t{3}, std::int64_t{0}));
    EXPECT_EQ(run(9), std::pair(std::size_t{4}, std::int64_t{5}));
}

TEST(TreemapBudget, ChainNamesThatAreGivenComeFirst)
{
    const auto tree = test::treeFromText("A/\n  B/\n    x 3\n    y 2\n");
    std::vector<Slice> slices;
    std::int64_t budget = 10;
    TreemapLayout::subdivideSquarify(test::nodeAt(tree->root(), "A"), {0, 0, 300, 300}, 2, false,
                                     budget, {"up", "per"}, false, {}, slices);
    ASSERT_EQ(slices.size(), 3U);
    EXPECT_EQ(slices[0].labelOverride, "up/per/B");
    EXPECT_EQ(slices[0].depth, 2);
}

TEST(TreemapLayout, HiddenFamiliesTakeNoPart)
{
    const auto tree = test::treeFromText("Stuff/\n"
                                         "  x.mp4 1000\n"
                                         "  node_modules/\n"
                                         "    y.mp4 9000\n"
                                         "cache.db 100000\n");
    const auto slices = TreemapLayout::layoutSlate(tree->root(), {0, 0, 200, 202}, false, true,
                                                   {"Node.js", "Caches"});
    EXPECT_EQ(layoutText(slices), "Stuff 0 0 200 200 video\n"
                                  "  x.mp4 1 17 198 182\n");
    EXPECT_TRUE(TreemapLayout::layoutSlate(test::nodeAt(tree->root(), "Stuff/node_modules"),
                                           {0, 0, 4, 4}, false, true, {})
                    .empty());
}

TEST(TreemapLayout, SizesOnDiskHaveTheirOwnOrder)
{
    const auto tree = test::treeFromText("a 1000 4096\nb 2000 0\n");
    const auto logical = layout(*tree, 300, 302);
    const auto disk = TreemapLayout::layoutSlate(tree->root(), {0, 0, 300, 302}, true, true, {});
    EXPECT_EQ(logical.front().node->name(), "b");
    EXPECT_EQ(disk.front().node->name(), "a");
    EXPECT_NEAR(area(disk.front().rect), 90000.0 * 4096 / 4097, 1e-6);
}

TEST(TreemapLayout, AStoppedLayoutIsEmpty)
{
    const auto tree = test::treeFromText("Stuff/\n  x.mp4 1000\n");
    LockedFlag stop;
    const Rect rect{0, 0, 200, 200};
    EXPECT_EQ(TreemapLayout::layoutSlate(tree->root(), rect, false, true, {}, &stop).size(), 2U);
    stop.set(true);
    EXPECT_TRUE(TreemapLayout::layoutSlate(tree->root(), rect, false, true, {}, &stop).empty());
}

TEST(PlainTreemap, HasNoZonesChainsOrAggregates)
{
    const auto tree = test::treeFromText("Library/\n"
                                         "  only/\n"
                                         "    x.mp4 3000\n"
                                         "b 1000\n");
    const auto slices = TreemapLayout::layout(tree->root(), {0, 0, 200, 200}, false);
    EXPECT_EQ(layoutText(slices), "Library 0 0 150 200 system\n"
                                  "  only 1 17 148 182 video\n"
                                  "    x.mp4 2 34 146 164\n"
                                  "b 150 0 50 200\n");
    EXPECT_EQ(slices.back().rootIndex, 1);
}

TEST(PlainTreemap, EndsAtItsDepthAndItsCap)
{
    std::string deep;
    for (int level = 0; level < 20; ++level) {
        deep += std::string(static_cast<std::size_t>(level) * 2, ' ') + "d" + "/\n";
    }
    const auto chain = test::treeFromText(deep);
    const auto slices = TreemapLayout::layout(chain->root(), {0, 0, 2000, 2000}, false);
    ASSERT_EQ(slices.size(), 14U);
    EXPECT_EQ(slices.back().depth, 13);

    std::string wide;
    for (int i = 0; i < 25; ++i) {
        wide += "d" + std::to_string(10 + i) + "/\n" + equalFiles(600, 10, 1);
    }
    const auto many = test::treeFromText(wide);
    EXPECT_EQ(TreemapLayout::layout(many->root(), {0, 0, 6000, 6000}, false).size(), 12000U);
}

TEST(PlainTreemap, NothingForAnEmptyFolder)
{
    const auto tree = test::treeFromText("");
    EXPECT_TRUE(TreemapLayout::layout(tree->root(), {0, 0, 100, 100}, false).empty());
}

} // namespace
} // namespace quorvane
