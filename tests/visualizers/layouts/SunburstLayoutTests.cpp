// SPDX-License-Identifier: MIT
#include "SunburstLayout.h"

#include "BloatFilter.h"
#include "LayoutTestSupport.h"
#include "LockedFlag.h"
#include "RandomTree.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace quorvane {
namespace {

using test::Names;
using test::namesOf;
using Slice = SunburstLayout::Slice;

constexpr double quarter = SunburstLayout::twoPi / 4;

std::vector<Slice> slicesOf(const std::shared_ptr<FileTree>& tree, SizeMode mode,
                            int maxDepth = SunburstLayout::screenMaxDepth)
{
    test::keepAlive(tree);
    SunburstLayout::Options options = SunburstLayout::screenOptions(800, 1000, mode);
    options.maxDepth = maxDepth;
    return SunburstLayout::layout(tree->root(), options, {});
}

TEST(SunburstLayout, FirstRingBeginsAtTwelveAndGrowsClockwise)
{
    const auto tree = test::treeFromText("half.bin 2\nquarter.bin 1\nrest.bin 1\n");
    const std::vector<Slice> slices = slicesOf(tree, SizeMode::logical);
    ASSERT_EQ(namesOf(slices), (Names{"half.bin", "quarter.bin", "rest.bin"}));
    EXPECT_DOUBLE_EQ(slices[0].startAngle, -quarter);
    EXPECT_DOUBLE_EQ(slices[0].endAngle, quarter);
    EXPECT_DOUBLE_EQ(slices[1].endAngle, 2 * quarter);
    EXPECT_DOUBLE_EQ(slices[2].endAngle, 3 * quarter);
    for (const Slice& slice : slices) {
        // An eighth of the shorter side.
        EXPECT_DOUBLE_EQ(slice.innerRadius, 100);
        EXPECT_DOUBLE_EQ(slice.outerRadius, 200);
        EXPECT_EQ(slice.depth, 0);
    }
}

TEST(SunburstLayout, OnlyChildSpansAWholeTurn)
{
    const std::vector<Slice> slices =
        slicesOf(test::treeFromText("one.bin 7\n"), SizeMode::logical);
    ASSERT_EQ(slices.size(), 1U);
    EXPECT_DOUBLE_EQ(slices[0].endAngle - slices[0].startAngle, SunburstLayout::twoPi);
}

TEST(SunburstLayout, EveryFolderFillsAWholeTurnFromItsOwnStart)
{
    const auto tree = test::treeFromText("a/\n  x 3\nb/\n  y 1\n  z 1\n");
    const std::vector<Slice> slices = slicesOf(tree, SizeMode::logical);
    ASSERT_EQ(namesOf(slices), (Names{"a", "x", "b", "y", "z"}));
    EXPECT_DOUBLE_EQ(slices[1].startAngle, slices[0].startAngle);
    EXPECT_DOUBLE_EQ(slices[1].endAngle, slices[0].startAngle + SunburstLayout::twoPi);
    EXPECT_DOUBLE_EQ(slices[3].startAngle, slices[2].startAngle);
    EXPECT_DOUBLE_EQ(slices[4].endAngle, slices[2].startAngle + SunburstLayout::twoPi);
    EXPECT_DOUBLE_EQ(slices[3].innerRadius, slices[2].outerRadius);
}

TEST(SunburstLayout, DeeperRingsMeasureLogicalBytesInDiskMode)
{
    const auto tree = test::treeFromText("box/\n  wide 30 1\n  thin 10 3\nfile 0 4\n");
    const std::vector<Slice> slices = slicesOf(tree, SizeMode::disk);
    ASSERT_EQ(namesOf(slices), (Names{"box", "wide", "thin", "file"}));
    // Half by blocks on disk; inside, three quarters by bytes.
    EXPECT_DOUBLE_EQ(slices[0].endAngle, slices[0].startAngle + 2 * quarter);
    EXPECT_DOUBLE_EQ(slices[1].endAngle, slices[1].startAngle + 3 * quarter);
}

TEST(SunburstLayout, EmptyItemsAreLeftOut)
{
    EXPECT_TRUE(slicesOf(test::treeFromText("a 0\nb/\n  c 0\n"), SizeMode::logical).empty());
    EXPECT_EQ(namesOf(slicesOf(test::treeFromText("a 0\nb 1\n"), SizeMode::logical)), Names{"b"});
}

TEST(SunburstLayout, EqualItemsStandByName)
{
    const auto tree = test::treeFromText("c 1 5\nb 3 5\na 2 5\n");
    EXPECT_EQ(namesOf(slicesOf(tree, SizeMode::disk)), (Names{"a", "b", "c"}));
}

TEST(SunburstLayout, ShowsSevenRings)
{
    const auto tree = test::treeFromText("1/\n  2/\n    3/\n      4/\n        5/\n          6/\n"
                                         "            7/\n              8 1\n");
    EXPECT_EQ(namesOf(slicesOf(tree, SizeMode::logical)),
              (Names{"1", "2", "3", "4", "5", "6", "7"}));
    EXPECT_EQ(namesOf(slicesOf(tree, SizeMode::logical, 0)), Names{"1"});
}

TEST(SunburstLayout, HiddenFamiliesTakeNoPart)
{
    const auto tree = test::treeFromText("node_modules/\n  a.js 9\nb 1\n");
    const BloatKeys hidden{"Node.js"};
    const auto slices = SunburstLayout::layout(tree->root(), {}, hidden);
    EXPECT_EQ(namesOf(slices), Names{"b"});
}

TEST(SunburstLayout, KeyHoldsTheTruncatedSize)
{
    const auto tree = test::treeFromText("a 1\n");
    EXPECT_EQ(SunburstLayout::key(&tree->root().children()[0], 640.9, 480.2), "1-640x480");
    EXPECT_EQ(SunburstLayout::key(nullptr, 10, 20), "0-10x20");
}

TEST(SunburstLayout, StoppedLayoutIsEmpty)
{
    LockedFlag stop;
    stop.set(true);
    const auto tree = test::treeFromText("a 1\n");
    EXPECT_TRUE(SunburstLayout::layout(tree->root(), {}, {}, &stop).empty());
}

/// On any tree: each folder's slices stand end to end, fill one turn, and come in the order of
/// their bytes, each followed by what lies in it.
TEST(SunburstLayout, FoldersFillTheirTurnsOnRandomTrees)
{
    for (std::uint64_t seed = 1; seed <= 30; ++seed) {
        const auto tree = test::randomTree(seed);
        std::map<const FileNode*, std::vector<Slice>> byFolder;
        std::map<const FileNode*, Slice> byNode;
        const std::vector<Slice> slices = slicesOf(tree, SizeMode::disk);
        for (const Slice& slice : slices) {
            byFolder[slice.node->parent()].push_back(slice);
            EXPECT_TRUE(byNode.emplace(slice.node, slice).second) << seed;
            EXPECT_EQ(slice.id, slice.node->id());
            if (slice.node->parent() != &tree->root()) {
                ASSERT_TRUE(byNode.count(slice.node->parent())) << seed;
            }
        }
        for (const auto& [folder, ring] : byFolder) {
            const bool isFirst = folder == &tree->root();
            const SizeMode mode = isFirst ? SizeMode::disk : SizeMode::logical;
            const double start = isFirst ? -quarter : byNode.at(folder).startAngle;
            EXPECT_EQ(ring.front().startAngle, start) << seed;
            EXPECT_NEAR(ring.back().endAngle, start + SunburstLayout::twoPi, 1e-9) << seed;
            double sum = 0;
            for (std::size_t i = 0; i < ring.size(); ++i) {
                sum += static_cast<double>(weightBasis(*ring[i].node, mode));
                if (i > 0) {
                    EXPECT_EQ(ring[i].startAngle, ring[i - 1].endAngle) << seed;
                    EXPECT_GE(weightBasis(*ring[i - 1].node, mode),
                              weightBasis(*ring[i].node, mode));
                }
            }
            for (const Slice& slice : ring) {
                const double share = static_cast<double>(weightBasis(*slice.node, mode)) / sum;
                EXPECT_NEAR(slice.endAngle - slice.startAngle, share * SunburstLayout::twoPi, 1e-9);
            }
        }
    }
}

} // namespace
} // namespace quorvane
