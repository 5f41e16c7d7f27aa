// SPDX-License-Identifier: MIT
#include "SnapshotDiff.h"

#include "RandomTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <map>

namespace quorvane {
namespace {

using ::testing::ElementsAre;

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

ScanSnapshot of(std::vector<ScanSnapshot::Entry> items)
{
    ScanSnapshot snapshot;
    snapshot.items = std::move(items);
    return snapshot;
}

std::vector<std::string> paths(const std::vector<SnapshotDiff>& rows)
{
    std::vector<std::string> result;
    for (const SnapshotDiff& row : rows) {
        result.push_back(row.path);
    }
    return result;
}

TEST(SnapshotDiff, TheLargestChangesLeadInEitherDirection)
{
    const auto rows = diff(of({{"/same", 900}, {"/gone", 500}, {"/less", 80}}),
                           of({{"/same", 900}, {"/new", 700}, {"/less", 60}}));
    EXPECT_THAT(paths(rows), ElementsAre("/new", "/gone", "/less", "/same"));
    EXPECT_EQ(rows[0].pastBytes, 0);
    EXPECT_EQ(rows[0].presentBytes, 700);
    EXPECT_EQ(rows[0].presentItem, 1U);
    EXPECT_EQ(rows[1].presentBytes, 0);
    EXPECT_EQ(rows[1].presentItem, SnapshotDiff::noItem);
    EXPECT_EQ(rows[1].formattedDelta(), QStringLiteral("−500 B"));
    EXPECT_EQ(rows[2].deltaBytes(), -20);
    EXPECT_EQ(rows[3].formattedDelta(), QStringLiteral("+0 B"));
    EXPECT_EQ(rows[3].formattedPast(), QStringLiteral("900 B"));
    EXPECT_EQ(netChange(rows), 180);
}

TEST(SnapshotDiff, EqualChangesKeepTheOrderOfTheSnapshots)
{
    EXPECT_THAT(paths(diff(of({{"/b", 5}, {"/a", 5}}), of({{"/d", 5}, {"/a", 10}, {"/c", 5}}))),
                ElementsAre("/b", "/a", "/d", "/c"));
}

TEST(SnapshotDiff, OfEntriesWithOnePathTheLastCounts)
{
    const auto rows = diff(of({{"/a", 5}, {"/a", 7}}), of({{"/a", 1}, {"/a", 2}}));
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].pastBytes, 7);
    EXPECT_EQ(rows[0].presentBytes, 2);
    EXPECT_EQ(rows[0].presentItem, 1U);
}

TEST(SnapshotDiff, SizesMadeUpByHandDoNotOverflow)
{
    const auto rows = diff(of({{"/a", 0}, {"/b", 0}, {"/c", largest}}),
                           of({{"/a", largest}, {"/b", largest}, {"/c", 0}}));
    EXPECT_EQ(netChange(std::span(rows).first(2)), largest);
    const auto lost = diff(of({{"/a", largest}, {"/b", largest}}), of({}));
    EXPECT_EQ(netChange(lost), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(netChangeText(netChange(lost)), QStringLiteral("Net change −8192.0 PB"));
}

TEST(SnapshotDiff, TheNetChangeSaysWhichWayItGoes)
{
    EXPECT_EQ(netChangeText(0), QStringLiteral("Net growth +0 B"));
    EXPECT_EQ(netChangeText(1536), QStringLiteral("Net growth +1.5 KB"));
    EXPECT_EQ(netChangeText(-1), QStringLiteral("Net change −1 B"));
}

TEST(SnapshotDiff, AgreesWithAPlainComparisonOnRandomSnapshots)
{
    test::Dice dice(20260202);
    for (int round = 0; round < 200; ++round) {
        const auto random = [&] {
            std::vector<ScanSnapshot::Entry> items;
            for (std::uint64_t i = dice.below(30); i > 0; --i) {
                items.push_back({'/' + std::to_string(dice.below(20)),
                                 static_cast<std::int64_t>(dice.below(5))});
            }
            return of(items);
        };
        const ScanSnapshot past = random();
        const ScanSnapshot present = random();
        std::map<std::string, std::pair<std::int64_t, std::int64_t>> expected;
        for (const auto& entry : past.items) {
            expected[entry.path].first = entry.bytes;
        }
        for (const auto& entry : present.items) {
            expected[entry.path].second = entry.bytes;
        }
        const auto rows = diff(past, present);
        ASSERT_EQ(rows.size(), expected.size());
        for (std::size_t i = 0; i < rows.size(); ++i) {
            ASSERT_EQ(std::pair(rows[i].pastBytes, rows[i].presentBytes), expected[rows[i].path]);
            ASSERT_TRUE(i == 0 ||
                        std::abs(rows[i - 1].deltaBytes()) >= std::abs(rows[i].deltaBytes()));
        }
    }
}

} // namespace
} // namespace quorvane
