// SPDX-License-Identifier: MIT
#include "AgeMap.h"

#include "BloatFilter.h"
#include "LockedFlag.h"
#include "RandomTree.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace quorvane {
namespace {

constexpr std::int64_t mebibyte = 1024 * 1024;

std::string at(const QDateTime& when)
{
    return " @" + std::to_string(when.toSecsSinceEpoch()) + "\n";
}

QDateTime local(int year, int month, int day, int hour = 12, int minute = 0, int second = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second));
}

std::string file(const std::string& name, std::int64_t logical, std::int64_t disk)
{
    return name + ' ' + std::to_string(logical) + ' ' + std::to_string(disk);
}

AgeMap mapOf(const std::string& text, SizeMode mode = SizeMode::logical,
             const BloatKeys& hidden = {})
{
    static std::shared_ptr<FileTree> tree;
    tree = test::treeFromText(text);
    return computeAgeMap(tree->root(), mode, hidden, nullptr, local(2026, 3, 10));
}

std::vector<std::string> untouchedOf(const AgeMap& map)
{
    std::vector<std::string> names;
    for (const FileNode* node : map.untouched) {
        names.emplace_back(node->name());
    }
    return names;
}

TEST(AgeMap, AddsBytesByLocalMonth)
{
    const AgeMap map =
        mapOf("box/\n  a 5 5" + at(local(2025, 2, 1, 0)) + "  b 7 7" +
              at(local(2025, 2, 28, 23, 59, 59)) + "c 11 11" + at(local(2025, 3, 1, 0)));
    ASSERT_EQ(map.buckets.size(), 2U);
    EXPECT_EQ(map.buckets[0], (AgeBucket{QStringLiteral("Feb 2025"), QDate(2025, 2, 1), 12}));
    EXPECT_EQ(map.buckets[1], (AgeBucket{QStringLiteral("Mar 2025"), QDate(2025, 3, 1), 11}));
}

TEST(AgeMap, FileWithoutADateCountsNowhere)
{
    NodeValues root;
    root.name = "scan";
    root.metadata.isDirectory = true;
    const auto tree = FileTree::create(FilePath("/scan"), root);
    NodeValues undated{1, "undated", {}};
    undated.metadata.isRegularFile = true;
    undated.metadata.logicalSize = 90 * mebibyte;
    NodeValues dated = undated;
    dated.id = 2;
    dated.name = "dated";
    dated.metadata.dateModified = 86400;
    tree->addChildren(tree->root(), std::vector{undated, dated});
    tree->root().finalizeTree();
    const AgeMap map =
        computeAgeMap(tree->root(), SizeMode::logical, {}, nullptr, local(2026, 3, 10));
    ASSERT_EQ(map.buckets.size(), 1U);
    EXPECT_EQ(map.buckets[0].bytes, 90 * mebibyte);
    EXPECT_EQ(untouchedOf(map), std::vector<std::string>{"dated"});
}

TEST(AgeMap, SizeModeChoosesTheBytes)
{
    const std::string text = file("a", 100, 4096) + at(local(2025, 2, 1));
    EXPECT_EQ(mapOf(text, SizeMode::logical).buckets.at(0).bytes, 100);
    EXPECT_EQ(mapOf(text, SizeMode::disk).buckets.at(0).bytes, 4096);
}

TEST(AgeMap, FoldersAndHiddenFamiliesCountNowhere)
{
    const std::string text = "node_modules/\n  a.js 9 9" + at(local(2025, 1, 1)) + "empty/\nb 1 1" +
                             at(local(2025, 1, 1));
    const AgeMap map = mapOf(text, SizeMode::logical, BloatKeys{"Node.js"});
    ASSERT_EQ(map.buckets.size(), 1U);
    EXPECT_EQ(map.buckets[0].bytes, 1);
}

TEST(AgeMap, KeepsTheNewestThreeYears)
{
    std::string text;
    for (int i = 0; i < 40; ++i) {
        text += file("f" + std::to_string(i), 1 + i, 1) + at(local(2026, 3, 1).addMonths(-i));
    }
    const AgeMap map = mapOf(text);
    ASSERT_EQ(map.buckets.size(), 36U);
    EXPECT_EQ(map.buckets.back().month, QDate(2026, 3, 1));
    EXPECT_EQ(map.buckets.front().month, QDate(2023, 4, 1));
    EXPECT_EQ(map.buckets.front().bytes, 36);
}

TEST(AgeMap, UntouchedNeedsFiftyMebibytes)
{
    const std::string old = at(local(2020, 1, 1));
    const AgeMap map = mapOf(file("exact", 50 * mebibyte, 0) + old +
                             file("short", 50 * mebibyte - 1, 50 * mebibyte) + old);
    EXPECT_EQ(untouchedOf(map), std::vector<std::string>{"exact"});
}

TEST(AgeMap, UntouchedGoesByTheSizeMode)
{
    const std::string sparse = file("sparse", 60 * mebibyte, 4096) + at(local(2020, 1, 1));
    EXPECT_EQ(mapOf(sparse, SizeMode::logical).untouched.size(), 1U);
    EXPECT_TRUE(mapOf(sparse, SizeMode::disk).untouched.empty());
}

TEST(AgeMap, UntouchedIsOlderThanAYear)
{
    const std::int64_t size = 60 * mebibyte;
    const AgeMap map = mapOf(file("before", size, size) + at(local(2025, 3, 10, 11, 59, 59)) +
                             file("then", size, size) + at(local(2025, 3, 10, 12)) +
                             file("after", size, size) + at(local(2025, 3, 11)));
    EXPECT_EQ(untouchedOf(map), std::vector<std::string>{"before"});
}

TEST(AgeMap, UntouchedRanksBySizeThenNameAndKeepsTwoHundred)
{
    const std::string old = at(local(2020, 1, 1));
    std::string text;
    for (int i = 0; i < 205; ++i) {
        text += file("f" + std::to_string(1000 + i), 50 * mebibyte + i / 2, 0) + old;
    }
    const std::vector<std::string> names = untouchedOf(mapOf(text));
    ASSERT_EQ(names.size(), 200U);
    EXPECT_EQ(names[0], "f1204");
    EXPECT_EQ(names[1], "f1202");
    EXPECT_EQ(names[2], "f1203");
    EXPECT_EQ(names.back(), "f1004");
}

TEST(AgeMap, ReadsDatesThatNoCalendarHas)
{
    const AgeMap map = mapOf("past 1 1 @-9000000000000000000\nfuture 2 2 @9000000000000000000\n"
                             "also 4 4 @9000000000000000001\n");
    ASSERT_EQ(map.buckets.size(), 2U);
    EXPECT_EQ(map.buckets[0].bytes, 1);
    EXPECT_EQ(map.buckets[1].bytes, 6);
}

TEST(AgeMap, StoppedWalkIsEmpty)
{
    LockedFlag stop;
    stop.set(true);
    const auto tree = test::treeFromText("a 5 5\n");
    const AgeMap map = computeAgeMap(tree->root(), SizeMode::disk, {}, &stop);
    EXPECT_TRUE(map.buckets.empty());
}

TEST(AgeMap, MonthsHoldAllBytesOfRandomTrees)
{
    for (std::uint64_t seed = 1; seed <= 10; ++seed) {
        const auto tree = test::randomTree(seed);
        std::map<QDate, std::int64_t> expected;
        std::vector<const FileNode*> open{&tree->root()};
        while (!open.empty()) {
            const FileNode* node = open.back();
            open.pop_back();
            if (!node->isDirectory()) {
                const QDate day = QDateTime::fromSecsSinceEpoch(*node->dateModified()).date();
                expected[QDate(day.year(), day.month(), 1)] += node->sizeOnDisk();
            }
            for (const FileNode& child : node->children()) {
                open.push_back(&child);
            }
        }
        while (expected.size() > AgeMap::shownMonths) {
            expected.erase(expected.begin());
        }
        std::map<QDate, std::int64_t> found;
        for (const AgeBucket& bucket : computeAgeMap(tree->root(), SizeMode::disk, {}).buckets) {
            found[bucket.month] = bucket.bytes;
        }
        EXPECT_EQ(found, expected) << "seed " << seed;
    }
}

} // namespace
} // namespace quorvane
