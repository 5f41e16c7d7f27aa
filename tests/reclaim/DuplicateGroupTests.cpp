// SPDX-License-Identifier: MIT
#include "DuplicateFinder.h"

#include "GroupTexts.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <limits>

namespace quorvane::DuplicateFinder {
namespace {

using test::nodeAt;
using test::treeFromText;

std::vector<QString> topFolders(const Group& group)
{
    return {group.topFolders().begin(), group.topFolders().end()};
}

std::vector<FileNode*> nodes(FileTree& tree, const std::vector<std::string_view>& paths)
{
    std::vector<FileNode*> found;
    for (const std::string_view path : paths) {
        found.push_back(&nodeAt(tree.root(), path));
    }
    return found;
}

TEST(DuplicateGroup, ThreeCopiesOf2048BytesGive4096BytesBack)
{
    const auto tree = treeFromText("a 2048\nb 2048\nc 2048\n");
    const Group group(2048, nodes(*tree, {"b", "a", "c"}), tree->rootPointer());
    EXPECT_EQ(group.bytes(), 2048);
    EXPECT_EQ(group.reclaimableBytes(), 4096);
    EXPECT_EQ(group.formattedSize(), QStringLiteral("2.0 KB"));
    EXPECT_EQ(group.formattedReclaimable(), QStringLiteral("4.0 KB"));
}

TEST(DuplicateGroup, IdNamesSizeFirstFileAndCount)
{
    const auto tree = treeFromText("a 2048\nb 2048\nc 2048\n");
    // Ids count up from 1 in the order of the lines.
    EXPECT_EQ(Group(2048, nodes(*tree, {"c", "b"}), tree->rootPointer()).id(),
              QStringLiteral("dup-2048-2-2"));
    EXPECT_EQ(Group(7, {}, tree->rootPointer()).id(), QStringLiteral("dup-7-0-0"));
}

TEST(DuplicateGroup, EmptyListHasNothingNewestAndNothingToGain)
{
    const Group group(5000, {}, nullptr);
    EXPECT_EQ(group.newestFile(), nullptr);
    EXPECT_EQ(group.reclaimableBytes(), 0);
    EXPECT_EQ(group.folderCount(), 0);
    EXPECT_TRUE(group.topFolders().empty());
}

TEST(DuplicateGroup, NewestFileIsTheFirstOfTheLatest)
{
    const auto tree = treeFromText("a 9 9 @50\nb 9 9 @70\nc 9 9 @70\nd 9 9 @60\n");
    const Group group(9, nodes(*tree, {"d", "c", "b", "a"}), tree->rootPointer());
    EXPECT_EQ(group.newestFile()->name(), "b");
}

TEST(DuplicateGroup, NewestFileIsTheLiveOneAndNotItsBackup)
{
    const auto tree = treeFromText("a/\n  backup/\n    f 9 9 @70\nz/\n  f 9 9 @70\n");
    const Group group(9, nodes(*tree, {"a/backup/f", "z/f"}), tree->rootPointer());
    EXPECT_EQ(group.newestFile(), &nodeAt(tree->root(), "z/f"));
}

TEST(DuplicateGroup, MarksAreOfTheirFilesAlone)
{
    const auto tree = treeFromText("a 9 9 @50\nb 9 9 @70\nc 9 9 @60\nd 9\n");
    const auto files = nodes(*tree, {"c", "b", "a"});
    GroupTexts texts;
    const Group group(9, files, tree->rootPointer(), texts, {{files[0], files[2]}, {files[1]}});
    EXPECT_TRUE(group.isSameFile(*files[0]));
    EXPECT_FALSE(group.isSameFile(*files[1]));
    EXPECT_TRUE(group.isSameFile(*files[2]));
    EXPECT_TRUE(group.isBrokenOff(*files[1]));
    EXPECT_FALSE(group.isBrokenOff(*files[0]));
    EXPECT_FALSE(group.isSameFile(nodeAt(tree->root(), "d")));
    // The latest one cannot be read whole.
    EXPECT_EQ(group.newestFile(), files[0]);
    const Group plain(9, files, tree->rootPointer());
    EXPECT_FALSE(plain.isSameFile(*files[0]) || plain.isBrokenOff(*files[1]));
}

TEST(DuplicateGroup, MissingDateCountsAsOlderThanAny)
{
    const auto tree = treeFromText("a 9 9 @-4000000000\n", {.rootPath = FilePath("/b")});
    const NodePointer dateless = FileTree::stagedItem("x", FilePath("/x"), 9);
    const NodePointer other = FileTree::stagedItem("y", FilePath("/y"), 9);
    FileNode* const dated = &nodeAt(tree->root(), "a");
    EXPECT_EQ(Group(9, {dateless.get(), dated}, tree->rootPointer()).newestFile(), dated);
    EXPECT_EQ(Group(9, {dateless.get(), other.get()}, dateless).newestFile(), dateless.get());
}

TEST(DuplicateGroup, FoldersOfOneNameAreCountedApart)
{
    const auto tree = treeFromText("a/\n  x/\n    f 1\nb/\n  x/\n    f 1\nc/\n  y/\n    f 1\n");
    const Group group(1, nodes(*tree, {"a/x/f", "b/x/f", "c/y/f"}), tree->rootPointer());
    EXPECT_EQ(group.folderCount(), 3);
    EXPECT_EQ(topFolders(group), (std::vector{QStringLiteral("x"), QStringLiteral("x")}));
}

TEST(DuplicateGroup, CopiesInOneFolderCountItOnce)
{
    const auto tree = treeFromText("a/\n  f 1\n  g 1\nh 1\n");
    const Group group(1, nodes(*tree, {"a/f", "a/g", "h"}), tree->rootPointer());
    EXPECT_EQ(group.folderCount(), 2);
    EXPECT_EQ(topFolders(group), (std::vector{QStringLiteral("scan"), QStringLiteral("a")}));
}

TEST(DuplicateGroup, FolderAtTheTopIsASlash)
{
    const auto tree = treeFromText("f 1\ng 1\n", {.rootPath = FilePath("/")});
    EXPECT_EQ(topFolders(Group(1, nodes(*tree, {"f", "g"}), tree->rootPointer())),
              std::vector{QStringLiteral("/")});
}

TEST(DuplicateGroup, GroupsShareTheTextsThatAreEqual)
{
    const auto tree = treeFromText("a/\n  f 5000\n  g 5000\nb/\n  f 5000\n  g 5000\n  h 5000\n");
    GroupTexts texts;
    const Group pair(5000, nodes(*tree, {"a/f", "b/f"}), tree->rootPointer(), texts);
    const Group three(5000, nodes(*tree, {"b/g", "a/g", "b/h"}), tree->rootPointer(), texts);
    EXPECT_EQ(topFolders(pair), (std::vector{QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_EQ(topFolders(three), (std::vector{QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_EQ(three.formattedSize(), QStringLiteral("4.9 KB"));
    EXPECT_EQ(three.formattedReclaimable(), QStringLiteral("9.8 KB"));
    // The very characters.
    EXPECT_EQ(pair.formattedSize().constData(), pair.formattedReclaimable().constData());
    EXPECT_EQ(pair.formattedSize().constData(), three.formattedSize().constData());
    EXPECT_EQ(pair.topFolders()[0].constData(), three.topFolders()[0].constData());
}

TEST(DuplicateGroup, KeepsItsTreeAlive)
{
    auto tree = treeFromText("a 9\nb 9\n");
    const std::weak_ptr<FileTree> watch = tree;
    {
        const Group group(9, nodes(*tree, {"a", "b"}), tree->rootPointer());
        tree.reset();
        EXPECT_EQ(group.files().front()->name(), "a");
    }
    EXPECT_TRUE(watch.expired());
}

TEST(DuplicateGroup, EqualityIsThatOfSizeAndFiles)
{
    const auto tree = treeFromText("a 9\nb 9\nc 9\n");
    const Group group(9, nodes(*tree, {"a", "b"}), tree->rootPointer());
    EXPECT_EQ(group, Group(9, nodes(*tree, {"a", "b"}), tree->rootPointer()));
    EXPECT_FALSE(group == Group(9, nodes(*tree, {"a", "c"}), tree->rootPointer()));
    EXPECT_FALSE(group == Group(8, nodes(*tree, {"a", "b"}), tree->rootPointer()));
}

TEST(DuplicateGroup, ProductBeyond64BitsEndsTheProgram)
{
    const auto tree = treeFromText("a 9\nb 9\nc 9\n");
    EXPECT_DEATH(Group(std::numeric_limits<std::int64_t>::max(), nodes(*tree, {"a", "b", "c"}),
                       tree->rootPointer()),
                 "byte sum overflows in DuplicateFinder.reclaimableBytes");
}

} // namespace
} // namespace quorvane::DuplicateFinder
