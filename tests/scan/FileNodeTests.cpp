// SPDX-License-Identifier: MIT
#include "FileNode.h"

#include "FileTree.h"
#include "RandomTree.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace quorvane {
namespace {

using test::nodeAt;
using test::textOfTree;
using test::treeFromText;

ItemMetadata folderOf(std::int64_t bytes, std::int64_t onDisk)
{
    ItemMetadata metadata;
    metadata.isDirectory = true;
    metadata.logicalSize = bytes;
    metadata.sizeOnDisk = onDisk;
    metadata.dateModified = 0;
    return metadata;
}

ItemMetadata fileOf(std::int64_t bytes, std::int64_t onDisk)
{
    ItemMetadata metadata = folderOf(bytes, onDisk);
    metadata.isDirectory = false;
    metadata.isRegularFile = true;
    return metadata;
}

std::shared_ptr<FileTree> emptyTree(std::int64_t bytes = 0, std::int64_t onDisk = 0)
{
    return FileTree::create(FilePath("/scan"), {0, "scan", folderOf(bytes, onDisk)});
}

std::vector<std::string> namesOf(std::span<const FileNode> nodes)
{
    std::vector<std::string> names;
    for (const FileNode& node : nodes) {
        names.emplace_back(node.name());
    }
    return names;
}

TEST(FileNode, NewFolderCarriesItsOwnSizesAndCountsItself)
{
    const auto tree = emptyTree(4096, 8192);
    const FileNode& root = tree->root();
    EXPECT_EQ(root.logicalSize(), 4096);
    EXPECT_EQ(root.sizeOnDisk(), 8192);
    EXPECT_EQ(root.scannedBytes(), 4096);
    EXPECT_EQ(root.scannedBytesOnDisk(), 8192);
    EXPECT_EQ(root.fileCount(), 0);
    EXPECT_EQ(root.directoryCount(), 1);
    EXPECT_TRUE(root.children().empty());
    EXPECT_EQ(root.parent(), nullptr);
    EXPECT_EQ(root.largestChild(), nullptr);
    EXPECT_FALSE(root.isStagedForTrash());
}

TEST(FileNode, NewNodeSetsItsTwoCountsIndependently)
{
    ItemMetadata both = folderOf(3, 4);
    both.isRegularFile = true;
    const auto tree = FileTree::create(FilePath("/x"), {0, "x", both});
    EXPECT_EQ(tree->root().fileCount(), 1);
    EXPECT_EQ(tree->root().directoryCount(), 1);
}

TEST(FileNode, EmptyDirectoryHasNothingButItself)
{
    const auto tree = emptyTree(4096, 4096);
    tree->root().finalizeTree();
    EXPECT_EQ(tree->root().scannedBytes(), 0);
    EXPECT_EQ(tree->root().scannedBytesOnDisk(), 0);
    EXPECT_EQ(tree->root().fileCount(), 0);
    EXPECT_EQ(tree->root().directoryCount(), 1);
    EXPECT_EQ(tree->root().largestChild(), nullptr);
    EXPECT_EQ(tree->root().logicalSize(), 4096);
}

TEST(FileNode, SumsTakeChildrenAndLeaveTheFoldersOwnSizesOut)
{
    const auto tree = emptyTree(4096, 4096);
    const NodeValues inRoot[] = {{1, "sub", folderOf(100, 200)}, {2, "a", fileOf(7, 512)}};
    const std::span<FileNode> nodes = tree->addChildren(tree->root(), inRoot);
    const NodeValues inSub[] = {{3, "b", fileOf(5, 1024)}, {4, "empty", folderOf(60, 70)}};
    tree->addChildren(nodes[0], inSub);
    tree->root().finalizeTree();
    EXPECT_EQ(tree->root().scannedBytes(), 12);
    EXPECT_EQ(tree->root().scannedBytesOnDisk(), 1536);
    EXPECT_EQ(tree->root().fileCount(), 2);
    EXPECT_EQ(tree->root().directoryCount(), 3);
    const FileNode& sub = nodeAt(tree->root(), "sub");
    EXPECT_EQ(sub.scannedBytes(), 5);
    EXPECT_EQ(sub.directoryCount(), 2);
    EXPECT_EQ(sub.logicalSize(), 100);
    EXPECT_EQ(sub.sizeOnDisk(), 200);
}

TEST(FileNode, DirectoryHoldingOnlyALinkHasNoFileButTheLinksBytes)
{
    const auto tree = treeFromText("dir/\n  alias@ 12\n");
    const FileNode& dir = nodeAt(tree->root(), "dir");
    EXPECT_EQ(dir.fileCount(), 0);
    EXPECT_EQ(dir.scannedBytes(), 12);
    EXPECT_EQ(nodeAt(tree->root(), "dir/alias").fileCount(), 0);
    EXPECT_EQ(nodeAt(tree->root(), "dir/alias").directoryCount(), 0);
}

TEST(FileNode, SpecialFileCountsAsNeither)
{
    const auto tree = treeFromText("pipe| 3\n");
    EXPECT_EQ(tree->root().fileCount(), 0);
    EXPECT_EQ(tree->root().directoryCount(), 1);
    EXPECT_EQ(tree->root().scannedBytes(), 3);
}

TEST(FileNode, ZeroByteFileIsAFile)
{
    const auto tree = treeFromText("empty 0\n");
    const FileNode& file = nodeAt(tree->root(), "empty");
    EXPECT_EQ(file.fileCount(), 1);
    EXPECT_EQ(file.scannedBytes(), 0);
    EXPECT_EQ(file.directoryCount(), 0);
}

TEST(FileNode, EqualBytesComeInPlainNameOrder)
{
    const auto tree = treeFromText("a 5\nB 5\n_ 5\nb 5\n\xC3\xA4 5\nA 5\n");
    EXPECT_EQ(namesOf(tree->root().children()),
              (std::vector<std::string>{"A", "B", "_", "a", "b", "\xC3\xA4"}));
}

TEST(FileNode, OrderFollowsLogicalBytesNotThoseOnDisk)
{
    const auto tree = treeFromText("small 1 9000\nlarge 2 0\n");
    EXPECT_EQ(namesOf(tree->root().children()), (std::vector<std::string>{"large", "small"}));
    EXPECT_EQ(tree->root().largestChild()->name(), "large");
}

TEST(FileNode, FoldersAndFilesAreOrderedTogether)
{
    const auto tree = treeFromText("f1 10\nd/\n  x 7\n  y 8\nf2 20\ne/\nf0 0\n");
    EXPECT_EQ(textOfTree(tree->root()), "f2 20\nd/\n  y 8\n  x 7\nf1 10\ne/\nf0 0\n");
}

TEST(FileNode, SortedChildrenLeavesTheNodeAsItIs)
{
    const auto tree = treeFromText("a 1\nb 3\nc 2\n", {.finalize = false});
    const std::vector<const FileNode*> sorted = tree->root().sortedChildren();
    ASSERT_EQ(sorted.size(), 3U);
    EXPECT_EQ(sorted[0]->name(), "b");
    EXPECT_EQ(sorted[1]->name(), "c");
    EXPECT_EQ(sorted[2]->name(), "a");
    EXPECT_EQ(namesOf(tree->root().children()), (std::vector<std::string>{"a", "b", "c"}));
}

TEST(FileNode, ProvisionalBytesAddUpAndTheFinalPassOverwritesThem)
{
    const auto tree = emptyTree(4096, 4096);
    const NodeValues values[] = {{1, "a", fileOf(7, 512)}};
    tree->addChildren(tree->root(), values);
    tree->root().addProvisional(7, 512);
    tree->root().addProvisional(1, 2);
    EXPECT_EQ(tree->root().scannedBytes(), 4104);
    EXPECT_EQ(tree->root().scannedBytesOnDisk(), 4610);
    tree->root().finalizeTree();
    EXPECT_EQ(tree->root().scannedBytes(), 7);
    EXPECT_EQ(tree->root().scannedBytesOnDisk(), 512);
}

TEST(FileNode, ProvisionalBytesLeaveAFileAlone)
{
    const auto tree = treeFromText("a 7 512\n");
    FileNode& file = nodeAt(tree->root(), "a");
    file.addProvisional(10, 10);
    EXPECT_EQ(file.scannedBytes(), 7);
    EXPECT_EQ(file.logicalSize(), 7);
    EXPECT_EQ(file.sizeOnDisk(), 512);
}

TEST(FileNode, FinalPassOnAFileChangesNothing)
{
    const auto tree = treeFromText("a 7 512 @9\n");
    FileNode& file = nodeAt(tree->root(), "a");
    file.finalizeTree();
    EXPECT_EQ(file.scannedBytes(), 7);
    EXPECT_EQ(file.fileCount(), 1);
    EXPECT_EQ(file.dateModified(), 9);
}

TEST(FileNodeDeathTest, SumBeyondSixtyFourBitsStopsTheProgram)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    const auto tree = emptyTree();
    const NodeValues values[] = {{1, "a", fileOf(most, 0)}, {2, "b", fileOf(1, 0)}};
    tree->addChildren(tree->root(), values);
    EXPECT_DEATH(tree->root().finalizeTree(), "overflows in FileNode::finalizeTree");
}

TEST(FileNode, SumMayReachTheLargestNumber)
{
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    const auto tree = emptyTree();
    const NodeValues values[] = {{1, "a", fileOf(most - 1, 0)}, {2, "b", fileOf(1, 0)}};
    tree->addChildren(tree->root(), values);
    tree->root().finalizeTree();
    EXPECT_EQ(tree->root().scannedBytes(), most);
}

TEST(FileNode, PathJoinsTheNamesUpToTheRoot)
{
    const auto tree = treeFromText("a/\n  b/\n    c 1\n", {.rootPath = FilePath("/home/u")});
    EXPECT_EQ(tree->root().path(), FilePath("/home/u"));
    EXPECT_EQ(nodeAt(tree->root(), "a").path(), FilePath("/home/u/a"));
    EXPECT_EQ(nodeAt(tree->root(), "a/b/c").path(), FilePath("/home/u/a/b/c"));
}

TEST(FileNode, PathBelowTheFileSystemsRootHasOneSlash)
{
    const auto tree = FileTree::create(FilePath("/"), {0, "/", folderOf(0, 0)});
    const NodeValues values[] = {{1, "etc", folderOf(0, 0)}};
    const std::span<FileNode> etc = tree->addChildren(tree->root(), values);
    const NodeValues below[] = {{2, "fstab", fileOf(1, 1)}};
    tree->addChildren(etc[0], below);
    EXPECT_EQ(tree->root().name(), "/");
    EXPECT_EQ(tree->root().path(), FilePath("/"));
    EXPECT_EQ(nodeAt(tree->root(), "etc").path(), FilePath("/etc"));
    EXPECT_EQ(nodeAt(tree->root(), "etc/fstab").path(), FilePath("/etc/fstab"));
}

TEST(FileNode, PathKeepsBytesThatAreNoText)
{
    const auto tree = emptyTree();
    const NodeValues values[] = {{1, "\xFF\n%", fileOf(1, 1)}};
    const FileNode& node = tree->addChildren(tree->root(), values)[0];
    EXPECT_EQ(node.path().bytes(), "/scan/\xFF\n%");
    EXPECT_EQ(node.name(), "\xFF\n%");
    EXPECT_EQ(node.displayName(), QString(QChar(0xFFFD)) + QLatin1String("\n%"));
}

TEST(FileNode, DepthCountsTheStepsToTheRoot)
{
    const auto tree = treeFromText("a/\n  b/\n    c 1\n");
    EXPECT_EQ(tree->root().depth(), 0U);
    EXPECT_EQ(nodeAt(tree->root(), "a").depth(), 1U);
    EXPECT_EQ(nodeAt(tree->root(), "a/b/c").depth(), 3U);
}

TEST(FileNode, SortingKeepsParentsPathsAndGrandchildren)
{
    const auto tree = treeFromText("p/\n  x 1\nq/\n  y 2\nr/\n  z/\n    w 3\n");
    // Largest first: r, q, p, so every folder has moved.
    EXPECT_EQ(namesOf(tree->root().children()), (std::vector<std::string>{"r", "q", "p"}));
    for (const FileNode& folder : tree->root().children()) {
        EXPECT_EQ(folder.parent(), &tree->root());
        EXPECT_EQ(folder.children()[0].parent(), &folder);
    }
    EXPECT_EQ(nodeAt(tree->root(), "r/z/w").path(), FilePath("/scan/r/z/w"));
}

TEST(FileNode, StagingFlagIsTheOneThatChanges)
{
    const auto tree = treeFromText("a 1\n");
    FileNode& node = nodeAt(tree->root(), "a");
    node.setStagedForTrash(true);
    EXPECT_TRUE(node.isStagedForTrash());
    EXPECT_FALSE(tree->root().isStagedForTrash());
    node.setStagedForTrash(false);
    EXPECT_FALSE(node.isStagedForTrash());
}

TEST(FileNode, ChainOfAHundredThousandFoldersIsALegalTree)
{
    constexpr int depth = 100'000;
    const auto tree = emptyTree();
    FileNode* folder = &tree->root();
    for (int i = 1; i <= depth; ++i) {
        const NodeValues values[] = {{i, "d", folderOf(4096, 4096)}};
        folder = tree->addChildren(*folder, values).data();
    }
    const NodeValues last[] = {{depth + 1, "f", fileOf(3, 512)}};
    FileNode& file = tree->addChildren(*folder, last)[0];
    tree->root().finalizeTree();
    EXPECT_EQ(tree->root().scannedBytes(), 3);
    EXPECT_EQ(tree->root().directoryCount(), depth + 1);
    EXPECT_EQ(file.depth(), static_cast<std::size_t>(depth) + 1);
    EXPECT_EQ(file.path().bytes().size(), std::string("/scan/f").size() + std::size_t{2} * depth);
    EXPECT_EQ(NodeIndex(tree->root()).size(), static_cast<std::size_t>(depth) + 2);
}

/// A folder of the slow and obvious second computation.
struct Model
{
    std::int64_t id = 0;
    std::string name;
    ItemMetadata metadata;
    std::vector<Model> children;
    std::int64_t bytes = 0;
    std::int64_t onDisk = 0;
    std::int64_t files = 0;
    std::int64_t directories = 0;
};

Model randomModel(test::Dice& dice, std::int64_t& nextID, int level)
{
    Model model;
    model.id = nextID++;
    // Few names and few sizes, so that ties are common and even names repeat.
    model.name = std::string(1 + dice.below(2), static_cast<char>('A' + dice.below(4)));
    const auto size = static_cast<std::int64_t>(dice.below(4));
    const bool isFolder = level == 0 || (level < 5 && dice.chance(0.4));
    model.metadata = isFolder ? folderOf(size, size) : fileOf(size, 512 * size);
    if (!isFolder && dice.chance(0.2)) {
        model.metadata.isRegularFile = false;
        model.metadata.isSymbolicLink = true;
    }
    const std::uint64_t count = isFolder ? dice.below(12) : 0;
    for (std::uint64_t i = 0; i < count; ++i) {
        model.children.push_back(randomModel(dice, nextID, level + 1));
    }
    return model;
}

void build(FileTree& tree, FileNode& node, const Model& model)
{
    std::vector<NodeValues> values;
    for (const Model& child : model.children) {
        values.push_back({child.id, child.name, child.metadata});
    }
    const std::span<FileNode> nodes = tree.addChildren(node, values);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        build(tree, nodes[i], model.children[i]);
    }
}

void finish(Model& model)
{
    model.bytes = model.metadata.isDirectory ? 0 : model.metadata.logicalSize;
    model.onDisk = model.metadata.isDirectory ? 0 : model.metadata.sizeOnDisk;
    model.files = model.metadata.isRegularFile ? 1 : 0;
    model.directories = model.metadata.isDirectory ? 1 : 0;
    for (Model& child : model.children) {
        finish(child);
        model.bytes += child.bytes;
        model.onDisk += child.onDisk;
        model.files += child.files;
        model.directories += child.directories;
    }
    std::stable_sort(model.children.begin(), model.children.end(),
                     [](const Model& a, const Model& b) {
                         return a.bytes > b.bytes || (a.bytes == b.bytes && a.name < b.name);
                     });
}

void expectSame(const FileNode& node, const Model& model)
{
    ASSERT_EQ(node.id(), model.id);
    ASSERT_EQ(node.name(), model.name);
    EXPECT_EQ(node.scannedBytes(), model.bytes);
    EXPECT_EQ(node.scannedBytesOnDisk(), model.onDisk);
    EXPECT_EQ(node.fileCount(), model.files);
    EXPECT_EQ(node.directoryCount(), model.directories);
    ASSERT_EQ(node.children().size(), model.children.size());
    EXPECT_EQ(node.largestChild(), node.children().empty() ? nullptr : &node.children()[0]);
    for (std::size_t i = 0; i < model.children.size(); ++i) {
        EXPECT_EQ(node.children()[i].parent(), &node);
        ASSERT_NO_FATAL_FAILURE(expectSame(node.children()[i], model.children[i]));
    }
}

class RandomFinalPass : public testing::TestWithParam<int>
{};

TEST_P(RandomFinalPass, GivesTheSumsAndTheOrderOfAStableSort)
{
    test::Dice dice(static_cast<std::uint64_t>(GetParam()));
    std::int64_t nextID = 0;
    Model model = randomModel(dice, nextID, 0);
    const auto tree = FileTree::create(FilePath("/r"), {model.id, model.name, model.metadata});
    build(*tree, tree->root(), model);
    tree->root().finalizeTree();
    finish(model);
    expectSame(tree->root(), model);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomFinalPass, testing::Range(1, 41));

} // namespace
} // namespace quorvane
