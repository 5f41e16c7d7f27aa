// SPDX-License-Identifier: MIT
#include "SizeMode.h"

#include "FileNode.h"
#include "TreeText.h"

#include <gtest/gtest.h>

namespace quorvane {
namespace {

TEST(SizeMode, LogicalComesFirst)
{
    ASSERT_EQ(allSizeModes.size(), 2U);
    EXPECT_EQ(allSizeModes[0], SizeMode::logical);
    EXPECT_EQ(allSizeModes[1], SizeMode::disk);
}

TEST(SizeMode, KeysAndTitles)
{
    EXPECT_EQ(rawValue(SizeMode::logical), "logical");
    EXPECT_EQ(rawValue(SizeMode::disk), "disk");
    EXPECT_EQ(title(SizeMode::logical).toStdString(), "Logical size");
    EXPECT_EQ(title(SizeMode::disk).toStdString(), "Size on disk");
}

TEST(SizeMode, AKeyLeadsBackToItsCase)
{
    for (const SizeMode mode : allSizeModes) {
        EXPECT_EQ(sizeModeFromRawValue(rawValue(mode)), mode);
    }
    EXPECT_FALSE(sizeModeFromRawValue("Logical"));
    EXPECT_FALSE(sizeModeFromRawValue(""));
}

TEST(SizeMode, WeighsANodeByTheRollupOfTheMode)
{
    const auto tree = test::treeFromText("folder/\n"
                                         "  a 1536 8192\n"
                                         "  b 0 0\n");
    const FileNode& folder = tree->root().children().front();
    EXPECT_EQ(weightBasis(folder, SizeMode::logical), 1536);
    EXPECT_EQ(weightBasis(folder, SizeMode::disk), 8192);
    EXPECT_EQ(basisLabel(folder, SizeMode::logical).toStdString(), "1.5 KB");
    EXPECT_EQ(basisLabel(folder, SizeMode::disk).toStdString(), "8.0 KB");
    EXPECT_EQ(weightBasis(test::nodeAt(tree->root(), "folder/b"), SizeMode::logical), 0);
}

} // namespace
} // namespace quorvane
