// SPDX-License-Identifier: MIT
#include "MindMapLayout.h"

#include "BloatFilter.h"
#include "LayoutTestSupport.h"
#include "LockedFlag.h"
#include "RandomTree.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <map>
#include <numbers>

namespace quorvane {
namespace {

using test::Names;
using test::namesOf;
using Band = MindMapLayout::Band;

constexpr double pi = std::numbers::pi;

std::vector<Band> bandsOf(const std::string& text)
{
    static std::shared_ptr<FileTree> tree;
    tree = test::treeFromText(text);
    return MindMapLayout::layout(tree->root(), SizeMode::logical, {});
}

TEST(MindMapLayout, FanSpansTheRightHalf)
{
    const std::vector<Band> bands = bandsOf("a 3\nb 1\n");
    ASSERT_EQ(namesOf(bands), (Names{"a", "b"}));
    EXPECT_DOUBLE_EQ(bands[0].start, -pi / 2);
    EXPECT_DOUBLE_EQ(bands[0].end, pi / 4);
    EXPECT_DOUBLE_EQ(bands[1].end, pi / 2);
    EXPECT_DOUBLE_EQ(bands[0].weight, 0.75);
    EXPECT_DOUBLE_EQ(bands[0].inner, 8);
    EXPECT_DOUBLE_EQ(bands[0].outer, 78);
    EXPECT_DOUBLE_EQ(bands[0].arcLength(), 0.75 * pi);
    EXPECT_DOUBLE_EQ(bands[0].mid(), -pi / 8);
}

TEST(MindMapLayout, ContentOfTheLastFolderComesFirst)
{
    const std::vector<Band> bands = bandsOf("a/\n  x 3\nb/\n  y 2\n");
    ASSERT_EQ(namesOf(bands), (Names{"a", "b", "y", "x"}));
    EXPECT_DOUBLE_EQ(bands[2].inner, 78);
    EXPECT_DOUBLE_EQ(bands[2].outer, 148);
    EXPECT_EQ(bands[2].start, bands[1].start);
    EXPECT_NEAR(bands[2].end, bands[1].end, 1e-12);
}

TEST(MindMapLayout, OpensThreeLevels)
{
    const std::vector<Band> bands = bandsOf("1/\n  2/\n    3/\n      4 1\n");
    ASSERT_EQ(namesOf(bands), (Names{"1", "2", "3"}));
    EXPECT_DOUBLE_EQ(bands[2].outer, 218);
    // The third level is not opened, though it holds something.
    EXPECT_TRUE(bands[2].hasChildren);
}

TEST(MindMapLayout, DeepTreeLooksAsOneCutAtTheThirdLevel)
{
    const std::vector<Band> cut = bandsOf("1/\n  2/\n    3/\n      x 8\n    y 4\nz 4\n");
    const Names names = namesOf(cut);
    const std::vector<Band> deep =
        bandsOf("1/\n  2/\n    3/\n      4/\n        5/\n          x 8\n    y 4\nz 4\n");
    ASSERT_EQ(names, namesOf(deep));
    for (std::size_t i = 0; i < cut.size(); ++i) {
        EXPECT_EQ(cut[i].start, deep[i].start);
        EXPECT_EQ(cut[i].end, deep[i].end);
        EXPECT_EQ(cut[i].outer, deep[i].outer);
        EXPECT_EQ(cut[i].hasChildren, deep[i].hasChildren);
    }
}

TEST(MindMapLayout, FolderOfEmptyItemsCountsAsWithoutChildren)
{
    const auto tree = test::treeFromText("a/\n  x 0 5\nb 0 1\n");
    const auto bands = MindMapLayout::layout(tree->root(), SizeMode::disk, {});
    ASSERT_EQ(namesOf(bands), (Names{"a", "b", "x"}));
    EXPECT_TRUE(bands[0].hasChildren);
    EXPECT_FALSE(bands[1].hasChildren);
    EXPECT_TRUE(MindMapLayout::layout(tree->root(), SizeMode::logical, {}).empty());
}

TEST(MindMapLayout, KeepsTheStoredOrder)
{
    const auto tree = test::treeFromText("large 9 1\nsmall 1 9\n");
    // Stored by logical bytes, whatever the mode measures.
    EXPECT_EQ(namesOf(MindMapLayout::layout(tree->root(), SizeMode::disk, {})),
              (Names{"large", "small"}));
}

TEST(MindMapLayout, HiddenFamiliesTakeNoPart)
{
    const auto tree = test::treeFromText("node_modules/\n  a.js 9\nbox/\n  Caches/\n    c 1\n");
    const BloatKeys hidden{"Node.js", "Caches"};
    const auto bands = MindMapLayout::layout(tree->root(), SizeMode::logical, hidden);
    ASSERT_EQ(namesOf(bands), Names{"box"});
    EXPECT_FALSE(bands[0].hasChildren);
}

TEST(MindMapLayout, StoppedLayoutIsEmpty)
{
    LockedFlag stop;
    stop.set(true);
    const auto tree = test::treeFromText("a 1\n");
    EXPECT_TRUE(MindMapLayout::layout(tree->root(), SizeMode::disk, {}, &stop).empty());
}

TEST(MindMapLayout, ChildrenFillTheirFoldersSpanOnRandomTrees)
{
    for (std::uint64_t seed = 1; seed <= 30; ++seed) {
        const auto tree = test::randomTree(seed);
        const auto bands = MindMapLayout::layout(tree->root(), SizeMode::disk, {});
        std::map<const FileNode*, std::vector<Band>> byFolder;
        std::map<const FileNode*, Band> byNode;
        for (const Band& band : bands) {
            byFolder[band.node->parent()].push_back(band);
            byNode.emplace(band.node, band);
            EXPECT_GE(weightBasis(*band.node, SizeMode::disk), 1);
            EXPECT_LE(band.outer, 218);
        }
        for (const auto& [folder, children] : byFolder) {
            const bool isTop = folder == &tree->root();
            EXPECT_EQ(children.front().start, isTop ? -pi / 2 : byNode.at(folder).start) << seed;
            EXPECT_NEAR(children.back().end, isTop ? pi / 2 : byNode.at(folder).end, 1e-9) << seed;
            double weights = 0;
            for (std::size_t i = 0; i < children.size(); ++i) {
                weights += children[i].weight;
                EXPECT_EQ(children[i].inner, isTop ? 8 : byNode.at(folder).outer) << seed;
                EXPECT_TRUE(i == 0 || children[i].start == children[i - 1].end) << seed;
            }
            EXPECT_NEAR(weights, 1, 1e-9) << seed;
        }
    }
}

} // namespace
} // namespace quorvane
