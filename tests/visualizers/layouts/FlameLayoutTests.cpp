// SPDX-License-Identifier: MIT
#include "FlameLayout.h"

#include "BloatFilter.h"
#include "LayoutTestSupport.h"
#include "LockedFlag.h"
#include "RandomTree.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <deque>
#include <utility>

namespace quorvane {
namespace {

using test::Names;
using test::namesOf;
using RectSlice = FlameLayout::RectSlice;

std::vector<RectSlice> rectsOf(const std::shared_ptr<FileTree>& tree, double width = 1000,
                               double height = 600, SizeMode mode = SizeMode::logical)
{
    test::keepAlive(tree);
    return FlameLayout::layout(tree->root(), width, height, mode, {});
}

/// The rule word by word: all rows whole, every item placed.
std::vector<RectSlice> plainFlame(FileNode& root, double width, double height, SizeMode mode)
{
    const auto maxRows = static_cast<std::size_t>(std::max(std::trunc((height - 24) / 34.0), 1.0));
    std::vector<std::vector<std::pair<FileNode*, std::int64_t>>> rows;
    std::deque<std::pair<FileNode*, std::size_t>> queue{{&root, 1}};
    while (!queue.empty()) {
        const auto [node, level] = queue.front();
        queue.pop_front();
        if (level > maxRows) {
            continue;
        }
        for (FileNode& child : node->children()) {
            const std::int64_t bytes = weightBasis(child, mode);
            if (bytes < 1) {
                continue;
            }
            rows.resize(std::max(rows.size(), level));
            rows[level - 1].emplace_back(&child, bytes);
            if (child.isDirectory()) {
                queue.emplace_back(&child, level + 1);
            }
        }
    }
    std::int64_t most = 1;
    for (auto& row : rows) {
        std::stable_sort(row.begin(), row.end(), [](const auto& a, const auto& b) {
            return a.second != b.second ? a.second > b.second : a.first->name() < b.first->name();
        });
        most = std::max(most, row.front().second);
    }
    std::vector<RectSlice> rects;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        double x = 4;
        for (const auto& [node, bytes] : rows[i]) {
            const double w = std::min(
                std::max(width * static_cast<double>(bytes) / static_cast<double>(most), 2.0),
                width - x);
            if (w > 1) {
                rects.push_back({node, {x, 34.0 * static_cast<double>(i) + 8, w, 31}});
            }
            x += w + 3;
        }
    }
    return rects;
}

TEST(FlameLayout, WidestItemSpansTheCanvasAndEndsItsRow)
{
    const auto rects = rectsOf(test::treeFromText("big/\n  half 50\n  rest 50\nsmall 10\n"));
    ASSERT_EQ(namesOf(rects), (Names{"big", "half", "rest"}));
    // From 4 on, cut at the right edge.
    EXPECT_EQ(rects[0].rect, (Rect{4, 8, 996, 31}));
    EXPECT_EQ(rects[1].rect, (Rect{4, 42, 500, 31}));
    EXPECT_EQ(rects[2].rect, (Rect{507, 42, 493, 31}));
}

TEST(FlameLayout, ItemsOfARowStandThreePointsApart)
{
    const auto rects = rectsOf(test::treeFromText("box/\n  a 40\n  b 30\n  c 20\n  d 10\n"));
    ASSERT_EQ(namesOf(rects), (Names{"box", "a", "b", "c", "d"}));
    EXPECT_EQ(rects[1].rect, (Rect{4, 42, 400, 31}));
    EXPECT_EQ(rects[2].rect, (Rect{407, 42, 300, 31}));
    EXPECT_EQ(rects[3].rect, (Rect{710, 42, 200, 31}));
    // 913 to the edge: cut from 100 to 87.
    EXPECT_EQ(rects[4].rect, (Rect{913, 42, 87, 31}));
}

TEST(FlameLayout, TinyItemIsTwoPointsWide)
{
    const auto rects = rectsOf(test::treeFromText("box/\n  a 400000\n  b 1\nother 599999\n"));
    // The box has no room beside the largest item.
    ASSERT_EQ(namesOf(rects), (Names{"other", "a", "b"}));
    EXPECT_EQ(rects.back().rect.width, 2);
}

TEST(FlameLayout, FolderOfOneChildFillsTheFirstRow)
{
    const auto rects = rectsOf(test::treeFromText("only/\n  a 30\n  b 10\n"));
    ASSERT_EQ(namesOf(rects), (Names{"only", "a", "b"}));
    EXPECT_EQ(rects[1].rect.width, 750);
}

TEST(FlameLayout, LowCanvasHasOneRow)
{
    EXPECT_EQ(FlameLayout::maxRows(0), 1U);
    EXPECT_EQ(FlameLayout::maxRows(57), 1U);
    EXPECT_EQ(FlameLayout::maxRows(91.9), 1U);
    EXPECT_EQ(FlameLayout::maxRows(92), 2U);
    EXPECT_EQ(namesOf(rectsOf(test::treeFromText("a/\n  b 1\n"), 100, 40)), Names{"a"});
}

TEST(FlameLayout, EmptyItemsAreLeftOutAndOpenNoRow)
{
    EXPECT_TRUE(rectsOf(test::treeFromText("a 0\nb/\n  c 0\n")).empty());
}

TEST(FlameLayout, HiddenFamiliesTakeNoPart)
{
    const auto tree = test::treeFromText("node_modules/\n  a.js 9\nb 1\n");
    const BloatKeys hidden{"Node.js"};
    EXPECT_EQ(namesOf(FlameLayout::layout(tree->root(), 100, 100, SizeMode::logical, hidden)),
              Names{"b"});
}

TEST(FlameLayout, StoppedLayoutIsEmpty)
{
    LockedFlag stop;
    stop.set(true);
    const auto tree = test::treeFromText("a 1\n");
    EXPECT_TRUE(FlameLayout::layout(tree->root(), 100, 100, SizeMode::disk, {}, &stop).empty());
}

TEST(FlameLayout, AnswersAsThePlainRuleOnRandomTrees)
{
    for (std::uint64_t seed = 1; seed <= 40; ++seed) {
        test::RandomTreeOptions options;
        options.entries = 600;
        options.maxChildren = 400;
        options.largestPower = seed % 2 == 0 ? 4 : 36;
        const auto tree = test::randomTree(seed, options);
        const SizeMode mode = seed % 3 == 0 ? SizeMode::logical : SizeMode::disk;
        for (const double width : {3.0, 30.0, 317.5, 1600.0}) {
            const auto expected = plainFlame(tree->root(), width, 200, mode);
            const auto found = rectsOf(tree, width, 200, mode);
            ASSERT_EQ(namesOf(found), namesOf(expected)) << "seed " << seed << ", " << width;
            for (std::size_t i = 0; i < found.size(); ++i) {
                EXPECT_EQ(found[i].node, expected[i].node) << "seed " << seed;
                EXPECT_EQ(found[i].rect, expected[i].rect) << "seed " << seed;
            }
        }
    }
}

} // namespace
} // namespace quorvane
