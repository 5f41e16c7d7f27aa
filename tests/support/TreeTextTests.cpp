// SPDX-License-Identifier: MIT
#include "TreeText.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace quorvane::test {
namespace {

TEST(TreeText, PrintsWhatItRead)
{
    const char* text = "Library/ @7\n"
                       "  default project/\n"
                       "    b.bin 300\n"
                       "    a.bin 100 4096\n"
                       "  alias@ 12\n"
                       "  pipe| 0\n"
                       "two words.txt 5 5 @86400\n";
    EXPECT_EQ(textOfTree(treeFromText(text)->root()), "Library/ @7\n"
                                                      "  default project/\n"
                                                      "    b.bin 300\n"
                                                      "    a.bin 100 4096\n"
                                                      "  alias@ 12\n"
                                                      "  pipe| 0\n"
                                                      "two words.txt 5 @86400\n");
}

TEST(TreeText, FinishesTheTree)
{
    const auto tree = treeFromText("small 1\n"
                                   "big/\n"
                                   "  a 100 200\n"
                                   "  b 50 0\n");
    EXPECT_EQ(tree->root().scannedBytes(), 151);
    EXPECT_EQ(tree->root().scannedBytesOnDisk(), 201);
    EXPECT_EQ(tree->root().fileCount(), 3);
    EXPECT_EQ(tree->root().directoryCount(), 2);
    EXPECT_EQ(tree->root().largestChild()->name(), "big");
}

TEST(TreeText, NumbersTheLines)
{
    const auto tree = treeFromText("a/\n  b 1\nc 2\n");
    EXPECT_EQ(tree->root().id(), 0);
    EXPECT_EQ(nodeAt(tree->root(), "a").id(), 1);
    EXPECT_EQ(nodeAt(tree->root(), "a/b").id(), 2);
    EXPECT_EQ(nodeAt(tree->root(), "c").id(), 3);
}

TEST(TreeText, KindsAreTold)
{
    const auto tree = treeFromText("d/\nf 1\nl@ 1\np| 1\n");
    EXPECT_TRUE(nodeAt(tree->root(), "d").isDirectory());
    EXPECT_TRUE(nodeAt(tree->root(), "f").isRegularFile());
    EXPECT_TRUE(nodeAt(tree->root(), "l").isSymbolicLink());
    const FileNode& pipe = nodeAt(tree->root(), "p");
    EXPECT_FALSE(pipe.isDirectory() || pipe.isRegularFile() || pipe.isSymbolicLink());
}

TEST(TreeText, RootStandsForItsPath)
{
    const auto tree = treeFromText("a 1\n", {FilePath("/home/x"), true});
    EXPECT_EQ(tree->root().name(), "x");
    EXPECT_EQ(nodeAt(tree->root(), "a").path().bytes(), "/home/x/a");
}

TEST(TreeText, RefusesWhatIsNoTree)
{
    EXPECT_THROW(treeFromText("  a 1\n"), std::invalid_argument);
    EXPECT_THROW(treeFromText("a/\n   b 1\n"), std::invalid_argument);
    EXPECT_THROW(treeFromText("a 1\n  b 1\n"), std::invalid_argument);
    EXPECT_THROW(treeFromText("a/\n    b 1\n"), std::invalid_argument);
    EXPECT_THROW(treeFromText("/\n"), std::invalid_argument);
    const auto tree = treeFromText("a 1\n");
    EXPECT_THROW(nodeAt(tree->root(), "b"), std::invalid_argument);
}

} // namespace
} // namespace quorvane::test
