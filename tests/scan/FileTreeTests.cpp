// SPDX-License-Identifier: MIT
#include "FileTree.h"

#include "RandomTree.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace quorvane {
namespace {

using test::nodeAt;
using test::treeFromText;

/// The hash by 128-bit arithmetic, cut to 64 bits at each step.
std::int64_t wrappedHash(const std::string& url)
{
    __extension__ using Wide = unsigned __int128;
    Wide hash = 5381;
    for (const char byte : url) {
        hash = (hash * 31 + static_cast<unsigned char>(byte)) %
               (Wide{std::numeric_limits<std::uint64_t>::max()} + 1);
    }
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(hash));
}

TEST(StagedItem, IsAFreeStandingFolderOfThatManyBytesWithoutADate)
{
    const NodePointer item = FileTree::stagedItem("Caches", FilePath("/home/u/Caches"), 12345);
    EXPECT_EQ(item->name(), "Caches");
    EXPECT_EQ(item->path(), FilePath("/home/u/Caches"));
    EXPECT_TRUE(item->isDirectory());
    EXPECT_FALSE(item->isRegularFile());
    EXPECT_FALSE(item->isSymbolicLink());
    EXPECT_EQ(item->logicalSize(), 12345);
    EXPECT_EQ(item->sizeOnDisk(), 12345);
    EXPECT_EQ(item->scannedBytes(), 12345);
    EXPECT_EQ(item->scannedBytesOnDisk(), 12345);
    EXPECT_EQ(item->fileCount(), 0);
    EXPECT_EQ(item->directoryCount(), 1);
    EXPECT_EQ(item->dateModified(), std::nullopt);
    EXPECT_EQ(item->parent(), nullptr);
    EXPECT_TRUE(item->children().empty());
    EXPECT_FALSE(item->isStagedForTrash());
}

TEST(StagedItem, EmptyUrlGivesTheStartOfTheHash)
{
    EXPECT_EQ(FileTree::stagedItem("x", FilePath(), 1)->id(), 5381);
}

TEST(StagedItem, IdIsTheHashOfTheUrlsBytes)
{
    // "file:///a" by hand: 5381 and nine steps of times 31 plus the byte.
    std::int64_t expected = 5381;
    for (const int byte : {'f', 'i', 'l', 'e', ':', '/', '/', '/', 'a'}) {
        expected = expected * 31 + byte;
    }
    EXPECT_EQ(FileTree::stagedItem("a", FilePath("/a"), 1)->id(), expected);
}

TEST(StagedItem, UrlIsPercentEncodedBeforeItIsHashed)
{
    EXPECT_EQ(FileTree::stagedItem(" ", FilePath("/ "), 1)->id(),
              std::max<std::int64_t>(wrappedHash("file:///%20"), 2));
}

TEST(StagedItem, LongUrlsWrapAndNegativeHashesBecomeTwo)
{
    int negative = 0;
    int positive = 0;
    for (int length = 20; length < 84; ++length) {
        const std::string name(static_cast<std::size_t>(length), 'q');
        const std::int64_t hash = wrappedHash("file:///" + name);
        const std::int64_t id = FileTree::stagedItem(name, FilePath("/" + name), 1)->id();
        EXPECT_EQ(id, hash > 2 ? hash : 2) << length;
        ++(hash > 2 ? positive : negative);
    }
    EXPECT_GT(negative, 0);
    EXPECT_GT(positive, 0);
}

TEST(FileTree, ChildrenComeInTheGivenOrderWithTheirValues)
{
    const auto tree = treeFromText("");
    ItemMetadata metadata;
    metadata.isSymbolicLink = true;
    metadata.logicalSize = 9;
    metadata.sizeOnDisk = 512;
    metadata.dateModified = -5;
    const NodeValues values[] = {{7, "link", metadata}, {8, "", ItemMetadata{}}};
    const std::span<FileNode> nodes = tree->addChildren(tree->root(), values);
    ASSERT_EQ(nodes.size(), 2U);
    EXPECT_EQ(nodes[0].id(), 7);
    EXPECT_EQ(nodes[0].name(), "link");
    EXPECT_TRUE(nodes[0].isSymbolicLink());
    EXPECT_EQ(nodes[0].logicalSize(), 9);
    EXPECT_EQ(nodes[0].sizeOnDisk(), 512);
    EXPECT_EQ(nodes[0].dateModified(), -5);
    EXPECT_EQ(nodes[0].parent(), &tree->root());
    EXPECT_EQ(nodes[1].name(), "");
    EXPECT_EQ(nodes[1].dateModified(), std::nullopt);
}

TEST(FileTree, FileTakesNoChildren)
{
    const auto tree = treeFromText("a 1\n");
    const NodeValues values[] = {{2, "b", ItemMetadata{}}};
    EXPECT_TRUE(tree->addChildren(nodeAt(tree->root(), "a"), values).empty());
    EXPECT_TRUE(nodeAt(tree->root(), "a").children().empty());
}

TEST(FileTree, NamesAreCopied)
{
    const auto tree = treeFromText("");
    std::string name = "before";
    const NodeValues values[] = {{1, name, ItemMetadata{}}};
    const FileNode& node = tree->addChildren(tree->root(), values)[0];
    name = "change";
    EXPECT_EQ(node.name(), "before");
}

TEST(FileTree, HoldingOneNodeHoldsTheWholeTree)
{
    auto tree = treeFromText("a/\n  b 4\n");
    const std::weak_ptr<FileTree> watch = tree;
    NodePointer held(tree->rootPointer(), &nodeAt(tree->root(), "a/b"));
    tree.reset();
    ASSERT_FALSE(watch.expired());
    EXPECT_EQ(held->parent()->parent()->scannedBytes(), 4);
    EXPECT_EQ(held->path(), FilePath("/scan/a/b"));
    held.reset();
    EXPECT_TRUE(watch.expired());
}

TEST(FileTree, FoldersAreFilledFromSeveralThreadsAtOnce)
{
    constexpr int folders = 8;
    constexpr int files = 3000;
    const auto tree = treeFromText("");
    ItemMetadata folder;
    folder.isDirectory = true;
    std::vector<NodeValues> values;
    for (int i = 0; i < folders; ++i) {
        values.push_back({1 + i, "folder", folder});
    }
    const std::span<FileNode> nodes = tree->addChildren(tree->root(), values);
    std::vector<std::thread> threads;
    for (FileNode& node : nodes) {
        threads.emplace_back([&node, &arena = tree->addArena()] {
            std::vector<NodeValues> own;
            ItemMetadata file;
            file.isRegularFile = true;
            file.logicalSize = node.id();
            for (int i = 0; i < files; ++i) {
                own.push_back({100 + node.id() * files + i, "a file of some length", file});
            }
            FileTree::addChildren(node, own, arena);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    tree->root().finalizeTree();
    EXPECT_EQ(tree->root().fileCount(), folders * files);
    // Folder i holds files of i bytes each: 3000 × (1 + 2 + … + 8).
    EXPECT_EQ(tree->root().scannedBytes(), files * 36);
    // Every node and every name has its own room.
    EXPECT_GE(tree->byteSize(), std::size_t{folders} * files * (sizeof(FileNode) + 21));
}

TEST(FileTree, EntryTakesAtMostNinetyBytesWithItsName)
{
    const auto tree = treeFromText("");
    const std::size_t before = tree->byteSize();
    ItemMetadata file;
    file.isRegularFile = true;
    std::vector<NodeValues> values;
    for (int i = 0; i < 1000; ++i) {
        values.push_back({i + 1, "0123456789abcdef", file});
    }
    tree->addChildren(tree->root(), values);
    EXPECT_LE(tree->byteSize() - before, 1000U * 90);
}

TEST(FileTree, RollupsCanBeGivenAsTheyStand)
{
    const auto tree = treeFromText("d/\nf 5 512\n", {.finalize = false});
    FileNode& folder = nodeAt(tree->root(), "d");
    tree->setRollups(folder, {10, 20, 3, 4});
    EXPECT_EQ(folder.scannedBytes(), 10);
    EXPECT_EQ(folder.scannedBytesOnDisk(), 20);
    EXPECT_EQ(folder.fileCount(), 3);
    EXPECT_EQ(folder.directoryCount(), 4);
    FileNode& file = nodeAt(tree->root(), "f");
    tree->setRollups(file, {11, 21, 0, 1});
    EXPECT_EQ(file.scannedBytes(), 11);
    EXPECT_EQ(file.scannedBytesOnDisk(), 21);
    EXPECT_EQ(file.fileCount(), 0);
    EXPECT_EQ(file.directoryCount(), 1);
    EXPECT_EQ(file.logicalSize(), 5);
    EXPECT_EQ(file.sizeOnDisk(), 512);
    EXPECT_TRUE(file.isRegularFile());
    EXPECT_FALSE(file.isDirectory());
    EXPECT_TRUE(file.children().empty());
}

TEST(NodeArena, HandsOutAlignedRoomThatNeverOverlaps)
{
    NodeArena arena;
    struct Piece
    {
        char* start;
        std::size_t size;
    };
    std::vector<Piece> pieces;
    std::size_t asked = 0;
    // Ends of blocks fall between pieces of every size; one piece is larger than a block.
    for (std::size_t i = 0; i < 4000; ++i) {
        const std::size_t size = i == 2000 ? (std::size_t{9} << 20) + 1 : 1 + i * 37 % 4001;
        const std::size_t alignment = std::size_t{1} << i % 4;
        auto* const start = static_cast<char*>(arena.allocate(size, alignment));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(start) % alignment, 0U);
        std::fill_n(start, size, static_cast<char>(i % 251));
        pieces.push_back({start, size});
        asked += size;
    }
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const char mark = static_cast<char>(i % 251);
        ASSERT_EQ(pieces[i].start[0], mark) << i;
        ASSERT_EQ(pieces[i].start[pieces[i].size - 1], mark) << i;
    }
    EXPECT_GE(arena.usedBytes(), asked);
}

TEST(NodeIndex, FindsEveryNodeByItsId)
{
    const auto tree = test::randomTree(11, {.entries = 800});
    const NodeIndex index(tree->root());
    std::size_t seen = 0;
    std::vector<FileNode*> waiting{&tree->root()};
    while (!waiting.empty()) {
        FileNode* const node = waiting.back();
        waiting.pop_back();
        ++seen;
        EXPECT_EQ(index.find(node->id()), node);
        for (FileNode& child : node->children()) {
            waiting.push_back(&child);
        }
    }
    EXPECT_EQ(index.size(), seen);
    EXPECT_FALSE(index.isEmpty());
}

TEST(NodeIndex, KnowsNoOtherId)
{
    const auto tree = treeFromText("a 1\nb@ 2\n");
    const NodeIndex index(tree->root());
    EXPECT_EQ(index.size(), 3U);
    EXPECT_EQ(index.find(3), nullptr);
    EXPECT_EQ(index.find(-1), nullptr);
    EXPECT_EQ(index.find(std::numeric_limits<std::int64_t>::max()), nullptr);
    EXPECT_EQ(index.find(std::numeric_limits<std::int64_t>::min()), nullptr);
}

TEST(NodeIndex, EmptyOneFindsNothing)
{
    const NodeIndex index;
    EXPECT_TRUE(index.isEmpty());
    EXPECT_EQ(index.find(0), nullptr);
}

TEST(NodeIndex, TakesIdsWithGaps)
{
    const auto tree = treeFromText("");
    const NodeValues values[] = {{1000, "far", ItemMetadata{}}};
    FileNode& far = tree->addChildren(tree->root(), values)[0];
    const NodeIndex index(tree->root());
    EXPECT_EQ(index.find(1000), &far);
    EXPECT_EQ(index.find(999), nullptr);
    EXPECT_EQ(index.size(), 2U);
}

TEST(FindNode, GoesByTheNamesFromTheRootDown)
{
    const std::shared_ptr<FileTree> tree = treeFromText("a/\n"
                                                        "  b 1\n"
                                                        "ab 2\n");
    FileNode& root = tree->root();
    const FilePath start = root.path();
    EXPECT_EQ(findNode(root, start), &root);
    EXPECT_EQ(findNode(root, start.appending("a/b")), &nodeAt(root, "a/b"));
    EXPECT_EQ(findNode(root, start.appending("ab")), &nodeAt(root, "ab"));
    EXPECT_EQ(findNode(root, start.appending("a/ab")), nullptr);
    EXPECT_EQ(findNode(root, start.appending("ab/b")), nullptr);
    EXPECT_EQ(findNode(root, FilePath("/elsewhere")), nullptr);
    EXPECT_EQ(findNode(root, FilePath(start.bytes() + "x")), nullptr);
}

} // namespace
} // namespace quorvane
