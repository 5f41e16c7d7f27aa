// SPDX-License-Identifier: MIT
#include "DuplicateIndex.h"

#include "TreeText.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace quorvane {
namespace {

using DuplicateFinder::Group;
using DuplicateFinder::Groups;

class DuplicateIndexTests : public testing::Test
{
protected:
    FileNode* file(const char* name) { return &test::nodeAt(m_tree->root(), name); }
    Group group(std::int64_t bytes, std::vector<FileNode*> files)
    {
        return {bytes, std::move(files), m_tree->rootPointer()};
    }
    static DuplicateIndex index(Groups groups)
    {
        return DuplicateIndex(std::make_shared<const Groups>(std::move(groups)));
    }

    std::shared_ptr<FileTree> m_tree = test::treeFromText("a 10\nb 10\nc 10\nd 20\ne 20\nf 1\n");
};

TEST_F(DuplicateIndexTests, FindsTheGroupOfEachFile)
{
    const DuplicateIndex found =
        index({group(20, {file("e"), file("d")}), group(10, {file("c"), file("a"), file("b")})});
    for (const char* const name : {"d", "e"}) {
        EXPECT_EQ(found.find(file(name)->id()), &(*found.groups())[0]) << name;
    }
    for (const char* const name : {"a", "b", "c"}) {
        EXPECT_EQ(found.find(file(name)->id()), &(*found.groups())[1]) << name;
    }
    EXPECT_EQ(found.find(file("f")->id()), nullptr);
    EXPECT_EQ(found.find(-1), nullptr);
    EXPECT_EQ(found.find(1'000'000), nullptr);
}

TEST_F(DuplicateIndexTests, OfSeveralGroupsWithAFileTheFirstCounts)
{
    const DuplicateIndex found =
        index({group(10, {file("a"), file("b")}), group(10, {file("b"), file("c")}),
               group(10, {file("c"), file("a")})});
    EXPECT_EQ(found.find(file("a")->id()), &(*found.groups())[0]);
    EXPECT_EQ(found.find(file("b")->id()), &(*found.groups())[0]);
    EXPECT_EQ(found.find(file("c")->id()), &(*found.groups())[1]);
}

TEST_F(DuplicateIndexTests, TellsWhatTheGroupsComeTo)
{
    const DuplicateIndex found =
        index({group(20, {file("d"), file("e")}), group(10, {file("a"), file("b"), file("c")})});
    EXPECT_EQ(found.extraCopies(), 1 + 2);
    EXPECT_EQ(found.reclaimableBytes(), 20 + 2 * 10);
    EXPECT_EQ(found.mostCopies(), 3U);
}

TEST_F(DuplicateIndexTests, WithoutGroupsThereIsNothing)
{
    for (const DuplicateIndex& none : {index({}), DuplicateIndex(nullptr)}) {
        EXPECT_EQ(none.find(0), nullptr);
        EXPECT_EQ(none.extraCopies(), 0);
        EXPECT_EQ(none.reclaimableBytes(), 0);
        EXPECT_EQ(none.mostCopies(), 0U);
    }
}

using DuplicateIndexDeathTest = DuplicateIndexTests;

TEST_F(DuplicateIndexDeathTest, ASumBeyondSixtyFourBitsEndsTheProgram)
{
    constexpr std::int64_t half = std::int64_t{1} << 62;
    EXPECT_DEATH(index({group(half, {file("a"), file("b")}), group(half, {file("d"), file("e")})}),
                 "DuplicateIndex::reclaimableBytes");
}

} // namespace
} // namespace quorvane
