// SPDX-License-Identifier: MIT
#include "Candidates.h"

#include "RandomTree.h"
#include "TrashFolders.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <vector>

namespace quorvane::DuplicateFinder {
namespace {

std::size_t oneWord(const Candidate&)
{
    return 1;
}
std::size_t threeWords(const Candidate&)
{
    return 3;
}

TEST(Candidates, SplitAgreesWithAMap)
{
    test::Dice dice(11);
    for (int round = 0; round < 100; ++round) {
        std::string text;
        const std::uint64_t count = dice.below(200);
        for (std::uint64_t i = 0; i < count; ++i) {
            text += "f" + std::to_string(i) + " 1\n";
        }
        const auto tree = test::treeFromText(text);
        const bool isWhole = dice.chance(0.5);
        Candidates list;
        // By the bucket that a file was in and by its key.
        std::map<std::pair<int, Key>, std::set<FileNode*>> expected;
        int bucket = 0;
        for (FileNode& node : tree->root().children()) {
            list.emplace_back(node).key = {dice.below(3), dice.below(3), dice.below(2)};
            Key key = list.back().key;
            if (!isWhole) {
                key[1] = key[2] = 0;
            }
            const bool ends = list.size() == count || dice.chance(0.1);
            list.back().setEndsBucket(ends);
            if (dice.chance(0.2)) {
                list.back().drop();
            } else {
                expected[{bucket, key}].insert(&node);
            }
            bucket += ends ? 1 : 0;
        }
        std::erase_if(expected, [](const auto& item) { return item.second.size() < 2; });
        std::set<std::set<FileNode*>> groups;
        for (const auto& item : expected) {
            groups.insert(item.second);
        }
        list.resize(splitBuckets(list, 0, list.size(), 0, isWhole ? threeWords : oneWord),
                    Candidate(tree->root()));
        std::set<std::set<FileNode*>> found;
        for (std::size_t begin = 0; begin < list.size();) {
            const std::size_t end = bucketEnd(list, begin);
            std::set<FileNode*> files;
            for (; begin < end; ++begin) {
                files.insert(list[begin].file());
            }
            EXPECT_TRUE(found.insert(files).second);
        }
        EXPECT_EQ(found, groups) << round;
    }
}

TEST(Candidates, CandidateKeepsItsFileUnderItsMarks)
{
    const auto tree = test::treeFromText("f 1\n");
    for (int marks = 0; marks < 8; ++marks) {
        Candidate candidate(tree->root());
        candidate.setLinked((marks & 1) != 0);
        candidate.setEndsBucket((marks & 2) != 0);
        candidate.setBrokenOff((marks & 4) != 0);
        EXPECT_EQ(candidate.isLinked(), (marks & 1) != 0);
        EXPECT_EQ(candidate.endsBucket(), (marks & 2) != 0);
        EXPECT_EQ(candidate.isBrokenOff(), (marks & 4) != 0);
        EXPECT_EQ(candidate.file(), &tree->root());
        EXPECT_FALSE(candidate.isDropped());
        candidate.drop();
        EXPECT_TRUE(candidate.isDropped());
        EXPECT_FALSE(candidate.isLinked() || candidate.isBrokenOff());
        EXPECT_EQ(candidate.endsBucket(), (marks & 2) != 0);
    }
}

TEST(TrashFolders, AreTheOnesOfHomesAndOfTheTopsOfMounts)
{
    const TrashFolders trash(FilePath("/data/me"), FilePath("/home/me"),
                             std::vector{FilePath("/"), FilePath("/media/stick")});
    for (const char* path :
         {"/data/me/Trash", "/home/you/.local/share/Trash", "/home/me/.Trash", "/.Trash-1000",
          "/media/stick/.Trash-0", "/media/stick/.Trash/1000", "/media/stick/.Trashes"}) {
        EXPECT_TRUE(trash.isTrash(FilePath(path))) << path;
        EXPECT_TRUE(TrashFolders::mayBeTrash(FilePath(path).lastComponent())) << path;
        EXPECT_TRUE(trash.isInTrash(FilePath(path))) << path;
        EXPECT_TRUE(trash.isInTrash(FilePath(path).appending("files").appending("a"))) << path;
    }
    for (const char* path :
         {"/", "/home/me/Trash", "/media/stick/copy/.Trash-1000", "/media/stick/.Trash-me",
          "/media/stick/.Trash-", "/media/stick/.Trash", "/media/stick/.Trash/me",
          "/media/stick/1000", "/media/.Trash/1000", "/home/you/.Trash"}) {
        EXPECT_FALSE(trash.isTrash(FilePath(path))) << path;
        EXPECT_FALSE(trash.isInTrash(FilePath(path))) << path;
    }
}

TEST(TrashFolders, WithoutATableOfMountsEveryFolderMayBeTheTopOfOne)
{
    const TrashFolders trash(FilePath("/data"), FilePath("/home/me"), std::nullopt);
    EXPECT_TRUE(trash.isTrash(FilePath("/media/stick/.Trash-1000")));
    EXPECT_TRUE(trash.isTrash(FilePath("/media/stick/.Trash/1000")));
    EXPECT_FALSE(trash.isTrash(FilePath("/media/stick/Trash")));
}

} // namespace
} // namespace quorvane::DuplicateFinder
