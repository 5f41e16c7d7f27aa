// SPDX-License-Identifier: MIT
#include "BloatFilter.h"
#include "SliceText.h"
#include "TreeText.h"
#include "TreemapTestSupport.h"

#include <gtest/gtest.h>

#include <vector>

namespace quorvane {
namespace {

using test::layout;
using test::layoutText;
using test::sliceOf;
using Slice = TreemapLayout::Slice;

TEST(TreemapChains, SingleFoldersCollapseIntoOneBody)
{
    const auto tree = test::treeFromText("A/\n"
                                         "  B/\n"
                                         "    C/\n"
                                         "      x.mp4 3000\n"
                                         "      y.mp4 1000\n");
    const auto slices = layout(*tree, 200, 202);
    EXPECT_EQ(layoutText(slices), "A 0 0 200 200 video\n"
                                  "  B/C 0 0 200 200 video\n"
                                  "  x.mp4 1 17 148.5 182\n"
                                  "  y.mp4 149.5 17 49.5 182\n");
    const FileNode& last = test::nodeAt(tree->root(), "A/B/C");
    const Slice& chain = slices.at(1);
    EXPECT_EQ(chain.node, &last);
    EXPECT_EQ(chain.id, last.id());
    EXPECT_EQ(chain.nodeID, last.id());
    EXPECT_EQ(chain.labelOverride, "B/C");
    EXPECT_TRUE(chain.isFolder);
    EXPECT_FALSE(chain.isAggregateTile);
    EXPECT_EQ(chain.rect, slices.at(0).rect);
    EXPECT_EQ(chain.depth, 1);
    EXPECT_EQ(chain.rootIndex, 0);
}

TEST(TreemapChains, ASingleFileIsNoChain)
{
    const auto tree = test::treeFromText("A/\n  only.mp4 3000\n");
    EXPECT_EQ(layoutText(layout(*tree, 200, 202)), "A 0 0 200 200 video\n"
                                                   "  only.mp4 1 17 198 182\n");
}

TEST(TreemapChains, AChainThatEndsInAnEmptyFolderShowsNothing)
{
    const auto tree = test::treeFromText("A/\n  B/\n    C/\n");
    EXPECT_EQ(layoutText(layout(*tree, 200, 202)), "A 0 0 200 200 other\n");
}

TEST(TreemapChains, AHiddenSiblingMakesAChain)
{
    const auto tree = test::treeFromText("A/\n"
                                         "  B/\n"
                                         "    x.mp4 3000\n"
                                         "    y.mp4 1000\n"
                                         "  cache 500\n");
    const auto slices =
        TreemapLayout::layoutSlate(tree->root(), {0, 0, 200, 202}, false, false, {"Caches"});
    EXPECT_EQ(slices.at(1).labelOverride, "B");
    EXPECT_EQ(slices.size(), 4U);
}

TEST(TreemapChains, TenThousandFoldersDeepIsAChainAsWell)
{
    const auto tree = test::treeFromText("x/\n");
    NodeValues folder;
    folder.name = "d";
    folder.metadata.isDirectory = true;
    FileNode* last = &tree->root().children().front();
    for (folder.id = 2; folder.id < 10000; ++folder.id) {
        last = tree->addChildren(*last, std::vector{folder}).data();
    }
    NodeValues file;
    file.id = folder.id;
    file.name = "end.zip";
    file.metadata = {false, false, true, false, 100, 100, 0};
    tree->addChildren(*last, std::vector{file});
    tree->root().finalizeTree();
    const auto slices = layout(*tree, 200, 202, true);
    ASSERT_EQ(slices.size(), 3U);
    EXPECT_EQ(slices[1].node, last);
    EXPECT_EQ(slices[1].labelOverride->size(), 9998U * 2 - 1);
    EXPECT_EQ(slices[2].node->name(), "end.zip");
}

TEST(TreemapChains, CategoriesKnowTheWholePath)
{
    const auto tree = test::treeFromText("A/\n"
                                         "  Documents/\n"
                                         "    C/\n"
                                         "      Library/\n"
                                         "        x.mp4 3000\n"
                                         "      y.mp4 1000\n");
    const auto slices = layout(*tree, 300, 302);
    EXPECT_EQ(slices.at(0).folderBodyCategory, FileTypeCategory::video);
    EXPECT_EQ(slices.at(1).labelOverride, "Documents/C");
    EXPECT_EQ(slices.at(1).folderBodyCategory, FileTypeCategory::project);
    EXPECT_EQ(
        sliceOf(slices, test::nodeAt(tree->root(), "A/Documents/C/Library")).folderBodyCategory,
        FileTypeCategory::project);
}

} // namespace
} // namespace quorvane
