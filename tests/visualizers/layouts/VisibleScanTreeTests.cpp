// SPDX-License-Identifier: MIT
#include "VisibleScanTree.h"

#include "RandomTree.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <vector>

namespace quorvane {
namespace {

TEST(VisibleScanTree, OutlineOfNothingHasNoNode)
{
    EXPECT_FALSE(VisibleScanTree().node());
}

TEST(VisibleScanTree, LeafAndFolderOfHiddenChildrenOpenToNothing)
{
    const auto tree = test::treeFromText("box/\n  node_modules/\n    a.js 1\nfile 1\nempty/\n");
    const VisibleScanTree shown(tree->rootPointer(), {"Node.js"});
    EXPECT_TRUE(shown.hasChildren(tree->root()));
    for (const char* path : {"box", "file", "empty"}) {
        EXPECT_FALSE(shown.hasChildren(test::nodeAt(tree->root(), path))) << path;
    }
}

TEST(VisibleScanTree, ContainsWhatCanBeReached)
{
    const auto tree =
        test::treeFromText("box/\n  node_modules/\n    a.js 1\n  b 1\nother/\n  c 1\n");
    const VisibleScanTree whole(tree->rootPointer(), {"Node.js"});
    const auto has = [&](const VisibleScanTree& outline, const char* path) {
        return outline.contains(test::nodeAt(tree->root(), path));
    };
    EXPECT_TRUE(has(whole, "box/b"));
    EXPECT_FALSE(has(whole, "box/node_modules/a.js"));
    EXPECT_FALSE(whole.contains(tree->root()));
    const VisibleScanTree box(NodePointer(tree->rootPointer(), &test::nodeAt(tree->root(), "box")),
                              {});
    EXPECT_TRUE(has(box, "box/node_modules/a.js"));
    EXPECT_FALSE(has(box, "other/c"));
    EXPECT_FALSE(has(box, "box"));
}

TEST(VisibleScanTree, RowsAreTheVisibleChildrenOfRandomTrees)
{
    for (std::uint64_t seed = 1; seed <= 10; ++seed) {
        const auto tree = test::randomTree(seed);
        for (const BloatKeys& hidden : {BloatKeys{}, BloatKeys{"Node.js", "Caches"}}) {
            const VisibleScanTree outline(tree->rootPointer(), hidden);
            std::vector<const FileNode*> open{&tree->root()};
            while (!open.empty()) {
                const FileNode& folder = *open.back();
                open.pop_back();
                std::size_t row = 0;
                for (const FileNode& child : folder.children()) {
                    if (child.isBloatHidden(hidden)) {
                        continue;
                    }
                    EXPECT_EQ(&outline.child(folder, row), &child) << seed;
                    EXPECT_EQ(outline.rowOf(child), row) << seed;
                    ++row;
                    open.push_back(&child);
                }
                EXPECT_EQ(outline.childCount(folder), row) << seed;
                EXPECT_EQ(outline.hasChildren(folder), row > 0) << seed;
            }
        }
    }
}

} // namespace
} // namespace quorvane
