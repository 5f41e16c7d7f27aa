// SPDX-License-Identifier: MIT
#include "BloatFilter.h"
#include "FileNode.h"
#include "TreeText.h"
#include "TreemapLayout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace quorvane {
namespace {

using testing::ElementsAre;

using Placed = TreemapLayout::Placed;

std::vector<FileNode*> childrenOf(FileNode& node)
{
    std::vector<FileNode*> children;
    for (FileNode& child : node.children()) {
        children.push_back(&child);
    }
    return children;
}

std::vector<Placed> partition(FileTree& tree, const Rect& rect,
                              const TreemapLayout::PartitionOptions& options)
{
    return TreemapLayout::partition(childrenOf(tree.root()), tree.root(), rect, options);
}

std::vector<std::string> names(const std::vector<Placed>& placed)
{
    std::vector<std::string> result;
    for (const Placed& tile : placed) {
        result.emplace_back(tile.node->name());
    }
    return result;
}

std::string equalFiles(int count, int bytes)
{
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += "f" + std::to_string(1000 + i) + " " + std::to_string(bytes) + "\n";
    }
    return text;
}

TEST(ByteWeight, IsAtLeastOne)
{
    const auto tree = test::treeFromText("a 5 0\n");
    const FileNode& file = tree->root().children().front();
    EXPECT_EQ(TreemapLayout::byteWeight(file, false), 5);
    EXPECT_EQ(TreemapLayout::byteWeight(file, true), 1);
}

TEST(MicroThreshold, CoversThreeOfTheSmallestTiles)
{
    // 64 × 1,000,000 × 3 / 19,200 = 10,000.
    EXPECT_EQ(TreemapLayout::microThreshold(1000000, {0, 0, 160, 120}), 10000);
    // 64 × 100 × 3 / 1000 = 19.2, without its fraction.
    EXPECT_EQ(TreemapLayout::microThreshold(100, {0, 0, 100, 10}), 19);
}

TEST(MicroThreshold, IsAtLeastOneWhereThereIsArea)
{
    EXPECT_EQ(TreemapLayout::microThreshold(1, {0, 0, 1000, 1000}), 1);
    EXPECT_EQ(TreemapLayout::microThreshold(0, {0, 0, 8, 8}), 3);
    EXPECT_EQ(TreemapLayout::microThreshold(-7, {0, 0, 8, 8}), 3);
}

TEST(MicroThreshold, IsZeroWithoutArea)
{
    EXPECT_EQ(TreemapLayout::microThreshold(100, {0, 0, 0, 10}), 0);
    EXPECT_EQ(TreemapLayout::microThreshold(100, {0, 0, 10, -1}), 0);
    EXPECT_EQ(
        TreemapLayout::microThreshold(100, {0, 0, std::numeric_limits<double>::quiet_NaN(), 10}),
        0);
}

TEST(MicroThreshold, StaysWithinItsTypeForATinyRectangle)
{
    EXPECT_EQ(TreemapLayout::microThreshold(std::numeric_limits<std::int64_t>::max(), {0, 0, 1, 1}),
              std::numeric_limits<std::int64_t>::max());
}

TEST(AllChildrenMicro, NeedsAFolderOfTwo)
{
    const auto tree = test::treeFromText("file 1\none/\n  a 1\n");
    const Rect small{0, 0, 1, 1};
    const auto micro = [&](const char* path) {
        return TreemapLayout::allChildrenMicro(test::nodeAt(tree->root(), path), small, false, 600,
                                               {});
    };
    EXPECT_FALSE(micro("file"));
    EXPECT_FALSE(micro("one"));
    EXPECT_TRUE(micro(""));
}

TEST(AllChildrenMicro, EveryChildHasToLieBelowTheThreshold)
{
    // Threshold: 192 × 100 / 1200 = 16.
    const auto below = test::treeFromText(equalFiles(10, 10));
    const auto above = test::treeFromText("big 16\n" + equalFiles(7, 12));
    const Rect rect{0, 0, 40, 30};
    EXPECT_TRUE(TreemapLayout::allChildrenMicro(below->root(), rect, false, 600, {}));
    EXPECT_FALSE(TreemapLayout::allChildrenMicro(above->root(), rect, false, 600, {}));
}

TEST(AllChildrenMicro, OnlyTheFirstOnesAreSampled)
{
    // On disk the last by logical bytes is the largest.
    const auto tree = test::treeFromText("a 9 1\nb 8 1\nc 7 100\n");
    const Rect rect{0, 0, 10, 10}; // threshold of the first two: 192 × 2 / 100 = 3
    EXPECT_TRUE(TreemapLayout::allChildrenMicro(tree->root(), rect, true, 2, {}));
    // All three: 192 × 102 / 100 = 195, which is above 100 too; so a larger rectangle.
    EXPECT_FALSE(TreemapLayout::allChildrenMicro(tree->root(), {0, 0, 20, 20}, true, 3, {}));
}

TEST(AllChildrenMicro, HiddenChildrenDoNotCount)
{
    const auto tree = test::treeFromText("cache 9\na 5\n");
    const Rect small{0, 0, 1, 1};
    EXPECT_TRUE(TreemapLayout::allChildrenMicro(tree->root(), small, false, 600, {}));
    EXPECT_FALSE(TreemapLayout::allChildrenMicro(tree->root(), small, false, 600, {"Caches"}));
}

TEST(Partition, NoChildrenNoTiles)
{
    const auto tree = test::treeFromText("");
    EXPECT_TRUE(partition(*tree, {0, 0, 100, 100}, {}).empty());
}

TEST(Partition, HeaviestFirstByTheSizeOnShow)
{
    const auto tree = test::treeFromText("a 10 30\nb 20 10\nc 30 20\n");
    EXPECT_THAT(names(partition(*tree, {0, 0, 100, 100}, {})), ElementsAre("c", "b", "a"));
    EXPECT_THAT(names(partition(*tree, {0, 0, 100, 100}, {.disk = true})),
                ElementsAre("a", "c", "b"));
}

TEST(Partition, EqualWeightsGoByNameInByteOrder)
{
    const auto tree = test::treeFromText("b 5\nB 5\na 5\n\xC3\xA9 5\n");
    EXPECT_THAT(names(partition(*tree, {0, 0, 100, 100}, {})),
                ElementsAre("B", "a", "b", "\xC3\xA9"));
}

TEST(Partition, ZeroBytesWeighAsMuchAsOne)
{
    // The tree itself puts z first, for it is the larger.
    const auto tree = test::treeFromText("z 1\nm 0\na 0\n");
    EXPECT_EQ(tree->root().children().front().name(), "z");
    const auto placed = partition(*tree, {0, 0, 90, 90}, {});
    EXPECT_THAT(names(placed), ElementsAre("a", "m", "z"));
    for (const Placed& tile : placed) {
        EXPECT_NEAR(tile.rect.width * tile.rect.height, 2700, 1e-6);
    }
}

TEST(Partition, AFolderShowsItsSixHundredHeaviest)
{
    const auto tree = test::treeFromText(equalFiles(601, 7));
    const auto placed =
        partition(*tree, {0, 0, 1000, 1000}, {.aggregateMicro = true, .foldBySize = false});
    ASSERT_EQ(placed.size(), 600U);
    EXPECT_EQ(placed.front().node->name(), "f1000");
    EXPECT_EQ(placed.back().node->name(), "f1599");
    for (const Placed& tile : placed) {
        EXPECT_FALSE(tile.isAggregateTile);
    }
}

TEST(Partition, WhatLiesBeyondTheLimitIsInNoAggregate)
{
    const auto tree = test::treeFromText(equalFiles(700, 7));
    const auto placed = partition(*tree, {0, 0, 100, 100}, {.aggregateMicro = true});
    ASSERT_EQ(placed.size(), 1U);
    EXPECT_EQ(placed[0].aggregateCount, 600);
    EXPECT_EQ(placed[0].aggregateBytes, 4200);
}

TEST(Partition, AllMicroMakesOneTileThatFillsTheRectangle)
{
    const auto tree = test::treeFromText("top/\n"
                                         "  a.mp4 3\n"
                                         "  b.zip 2\n"
                                         "  c.zip 2\n");
    FileNode& top = tree->root().children().front();
    const Rect rect{3, 4, 10, 10};
    const auto placed =
        TreemapLayout::partition(childrenOf(top), top, rect, {.aggregateMicro = true});
    ASSERT_EQ(placed.size(), 1U);
    EXPECT_TRUE(placed[0].isAggregateTile);
    EXPECT_EQ(placed[0].node, &top);
    EXPECT_EQ(placed[0].rect, rect);
    EXPECT_EQ(placed[0].aggregateCount, 3);
    EXPECT_EQ(placed[0].aggregateBytes, 7);
    EXPECT_EQ(placed[0].aggregateCategory, FileTypeCategory::archive);
    EXPECT_EQ(placed[0].syntheticID, -(top.id() + 1000003));
    EXPECT_EQ(placed[0].folderBodyCategory, std::nullopt);
}

TEST(Partition, SmallItemsFoldIntoOneLastTile)
{
    // 100 × 100 points; one byte is one point. d and e have less than 64 and fold into 100.
    const auto tree = test::treeFromText("big.mp4 9800\nc.zip 100\nd.zip 40\ne.mp3 60\n");
    const auto placed = partition(*tree, {0, 0, 100, 100}, {.aggregateMicro = true});
    ASSERT_THAT(names(placed), ElementsAre("big.mp4", "c.zip", "scan"));
    EXPECT_FALSE(placed[1].isAggregateTile);
    EXPECT_NEAR(placed[1].rect.width * placed[1].rect.height, 100, 1e-6);
    EXPECT_EQ(placed[1].aggregateCategory, FileTypeCategory::other);
    EXPECT_EQ(placed[1].syntheticID, 0);
    EXPECT_TRUE(placed[2].isAggregateTile);
    EXPECT_EQ(placed[2].aggregateCount, 2);
    EXPECT_EQ(placed[2].aggregateBytes, 100);
    EXPECT_EQ(placed[2].aggregateCategory, FileTypeCategory::audio);
    EXPECT_EQ(placed[2].syntheticID, -1000003);
    EXPECT_NEAR(placed[2].rect.width * placed[2].rect.height, 100, 1e-6);
}

TEST(Partition, TheAggregateComesLastEvenWhenItIsTheLargest)
{
    // 50 files of 50 points and one of 500.
    const auto tree = test::treeFromText("big.zip 500\n" + equalFiles(50, 50));
    const auto placed = partition(*tree, {0, 0, 60, 50}, {.aggregateMicro = true});
    ASSERT_EQ(placed.size(), 2U);
    EXPECT_FALSE(placed[0].isAggregateTile);
    EXPECT_TRUE(placed[1].isAggregateTile);
    EXPECT_EQ(placed[1].aggregateBytes, 2500);
    EXPECT_NEAR(placed[1].rect.width * placed[1].rect.height, 2500, 1e-6);
}

TEST(Partition, FoldersAreFoldedByTheirNameToo)
{
    // 3.3 points for each byte: x.zip has 50 and b.mp3 13.
    const auto tree = test::treeFromText("big 3000\n"
                                         "x.zip/\n"
                                         "  a.mp4 15\n"
                                         "b.mp3 4\n");
    const auto placed = partition(*tree, {0, 0, 100, 100}, {.aggregateMicro = true});
    ASSERT_EQ(placed.size(), 2U);
    EXPECT_EQ(placed[1].aggregateCount, 2);
    EXPECT_EQ(placed[1].aggregateCategory, FileTypeCategory::archive);
}

TEST(Partition, AnAggregateThinnerThanHalfAPointIsDropped)
{
    // 30 of 100,030 bytes: a column 0.03 wide.
    const auto tree = test::treeFromText("big 100000\nb 20\nc 10\n");
    const auto placed = partition(*tree, {0, 0, 100, 100}, {.aggregateMicro = true});
    EXPECT_THAT(names(placed), ElementsAre("big"));
}

TEST(Partition, FoldingBySizeIsThreeTimesAsStrict)
{
    // One byte is one point: 150 points are enough by area and not by size (192).
    const auto tree = test::treeFromText("a 4850\nb 4850\nc 150\nd 150\n");
    const Rect rect{0, 0, 100, 100};
    EXPECT_THAT(names(partition(*tree, rect, {.aggregateMicro = true, .foldBySize = false})),
                ElementsAre("a", "b", "c", "d"));
    EXPECT_THAT(names(partition(*tree, rect, {.aggregateMicro = true, .foldBySize = true})),
                ElementsAre("a", "b", "scan"));
    EXPECT_THAT(names(partition(*tree, rect, {.aggregateMicro = false, .foldBySize = true})),
                ElementsAre("a", "b", "c", "d"));
}

TEST(Partition, OneItemNeverFolds)
{
    const auto tree = test::treeFromText("a 1\n");
    const auto placed =
        partition(*tree, {0, 0, 4, 4}, {.aggregateMicro = true, .foldBySize = true});
    ASSERT_EQ(placed.size(), 1U);
    EXPECT_FALSE(placed[0].isAggregateTile);
}

TEST(Partition, AnEmptyRectanglePlacesNothing)
{
    const auto tree = test::treeFromText("a 1\nb 1\n");
    EXPECT_TRUE(partition(*tree, {0, 0, 0, 50}, {.aggregateMicro = true}).empty());
    EXPECT_TRUE(partition(*tree, {0, 0, 50, 0}, {}).empty());
}

TEST(Partition, AFloorKeepsAShare)
{
    const auto tree = test::treeFromText("a 999999\nb 1\n");
    const auto placed = partition(*tree, {0, 0, 100, 100}, {.minItemFrac = 0.18});
    ASSERT_EQ(placed.size(), 2U);
    EXPECT_NEAR(placed[0].rect.width * placed[0].rect.height, 8200, 1e-6);
    EXPECT_NEAR(placed[1].rect.width * placed[1].rect.height, 1800, 1e-6);
}

TEST(Partition, FoldersGetACategoryAndFilesNone)
{
    const auto tree = test::treeFromText("Library/\n  a.mp4 10\nb.zip 10\n");
    const auto placed = partition(*tree, {0, 0, 100, 100}, {});
    ASSERT_THAT(names(placed), ElementsAre("Library", "b.zip"));
    EXPECT_EQ(placed[0].folderBodyCategory, FileTypeCategory::system);
    EXPECT_EQ(placed[1].folderBodyCategory, std::nullopt);
}

TEST(SyntheticAggregateID, IsNegativeAndOfTheParent)
{
    EXPECT_EQ(TreemapLayout::syntheticAggregateID(0), -1000003);
    EXPECT_EQ(TreemapLayout::syntheticAggregateID(42), -1000045);
}

TEST(PartitionDeathTest, ASumBeyond64BitsEndsTheProgram)
{
    const auto tree = test::treeFromText("a 9000000000000000000\nb 9000000000000000000\n",
                                         {FilePath("/scan"), false});
    EXPECT_DEATH(partition(*tree, {0, 0, 10, 10}, {}), "overflows in TreemapLayout::partition");
}

} // namespace
} // namespace quorvane
