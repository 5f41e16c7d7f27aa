// SPDX-License-Identifier: MIT
#include "DuplicateBuckets.h"

#include "FileDigester.h"
#include "RandomTree.h"
#include "ShortDigests.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <bit>
#include <map>
#include <set>

namespace quorvane::DuplicateFinder {
namespace {

Digest digestOf(unsigned number)
{
    Digest digest = {};
    digest[31] = static_cast<unsigned char>(number);
    digest[0] = static_cast<unsigned char>(number >> 8);
    return digest;
}

TEST(DuplicateBuckets, SplitAgreesWithAMap)
{
    test::Dice dice(11);
    for (int round = 0; round < 50; ++round) {
        std::string text;
        const std::uint64_t count = dice.below(200);
        for (std::uint64_t i = 0; i < count; ++i) {
            text += "f" + std::to_string(i) + " 1\n";
        }
        const auto tree = test::treeFromText(text);
        std::vector<Candidate> list;
        std::vector<Digest> digests;
        std::map<Digest, std::vector<FileNode*>> expected;
        const std::uint64_t kinds = 1 + dice.below(100);
        for (FileNode& node : tree->root().children()) {
            list.emplace_back(&node);
            digests.push_back(digestOf(static_cast<unsigned>(dice.below(kinds) * 37)));
            if (dice.chance(0.2)) {
                list.back().drop();
            } else {
                expected[digests.back()].push_back(&node);
                list.back().setSampleOfUse(dice.chance(0.5));
                list.back().setEndsBucket(dice.chance(0.5));
                list.back().setSettled(dice.chance(0.5));
            }
        }
        std::set<FileNode*> expectedAlone;
        std::set<FileNode*> alone;
        for (const auto& item : expected) {
            if (item.second.size() == 1) {
                expectedAlone.insert(item.second.front());
            }
        }
        std::erase_if(expected, [](const auto& item) { return item.second.size() < 2; });
        std::size_t place = 0;
        std::map<Digest, std::vector<FileNode*>> split;
        std::size_t begin = 0;
        splitByKey<Digest>(
            {list, digests}, list, place,
            [&](Candidate& last, const Digest& digest) {
                EXPECT_EQ(&last, &list[place - 1]);
                for (; begin < place; ++begin) {
                    EXPECT_EQ(list[begin].endsBucket(), begin == place - 1);
                    EXPECT_FALSE(list[begin].isSettled());
                    split[digest].push_back(list[begin].file());
                }
            },
            [&](const Candidate& file) { alone.insert(file.file()); });
        // The children stand in one array, so that their order is that of their addresses.
        EXPECT_EQ(split, expected) << round;
        EXPECT_EQ(alone, expectedAlone) << round;
        EXPECT_EQ(begin, place) << round;
    }
}

TEST(DuplicateBuckets, CandidateKeepsItsFileUnderItsMarks)
{
    const auto tree = test::treeFromText("f 1\n");
    for (int marks = 0; marks < 8; ++marks) {
        Candidate candidate(&tree->root());
        candidate.setSampleOfUse((marks & 1) != 0);
        candidate.setEndsBucket((marks & 2) != 0);
        candidate.setSettled((marks & 4) != 0);
        EXPECT_EQ(candidate.isSampleOfUse(), (marks & 1) != 0);
        EXPECT_EQ(candidate.endsBucket(), (marks & 2) != 0);
        EXPECT_EQ(candidate.isSettled(), (marks & 4) != 0);
        EXPECT_EQ(candidate.file(), &tree->root());
        EXPECT_FALSE(candidate.isDropped());
        candidate.setSampleOfUse(false);
        candidate.setEndsBucket(false);
        candidate.setSettled(false);
        EXPECT_FALSE(candidate.isSampleOfUse() || candidate.endsBucket() || candidate.isSettled());
        candidate.drop();
        EXPECT_TRUE(candidate.isDropped());
    }
}

TEST(ShortDigests, KnowTheFirstOnesWhole)
{
    ShortDigests digests(6, 2);
    EXPECT_TRUE(digests.note(0, digestOf(1)));
    EXPECT_TRUE(digests.note(3, digestOf(2)));
    EXPECT_FALSE(digests.note(1, digestOf(0x300)));
    EXPECT_TRUE(digests.note(2, digestOf(1)));
    EXPECT_FALSE(digests.note(4, digestOf(0x300)));
    EXPECT_FALSE(digests.note(5, digestOf(0x400)));
    const std::span<ShortDigests::Key> keys = digests.keys();
    EXPECT_EQ(keys[0], keys[2]);
    EXPECT_EQ(keys[1], keys[4]);
    EXPECT_EQ((std::set<ShortDigests::Key>(keys.begin(), keys.end())).size(), 4U);
    for (const std::size_t place : {0U, 2U, 3U}) {
        EXPECT_TRUE(ShortDigests::isWhole(keys[place]));
        EXPECT_EQ(digests.whole(keys[place]), digestOf(place == 3 ? 2 : 1));
    }
    for (const std::size_t place : {1U, 4U, 5U}) {
        EXPECT_FALSE(ShortDigests::isWhole(keys[place]));
    }
}

TEST(ShortDigests, PartsOfDifferentDigestsMayBeEqual)
{
    ShortDigests digests(2, 0);
    // They differ in their last byte alone, of which nothing is kept.
    EXPECT_FALSE(digests.note(0, digestOf(1)));
    EXPECT_FALSE(digests.note(1, digestOf(2)));
    EXPECT_EQ(digests.keys()[0], digests.keys()[1]);
}

TEST(ShortDigests, KeepAsManyBitsOfAPartAsTheyAreTold)
{
    for (const unsigned bits : {1U, 5U, 62U, 63U}) {
        ShortDigests digests(2, 0, bits);
        Digest all;
        all.fill(0xFF);
        digests.note(0, all);
        digests.note(1, digestOf(0));
        // One more tells it from a key that stands for a whole digest.
        EXPECT_EQ(std::popcount(digests.keys()[0]), static_cast<int>(bits) + 1);
        EXPECT_EQ(std::popcount(digests.keys()[1]), 1);
    }
}

} // namespace
} // namespace quorvane::DuplicateFinder
