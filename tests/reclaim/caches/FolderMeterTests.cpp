// SPDX-License-Identifier: MIT
#include "FolderMeter.h"

#include "DiskTree.h"
#include "FaultyFileSystemCalls.h"
#include "FileSystemCalls.h"
#include "RandomTree.h"
#include "UnprivilegedRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <set>
#include <string>

namespace quorvane {
namespace {

using Call = FaultyFileSystemCalls::Call;
using testing::ElementsAre;

std::int64_t allocated(const FilePath& path)
{
    struct stat entry = {};
    EXPECT_EQ(lstat(path.bytes().c_str(), &entry), 0) << path.bytes();
    return entry.st_blocks * 512;
}

FolderSums measured(const FilePath& folder, const FolderMeter::Rules& rules = {})
{
    const auto sums = FolderMeter(rules).measure({&folder, 1});
    EXPECT_EQ(sums.size(), 1U);
    EXPECT_TRUE(sums.front().has_value());
    return sums.front().value_or(FolderSums{});
}

std::set<std::string> pathsOf(const std::vector<FolderMeter::Found>& found)
{
    std::set<std::string> paths;
    for (const FolderMeter::Found& each : found) {
        paths.insert(each.path.bytes());
    }
    return paths;
}

TEST(DirectoryBytes, NothingAtThePathIsZero)
{
    const DiskTree disk;
    EXPECT_EQ(directoryBytes(disk.path("absent")), 0);
    EXPECT_EQ(directoryBytes(FilePath()), 0);
}

TEST(DirectoryBytes, AFileGivesItsSizeAttribute)
{
    DiskTree disk;
    disk.file("file", 12345);
    EXPECT_EQ(directoryBytes(disk.path("file")), 12345);
}

TEST(DirectoryBytes, AFolderGivesTheAllocatedSizesOfItsRegularFiles)
{
    DiskTree disk;
    disk.file("f/a", 5000);
    disk.file("f/g/b", 70000);
    disk.hole("f/sparse", 1 << 20);
    disk.symbolicLink("a", "f/link");
    disk.fifo("f/pipe");
    EXPECT_EQ(directoryBytes(disk.path("f")), allocated(disk.path("f/a")) +
                                                  allocated(disk.path("f/g/b")) +
                                                  allocated(disk.path("f/sparse")));
    EXPECT_GT(allocated(disk.path("f/a")), 0);
}

TEST(DirectoryBytes, HiddenFilesAndWhatIsInHiddenFoldersDoNotCount)
{
    DiskTree disk;
    disk.file("f/.hidden", 9000);
    disk.file("f/.folder/visible", 9000);
    EXPECT_EQ(directoryBytes(disk.path("f")), 0);
    disk.file("f/visible", 9000);
    EXPECT_EQ(directoryBytes(disk.path("f")), allocated(disk.path("f/visible")));
}

TEST(DirectoryBytes, AHiddenFolderThatIsAskedForItselfCounts)
{
    DiskTree disk;
    disk.file(".cache/a", 9000);
    EXPECT_EQ(directoryBytes(disk.path(".cache")), allocated(disk.path(".cache/a")));
}

TEST(DirectoryBytes, ALinkToAFolderGivesTheFoldersContents)
{
    DiskTree disk;
    disk.file("real/a", 9000);
    disk.symbolicLink("real", "link");
    EXPECT_EQ(directoryBytes(disk.path("link")), allocated(disk.path("real/a")));
}

TEST(DirectoryBytes, LinksInsideAreNotFollowed)
{
    DiskTree disk;
    disk.file("elsewhere/a", 9000);
    disk.folder("f");
    disk.symbolicLink("../elsewhere", "f/link");
    disk.symbolicLink("..", "f/loop");
    EXPECT_EQ(directoryBytes(disk.path("f")), 0);
}

TEST(DirectoryBytes, EveryNameOfAFileWithSeveralCounts)
{
    DiskTree disk;
    disk.file("f/a", 9000);
    disk.hardLink("f/a", "f/b");
    EXPECT_EQ(directoryBytes(disk.path("f")), 2 * allocated(disk.path("f/a")));
}

TEST(DirectoryBytes, AnUnreadableFolderIsZeroAndOneInsideIsLeftOut)
{
    DiskTree disk;
    disk.file("f/a", 9000);
    disk.file("f/closed/b", 9000);
    disk.mode("", 0755);
    disk.mode("f/closed", 0);
    asUnprivilegedUser([&] {
        EXPECT_EQ(directoryBytes(disk.path("f/closed")), 0);
        EXPECT_EQ(directoryBytes(disk.path("f")), allocated(disk.path("f/a")));
    });
}

TEST(DirectoryBytes, TenThousandFoldersInsideOneAnotherAreWalked)
{
    DiskTree disk(DiskTree::Place::memory);
    disk.chain("f", 10000);
    EXPECT_EQ(measured(disk.path("f")).itemCount, 0);
    EXPECT_EQ(directoryBytes(disk.path("f")), 0);
}

TEST(DirectoryBytes, FewDescriptorsAreEnough)
{
    DiskTree disk;
    for (int i = 0; i < 40; ++i) {
        disk.file("f/" + std::to_string(i) + "/a/b/c", 4096);
    }
    FaultyFileSystemCalls calls;
    calls.limitDescriptors(6);
    EXPECT_EQ(directoryBytes(disk.path("f"), calls), directoryBytes(disk.path("f")));
    EXPECT_EQ(calls.openNow(), 0);
}

TEST(DirectoryBytes, EachCallThatFailsTakesNothingButItsOwnAway)
{
    DiskTree disk;
    disk.file("f/a", 5000);
    disk.file("f/g/b", 5000);
    disk.file("f/g/h/c", 5000);
    const std::int64_t whole = directoryBytes(disk.path("f"));
    for (const Call call : {Call::openDirectory, Call::appendNames, Call::status}) {
        FaultyFileSystemCalls sound;
        directoryBytes(disk.path("f"), sound);
        for (int i = 1; i <= sound.count(call); ++i) {
            FaultyFileSystemCalls calls;
            calls.failOnce(call, i);
            const std::int64_t bytes = directoryBytes(disk.path("f"), calls);
            EXPECT_LE(bytes, whole);
            EXPECT_EQ(calls.openNow(), 0);
        }
    }
}

TEST(FolderMeter, CountsEverythingThatIsNoFolderWithItsSizeAndLatestDate)
{
    DiskTree disk;
    disk.file("f/.hidden", 10);
    disk.file("f/g/b", 20);
    disk.symbolicLink("1234567", "f/link");
    disk.fifo("f/pipe");
    disk.modified("f/.hidden", 1000);
    disk.modified("f/g/b", 3000);
    disk.modified("f/link", 2000);
    disk.modified("f/pipe", 500);
    disk.modified("f/g", 9000);
    disk.modified("f", 9000);
    const FolderSums sums = measured(disk.path("f"));
    EXPECT_EQ(sums.bytes, 10 + 20 + 7);
    EXPECT_EQ(sums.itemCount, 4);
    EXPECT_EQ(sums.lastModified, 3000);
}

TEST(FolderMeter, AnEmptyFolderGivesZerosAndNoDate)
{
    DiskTree disk;
    disk.folder("f/g");
    const FolderSums sums = measured(disk.path("f"));
    EXPECT_EQ(sums.bytes, 0);
    EXPECT_EQ(sums.itemCount, 0);
    EXPECT_EQ(sums.lastModified, std::nullopt);
}

TEST(FolderMeter, PackagesAreNotEnteredWhenTheyAreToBeSkipped)
{
    DiskTree disk;
    disk.file("f/Tool.app/Contents/MacOS/tool", 1000);
    disk.file("f/file.app", 1);
    disk.file("f/other", 10);
    EXPECT_EQ(measured(disk.path("f"), {false, true, false}).bytes, 11);
    EXPECT_EQ(measured(disk.path("f")).bytes, 1011);
}

TEST(FolderMeter, WhatIsNoFolderGivesNothing)
{
    DiskTree disk;
    disk.file("file", 1);
    disk.symbolicLink("nowhere", "dangling");
    disk.symbolicLink("file", "link");
    const FilePath paths[] = {disk.path("file"), disk.path("absent"), disk.path("dangling"),
                              disk.path("link")};
    EXPECT_THAT(FolderMeter({}).measure(paths),
                ElementsAre(std::nullopt, std::nullopt, std::nullopt, std::nullopt));
}

TEST(FolderMeter, AKernelMadeFolderIsNeverListed)
{
    DiskTree disk;
    disk.file("f/made/a", 100);
    disk.file("f/b", 10);
    FaultyFileSystemCalls calls;
    calls.claimVolumeKind([](std::string_view name) {
        return name == "made" ? VolumeKind::kernelMade : VolumeKind::ordinary;
    });
    calls.changeStatus([](std::string_view name, EntryStatus& status) {
        status.device += name == "made" ? 1U : 0U;
    });
    const FilePath folder = disk.path("f");
    EXPECT_EQ(FolderMeter({}, {}, calls).measure({&folder, 1}).front()->bytes, 10);
}

TEST(FolderMeter, TellsOfEachGivenFolderOnceAndInOrder)
{
    DiskTree disk;
    std::vector<FilePath> folders;
    for (int i = 0; i < 30; ++i) {
        const std::string name = "f" + std::to_string(i);
        if (i % 3 != 0) {
            disk.file(name + "/a/b", i);
        }
        folders.push_back(disk.path(name));
    }
    std::vector<std::size_t> told;
    FolderMeter::Hooks hooks;
    hooks.onMeasured = [&](std::size_t done) { told.push_back(done); };
    FolderMeter({}, hooks).measure(folders);
    ASSERT_EQ(told.size(), 30U);
    for (std::size_t i = 0; i < told.size(); ++i) {
        EXPECT_EQ(told[i], i + 1);
    }
}

TEST(FolderMeter, ACancelledMeterStopsAtTheNextFolder)
{
    DiskTree disk;
    for (int i = 0; i < 50; ++i) {
        disk.file("f/" + std::to_string(i) + "/a", 1);
    }
    FaultyFileSystemCalls calls;
    std::atomic<int> polls = 0;
    FolderMeter::Hooks hooks;
    hooks.isCancelled = [&] { return ++polls > 5; };
    const FilePath folder = disk.path("f");
    EXPECT_EQ(FolderMeter({}, hooks, calls).measure({&folder, 1}).front(), std::nullopt);
    EXPECT_LT(calls.count(Call::openDirectory), 40);
    EXPECT_EQ(calls.openNow(), 0);
}

TEST(FolderMeter, AMillionNamesInOneFolderDoNotKeepACancelWaiting)
{
    DiskTree disk(DiskTree::Place::memory);
    for (int i = 0; i < 3000; ++i) {
        disk.file("f/" + std::to_string(i));
    }
    FaultyFileSystemCalls calls;
    std::atomic<bool> isCancelled = false;
    calls.before(Call::status,
                 [&](int number, std::string_view) { isCancelled = isCancelled || number >= 10; });
    FolderMeter::Hooks hooks;
    hooks.isCancelled = [&] { return isCancelled.load(); };
    const FilePath folder = disk.path("f");
    FolderMeter({}, hooks, calls).measure({&folder, 1});
    EXPECT_LE(calls.count(Call::status), 1024);
}

constexpr std::string_view wanted[] = {"node_modules", ".build"};
constexpr std::string_view neverEntered[] = {"Library"};

TEST(FolderSearch, FindsWantedFoldersAndDoesNotSearchInside)
{
    DiskTree disk;
    disk.file("p/node_modules/a/node_modules/b", 10);
    disk.file("p/.build/x", 5);
    disk.file(".hidden/node_modules/a", 10);
    disk.file("Library/node_modules/a", 10);
    disk.file("q/file/node_modules_not/a", 10);
    disk.file("q/plain/.build", 3);
    disk.symbolicLink("p/node_modules", "node_modules");
    const auto found = FolderMeter({}).search(disk.root(), {wanted, neverEntered});
    EXPECT_EQ(pathsOf(found), (std::set<std::string>{disk.path("p/node_modules").bytes(),
                                                     disk.path("p/.build").bytes()}));
    for (const FolderMeter::Found& each : found) {
        EXPECT_EQ(each.sums.bytes, each.path.lastComponent() == ".build" ? 5 : 10);
    }
}

TEST(FolderSearch, NeverLeavesTheVolumeWhenItIsToStay)
{
    DiskTree disk;
    disk.file("mounted/node_modules/a", 10);
    disk.file("p/node_modules/a", 10);
    disk.file("p/node_modules/mounted/b", 100);
    disk.file("q/node_modules/a", 10);
    FaultyFileSystemCalls calls;
    calls.changeStatus([](std::string_view name, EntryStatus& status) {
        status.device += name == "mounted" || name == "q" ? 1U : 0U;
    });
    const auto found =
        FolderMeter({false, false, true}, {}, calls).search(disk.root(), {wanted, neverEntered});
    ASSERT_EQ(pathsOf(found), (std::set<std::string>{disk.path("p/node_modules").bytes()}));
    EXPECT_EQ(found.front().sums.bytes, 10);
}

TEST(FolderSearch, WalksWithoutHintsFromTheListingToo)
{
    // A fault in the hint's place: a file system that tells no kinds.
    class Plain final : public FileSystemCalls
    {
    public:
        int openDirectory(int parent, const char* name) override
        {
            return system().openDirectory(parent, name);
        }
        void close(int directory) override { system().close(directory); }
        bool appendNames(int directory, NameList& names, const std::atomic<bool>& stops) override
        {
            const bool isWhole = system().appendNames(directory, names, stops);
            for (NameList::Span& span : names.spans) {
                span.hint = NameList::Hint::unknown;
            }
            return isWhole;
        }
        bool status(int directory, const char* name, EntryStatus& status) override
        {
            return system().status(directory, name, status);
        }
        bool creationDate(int, const char*, std::int64_t&) override { return false; }
        bool readLink(int, const char*, std::string&) override { return false; }
        VolumeKind volumeKind(int, const char*) override { return VolumeKind::ordinary; }
        bool volumeCapacity(const char*, VolumeCapacity&) override { return false; }
        int descriptorLimit() override { return 100; }
    };
    DiskTree disk;
    disk.file("p/node_modules/a", 10);
    disk.file("q/node_modules", 10);
    disk.symbolicLink("p/node_modules", "node_modules");
    Plain calls;
    EXPECT_EQ(pathsOf(FolderMeter({}, {}, calls).search(disk.root(), {wanted, neverEntered})),
              (std::set<std::string>{disk.path("p/node_modules").bytes()}));
}

/// The same by the standard library's walk, one path at a time.
std::int64_t slowBytes(const std::filesystem::path& folder)
{
    namespace fs = std::filesystem;
    std::int64_t bytes = 0;
    for (auto entry = fs::recursive_directory_iterator(folder);
         entry != fs::recursive_directory_iterator(); ++entry) {
        if (entry->path().filename().native().front() == '.') {
            if (entry->is_directory() && !entry->is_symlink()) {
                entry.disable_recursion_pending();
            }
        } else if (entry->is_regular_file() && !entry->is_symlink()) {
            bytes += allocated(FilePath(entry->path().native()));
        }
    }
    return bytes;
}

TEST(DirectoryBytes, AgreesWithASlowWalkOfRandomTrees)
{
    for (const std::uint64_t seed : {1U, 2U, 3U}) {
        SCOPED_TRACE(seed);
        test::Dice dice(seed);
        DiskTree disk;
        std::vector<std::string> folders{"r"};
        disk.folder("r");
        for (int i = 0; i < 120; ++i) {
            const std::string name = folders[dice.below(folders.size())] + "/" +
                                     (dice.chance(0.2) ? "." : "") + std::to_string(i);
            if (dice.chance(0.3)) {
                disk.folder(name);
                folders.push_back(name);
            } else if (dice.chance(0.1)) {
                disk.symbolicLink("..", name);
            } else {
                disk.file(name, static_cast<std::int64_t>(dice.below(20000)));
            }
        }
        EXPECT_EQ(directoryBytes(disk.path("r")), slowBytes(disk.path("r").bytes()));
    }
}

} // namespace
} // namespace quorvane
