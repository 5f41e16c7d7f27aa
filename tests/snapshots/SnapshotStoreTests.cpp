// SPDX-License-Identifier: MIT
#include "SnapshotStore.h"

#include "DiskTree.h"
#include "FaultyFileSystemCalls.h"
#include "RandomTree.h"
#include "Text.h"
#include "TreeText.h"
#include "UnprivilegedRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

namespace quorvane {
namespace {

using test::treeFromText;
using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

std::vector<std::string> paths(const ScanSnapshot& snapshot)
{
    std::vector<std::string> result;
    for (const ScanSnapshot::Entry& entry : snapshot.items) {
        result.push_back(entry.path);
    }
    return result;
}

ScanSnapshot captureOf(const std::string& text, const char* root = "/Users/a")
{
    test::TreeTextOptions options;
    options.rootPath = FilePath(root);
    return SnapshotStore::capture(treeFromText(text, options)->root()).snapshot;
}

TEST(SnapshotCapture, KeepsFilesFrom64KibibytesOnLargestFirst)
{
    const ScanSnapshot snapshot =
        captureOf("Movies/\n  x.mov 70000\n  link@ 65536\nsmall 65535\nlarge 90000\npipe| 66000\n");
    EXPECT_THAT(paths(snapshot), ElementsAre("/large", "/Movies/x.mov", "/pipe", "/Movies/link"));
    EXPECT_EQ(snapshot.rootPath, "/Users/a");
    EXPECT_EQ(snapshot.rootBytes, 70000 + 65536 + 65535 + 90000 + 66000);
    EXPECT_FALSE(snapshot.id.isNull());
    EXPECT_NEAR(snapshot.date, snapshotDateNow(), 60);
}

TEST(SnapshotCapture, ATreeOfSmallFilesGivesAnEmptyOne)
{
    EXPECT_TRUE(captureOf("a 65535\nfolder/\n").items.empty());
}

TEST(SnapshotCapture, BelowTheRootOfTheDiskTheSlashesAreLost)
{
    EXPECT_THAT(paths(captureOf("Users/\n  a/\n    x.mov 70000\n", "/")),
                ElementsAre("/Usersax.mov"));
}

TEST(SnapshotCapture, EveryOccurrenceOfTheRootsPathIsTakenOut)
{
    EXPECT_THAT(paths(captureOf("x/\n  a/\n    b/\n      y 70000\n", "/a/b")), ElementsAre("/x/y"));
    // Nothing is left of this one, so that it goes by its name.
    EXPECT_THAT(paths(captureOf("a/\n  b 70000\n", "/a/b")), ElementsAre("b"));
}

TEST(SnapshotCapture, ARootThatIsAFileGoesByItsName)
{
    NodeValues file;
    file.name = "x.mov";
    file.metadata.isRegularFile = true;
    file.metadata.logicalSize = 70000;
    const auto tree = FileTree::create(FilePath("/Users/a/x.mov"), file);
    EXPECT_THAT(paths(SnapshotStore::capture(tree->root()).snapshot), ElementsAre("x.mov"));
}

TEST(SnapshotCapture, NamesThatAreNotUtf8AreKeptAsTheyAreShown)
{
    NodeValues file;
    file.name = "a\xFF";
    file.metadata.isRegularFile = true;
    file.metadata.logicalSize = 70000;
    NodeValues folder;
    folder.metadata.isDirectory = true;
    const auto tree = FileTree::create(FilePath("/r"), folder);
    tree->addChildren(tree->root(), std::span(&file, 1));
    const CapturedSnapshot captured = SnapshotStore::capture(tree->root());
    EXPECT_THAT(paths(captured.snapshot), ElementsAre("/a\uFFFD"));
    EXPECT_EQ(decodeSnapshot(encodeSnapshot(captured.snapshot)), captured.snapshot);
    EXPECT_THAT(captured.nodes, ElementsAre(&tree->root().children().front()));
}

/// The walk as it is laid down: last child first, ended by the limit before the sort.
std::multiset<std::int64_t> plainCapture(FileNode& root)
{
    std::multiset<std::int64_t> sizes;
    std::vector<FileNode*> stack{&root};
    while (!stack.empty()) {
        FileNode* const node = stack.back();
        stack.pop_back();
        if (sizes.size() >= 20000) {
            break;
        }
        if (node->isDirectory()) {
            for (FileNode& child : node->children()) {
                stack.push_back(&child);
            }
        } else if (node->scannedBytes() >= 65536) {
            sizes.insert(node->scannedBytes());
        }
    }
    return sizes;
}

TEST(SnapshotCapture, TheLimitKeepsTheFirstThatTheWalkMeetsAndNotTheLargest)
{
    std::string text;
    for (int i = 0; i < 20100; ++i) {
        text += "f" + std::to_string(i) + ' ' + std::to_string(65536 + i) + '\n';
    }
    const auto tree = treeFromText(text);
    const ScanSnapshot snapshot = SnapshotStore::capture(tree->root()).snapshot;
    ASSERT_EQ(snapshot.items.size(), 20000U);
    // Children are sorted by size, and the walk takes the last child first.
    EXPECT_EQ(snapshot.items.front().bytes, 65536 + 19999);
    EXPECT_EQ(snapshot.items.back().bytes, 65536);
    std::multiset<std::int64_t> sizes;
    for (const ScanSnapshot::Entry& entry : snapshot.items) {
        sizes.insert(entry.bytes);
    }
    EXPECT_EQ(sizes, plainCapture(tree->root()));
}

class SnapshotFolder : public ::testing::Test
{
protected:
    SnapshotFolder() { snapshot = captureOf("large 90000\n"); }

    std::string fileName(const ScanSnapshot& of) const { return uuidText(of.id) + ".json"; }

    ScanSnapshot newSnapshot(double date)
    {
        ScanSnapshot made = snapshot;
        made.id = QUuid::createUuid();
        made.date = date;
        return made;
    }

    std::vector<QUuid> loadedIds() const
    {
        std::vector<QUuid> ids;
        for (const StoredSnapshot& each : store.load()) {
            ids.push_back(each.id);
        }
        return ids;
    }

    std::string contents(const std::string& name) const
    {
        std::ifstream in(store_.appending(name).bytes(), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    std::set<std::string> names() const
    {
        std::set<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(store_.bytes())) {
            found.insert(entry.path().filename().string());
        }
        return found;
    }

    DiskTree disk;
    FilePath store_ = disk.path("data/Quorvane/Snapshots");
    SnapshotStore store{store_};
    ScanSnapshot snapshot;
};

TEST_F(SnapshotFolder, WithoutAFolderTheListIsEmptyAndNoneIsMade)
{
    EXPECT_TRUE(store.load().empty());
    EXPECT_FALSE(std::filesystem::exists(store_.bytes()));
}

TEST_F(SnapshotFolder, ASavedSnapshotIsStoredUnderItsIdAndReadAgain)
{
    ASSERT_TRUE(store.save(snapshot));
    EXPECT_EQ(contents(fileName(snapshot)), encodeSnapshot(snapshot));
    EXPECT_THAT(names(), UnorderedElementsAre(fileName(snapshot)));
    const auto loaded = store.load();
    ASSERT_EQ(loaded.size(), 1U);
    EXPECT_EQ(store.read(loaded.front()), snapshot);
}

TEST_F(SnapshotFolder, ALaterSaveOfTheSameIdTakesItsPlace)
{
    ASSERT_TRUE(store.save(snapshot));
    snapshot.items.clear();
    ASSERT_TRUE(store.save(snapshot));
    EXPECT_EQ(contents(fileName(snapshot)), encodeSnapshot(snapshot));
}

TEST_F(SnapshotFolder, TheNewestComesFirst)
{
    const ScanSnapshot old = newSnapshot(1);
    const ScanSnapshot latest = newSnapshot(3);
    const ScanSnapshot middle = newSnapshot(2);
    for (const ScanSnapshot* const each : {&old, &latest, &middle}) {
        ASSERT_TRUE(store.save(*each));
    }
    EXPECT_THAT(loadedIds(), ElementsAre(latest.id, middle.id, old.id));
}

TEST_F(SnapshotFolder, ForeignAndBrokenFilesArePassedOverAndStay)
{
    ASSERT_TRUE(store.save(snapshot));
    const std::string good = encodeSnapshot(snapshot);
    const auto put = [&](const std::string& name, const std::string& bytes) {
        disk.fileWithContents("data/Quorvane/Snapshots/" + name, bytes);
    };
    put("notes.JSON", good);
    put("x.json.partial", good);
    put(".json", good);
    put("json", good);
    put("broken.json", good.substr(0, good.size() / 2));
    put("empty.json", "");
    put("list.json", "[]");
    put("deep.json", std::string(100000, '['));
    disk.folder("data/Quorvane/Snapshots/folder.json");
    disk.fifo("data/Quorvane/Snapshots/pipe.json");
    disk.symbolicLink("/dev/zero", "data/Quorvane/Snapshots/link.json");
    disk.hole("data/Quorvane/Snapshots/huge.json", std::int64_t{1} << 40);
    const auto before = names();
    EXPECT_THAT(loadedIds(), ElementsAre(snapshot.id));
    EXPECT_EQ(names(), before);
}

TEST_F(SnapshotFolder, OneMadeByHandUnderAnyNameIsListedAndRead)
{
    disk.fileWithContents("data/Quorvane/Snapshots/mine.json", encodeSnapshot(snapshot));
    const auto loaded = store.load();
    ASSERT_EQ(loaded.size(), 1U);
    EXPECT_EQ(loaded.front().fileName, "mine.json");
    EXPECT_EQ(store.read(loaded.front()), snapshot);
}

TEST_F(SnapshotFolder, WhatChangedSinceItWasListedIsNotRead)
{
    ASSERT_TRUE(store.save(snapshot));
    const StoredSnapshot listed = store.load().front();
    disk.fileWithContents("data/Quorvane/Snapshots/" + fileName(snapshot),
                          encodeSnapshot(newSnapshot(5)));
    EXPECT_FALSE(store.read(listed));
    disk.remove("data/Quorvane/Snapshots/" + fileName(snapshot));
    EXPECT_FALSE(store.read(listed));
}

TEST_F(SnapshotFolder, ARemovedSnapshotIsGoneAndNoOther)
{
    const ScanSnapshot other = newSnapshot(1);
    ASSERT_TRUE(store.save(snapshot));
    ASSERT_TRUE(store.save(other));
    EXPECT_TRUE(store.remove(snapshot.id));
    EXPECT_THAT(names(), UnorderedElementsAre(fileName(other)));
    EXPECT_FALSE(store.remove(snapshot.id));
}

TEST_F(SnapshotFolder, AForeignFileIsNotRemovedUnderASnapshotsName)
{
    disk.fileWithContents("data/Quorvane/Snapshots/mine.json", encodeSnapshot(snapshot));
    EXPECT_FALSE(store.remove(snapshot.id));
    disk.fileWithContents("data/Quorvane/Snapshots/" + fileName(snapshot), "my notes");
    EXPECT_FALSE(store.remove(snapshot.id));
    disk.fileWithContents("data/Quorvane/Snapshots/" + fileName(snapshot),
                          encodeSnapshot(newSnapshot(5)));
    EXPECT_FALSE(store.remove(snapshot.id));
    EXPECT_THAT(names(), UnorderedElementsAre("mine.json", fileName(snapshot)));
}

TEST_F(SnapshotFolder, AFolderBehindALinkIsListed)
{
    ASSERT_TRUE(store.save(snapshot));
    disk.symbolicLink(store_.bytes(), "elsewhere");
    EXPECT_EQ(SnapshotStore(disk.path("elsewhere")).load().size(), 1U);
}

TEST_F(SnapshotFolder, AFaultOfTheFileSystemGivesAnEmptyList)
{
    ASSERT_TRUE(store.save(snapshot));
    for (const auto call :
         {FaultyFileSystemCalls::Call::openDirectory, FaultyFileSystemCalls::Call::appendNames}) {
        FaultyFileSystemCalls calls;
        calls.failAlways(call);
        EXPECT_TRUE(SnapshotStore(store_, calls).load().empty());
        EXPECT_EQ(calls.openNow(), 0);
    }
}

TEST_F(SnapshotFolder, ASaveThatIsNotAllowedTellsSo)
{
    disk.folder("data");
    disk.mode("data", 0555);
    asUnprivilegedUser([this] { EXPECT_FALSE(store.save(snapshot)); });
    disk.mode("data", 0755);
    disk.file("file");
    EXPECT_FALSE(SnapshotStore(disk.path("file/below")).save(snapshot));
}

/// The process dies of SIGXFSZ when the file reaches its limit: in the middle of a write.
TEST_F(SnapshotFolder, AKillInTheMiddleOfASaveLosesNoSnapshot)
{
    for (int i = 0; i < 1000; ++i) {
        snapshot.items.push_back({"/file" + std::to_string(i), 70000});
    }
    const ScanSnapshot older = newSnapshot(1);
    ASSERT_TRUE(store.save(older));
    ASSERT_TRUE(store.save(snapshot));
    const std::string before = contents(fileName(snapshot));
    ScanSnapshot longer = snapshot;
    longer.items.insert(longer.items.end(), snapshot.items.begin(), snapshot.items.end());
    const ScanSnapshot fresh = newSnapshot(9);
    for (const ScanSnapshot* const saved : {&std::as_const(longer), &fresh}) {
        const int status = endOfChildProcess([&] {
            const rlimit half{before.size() / 2, before.size() / 2};
            setrlimit(RLIMIT_FSIZE, &half);
            const rlimit noCore{0, 0};
            setrlimit(RLIMIT_CORE, &noCore);
            std::signal(SIGXFSZ, SIG_DFL);
            store.save(*saved);
        });
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGXFSZ) << status;
        EXPECT_THAT(loadedIds(), UnorderedElementsAre(snapshot.id, older.id));
        EXPECT_EQ(contents(fileName(snapshot)), before);
    }
    // What the kill left behind is in nobody's way.
    EXPECT_TRUE(store.save(longer));
    EXPECT_TRUE(store.save(fresh));
    EXPECT_EQ(store.load().size(), 3U);
    EXPECT_EQ(names().size(), 3U);
}

TEST_F(SnapshotFolder, AFullDiskLeavesWhatWasThere)
{
    ASSERT_TRUE(store.save(snapshot));
    const std::string before = contents(fileName(snapshot));
    ScanSnapshot longer = snapshot;
    longer.items.assign(1000, {"/file", 70000});
    inChildProcess([&] {
        const rlimit small{1000, 1000};
        setrlimit(RLIMIT_FSIZE, &small);
        std::signal(SIGXFSZ, SIG_IGN);
        EXPECT_FALSE(store.save(longer));
    });
    EXPECT_EQ(contents(fileName(snapshot)), before);
    EXPECT_THAT(names(), UnorderedElementsAre(fileName(snapshot)));
}

TEST_F(SnapshotFolder, AThousandAreListedAtOnceAndASetStopEndsIt)
{
    for (int i = 0; i < 1000; ++i) {
        disk.fileWithContents("data/Quorvane/Snapshots/" + std::to_string(i) + ".json",
                              encodeSnapshot(newSnapshot(i)));
    }
    const auto loaded = store.load();
    ASSERT_EQ(loaded.size(), 1000U);
    EXPECT_TRUE(std::is_sorted(loaded.begin(), loaded.end(),
                               [](const auto& a, const auto& b) { return a.date > b.date; }));
    EXPECT_TRUE(store.load([] { return true; }).empty());
}

TEST(SnapshotDirectory, LiesInTheFolderForApplicationData)
{
    const char* const home = std::getenv("XDG_DATA_HOME");
    ASSERT_NE(home, nullptr);
    EXPECT_EQ(SnapshotStore::snapshotsDirectory(),
              FilePath(std::string(home) + "/Quorvane/Snapshots"));
}

} // namespace
} // namespace quorvane
