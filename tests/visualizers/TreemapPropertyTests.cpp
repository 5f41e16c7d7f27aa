// SPDX-License-Identifier: MIT
#include "BloatFilter.h"
#include "FileNode.h"
#include "RandomTree.h"
#include "TreemapLayout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace quorvane {
namespace {

using Slice = TreemapLayout::Slice;
using Placed = TreemapLayout::Placed;

constexpr double slack = 1e-6;

bool overlap(const Rect& a, const Rect& b)
{
    const Rect common = a.intersected(b);
    return common.width > slack && common.height > slack;
}

bool isInside(const Rect& inner, const Rect& outer, double margin)
{
    return inner.x >= outer.x + margin - slack && inner.y >= outer.y + margin - slack &&
           inner.maxX() <= outer.maxX() - margin + slack &&
           inner.maxY() <= outer.maxY() - margin + slack;
}

/// The folder in whose body a slice lies: what an aggregate stands for, else the parent.
const FileNode* containerOf(const Slice& slice)
{
    return slice.isAggregateTile ? slice.node : slice.node->parent();
}

struct Case
{
    std::shared_ptr<FileTree> tree;
    Rect rect;
    bool disk = false;
    bool fold = false;
    BloatKeys keys;
    std::vector<Slice> slices;
};

Case randomCase(std::uint64_t seed)
{
    test::Dice dice(seed);
    test::RandomTreeOptions options;
    options.entries = 10 + static_cast<std::size_t>(dice.below(500));
    options.maxChildren = 1 + static_cast<std::size_t>(dice.below(80));
    options.folderShare = dice.fraction() * 0.7;
    options.largestPower = static_cast<unsigned>(dice.below(40));
    Case result;
    result.tree = test::randomTree(seed, options);
    result.rect = {dice.fraction() * 9, dice.fraction() * 9, 5 + dice.fraction() * 1500,
                   5 + dice.fraction() * 1000};
    result.disk = dice.chance(0.5);
    result.fold = dice.chance(0.5);
    if (dice.chance(0.3)) {
        result.keys.insert("Node.js");
        result.keys.insert("Build Artifacts");
    }
    result.slices = TreemapLayout::layoutSlate(result.tree->root(), result.rect, result.disk,
                                               result.fold, result.keys);
    return result;
}

void expectFieldsFit(const Case& given)
{
    std::set<std::int64_t> ids;
    int lastDepth = 0;
    for (const Slice& slice : given.slices) {
        ASSERT_TRUE(ids.insert(slice.id).second) << "id " << slice.id << " stands twice";
        ASSERT_NE(slice.node, nullptr);
        EXPECT_EQ(slice.nodeID, slice.node->id());
        EXPECT_EQ(slice.isFolder, slice.node->isDirectory());
        EXPECT_EQ(slice.id, slice.isAggregateTile ? -(slice.nodeID + 1000003) : slice.nodeID);
        EXPECT_EQ(slice.folderBodyCategory.has_value(), slice.isFolder && !slice.isAggregateTile);
        EXPECT_GE(slice.depth, 0);
        EXPECT_LE(slice.depth, 3);
        EXPECT_GT(slice.rect.width, 0.75);
        EXPECT_GT(slice.rect.height, 0.75);
        EXPECT_TRUE(isInside(slice.rect, given.rect, 0));
        EXPECT_LE(slice.depth, lastDepth + 1);
        EXPECT_TRUE(slice.depth > 0 || lastDepth == 0) << "a top tile behind a child";
        EXPECT_FALSE(slice.node->isBloatHidden(given.keys));
        lastDepth = slice.depth;
    }
    EXPECT_LE(given.slices.size(), TreemapLayout::maxSlices);
}

void expectAggregatesFit(const Slice& slice)
{
    if (slice.isAggregateTile) {
        EXPECT_GT(slice.depth, 0);
        EXPECT_GE(slice.aggregateCount, 1);
        EXPECT_GE(slice.aggregateBytes, slice.aggregateCount);
        EXPECT_LE(slice.aggregateCount, static_cast<std::int64_t>(slice.node->children().size()));
    } else {
        EXPECT_EQ(slice.aggregateCount, 0);
        EXPECT_EQ(slice.aggregateBytes, 0);
        EXPECT_EQ(slice.aggregateCategory, FileTypeCategory::other);
    }
}

TEST(TreemapProperties, EverySliceIsSound)
{
    for (std::uint64_t seed = 1; seed <= 3000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const Case given = randomCase(seed);
        expectFieldsFit(given);
        std::for_each(given.slices.begin(), given.slices.end(), expectAggregatesFit);
        if (HasFailure()) {
            return;
        }
    }
}

TEST(TreemapProperties, SiblingsDoNotOverlapAndLieInTheirFoldersBody)
{
    for (std::uint64_t seed = 5001; seed <= 6500; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const Case given = randomCase(seed);
        std::map<const FileNode*, std::vector<Rect>> siblings;
        std::map<const FileNode*, Rect> tiles;
        for (const Slice& slice : given.slices) {
            if (slice.labelOverride) {
                // A chain covers the tile of its first folder.
                const FileNode* first = slice.node;
                while (tiles.count(first) == 0) {
                    first = first->parent();
                    ASSERT_NE(first, nullptr);
                }
                EXPECT_EQ(tiles.at(first), slice.rect);
            } else {
                siblings[containerOf(slice)].push_back(slice.rect);
                if (slice.depth > 0) {
                    const Rect tile = tiles.at(containerOf(slice));
                    EXPECT_TRUE(isInside(slice.rect, tile, 1));
                    EXPECT_GE(slice.rect.y,
                              tile.y + TreemapLayout::headerHeightFor(tile) + 1 - slack);
                }
            }
            if (!slice.isAggregateTile) {
                tiles[slice.node] = slice.rect;
            }
        }
        for (const auto& [folder, rects] : siblings) {
            for (std::size_t i = 0; i < rects.size(); ++i) {
                for (std::size_t j = 0; j < i; ++j) {
                    ASSERT_FALSE(overlap(rects[i], rects[j])) << folder->name();
                }
            }
        }
    }
}

TEST(TreemapProperties, EverySliceKnowsTheSliceThatItLiesIn)
{
    for (std::uint64_t seed = 7001; seed <= 8000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const Case given = randomCase(seed);
        for (std::size_t i = 0; i < given.slices.size(); ++i) {
            const Slice& slice = given.slices[i];
            ASSERT_EQ(slice.parent.has_value(), slice.depth > 0);
            if (!slice.parent) {
                continue;
            }
            ASSERT_LT(*slice.parent, i);
            const Slice& parent = given.slices[*slice.parent];
            if (slice.labelOverride) {
                // A chain covers the tile of its first folder.
                ASSERT_EQ(parent.rect, slice.rect);
                ASSERT_EQ(parent.depth, slice.depth - 1);
            } else {
                ASSERT_EQ(parent.node, containerOf(slice));
                ASSERT_TRUE(isInside(slice.rect, parent.rect, 0));
            }
        }
    }
}

/// One random folder laid into one random rectangle.
struct PartitionCase
{
    std::shared_ptr<FileTree> tree;
    Rect rect;
    TreemapLayout::PartitionOptions options;
    std::vector<std::int64_t> weights; ///< of all children, heaviest first
    std::vector<Placed> placed;
};

PartitionCase randomPartition(std::uint64_t seed)
{
    test::Dice dice(seed);
    test::RandomTreeOptions options;
    options.entries = 1 + static_cast<std::size_t>(dice.below(dice.chance(0.1) ? 1500 : 100));
    options.maxChildren = options.entries;
    options.maxDepth = 1;
    options.largestPower = static_cast<unsigned>(dice.below(30));
    PartitionCase result;
    result.tree = test::randomTree(seed, options);
    result.rect = {dice.fraction() * 9, dice.fraction() * 9, 10 + dice.fraction() * 900,
                   10 + dice.fraction() * 900};
    result.options = {dice.chance(0.5), 0, dice.chance(0.7), dice.chance(0.5)};
    std::vector<FileNode*> children;
    for (FileNode& child : result.tree->root().children()) {
        children.push_back(&child);
        result.weights.push_back(TreemapLayout::byteWeight(child, result.options.disk));
    }
    std::sort(result.weights.rbegin(), result.weights.rend());
    result.placed =
        TreemapLayout::partition(children, result.tree->root(), result.rect, result.options);
    return result;
}

TEST(TreemapProperties, AreasGoByBytes)
{
    for (std::uint64_t seed = 1; seed <= 3000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const PartitionCase given = randomPartition(seed);
        const std::size_t kept = std::min<std::size_t>(given.weights.size(), 600);
        std::int64_t total = 0;
        for (std::size_t i = 0; i < kept; ++i) {
            total += given.weights[i];
        }
        std::int64_t seenBytes = 0;
        std::int64_t seenCount = 0;
        double seenArea = 0;
        for (const Placed& tile : given.placed) {
            const std::int64_t bytes =
                tile.isAggregateTile ? tile.aggregateBytes
                                     : TreemapLayout::byteWeight(*tile.node, given.options.disk);
            seenBytes += bytes;
            seenCount += tile.isAggregateTile ? tile.aggregateCount : 1;
            const double area = tile.rect.width * tile.rect.height;
            seenArea += area;
            const double whole = given.rect.width * given.rect.height;
            ASSERT_NEAR(area / whole, static_cast<double>(bytes) / static_cast<double>(total),
                        1e-9);
        }
        ASSERT_LE(seenBytes, total);
        ASSERT_LE(seenCount, static_cast<std::int64_t>(kept));
        // Where all bytes are on show, so are all children.
        if (seenBytes == total) {
            ASSERT_EQ(seenCount, static_cast<std::int64_t>(kept));
            ASSERT_NEAR(seenArea / (given.rect.width * given.rect.height), 1, 1e-9);
        }
    }
}

TEST(TreemapProperties, WhatDoesNotFoldIsLargeEnoughAndOnlyTheLastTileIsAGroup)
{
    for (std::uint64_t seed = 1; seed <= 3000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const PartitionCase given = randomPartition(seed);
        for (std::size_t i = 0; i < given.placed.size(); ++i) {
            const Placed& tile = given.placed[i];
            ASSERT_TRUE(given.options.aggregateMicro || !tile.isAggregateTile);
            if (tile.isAggregateTile) {
                ASSERT_EQ(i + 1, given.placed.size());
            } else if (given.options.aggregateMicro && given.weights.size() >= 2) {
                ASSERT_GE(tile.rect.width * tile.rect.height, 64 - slack);
            }
            ASSERT_EQ(tile.labelOverride, std::nullopt);
        }
    }
}

} // namespace
} // namespace quorvane
