// SPDX-License-Identifier: MIT
#include "DiskScanner.h"
#include "DiskTree.h"
#include "FinderFixture.h"
#include "RandomTree.h"
#include "TrashFolders.h"
#include "UnprivilegedRun.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

namespace quorvane {
namespace {

using test::GroupPaths;
using test::pathsOf;
using test::textOf;

NodePointer scanOf(const DiskTree& disk)
{
    DiskScanner scanner(2);
    const DiskScanner::Result result = scanner.scan(disk.root());
    return std::get<std::shared_ptr<FileTree>>(result)->rootPointer();
}

GroupPaths foundIn(const DiskTree& disk, const NodePointer& root)
{
    return pathsOf(DuplicateFinder::find(root, DuplicateFinder::defaultMinimumBytes, [](double) {}),
                   disk.root().bytes());
}

GroupPaths foundIn(const DiskTree& disk)
{
    return foundIn(disk, scanOf(disk));
}

TEST(DuplicateFinderOnDisk, HardLinksAreAGroupAndSymbolicLinksAreNot)
{
    DiskTree disk;
    disk.fileWithContents("a/one", textOf('q', 5000));
    disk.hardLink("a/one", "b/two");
    disk.symbolicLink("one", "a/alias");
    EXPECT_EQ(foundIn(disk), (GroupPaths{{"a/one", "b/two"}}));
}

TEST(DuplicateFinderOnDisk, NamesThatAreNotTextAreFound)
{
    DiskTree disk;
    disk.fileWithContents("\xFF\xFE/\xC3(", textOf('q', 5000));
    disk.fileWithContents("line\nbreak", textOf('q', 5000));
    EXPECT_EQ(foundIn(disk), (GroupPaths{{"\xFF\xFE/\xC3(", "line\nbreak"}}));
}

TEST(DuplicateFinderOnDisk, FilesBelowThePathLimitAreFound)
{
    DiskTree disk;
    // Two halves, of which one goes below the other: no call takes the path of the whole.
    std::string half;
    for (int i = 0; i < 15; ++i) {
        half += "/" + std::string(200, 'd');
    }
    disk.folder("deep" + half);
    disk.fileWithContents("lower" + half + "/one", textOf('q', 5000));
    disk.fileWithContents("lower" + half + "/two", textOf('q', 5000));
    disk.fileWithContents("three", textOf('q', 5000));
    std::filesystem::rename(disk.path("lower").bytes(),
                            disk.path("deep" + half + "/lower").bytes());
    const std::string bottom = "deep" + half + "/lower" + half;
    ASSERT_GT(bottom.size(), 4096U);
    EXPECT_EQ(foundIn(disk), (GroupPaths{{bottom + "/one", bottom + "/two", "three"}}));
}

TEST(DuplicateFinderOnDisk, WhatTookAFilesPlaceIsPassedOver)
{
    DiskTree disk;
    for (const char* name : {"a", "b", "folder", "pipe", "link", "socket", "gone", "below/x"}) {
        disk.fileWithContents(name, textOf('q', 5000));
    }
    const NodePointer root = scanOf(disk);
    for (const char* name : {"folder", "pipe", "link", "socket", "gone", "below"}) {
        disk.remove(name);
    }
    disk.folder("folder");
    // Nobody writes to it: an open that waits would never end.
    disk.fifo("pipe");
    disk.socket("socket");
    disk.symbolicLink("a", "link");
    disk.file("below", 5);
    EXPECT_EQ(foundIn(disk, root), (GroupPaths{{"a", "b"}}));
}

TEST(DuplicateFinderOnDisk, FilesOfOthersThatMayNotBeReadFallOut)
{
    DiskTree disk;
    for (const char* name : {"a", "b", "c", "shut/d"}) {
        disk.fileWithContents(name, textOf('q', 5000));
    }
    const NodePointer root = scanOf(disk);
    disk.mode("", 0755);
    for (const char* name : {"a", "b"}) {
        disk.mode(name, 0444);
    }
    disk.mode("c", 0);
    disk.mode("shut", 0);
    // Those that may be read belong to someone else, whose dates of access cannot be spared.
    asUnprivilegedUser([&] { EXPECT_EQ(foundIn(disk, root), (GroupPaths{{"a", "b"}})); });
}

TEST(DuplicateFinderOnDisk, ShrunkAndGrownFilesFallOut)
{
    DiskTree disk;
    for (const char* name : {"a", "b", "shrunk", "grown", "emptied"}) {
        disk.fileWithContents(name, textOf('q', 600000));
    }
    const NodePointer root = scanOf(disk);
    disk.fileWithContents("shrunk", textOf('q', 599999));
    disk.fileWithContents("grown", textOf('q', 600001));
    disk.fileWithContents("emptied", "");
    EXPECT_EQ(foundIn(disk, root), (GroupPaths{{"a", "b"}}));
}

TEST(DuplicateFinderOnDisk, HolesAreZerosThatAreNotRead)
{
    DiskTree disk;
    constexpr std::int64_t bytes = 5'000'000;
    for (const char* name : {"sparse", "sparser"}) {
        disk.hole(name, bytes);
        std::fstream out(disk.path(name).bytes(), std::ios::in | std::ios::out | std::ios::binary);
        out.seekp(2'000'000);
        out << textOf('q', 5000);
    }
    disk.hole("empty", bytes);
    std::string written(bytes, '\0');
    written.replace(2'000'000, 5000, textOf('q', 5000));
    disk.fileWithContents("written", written);
    const NodePointer root = scanOf(disk);
    if (test::nodeAt(*root, "sparse").sizeOnDisk() >= bytes) {
        GTEST_SKIP() << "this file system has no holes";
    }
    std::int64_t read = 0;
    DuplicateFinder::Options options;
    options.onPassEnd = [&](const DuplicateFinder::PassReport& pass) { read += pass.bytesRead; };
    EXPECT_EQ(pathsOf(DuplicateFinder::find(
                          root, DuplicateFinder::defaultMinimumBytes, [](double) {},
                          DuplicateFinder::neverCancelled, options),
                      disk.root().bytes()),
              (GroupPaths{{"sparse", "sparser", "written"}}));
    // All of the written one and its samples; of the sparse ones a few blocks of the file system.
    EXPECT_LT(read, bytes + 524288 + 4096 + 2 * 65536);
    EXPECT_GE(read, bytes);
}

TEST(DuplicateFinderOnDisk, ATrashIsKnownThroughALinkOnTheWayToTheRoot)
{
    DiskTree disk;
    disk.fileWithContents("real/m/.Trash-7/files/a", textOf('q', 5000));
    disk.fileWithContents("real/m/b", textOf('q', 5000));
    disk.symbolicLink("real", "link");
    const TrashFolders trash(FilePath("/data"), FilePath("/home/me"),
                             std::vector{disk.path("real/m")});
    DuplicateFinder::Options options;
    options.trash = &trash;
    const NodePointer root =
        std::get<std::shared_ptr<FileTree>>(DiskScanner(1).scan(disk.path("link/m")))
            ->rootPointer();
    EXPECT_TRUE(DuplicateFinder::find(
                    root, DuplicateFinder::defaultMinimumBytes, [](double) {},
                    DuplicateFinder::neverCancelled, options)
                    .empty());
}

TEST(DuplicateFinderOnDisk, DateOfLastAccessStays)
{
    DiskTree disk;
    disk.fileWithContents("a", textOf('q', 5000));
    disk.fileWithContents("b", textOf('q', 5000));
    // Older than the date of modification: a plain read would bring it up.
    struct stat before = {};
    const std::string path = disk.path("a").bytes();
    const timespec dates[] = {{1'000'000'000, 0}, {1'100'000'000, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), dates, 0), 0);
    EXPECT_EQ(foundIn(disk).size(), 1U);
    ASSERT_EQ(stat(path.c_str(), &before), 0);
    EXPECT_EQ(before.st_atime, 1'000'000'000);
}

/// By size and all bytes, read with another way of reading.
GroupPaths naive(const DiskTree& disk)
{
    std::map<std::string, std::set<std::string>> byContents;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(disk.root().bytes())) {
        if (entry.is_symlink() || !entry.is_regular_file() || entry.file_size() < 1024) {
            continue;
        }
        std::ifstream in(entry.path(), std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(in), {}};
        byContents[bytes].insert(entry.path().native().substr(disk.root().bytes().size() + 1));
    }
    GroupPaths groups;
    for (auto& item : byContents) {
        if (item.second.size() > 1) {
            groups.push_back(std::move(item.second));
        }
    }
    std::sort(groups.begin(), groups.end());
    return groups;
}

TEST(DuplicateFinderOnDisk, GroupsAreThoseOfAPlainComparison)
{
    for (const std::uint64_t seed : {1U, 2U, 3U}) {
        SCOPED_TRACE(seed);
        test::Dice dice(seed);
        DiskTree disk(DiskTree::Place::memory);
        constexpr std::size_t sizes[] = {15,   1023,   1024,   4095,   4096,
                                         4097, 262144, 524288, 524289, 600000};
        for (int i = 0; i < 150; ++i) {
            std::string path;
            for (std::uint64_t depth = dice.below(4); depth > 0; --depth) {
                path += "d" + std::to_string(dice.below(4)) + "/";
            }
            path += "f" + std::to_string(i);
            std::string bytes = textOf('q', sizes[dice.below(std::size(sizes))]);
            const std::size_t places[] = {0, bytes.size() / 2, bytes.size() - 1};
            if (dice.chance(0.5)) {
                bytes[places[dice.below(3)]] = 'Z';
            }
            disk.fileWithContents(path, bytes);
            if (dice.chance(0.1)) {
                disk.symbolicLink("f0", path + "-alias");
            } else if (dice.chance(0.1)) {
                disk.hardLink(path, path + "-link");
            }
        }
        GroupPaths found = foundIn(disk);
        std::sort(found.begin(), found.end());
        EXPECT_FALSE(found.empty());
        EXPECT_EQ(found, naive(disk));
    }
}

} // namespace
} // namespace quorvane
