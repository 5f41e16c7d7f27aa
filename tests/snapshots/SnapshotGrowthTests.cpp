// SPDX-License-Identifier: MIT
#include "SnapshotGrowth.h"

#include "RandomTree.h"
#include "SnapshotStore.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <limits>

namespace quorvane {
namespace {

using test::nodeAt;
using test::treeFromText;

constexpr std::int64_t kilo = 1000;

SnapshotGrowth growthOf(std::vector<ScanSnapshot::Entry> base, const NodePointer& root)
{
    return {SnapshotHeading(), std::move(base), root};
}

NodePointer treeAt(const char* root, const char* text)
{
    test::TreeTextOptions options;
    options.rootPath = FilePath(root);
    return treeFromText(text, options)->rootPointer();
}

TEST(GrowthStep, TheThresholdsBelongToTheStepFartherOut)
{
    const std::pair<std::int64_t, GrowthStep> steps[] = {
        {-1000, GrowthStep::halfGone},    {-500, GrowthStep::halfGone},
        {-499, GrowthStep::tenthGone},    {-100, GrowthStep::tenthGone},
        {-99, GrowthStep::hundredthGone}, {-10, GrowthStep::hundredthGone},
        {-9, GrowthStep::unchanged},      {0, GrowthStep::unchanged},
        {9, GrowthStep::unchanged},       {10, GrowthStep::hundredthMore},
        {99, GrowthStep::hundredthMore},  {100, GrowthStep::tenthMore},
        {499, GrowthStep::tenthMore},     {500, GrowthStep::halfMore},
        {100000, GrowthStep::halfMore}};
    for (const auto& [delta, step] : steps) {
        EXPECT_EQ(growthStep(delta, 1000), step) << delta;
    }
}

TEST(GrowthStep, WhatIsNewHasGrownMostAndNothingIsUnchanged)
{
    EXPECT_EQ(growthStep(1, 0), GrowthStep::halfMore);
    EXPECT_EQ(growthStep(0, 0), GrowthStep::unchanged);
    constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(growthStep(largest, largest), GrowthStep::halfMore);
    EXPECT_EQ(growthStep(-largest, largest), GrowthStep::halfGone);
}

TEST(SnapshotGrowth, ChangesSumUpFromFilesToTheRoot)
{
    const NodePointer root = treeAt("/r", "a/\n  grown 300000\n  b/\n    new 100000\n"
                                          "c/\n  less 70000\n  small 1000\n");
    const SnapshotGrowth growth =
        growthOf({{"/a/grown", 200 * kilo}, {"/c/less", 170 * kilo}}, root);
    const auto changeOf = [&](const char* path) {
        const SnapshotGrowth::Change change = growth.changeOf(nodeAt(*root, path));
        return std::pair(change.delta, change.past);
    };
    EXPECT_EQ(changeOf("a/grown"), std::pair(100 * kilo, 200 * kilo));
    EXPECT_EQ(changeOf("a/b/new"), std::pair(100 * kilo, 0 * kilo));
    EXPECT_EQ(changeOf("a/b"), std::pair(100 * kilo, 0 * kilo));
    EXPECT_EQ(changeOf("a"), std::pair(200 * kilo, 200 * kilo));
    EXPECT_EQ(changeOf("c/less"), std::pair(-100 * kilo, 170 * kilo));
    EXPECT_EQ(changeOf("c/small"), std::pair(0 * kilo, 1 * kilo));
    // What neither snapshot tells of counts as unchanged.
    EXPECT_EQ(changeOf("c"), std::pair(-100 * kilo, 171 * kilo));
    EXPECT_EQ(changeOf(""), std::pair(100 * kilo, 371 * kilo));
    EXPECT_EQ(growth.net(), 100 * kilo);
    EXPECT_EQ(growth.stepOf(nodeAt(*root, "a/b")), GrowthStep::halfMore);
    EXPECT_EQ(growth.stepOf(nodeAt(*root, "c")), GrowthStep::halfGone);
}

TEST(SnapshotGrowth, WhatIsGoneCountsInTheDeepestFolderThatIsLeft)
{
    const NodePointer root = treeAt("/r", "a/\n  b/\n    x 1000\n  bc/\n    y 1000\n");
    const SnapshotGrowth growth =
        growthOf({{"/a/b/gone/deep/file", 90 * kilo}, {"/other/file", 80 * kilo}}, root);
    EXPECT_EQ(growth.changeOf(nodeAt(*root, "a/b")).delta, -90 * kilo);
    EXPECT_EQ(growth.changeOf(nodeAt(*root, "a/bc")).delta, 0);
    EXPECT_EQ(growth.changeOf(*root).delta, -170 * kilo);
    EXPECT_EQ(growth.nodeOfRow(0).get(), &nodeAt(*root, "a/b"));
    EXPECT_FALSE(growth.hasFileOfRow(0));
    EXPECT_EQ(growth.nodeOfRow(1), root);
}

TEST(SnapshotGrowth, AFileThatIsNoLongerLargeEnoughStillHasItsRow)
{
    const NodePointer root = treeAt("/r", "a/\n  shrunk 1000\n");
    const SnapshotGrowth growth = growthOf({{"/a/shrunk", 90 * kilo}}, root);
    EXPECT_EQ(growth.nodeOfRow(0).get(), &nodeAt(*root, "a/shrunk"));
    EXPECT_TRUE(growth.hasFileOfRow(0));
    EXPECT_EQ(growth.changeOf(nodeAt(*root, "a/shrunk")).delta, -90 * kilo);
    EXPECT_EQ(growth.stepOf(nodeAt(*root, "a/shrunk")), GrowthStep::halfGone);
}

TEST(SnapshotGrowth, BelowTheRootOfTheDiskFilesThatAreGoneAreFoundWithoutSlashes)
{
    const NodePointer root = treeAt("/", "Users/\n  ann/\n    x 1000\n  anna/\n    shrunk 1000\n");
    const SnapshotGrowth growth =
        growthOf({{"/Usersannagone.mov", 90 * kilo}, {"/Usersannashrunk", 80 * kilo}}, root);
    EXPECT_EQ(growth.changeOf(nodeAt(*root, "Users/anna")).delta, -170 * kilo);
    EXPECT_EQ(growth.changeOf(nodeAt(*root, "Users/ann")).delta, 0);
    EXPECT_EQ(growth.nodeOfRow(1).get(), &nodeAt(*root, "Users/anna/shrunk"));
}

TEST(SnapshotGrowth, TheRootsChangeIsTheSumOfTheRowsOnAnyTree)
{
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        test::RandomTreeOptions options;
        options.rootPath = FilePath(seed % 2 == 0 ? "/" : "/scan");
        const NodePointer then = test::randomTree(seed, options)->rootPointer();
        const NodePointer now = test::randomTree(seed + 100, options)->rootPointer();
        auto base = SnapshotStore::capture(*then).snapshot;
        const SnapshotGrowth growth = growthOf(base.items, now);
        EXPECT_EQ(growth.changeOf(*now).delta, growth.net()) << seed;
        EXPECT_EQ(growth.diffs().size(), diff(base, SnapshotStore::capture(*now).snapshot).size());
        // A folder's change is the sum of its children's and of what is gone from it.
        std::unordered_map<const FileNode*, std::int64_t> gone;
        for (std::size_t row = 0; row < growth.diffs().size(); ++row) {
            if (growth.nodeOfRow(row)->isDirectory()) {
                gone[growth.nodeOfRow(row).get()] += growth.diffs()[row].deltaBytes();
            }
        }
        std::vector<const FileNode*> stack{now.get()};
        while (!stack.empty()) {
            const FileNode* const node = stack.back();
            stack.pop_back();
            std::int64_t sum = gone[node];
            for (const FileNode& child : node->children()) {
                sum += growth.changeOf(child).delta;
                if (child.isDirectory()) {
                    stack.push_back(&child);
                }
            }
            ASSERT_EQ(growth.changeOf(*node).delta, sum) << node->path().bytes();
        }
    }
}

TEST(SnapshotGrowth, NothingHasChangedSinceJustNow)
{
    const NodePointer root = test::randomTree(7)->rootPointer();
    const SnapshotGrowth growth = growthOf(SnapshotStore::capture(*root).snapshot.items, root);
    EXPECT_EQ(growth.net(), 0);
    EXPECT_EQ(growth.stepOf(*root), GrowthStep::unchanged);
}

} // namespace
} // namespace quorvane
