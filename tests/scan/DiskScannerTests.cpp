// SPDX-License-Identifier: MIT
#include "DiskScanner.h"

#include "DiskTree.h"
#include "FaultyFileSystemCalls.h"
#include "ScanSupport.h"
#include "TreeText.h"
#include "UnprivilegedRun.h"
#include "WallClock.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/time.h>

#include <algorithm>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace quorvane {
namespace {

using test::expectTreeIsWalk;
using test::failureOf;
using test::nodeAt;
using test::referenceWalk;
using test::scanned;
using test::secondsNow;
using test::textOfTree;

std::string lastName(const DiskTree& disk)
{
    return std::string(disk.root().lastComponent());
}

/// A bit of everything that a folder can hold.
void fillWithEverything(DiskTree& disk)
{
    disk.file("plain", 1234);
    disk.file("empty");
    disk.file(".hidden/.file", 10);
    disk.hole("sparse", 1 << 20);
    disk.hardLink("plain", "deep/er/same");
    disk.symbolicLink("plain", "link");
    disk.symbolicLink("nowhere", "dangling");
    disk.symbolicLink("..", "deep/up");
    disk.symbolicLink(disk.root().bytes(), "deep/er/loop");
    disk.fifo("pipe");
    disk.socket("socket");
    disk.folder("nothing in here");
    disk.file("Some.app/Contents/MacOS/tool", 77);
    disk.file("odd/new\nline", 1);
    disk.file("odd/\xFF\xFE not text", 2);
    disk.file("odd/-rf *", 3);
    disk.file("odd/...", 4);
    disk.file("odd/back\\slash%2F", 5);
    disk.file("odd/" + std::string(255, 'n'), 6);
    disk.file("odd/\xF0\x9F\x93\x81/\xE2\x80\xAE", 7);
    disk.modified("plain", -86400);
    disk.modified("empty", 4'000'000'000);
    disk.modified("link", 12345);
}

TEST(DiskScanner, ChoosesBetweenTwoAndEightWorkers)
{
    const int processors = static_cast<int>(std::thread::hardware_concurrency());
    const int chosen = std::max(std::min(processors, 8), 2);
    EXPECT_EQ(DiskScanner().workerCount(), chosen);
    EXPECT_EQ(DiskScanner(0).workerCount(), chosen);
    EXPECT_EQ(DiskScanner(-4).workerCount(), chosen);
    EXPECT_EQ(DiskScanner(1).workerCount(), 1);
    EXPECT_EQ(DiskScanner(23).workerCount(), 23);
}

TEST(DiskScanner, MissingRootCannotBeAccessed)
{
    const DiskTree disk;
    const FilePath path = disk.path("absent");
    EXPECT_EQ(failureOf(path), "Cannot access " + path.bytes());
    EXPECT_EQ(failureOf(FilePath()), "Cannot access ");
}

TEST(DiskScanner, PathWithANulNamesNothing)
{
    const DiskTree disk;
    const FilePath path(disk.root().bytes() + std::string("\0x", 2));
    EXPECT_EQ(failureOf(path), "Cannot access " + path.bytes());
}

TEST(DiskScanner, RootThatIsNoFolderIsRefused)
{
    DiskTree disk;
    disk.file("file", 3);
    disk.folder("folder");
    disk.symbolicLink("folder", "link");
    disk.fifo("pipe");
    for (const char* const name : {"file", "link", "pipe"}) {
        EXPECT_EQ(failureOf(disk.path(name)), "Not a directory: " + disk.path(name).bytes());
    }
}

TEST(DiskScanner, EmptyRootIsATreeOfOneNode)
{
    const DiskTree disk;
    const auto tree = scanned(disk.root());
    EXPECT_EQ(tree->root().id(), 0);
    EXPECT_EQ(tree->root().name(), lastName(disk));
    EXPECT_TRUE(tree->root().isDirectory());
    EXPECT_EQ(tree->root().directoryCount(), 1);
    EXPECT_EQ(tree->root().fileCount(), 0);
    EXPECT_TRUE(tree->root().children().empty());
    EXPECT_EQ(tree->root().path(), disk.root());
}

TEST(DiskScanner, LinkInTheMiddleOfTheRootsPathIsFollowed)
{
    DiskTree disk;
    disk.file("real/inner/f", 5);
    disk.symbolicLink("real", "alias");
    EXPECT_EQ(textOfTree(scanned(disk.path("alias/inner"))->root()).substr(0, 4), "f 5 ");
}

class DiskScannerWorkers : public testing::TestWithParam<int>
{};

TEST_P(DiskScannerWorkers, SeesExactlyWhatAPlainWalkSees)
{
    DiskTree disk;
    fillWithEverything(disk);
    const auto tree = scanned(disk.root(), GetParam());
    expectTreeIsWalk(tree->root(), referenceWalk(disk.root()));
}

TEST_P(DiskScannerWorkers, NumbersEntriesWithoutARepetition)
{
    DiskTree disk;
    fillWithEverything(disk);
    const auto tree = scanned(disk.root(), GetParam());
    std::set<std::int64_t> ids;
    std::vector<const FileNode*> waiting{&tree->root()};
    std::size_t entries = 0;
    while (!waiting.empty()) {
        const FileNode* const node = waiting.back();
        waiting.pop_back();
        ids.insert(node->id());
        ++entries;
        for (const FileNode& child : node->children()) {
            waiting.push_back(&child);
        }
    }
    // Nothing vanished, so the counter left no gap: 0 is the root, then 1 to n.
    EXPECT_EQ(ids.size(), entries);
    EXPECT_EQ(*ids.begin(), 0);
    EXPECT_EQ(*ids.rbegin(), static_cast<std::int64_t>(entries) - 1);
}

TEST_P(DiskScannerWorkers, WalksAWideFolder)
{
    DiskTree disk(DiskTree::Place::memory);
    for (int i = 0; i < 5000; ++i) {
        disk.file("wide/" + std::to_string(i));
    }
    for (int i = 0; i < 500; ++i) {
        disk.file("many/" + std::to_string(i) + "/f", 1);
    }
    const auto tree = scanned(disk.root(), GetParam());
    EXPECT_EQ(tree->root().fileCount(), 5500);
    EXPECT_EQ(tree->root().directoryCount(), 503);
    EXPECT_EQ(tree->root().scannedBytes(), 500);
    expectTreeIsWalk(tree->root(), referenceWalk(disk.root()));
}

TEST_P(DiskScannerWorkers, WalksAChainBeyondTheLongestPath)
{
    constexpr int depth = 10'000;
    DiskTree disk(DiskTree::Place::memory);
    disk.chain("chain", depth);
    FaultyFileSystemCalls calls;
    const auto tree = scanned(disk.root(), GetParam(), calls);
    EXPECT_EQ(tree->root().directoryCount(), depth + 2);
    EXPECT_EQ(calls.openNow(), 0);
    EXPECT_LE(calls.mostOpen(), 1 + 2 * GetParam());
}

INSTANTIATE_TEST_SUITE_P(Counts, DiskScannerWorkers, testing::Values(1, 8));

TEST(DiskScanner, MoreWorkersGiveTheSameTree)
{
    DiskTree disk;
    fillWithEverything(disk);
    EXPECT_EQ(textOfTree(scanned(disk.root(), 1)->root()),
              textOfTree(scanned(disk.root(), 8)->root()));
}

TEST(DiskScanner, InstalledSystemLooksAsAPlainWalkSeesIt)
{
    const FilePath root("/usr/include");
    const test::ReferenceWalk walk = referenceWalk(root);
    if (walk.size() < 100) {
        GTEST_SKIP() << "no headers installed";
    }
    expectTreeIsWalk(scanned(root)->root(), walk);
}

TEST(DiskScanner, HardLinksCountInFullUnderEachName)
{
    DiskTree disk;
    disk.file("a", 1000);
    disk.hardLink("a", "b");
    disk.hardLink("a", "c");
    const auto tree = scanned(disk.root());
    EXPECT_EQ(tree->root().scannedBytes(), 3000);
    EXPECT_EQ(tree->root().fileCount(), 3);
    EXPECT_EQ(tree->root().scannedBytesOnDisk(), 3 * nodeAt(tree->root(), "a").sizeOnDisk());
}

TEST(DiskScanner, HoleHasItsLengthAndTakesNoRoom)
{
    DiskTree disk;
    disk.hole("sparse", std::int64_t{1} << 40);
    const auto tree = scanned(disk.root());
    EXPECT_EQ(tree->root().scannedBytes(), std::int64_t{1} << 40);
    EXPECT_EQ(tree->root().scannedBytesOnDisk(), 0);
}

TEST(DiskScanner, LinkToAParentIsALeaf)
{
    DiskTree disk;
    disk.symbolicLink("../..", "a/b/up");
    const auto tree = scanned(disk.root());
    const FileNode& link = nodeAt(tree->root(), "a/b/up");
    EXPECT_TRUE(link.isSymbolicLink());
    EXPECT_TRUE(link.children().empty());
    // A link's size is the length of what it says.
    EXPECT_EQ(link.logicalSize(), 5);
    EXPECT_EQ(tree->root().scannedBytes(), 5);
    EXPECT_EQ(tree->root().fileCount(), 0);
    EXPECT_EQ(tree->root().directoryCount(), 3);
}

TEST(DiskScanner, PipesAndSocketsAreNeitherFilesNorFoldersNorLinks)
{
    DiskTree disk;
    disk.fifo("pipe");
    disk.socket("socket");
    const auto tree = scanned(disk.root());
    EXPECT_EQ(tree->root().children().size(), 2U);
    EXPECT_EQ(tree->root().fileCount(), 0);
    for (const FileNode& node : tree->root().children()) {
        EXPECT_FALSE(node.isDirectory() || node.isRegularFile() || node.isSymbolicLink());
    }
}

TEST(DiskScanner, IdsOfOneFolderFollowTheListing)
{
    DiskTree disk;
    for (int i = 0; i < 40; ++i) {
        disk.file("f" + std::to_string(i), i);
        disk.folder("d" + std::to_string(i));
    }
    const auto tree = scanned(disk.root(), 1);
    const auto entries = DiskScanner(1).directoryNameEntries(disk.root());
    ASSERT_TRUE(entries.has_value());
    ASSERT_EQ(entries->size(), 80U);
    for (std::size_t i = 0; i < entries->size(); ++i) {
        EXPECT_EQ(nodeAt(tree->root(), (*entries)[i].first).id(), static_cast<std::int64_t>(i) + 1);
    }
}

TEST(DiskScanner, UnreadableFolderStaysEmptyWithoutAnError)
{
    DiskTree disk;
    disk.file("open/f", 5);
    disk.file("locked/f", 7);
    disk.mode("locked", 0311);
    asUnprivilegedUser([&disk] {
        const auto tree = scanned(disk.root());
        const FileNode& locked = nodeAt(tree->root(), "locked");
        EXPECT_TRUE(locked.isDirectory());
        EXPECT_TRUE(locked.children().empty());
        EXPECT_EQ(locked.scannedBytes(), 0);
        EXPECT_EQ(tree->root().scannedBytes(), 5);
        EXPECT_EQ(tree->root().directoryCount(), 3);
    });
}

TEST(DiskScanner, UnreadableRootIsATreeOfOneEmptyNode)
{
    DiskTree disk;
    disk.file("locked/f", 7);
    disk.mode("locked", 0);
    asUnprivilegedUser([&disk] {
        const auto tree = scanned(disk.path("locked"));
        EXPECT_TRUE(tree->root().children().empty());
        EXPECT_EQ(tree->root().scannedBytes(), 0);
        EXPECT_EQ(tree->root().directoryCount(), 1);
        // What lies behind it cannot even be asked about.
        EXPECT_EQ(failureOf(disk.path("locked/f")),
                  "Cannot access " + disk.path("locked/f").bytes());
    });
}

TEST(DiskScanner, FolderWithoutSearchPermissionListsNothing)
{
    DiskTree disk;
    disk.file("names/f", 7);
    disk.mode("names", 0444);
    asUnprivilegedUser([&disk] {
        const auto tree = scanned(disk.root());
        EXPECT_TRUE(nodeAt(tree->root(), "names").children().empty());
    });
}

TEST(DiskScanner, ProcessAtItsLimitOfThreadsStillScans)
{
    DiskTree disk;
    disk.file("a/b/f", 7);
    // In a child of its own, since the limit stays for the life of a process.
    inChildProcess([&disk] {
        asUnprivilegedUser([&disk] {
            const rlimit none{0, 0};
            ASSERT_EQ(setrlimit(RLIMIT_NPROC, &none), 0);
            EXPECT_EQ(scanned(disk.root(), 4)->root().scannedBytes(), 7);
        });
    });
}

TEST(DiskScanner, MetadataIsThatOfTheEntryItself)
{
    DiskTree disk;
    disk.file("f", 600);
    disk.modified("f", 1'234'567'890);
    disk.symbolicLink("f", "link");
    const DiskScanner scanner(1);
    const std::optional<ItemMetadata> file = scanner.allMetadata(disk.path("f"));
    ASSERT_TRUE(file.has_value());
    EXPECT_TRUE(file->isRegularFile);
    EXPECT_EQ(file->logicalSize, 600);
    EXPECT_EQ(file->dateModified, 1'234'567'890);
    const std::optional<ItemMetadata> link = scanner.allMetadata(disk.path("link"));
    ASSERT_TRUE(link.has_value());
    EXPECT_TRUE(link->isSymbolicLink);
    EXPECT_EQ(link->logicalSize, 1);
    EXPECT_NE(*file, *link);
    EXPECT_EQ(scanner.allMetadata(disk.path("absent")), std::nullopt);
}

TEST(DiskScanner, ListingOfAFolderHasHiddenNamesAndNoDots)
{
    DiskTree disk;
    disk.file(".hidden", 1);
    disk.folder("sub");
    const auto entries = DiskScanner(1).directoryNameEntries(disk.root());
    ASSERT_TRUE(entries.has_value());
    std::set<std::string> names;
    for (const auto& [name, metadata] : *entries) {
        names.insert(name);
        EXPECT_EQ(metadata.isDirectory, name == "sub");
    }
    EXPECT_EQ(names, (std::set<std::string>{".hidden", "sub"}));
    EXPECT_EQ(DiskScanner(1).directoryNameEntries(disk.path(".hidden")), std::nullopt);
    EXPECT_EQ(DiskScanner(1).directoryNameEntries(disk.path("absent")), std::nullopt);
}

TEST(DiskScanner, ListingLeavesOutWhatVanishes)
{
    DiskTree disk;
    disk.file("stays", 1);
    disk.file("goes", 1);
    FaultyFileSystemCalls calls;
    calls.before(FaultyFileSystemCalls::Call::status, [&](int, std::string_view name) {
        if (name == "goes") {
            disk.remove("goes");
        }
    });
    const auto entries = DiskScanner(1, calls).directoryNameEntries(disk.root());
    ASSERT_TRUE(entries.has_value());
    ASSERT_EQ(entries->size(), 1U);
    EXPECT_EQ(entries->front().first, "stays");
}

TEST(DiskScanner, CreationDateIsWhenTheFileWasMade)
{
    DiskTree disk;
    const std::int64_t before = secondsNow();
    disk.file("f", 1);
    disk.modified("f", 1000);
    const std::int64_t after = secondsNow();
    const DiskScanner scanner(1);
    EXPECT_EQ(scanner.fileCreationDate(disk.path("absent")), std::nullopt);
    const std::optional<std::int64_t> created = scanner.fileCreationDate(disk.path("f"));
    if (!created) {
        GTEST_SKIP() << "this file system keeps no creation dates";
    }
    // The clock by which a file system dates may lag by a tick.
    EXPECT_GE(*created, before - 1);
    EXPECT_LE(*created, after);
}

} // namespace
} // namespace quorvane
