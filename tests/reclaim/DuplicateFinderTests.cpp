// SPDX-License-Identifier: MIT
#include "FinderFixture.h"
#include "RandomTree.h"
#include "TrashFolders.h"

#include <chrono>
#include <condition_variable>
#include <iterator>
#include <map>
#include <thread>

namespace quorvane {
namespace {

using DuplicateFinder::Pass;
using test::FinderTest;
using test::GroupPaths;
using test::textOf;

constexpr std::size_t wholeSampled = 524288;

TEST_F(FinderTest, NothingLargeEnoughOpensNothing)
{
    tree("a 1023\nb 1023\nc 0\nd 0\n");
    EXPECT_EQ(found(), GroupPaths());
    EXPECT_EQ(m_progress, (std::vector{0.06, 1.0}));
    EXPECT_EQ(m_contents.openedInAll(), 0);
}

TEST_F(FinderTest, DifferentSizesOpenNothing)
{
    tree("a 5000\nb 5001\nsub/\n  c 5002\n");
    EXPECT_EQ(found(), GroupPaths());
    EXPECT_EQ(m_progress, (std::vector{0.06, 1.0}));
    EXPECT_EQ(m_contents.openedInAll(), 0);
}

TEST_F(FinderTest, FilesOf1024BytesAreCompared)
{
    tree("a 1024\nb 1024\nc 1023\nd 1023\n");
    for (const char* name : {"a", "b"}) {
        contents(name, textOf('q', 1024));
    }
    for (const char* name : {"c", "d"}) {
        contents(name, textOf('q', 1023));
    }
    EXPECT_EQ(found(), (GroupPaths{{"a", "b"}}));
    EXPECT_EQ(m_contents.opened("/scan/c"), 0);
    EXPECT_EQ(m_progress.front(), 0.06);
    EXPECT_EQ(m_progress.back(), 1.0);
}

TEST_F(FinderTest, MinimumSizeIsTheCallers)
{
    tree("a 40\nb 40\nc 39\nd 39\n");
    for (const char* name : {"a", "b", "c", "d"}) {
        contents(name, textOf('q', static_cast<std::size_t>(name[0] < 'c' ? 40 : 39)));
    }
    EXPECT_EQ(test::pathsOf(find(40)), (GroupPaths{{"a", "b"}}));
}

TEST_F(FinderTest, WholeSamplesThatDifferAnywhereFallApartInSampling)
{
    for (const std::size_t place : {std::size_t{0}, wholeSampled / 2, wholeSampled - 1}) {
        SCOPED_TRACE(place);
        tree("a 524288\nb 524288\n");
        contents("a", textOf('q', wholeSampled));
        contents("b", textOf('q', wholeSampled));
        file("b").bytes[place] ^= 1;
        m_passes.clear();
        EXPECT_EQ(found(), GroupPaths());
        EXPECT_EQ(filesOf(Pass::sampling), 2);
        EXPECT_EQ(filesOf(Pass::verifying), 0);
    }
    EXPECT_EQ(m_progress.back(), 1.0);
}

TEST_F(FinderTest, OneByteMoreReachesVerifyingWithADifferentMiddle)
{
    tree("a 524289\nb 524289\n");
    contents("a", textOf('q', wholeSampled + 1));
    contents("b", textOf('q', wholeSampled + 1));
    // Only this byte lies in neither end.
    file("b").bytes[262144] ^= 1;
    EXPECT_EQ(found(), GroupPaths());
    EXPECT_EQ(filesOf(Pass::verifying), 2);
}

TEST_F(FinderTest, LargeFilesThatDifferInAnEndFallApartInSampling)
{
    for (const std::size_t place :
         {std::size_t{0}, std::size_t{262143}, std::size_t{600000 - 262144}, std::size_t{599999}}) {
        SCOPED_TRACE(place);
        tree("a 600000\nb 600000\n");
        contents("a", textOf('q', 600000));
        contents("b", textOf('q', 600000));
        file("b").bytes[place] ^= 1;
        m_passes.clear();
        EXPECT_EQ(found(), GroupPaths());
        EXPECT_EQ(filesOf(Pass::verifying), 0);
    }
}

TEST_F(FinderTest, LargeCopiesAreFound)
{
    tree("a 3000000\nb 3000000\nc 3000000\n");
    contents("a", textOf('q', 3000000));
    contents("b", textOf('q', 3000000));
    contents("c", textOf('r', 3000000));
    EXPECT_EQ(found(), (GroupPaths{{"a", "b"}}));
    // The heads of all; of the copies 512 KiB for the ends, and all of them.
    EXPECT_EQ(m_contents.bytesRead(), 3 * 4096 + 2 * (524288 + 3000000));
    EXPECT_LE(m_contents.largestRead(), 65536U);
}

TEST_F(FinderTest, LinksAndSpecialFilesArePassedOver)
{
    tree("a 5000\nalias@ 5000\npipe| 5000\nsub/\n  b 5000\n");
    for (const char* name : {"a", "alias", "pipe", "sub/b"}) {
        contents(name, textOf('q', 5000));
    }
    EXPECT_EQ(found(), (GroupPaths{{"a", "sub/b"}}));
    EXPECT_EQ(m_contents.opened("/scan/alias"), 0);
    EXPECT_EQ(m_contents.opened("/scan/pipe"), 0);
}

TEST_F(FinderTest, LargestGainComesFirst)
{
    // 2 × 3000 gain 3000, 3 × 2000 gain 4000.
    tree("a 3000\nb 3000\nc 2000\nd 2000\ne 2000\n");
    for (const char* name : {"a", "b"}) {
        contents(name, textOf('q', 3000));
    }
    for (const char* name : {"c", "d", "e"}) {
        contents(name, textOf('q', 2000));
    }
    EXPECT_EQ(found(), (GroupPaths{{"c", "d", "e"}, {"a", "b"}}));
}

TEST_F(FinderTest, EqualGainsComeByTheNameOfTheFirstFile)
{
    // 4000 once and 2000 twice: equal gains. Plain order puts capitals before small letters.
    tree("Zoo/\n  Zed 4000\nzz/\n  Zed 4000\nant 2000\nant2/\n  ant 2000\nant3/\n  ant 2000\n"
         "m/\n  Bee 4000\nn/\n  Bee 4000\n");
    for (const char* name : {"Zoo/Zed", "zz/Zed"}) {
        contents(name, textOf('q', 4000));
    }
    for (const char* name : {"m/Bee", "n/Bee"}) {
        contents(name, textOf('r', 4000));
    }
    for (const char* name : {"ant", "ant2/ant", "ant3/ant"}) {
        contents(name, textOf('q', 2000));
    }
    EXPECT_EQ(
        found(),
        (GroupPaths{{"m/Bee", "n/Bee"}, {"Zoo/Zed", "zz/Zed"}, {"ant", "ant2/ant", "ant3/ant"}}));
}

TEST_F(FinderTest, OneSizeMayHoldSeveralGroups)
{
    tree("a 5000\nb 5000\nc 5000\nd 5000\ne 5000\n");
    for (const char* name : {"a", "b", "c", "d", "e"}) {
        contents(name, textOf(name[0] == 'e' ? 'x' : name[0] % 2 == 0 ? 'q' : 'r', 5000));
    }
    GroupPaths groups = found();
    std::sort(groups.begin(), groups.end());
    EXPECT_EQ(groups, (GroupPaths{{"a", "c"}, {"b", "d"}}));
}

TEST_F(FinderTest, EmptyRootEndsAtOnce)
{
    tree("");
    EXPECT_EQ(found(), GroupPaths());
    EXPECT_EQ(m_progress, (std::vector{0.06, 1.0}));
}

TEST_F(FinderTest, FileOfFewerThanSixteenBytesIsNoCandidate)
{
    tree("a 15\nb 15\nc 16\nd 16\n");
    for (const char* name : {"a", "b"}) {
        contents(name, std::string(15, 'q'));
    }
    for (const char* name : {"c", "d"}) {
        contents(name, std::string(16, 'q'));
    }
    EXPECT_EQ(test::pathsOf(find(0)), (GroupPaths{{"c", "d"}}));
}

/// So many copies of one file.
std::string copies(int count)
{
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += "f" + std::to_string(i) + " 2000\n";
    }
    return text;
}

TEST_F(FinderTest, ProgressGoesInItsStepsWhenTimePasses)
{
    tree(copies(200));
    for (int i = 0; i < 200; ++i) {
        contents("f" + std::to_string(i), textOf('q', 2000));
    }
    double now = 100;
    m_options.clock = [&] { return now += 0.06; };
    find();
    std::vector<double> expected{0.06};
    for (const int done : {64, 128, 192}) {
        expected.push_back(done * 0.34 / 200 + 0.06);
    }
    for (int done = 16; done <= 192; done += 16) {
        expected.push_back(done * 0.6 / 200 + 0.4);
    }
    expected.push_back(1.0);
    EXPECT_EQ(m_progress, expected);
}

TEST_F(FinderTest, ProgressKeepsItsGapOverBothPasses)
{
    tree(copies(208));
    for (int i = 0; i < 208; ++i) {
        contents("f" + std::to_string(i), textOf('q', 2000));
    }
    m_options.clock = [] { return 100.0; };
    find();
    // One report of sampling, none of verifying but the one that is 1, and the end.
    EXPECT_EQ(m_progress, (std::vector{0.06, 64 * 0.34 / 208 + 0.06, 1.0, 1.0}));
}

TEST_F(FinderTest, ClockThatHasJustBegunReportsNothingYet)
{
    tree(copies(65));
    for (int i = 0; i < 65; ++i) {
        contents("f" + std::to_string(i), textOf('q', 2000));
    }
    m_options.clock = [] { return 0.04; };
    find();
    EXPECT_EQ(m_progress, (std::vector{0.06, 1.0}));
}

TEST_F(FinderTest, WalkReportsEvery2048Nodes)
{
    std::string text;
    for (int i = 0; i < 5000; ++i) {
        text += "f" + std::to_string(i) + " 10\n";
    }
    tree(text);
    find();
    // The root is the one folder.
    const double total = 5000 + 1 + 1;
    EXPECT_EQ(m_progress, (std::vector{2048 * 0.06 / total, 4096 * 0.06 / total, 0.06, 1.0}));
}

TEST_F(FinderTest, WorkersRunAtOnceAndAreAsManyAsAskedFor)
{
    tree(copies(3));
    for (int i = 0; i < 3; ++i) {
        contents("f" + std::to_string(i), textOf('q', 2000));
    }
    std::mutex lock;
    std::condition_variable arrival;
    std::set<std::thread::id> threads;
    m_contents.beforeOpen = [&](const std::string&, int) {
        std::unique_lock guard(lock);
        threads.insert(std::this_thread::get_id());
        arrival.notify_all();
        arrival.wait_for(guard, std::chrono::seconds(30), [&] { return threads.size() == 3; });
    };
    m_options.workers = 3;
    EXPECT_EQ(found().size(), 1U);
    EXPECT_EQ(threads.size(), 3U);
}

TEST_F(FinderTest, ManyFilesOfOneSizeAreOneBucket)
{
    constexpr int count = 262145;
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += "f" + std::to_string(i) + " 1024\n";
    }
    tree(text);
    // Contents of most would take too long: what is not there falls out.
    for (const char* name : {"f0", "f77777", "f262144"}) {
        contents(name, textOf('q', 1024));
    }
    contents("f5", textOf('r', 1024));
    EXPECT_EQ(found(), (GroupPaths{{"f0", "f77777", "f262144"}}));
    EXPECT_EQ(filesOf(Pass::sampling), 4);
}

TEST_F(FinderTest, MoreSizesThanAWindowHolds)
{
    std::string text;
    for (int i = 0; i < 40000; ++i) {
        for (const char* name : {"a", "b"}) {
            text += name + std::to_string(i) + " " + std::to_string(2000 + i) + "\n";
        }
    }
    tree(text);
    GroupPaths expected;
    for (const int i : {39999, 20000, 3, 0}) {
        for (const char* name : {"a", "b"}) {
            contents(name + std::to_string(i),
                     textOf('q', std::size_t{2000} + static_cast<std::size_t>(i)));
        }
        expected.push_back({"a" + std::to_string(i), "b" + std::to_string(i)});
    }
    m_options.workers = 2;
    EXPECT_EQ(found(), expected);
    EXPECT_EQ(filesOf(Pass::verifying), 8);
}

TEST_F(FinderTest, GroupsAreThoseOfAPlainComparison)
{
    test::Dice dice(7);
    std::string text;
    std::map<std::string, std::set<std::string>> byContents;
    // Sizes on both sides of a head and of what is sampled whole; of many one is the same.
    constexpr std::size_t sizes[] = {1024, 4096, 4097, 5000, 5000, 5000, 5000, 530000};
    for (int i = 0; i < 400; ++i) {
        const std::string name = "f" + std::to_string(i);
        std::string bytes = textOf('q', sizes[dice.below(std::size(sizes))]);
        if (dice.chance(0.7)) {
            // One of few marks, in the head, in the middle or in the tail.
            const std::size_t places[] = {7, bytes.size() / 2, bytes.size() - 1};
            bytes[places[dice.below(3)]] = static_cast<char>(dice.below(40));
        }
        text += name + " " + std::to_string(bytes.size()) + "\n";
        byContents[bytes].insert(name);
        contents(name, std::move(bytes));
    }
    tree(text);
    GroupPaths expected;
    for (auto& item : byContents) {
        if (item.second.size() > 1) {
            expected.push_back(std::move(item.second));
        }
    }
    std::sort(expected.begin(), expected.end());
    for (const int workers : {1, 3}) {
        SCOPED_TRACE(workers);
        m_options.workers = workers;
        GroupPaths groups = found();
        std::sort(groups.begin(), groups.end());
        EXPECT_EQ(groups, expected);
    }
}

TEST_F(FinderTest, ManyWorkersAgreeWithOne)
{
    std::string text;
    for (int i = 0; i < 600; ++i) {
        text += "f" + std::to_string(i) + " " + std::to_string(2000 + i % 20) + "\n";
    }
    tree(text);
    for (int i = 0; i < 600; ++i) {
        contents("f" + std::to_string(i),
                 textOf(static_cast<char>('a' + i % 7), static_cast<std::size_t>(2000 + i % 20)));
    }
    const GroupPaths one = found();
    m_options.workers = 8;
    EXPECT_EQ(found(), one);
    // 20 sizes times 7 texts, since 7 and 20 have no common factor.
    EXPECT_EQ(one.size(), 140U);
}

TEST_F(FinderTest, FilesComeByDepthAndThenByTheBytesOfTheirPaths)
{
    // As bytes "b-/x" comes before "b/x", and before both what has fewer components.
    const std::vector<std::string> expected{"z", "b-/x", "b/a", "b/x", "\xC3\xA9/x", "a/a/a"};
    std::string text;
    for (const char* line : {"a/\n  a/\n    a 5000\n", "\xC3\xA9/\n  x 5000\n",
                             "b/\n  x 5000\n  a 5000\n", "b-/\n  x 5000\n", "z 5000\n"}) {
        text += line;
    }
    tree(text);
    for (const std::string& path : expected) {
        contents(path, textOf('q', 5000));
    }
    m_options.workers = 3;
    for (int run = 0; run < 3; ++run) {
        const DuplicateFinder::Groups groups = find();
        ASSERT_EQ(groups.size(), 1U);
        std::vector<std::string> paths;
        for (const FileNode* file : groups[0].files()) {
            paths.push_back(file->path().bytes().substr(6));
        }
        EXPECT_EQ(paths, expected);
    }
}

TEST_F(FinderTest, OrderIsThatOfDepthsAndPathsOfRandomTrees)
{
    for (std::uint64_t seed = 1; seed < 20; ++seed) {
        const auto some = test::randomTree(seed);
        std::vector<FileNode*> files;
        std::vector<std::pair<std::ptrdiff_t, std::string>> expected;
        std::vector<FileNode*> left{&some->root()};
        while (!left.empty()) {
            FileNode& node = *left.back();
            left.pop_back();
            for (FileNode& child : node.children()) {
                left.push_back(&child);
            }
            if (!node.isDirectory()) {
                files.push_back(&node);
                const std::string path = node.path().bytes();
                expected.emplace_back(std::count(path.begin(), path.end(), '/'), path);
            }
        }
        std::sort(expected.begin(), expected.end());
        std::sort(files.begin(), files.end(), [](const FileNode* a, const FileNode* b) {
            return DuplicateFinder::isListedBefore(*a, *b);
        });
        for (std::size_t i = 0; i < files.size(); ++i) {
            EXPECT_EQ(files[i]->path().bytes(), expected[i].second);
        }
    }
}

TEST_F(FinderTest, WhatLiesInATrashIsNoCopy)
{
    tree(".Trash-1000/\n  files/\n    a 5000\n.Trash/\n  77/\n    files/\n      a 5000\n"
         "me/\n  .local/\n    share/\n      Trash/\n        files/\n          a 5000\n"
         "a 5000\nsub/\n  .Trash-1000/\n    a 5000\n");
    for (const char* path : {".Trash-1000/files/a", ".Trash/77/files/a",
                             "me/.local/share/Trash/files/a", "a", "sub/.Trash-1000/a"}) {
        contents(path, textOf('q', 5000));
    }
    const TrashFolders trash(FilePath("/data"), FilePath("/home/me"),
                             std::vector{FilePath("/scan")});
    m_options.trash = &trash;
    // What is called like a Trash and is none is a copy like any other.
    EXPECT_EQ(found(), (GroupPaths{{"a", "sub/.Trash-1000/a"}}));
    EXPECT_EQ(m_contents.opened("/scan/.Trash-1000/files/a"), 0);
    const TrashFolders above(FilePath("/data"), FilePath("/home/me"), std::nullopt);
    m_options.trash = &above;
    EXPECT_EQ(found(), GroupPaths());
}

TEST_F(FinderTest, NothingIsACopyWhereTheRootLiesInATrash)
{
    m_tree = test::treeFromText("a 5000\nb 5000\n", {.rootPath = FilePath("/.Trash-7/files/x")});
    for (const char* path : {"/.Trash-7/files/x/a", "/.Trash-7/files/x/b"}) {
        m_contents.file(path).bytes = textOf('q', 5000);
    }
    const TrashFolders trash(FilePath("/data"), FilePath("/home/me"), std::vector{FilePath("/")});
    m_options.trash = &trash;
    EXPECT_TRUE(find().empty());
    const TrashFolders elsewhere(FilePath("/data"), FilePath("/home/me"), std::vector<FilePath>());
    m_options.trash = &elsewhere;
    EXPECT_EQ(find().size(), 1U);
}

TEST_F(FinderTest, HolesAreNotReadAndCountAsZeros)
{
    // 3 MB of which little is on the disk: data in the middle and at the end, or at the start.
    tree("a 3000000 8192\nb 3000000 8192\nc 3000000\nd 3000000 4096\n");
    std::string bytes(3000000, '\0');
    bytes.replace(1000000, 4000, textOf('q', 4000));
    bytes.replace(2999000, 1000, textOf('r', 1000));
    for (const char* name : {"a", "b"}) {
        contents(name, bytes);
        file(name).data = {{999424, 1007616}, {2998272, 3000000}};
    }
    // The same with all zeros written.
    contents("c", bytes);
    contents("d", std::string(3000000, '\0'));
    file("d").data = {{0, 4096}};
    EXPECT_EQ(found(), (GroupPaths{{"a", "b", "c"}}));
    const std::int64_t whole = 4096 + 524288 + 3000000;
    const std::int64_t tail = 3000000 - 2998272;
    // Of the sparse ones the ends, where only the tail has data, and all data.
    EXPECT_EQ(m_contents.bytesRead(), whole + 2 * (tail + 8192 + tail) + 4096 + 4096);
}

} // namespace
} // namespace quorvane
