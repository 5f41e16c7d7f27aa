// SPDX-License-Identifier: MIT
#include "TopSizes.h"

#include "BloatFilter.h"
#include "LayoutWalk.h"
#include "LockedFlag.h"
#include "RandomTree.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace quorvane {
namespace {

using Names = std::vector<std::string>;

Names ranked(const std::shared_ptr<FileTree>& tree, SizeMode mode, const BloatKeys& hidden = {},
             std::size_t limit = TopSizes::shownItems)
{
    Names names;
    for (const FileNode* node : TopSizes::flattenAndRank(tree->root(), mode, hidden, limit)) {
        names.emplace_back(node->name());
    }
    return names;
}

TEST(TopSizes, RanksRootFoldersAndFilesTogether)
{
    const auto tree = test::treeFromText("a/\n  b/\n    huge 1000\nsmall 5\n");
    EXPECT_EQ(ranked(tree, SizeMode::logical), (Names{"scan", "a", "b", "huge", "small"}));
}

TEST(TopSizes, EmptyItemsAreWalkedAndNotRanked)
{
    const auto tree = test::treeFromText("zero/\n  none 0 8\nempty/\n");
    EXPECT_EQ(ranked(tree, SizeMode::disk), (Names{"none", "scan", "zero"}));
    EXPECT_TRUE(ranked(tree, SizeMode::logical).empty());
}

TEST(TopSizes, HiddenFamiliesTakeNoPart)
{
    const auto tree = test::treeFromText("node_modules/\n  a.js 9\nb 1\n");
    EXPECT_EQ(ranked(tree, SizeMode::logical, BloatKeys{"Node.js"}), (Names{"scan", "b"}));
}

TEST(TopSizes, StoppedWalkIsEmpty)
{
    LockedFlag stop;
    stop.set(true);
    const auto tree = test::treeFromText("a 1\n");
    EXPECT_TRUE(TopSizes::flattenAndRank(tree->root(), SizeMode::disk, {}, 5, &stop).empty());
}

TEST(TopSizes, FirstOfTheRankingAreTheFirstOfAWholeSort)
{
    for (std::uint64_t seed = 1; seed <= 30; ++seed) {
        test::RandomTreeOptions options;
        options.largestPower = seed % 2 == 0 ? 3 : 36;
        const auto tree = test::randomTree(seed, options);
        std::vector<FileNode*> all{&tree->root()};
        for (std::size_t i = 0; i < all.size(); ++i) {
            for (FileNode& child : all[i]->children()) {
                all.push_back(&child);
            }
        }
        all.erase(
            std::remove_if(all.begin(), all.end(),
                           [](const FileNode* node) { return node->scannedBytesOnDisk() < 1; }),
            all.end());
        std::sort(all.begin(), all.end(), [](const FileNode* a, const FileNode* b) {
            return a->scannedBytesOnDisk() != b->scannedBytesOnDisk()
                       ? a->scannedBytesOnDisk() > b->scannedBytesOnDisk()
                       : a->name() < b->name();
        });
        for (const std::size_t limit : {std::size_t{1}, std::size_t{40}, all.size() + 5}) {
            const auto found = TopSizes::flattenAndRank(tree->root(), SizeMode::disk, {}, limit);
            ASSERT_EQ(found.size(), std::min(limit, all.size())) << "seed " << seed;
            for (std::size_t i = 0; i < found.size(); ++i) {
                EXPECT_EQ(found[i]->scannedBytesOnDisk(), all[i]->scannedBytesOnDisk());
                EXPECT_EQ(found[i]->name(), all[i]->name()) << "seed " << seed << ", rank " << i;
            }
        }
    }
}

TEST(TopSizes, EqualItemsOfOneNameStayInTheOrderOfTheWalk)
{
    // A stack's way: the last child first.
    const auto tree = test::treeFromText("a/\n  x 1\nb/\n  x 1\n");
    const auto found = TopSizes::flattenAndRank(tree->root(), SizeMode::logical, {}, 5);
    ASSERT_EQ(found.size(), 5U);
    EXPECT_EQ(found[3]->parent()->name(), "b");
    EXPECT_EQ(found[4]->parent()->name(), "a");
}

TEST(TopRanked, NoRoomKeepsNothing)
{
    const auto tree = test::treeFromText("a 1\n");
    TopRanked none(0);
    none.add({&tree->root(), 1});
    EXPECT_TRUE(none.takeSorted().empty());
}

} // namespace
} // namespace quorvane
