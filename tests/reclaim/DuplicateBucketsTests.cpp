// SPDX-License-Identifier: MIT
#include "DuplicateBuckets.h"

#include "RandomTree.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <map>

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
            }
            if (!list.back().isDropped() && dice.chance(0.5)) {
                list.back().markSampledWhole();
            }
        }
        std::erase_if(expected, [](const auto& item) { return item.second.size() < 2; });
        std::size_t place = 0;
        Buckets buckets;
        splitByDigest({list, digests}, list, place, buckets);
        std::map<Digest, std::vector<FileNode*>> split;
        std::size_t begin = 0;
        for (const Bucket& bucket : buckets) {
            for (; begin < bucket.end; ++begin) {
                split[bucket.digest].push_back(list[begin].file());
            }
        }
        // The children stand in one array, so that their order is that of their addresses.
        EXPECT_EQ(split, expected) << round;
        EXPECT_EQ(begin, place) << round;
    }
}

TEST(DuplicateBuckets, CandidateKeepsItsFileUnderItsMark)
{
    const auto tree = test::treeFromText("f 1\n");
    Candidate candidate(&tree->root());
    EXPECT_FALSE(candidate.isSampledWhole());
    candidate.markSampledWhole();
    EXPECT_TRUE(candidate.isSampledWhole());
    EXPECT_EQ(candidate.file(), &tree->root());
    EXPECT_FALSE(candidate.isDropped());
    candidate.drop();
    EXPECT_TRUE(candidate.isDropped());
}

} // namespace
} // namespace quorvane::DuplicateFinder
