// SPDX-License-Identifier: MIT
#include "DiskScanner.h"

#include "DiskTree.h"
#include "FaultyFileSystemCalls.h"
#include "ScanSupport.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace quorvane {
namespace {

using Call = FaultyFileSystemCalls::Call;
using test::failureOf;
using test::nodeAt;
using test::scanned;

std::set<std::string> pathsOf(const FileNode& root)
{
    std::set<std::string> paths;
    std::vector<const FileNode*> waiting{&root};
    while (!waiting.empty()) {
        const FileNode* const node = waiting.back();
        waiting.pop_back();
        paths.insert(node->path().bytes());
        for (const FileNode& child : node->children()) {
            waiting.push_back(&child);
        }
    }
    return paths;
}

void fillWithFolders(DiskTree& disk)
{
    disk.file("a/one", 10);
    disk.file("a/b/two", 20);
    disk.file("a/b/three", 30);
    disk.folder("c");
    disk.symbolicLink("a", "link");
}

TEST(DiskScannerFaults, RootWithoutAStatusCannotBeAccessed)
{
    const DiskTree disk;
    FaultyFileSystemCalls calls;
    calls.failOnce(Call::status, 1);
    EXPECT_EQ(failureOf(disk.root(), calls), "Cannot access " + disk.root().bytes());
}

TEST(DiskScannerFaults, EachStatusThatFailsTakesOneEntryAway)
{
    DiskTree disk;
    fillWithFolders(disk);
    FaultyFileSystemCalls sound;
    const std::set<std::string> all = pathsOf(scanned(disk.root(), 1, sound)->root());
    const int statuses = sound.count(Call::status);
    // One lstat an entry, the root included, and not one more.
    ASSERT_EQ(statuses, static_cast<int>(all.size()));
    for (int number = 2; number <= statuses; ++number) {
        FaultyFileSystemCalls calls;
        calls.failOnce(Call::status, number);
        const std::set<std::string> left = pathsOf(scanned(disk.root(), 1, calls)->root());
        std::vector<std::string> lost;
        std::set_difference(all.begin(), all.end(), left.begin(), left.end(),
                            std::back_inserter(lost));
        ASSERT_FALSE(lost.empty()) << number;
        // The first of the lost paths is the entry; the others lie below it.
        for (const std::string& path : lost) {
            EXPECT_EQ(path.rfind(lost.front(), 0), 0U) << number << ' ' << path;
        }
        EXPECT_EQ(left.size() + lost.size(), all.size());
        EXPECT_EQ(calls.openNow(), 0);
    }
}

TEST(DiskScannerFaults, EachFolderThatCannotBeListedStaysEmpty)
{
    DiskTree disk;
    fillWithFolders(disk);
    // The root, a, a/b and c.
    for (const Call call : {Call::openDirectory, Call::appendNames}) {
        for (int number = 1; number <= 4; ++number) {
            FaultyFileSystemCalls calls;
            calls.failOnce(call, number);
            const auto tree = scanned(disk.root(), 1, calls);
            EXPECT_EQ(calls.openNow(), 0);
            if (number == 1) {
                EXPECT_TRUE(tree->root().children().empty());
                EXPECT_EQ(tree->root().scannedBytes(), 0);
                continue;
            }
            EXPECT_EQ(tree->root().children().size(), 3U);
            EXPECT_GE(tree->root().directoryCount(), 3);
        }
    }
}

TEST(DiskScannerFaults, NothingListableIsATreeOfOneNode)
{
    DiskTree disk;
    fillWithFolders(disk);
    FaultyFileSystemCalls calls;
    calls.failAlways(Call::openDirectory);
    const auto tree = scanned(disk.root(), 8, calls);
    EXPECT_TRUE(tree->root().children().empty());
    EXPECT_EQ(tree->root().directoryCount(), 1);
}

TEST(DiskScannerFaults, FileThatVanishesAfterTheListingIsLeftOut)
{
    DiskTree disk;
    disk.file("goes", 10);
    disk.file("stays", 20);
    FaultyFileSystemCalls calls;
    calls.before(Call::status, [&](int, std::string_view name) {
        if (name == "goes") {
            disk.remove("goes");
        }
    });
    const auto tree = scanned(disk.root(), 2, calls);
    EXPECT_EQ(tree->root().scannedBytes(), 20);
    EXPECT_EQ(tree->root().fileCount(), 1);
}

TEST(DiskScannerFaults, FolderThatVanishesBeforeItsListingStaysEmpty)
{
    DiskTree disk;
    disk.file("doomed/f", 10);
    disk.file("other/f", 20);
    FaultyFileSystemCalls calls;
    calls.before(Call::openDirectory, [&](int, std::string_view name) {
        if (name == "doomed") {
            disk.remove("doomed");
        }
    });
    const auto tree = scanned(disk.root(), 2, calls);
    EXPECT_TRUE(nodeAt(tree->root(), "doomed").children().empty());
    EXPECT_EQ(tree->root().scannedBytes(), 20);
}

TEST(DiskScannerFaults, FolderRemovedWhileItIsOpenStaysEmpty)
{
    DiskTree disk;
    disk.file("doomed/f", 10);
    FaultyFileSystemCalls calls;
    calls.before(Call::appendNames, [&](int number, std::string_view) {
        if (number == 2) {
            disk.remove("doomed");
        }
    });
    const auto tree = scanned(disk.root(), 1, calls);
    EXPECT_TRUE(nodeAt(tree->root(), "doomed").children().empty());
}

TEST(DiskScannerFaults, FolderThatTurnsIntoALinkIsNotFollowed)
{
    DiskTree disk;
    disk.file("target/f", 10);
    disk.folder("swapped");
    FaultyFileSystemCalls calls;
    calls.before(Call::openDirectory, [&](int, std::string_view name) {
        if (name == "swapped") {
            disk.remove("swapped");
            disk.symbolicLink("target", "swapped");
        }
    });
    const auto tree = scanned(disk.root(), 1, calls);
    EXPECT_TRUE(nodeAt(tree->root(), "swapped").isDirectory());
    EXPECT_TRUE(nodeAt(tree->root(), "swapped").children().empty());
}

TEST(DiskScannerFaults, FileMadeAfterTheListingIsNotInTheTree)
{
    DiskTree disk;
    disk.file("f", 10);
    FaultyFileSystemCalls calls;
    calls.before(Call::status, [&](int, std::string_view name) {
        if (name == "f") {
            disk.file("late", 5);
        }
    });
    const auto tree = scanned(disk.root(), 1, calls);
    EXPECT_EQ(tree->root().children().size(), 1U);
    EXPECT_EQ(tree->root().scannedBytes(), 10);
}

TEST(DiskScannerFaults, FewDescriptorsStillGiveTheWholeTree)
{
    DiskTree disk(DiskTree::Place::memory);
    for (int i = 0; i < 30; ++i) {
        const std::string branch = "branch" + std::to_string(i);
        disk.file(branch + "/x/y/f", 1);
        disk.file(branch + "/z/f", 1);
    }
    for (const int limit : {1, 4, 1024}) {
        FaultyFileSystemCalls calls;
        calls.limitDescriptors(limit);
        const auto tree = scanned(disk.root(), 4, calls);
        EXPECT_EQ(tree->root().fileCount(), 60) << limit;
        EXPECT_EQ(tree->root().directoryCount(), 1 + 30 * 4) << limit;
        // Half of the limit waits as parents; each worker has one folder of its own open.
        EXPECT_LE(calls.mostOpen(), limit / 2 + 4 + 1) << limit;
        EXPECT_EQ(calls.openNow(), 0);
    }
}

TEST(DiskScannerFaults, DeepFoldersAreReachedByPathWhenNoneCanStayOpen)
{
    constexpr int depth = 3000;
    DiskTree disk(DiskTree::Place::memory);
    disk.chain("chain", depth, "dd");
    FaultyFileSystemCalls calls;
    calls.limitDescriptors(1);
    EXPECT_EQ(scanned(disk.root(), 2, calls)->root().directoryCount(), depth + 2);
    EXPECT_EQ(calls.openNow(), 0);
}

TEST(DiskScannerFaults, RootDeeperThanTheLongestPathCanBeScanned)
{
    constexpr int depth = 2500;
    DiskTree disk(DiskTree::Place::memory);
    disk.folder("chain");
    disk.chain("chain", depth);
    disk.symbolicLink("chain", "alias");
    std::string deep = disk.path("alias").bytes();
    for (int i = 0; i < depth - 1; ++i) {
        deep += "/d";
    }
    const FilePath root(deep);
    ASSERT_GT(root.bytes().size(), 4096U);
    EXPECT_EQ(scanned(root)->root().directoryCount(), 2);
    const DiskScanner scanner(1);
    EXPECT_TRUE(scanner.allMetadata(root).has_value());
    EXPECT_EQ(scanner.directoryNameEntries(root)->size(), 1U);
    const FilePath absent(deep + "/absent");
    EXPECT_EQ(failureOf(absent), "Cannot access " + absent.bytes());
}

TEST(DiskScannerFaults, LinkIsFollowedWhereALongPathIsCut)
{
    // The path is cut at its last slash within PATH_MAX; whatever the length of the temporary
    // folder, some of these links end there.
    DiskTree disk(DiskTree::Place::memory);
    disk.chain("real", 2100);
    std::string below;
    for (int i = 0; i < 2100; ++i) {
        below += "/d";
    }
    const std::string base = disk.root().bytes();
    for (std::size_t length = 4086; length <= 4096; ++length) {
        // "{base}/./././link/d/d/d…" with "link" ending at the length.
        std::string path = base + "/";
        while (path.size() + 6 < length) {
            path += "./";
        }
        const std::string link(length - path.size(), 'l');
        if (failureOf(disk.path(link)) == "Cannot access " + disk.path(link).bytes()) {
            disk.symbolicLink("real", link);
        }
        path += link + below;
        EXPECT_TRUE(DiskScanner(1).allMetadata(FilePath(path)).has_value()) << length;
    }
}

TEST(DiskScannerFaults, KernelMadeFolderStaysEmptyAndIsNotListed)
{
    DiskTree disk;
    disk.file("kernel/kcore", 100);
    disk.file("volume/f", 10);
    disk.file("plain/f", 1);
    FaultyFileSystemCalls calls;
    // Two mount points: one made by the kernel, one like any volume.
    calls.changeStatus([](std::string_view name, EntryStatus& status) {
        if (name == "kernel" || name == "volume") {
            status.device += 1;
        }
    });
    std::set<std::string> asked;
    calls.before(Call::volumeKind, [&](int, std::string_view name) { asked.emplace(name); });
    calls.claimVolumeKind([](std::string_view name) {
        return name == "kernel" ? VolumeKind::kernelMade : VolumeKind::ordinary;
    });
    const auto tree = scanned(disk.root(), 1, calls);
    EXPECT_TRUE(nodeAt(tree->root(), "kernel").isDirectory());
    EXPECT_TRUE(nodeAt(tree->root(), "kernel").children().empty());
    EXPECT_EQ(nodeAt(tree->root(), "volume/f").scannedBytes(), 10);
    EXPECT_EQ(tree->root().scannedBytes(), 11);
    // Only where the device changes is the question asked; what lies below the volume is on the
    // first device again, as far as the changed statuses tell.
    EXPECT_TRUE(asked.contains("kernel"));
    EXPECT_TRUE(asked.contains("volume"));
    EXPECT_FALSE(asked.contains("plain"));
}

TEST(DiskScannerFaults, ScanOfAKernelMadeFolderIsEmptyWithoutAnError)
{
    if (FileSystemCalls::system().volumeKind(FileSystemCalls::noDirectory(), "/proc") !=
        VolumeKind::kernelMade) {
        GTEST_SKIP() << "no /proc here";
    }
    const auto tree = scanned(FilePath("/proc"));
    EXPECT_TRUE(tree->root().children().empty());
    EXPECT_EQ(tree->root().scannedBytes(), 0);
    EXPECT_EQ(tree->root().name(), "proc");
}

TEST(DiskScannerFaults, OnAnAutomountersMapEveryFolderIsAskedAbout)
{
    DiskTree disk;
    disk.file("map/used/f", 1);
    disk.file("map/idle/f", 10);
    disk.file("map/used/deep/f", 100);
    disk.file("plain/f", 1000);
    FaultyFileSystemCalls calls;
    calls.changeStatus([](std::string_view name, EntryStatus& status) {
        // The map is a mount, and so is the one volume on it that is in use.
        status.device = name == "map" || name == "idle" ? 2 : name == "used" ? 3 : status.device;
    });
    std::multiset<std::string> asked;
    calls.before(Call::volumeKind, [&](int, std::string_view name) { asked.emplace(name); });
    std::set<std::string> opened;
    calls.before(Call::openDirectory, [&](int, std::string_view name) { opened.emplace(name); });
    calls.claimVolumeKind([](std::string_view name) {
        return name == "map"    ? VolumeKind::automountMap
               : name == "idle" ? VolumeKind::unusedAutomount
                                : VolumeKind::ordinary;
    });
    const auto tree = scanned(disk.root(), 1, calls);
    EXPECT_EQ(tree->root().scannedBytes(), 1101);
    EXPECT_FALSE(opened.contains("idle"));
    EXPECT_TRUE(nodeAt(tree->root(), "map/idle").isDirectory());
    EXPECT_EQ(asked.count("idle"), 1U);
    EXPECT_EQ(asked.count("plain"), 0U);
}

} // namespace
} // namespace quorvane
