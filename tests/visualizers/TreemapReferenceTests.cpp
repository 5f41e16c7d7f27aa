// SPDX-License-Identifier: MIT
#include "BloatFilter.h"
#include "RandomTree.h"
#include "ReferenceTreemap.h"
#include "SliceText.h"
#include "TreemapLayout.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace quorvane {
namespace {

using test::exactTexts;

BloatKeys randomKeys(test::Dice& dice)
{
    BloatKeys keys;
    for (const BloatFilter::Item& item : BloatFilter::items()) {
        if (dice.chance(0.25)) {
            keys.insert(std::string(item.key));
        }
    }
    return keys;
}

Rect randomRect(test::Dice& dice)
{
    const double largest = dice.chance(0.5) ? 1600 : dice.chance(0.5) ? 120 : 12;
    return {dice.chance(0.5) ? 0 : dice.fraction() * 50,
            dice.chance(0.5) ? 0 : dice.fraction() * 50, dice.fraction() * largest,
            dice.fraction() * largest};
}

test::RandomTreeOptions randomOptions(test::Dice& dice)
{
    test::RandomTreeOptions options;
    options.entries = 5 + static_cast<std::size_t>(dice.below(400));
    options.maxChildren = 1 + static_cast<std::size_t>(dice.below(60));
    options.maxDepth = 1 + static_cast<std::size_t>(dice.below(9));
    options.folderShare = dice.fraction() * 0.8;
    options.largestPower = static_cast<unsigned>(dice.below(45));
    if (dice.chance(0.2)) {
        options.rootPath = FilePath(dice.chance(0.5) ? "/home/x/Documents" : "/home/documents/y");
    }
    return options;
}

TEST(TreemapReference, WholeLayoutsAgreeToTheLastBit)
{
    for (std::uint64_t seed = 1; seed <= 2000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        test::Dice dice(seed);
        const auto tree = test::randomTree(seed, randomOptions(dice));
        const Rect rect = randomRect(dice);
        const bool disk = dice.chance(0.5);
        const bool fold = dice.chance(0.5);
        const BloatKeys keys = randomKeys(dice);
        const auto fast = TreemapLayout::layoutSlate(tree->root(), rect, disk, fold, keys);
        const auto slow = test::reference::layoutSlate(tree->root(), rect, disk, fold,
                                                       {keys.begin(), keys.end()});
        ASSERT_EQ(exactTexts(fast), exactTexts(slow));
    }
}

TEST(TreemapReference, FoldersBeyondTheChildLimitAgree)
{
    for (std::uint64_t seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        test::RandomTreeOptions options;
        options.entries = 9000;
        options.maxChildren = 2500;
        options.folderShare = 0.01;
        const auto tree = test::randomTree(seed, options);
        for (const bool disk : {false, true}) {
            const Rect rect{0, 0, 3000, 2000};
            ASSERT_EQ(
                exactTexts(TreemapLayout::layoutSlate(tree->root(), rect, disk, false, {})),
                exactTexts(test::reference::layoutSlate(tree->root(), rect, disk, false, {})));
        }
    }
}

TEST(TreemapReference, PartitionsAgreeToTheLastBit)
{
    for (std::uint64_t seed = 1; seed <= 2000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        test::Dice dice(seed);
        test::RandomTreeOptions options = randomOptions(dice);
        options.maxDepth = 2;
        const auto tree = test::randomTree(seed, options);
        std::vector<FileNode*> children;
        for (FileNode& child : tree->root().children()) {
            // Any order and any sublist is a legal argument.
            if (dice.chance(0.8)) {
                children.insert(children.begin() +
                                    static_cast<std::ptrdiff_t>(dice.below(children.size() + 1)),
                                &child);
            }
        }
        const Rect rect = randomRect(dice);
        const TreemapLayout::PartitionOptions how{dice.chance(0.5),
                                                  dice.chance(0.3) ? dice.fraction() * 0.4 : 0,
                                                  dice.chance(0.7), dice.chance(0.5)};
        ASSERT_EQ(exactTexts(TreemapLayout::partition(children, tree->root(), rect, how)),
                  exactTexts(test::reference::partition(children, tree->root(), rect, how.disk,
                                                        how.minItemFrac, how.aggregateMicro,
                                                        how.foldBySize)));
    }
}

TEST(TreemapReference, FloorsAgree)
{
    for (std::uint64_t seed = 1; seed <= 2000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        test::Dice dice(seed);
        std::vector<double> values(dice.below(8));
        for (double& value : values) {
            value = dice.chance(0.1) ? 0.18 : dice.fraction() * (dice.chance(0.5) ? 1 : 0.2);
        }
        const auto fast = TreemapLayout::enforceMinimum(values, 0.18, 1.0);
        const auto slow = test::reference::enforceMinimum(values, 0.18, 1.0);
        ASSERT_EQ(fast, slow);
    }
}

} // namespace
} // namespace quorvane
