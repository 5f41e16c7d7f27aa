// SPDX-License-Identifier: MIT
#include "Gate.h"
#include "StateFixture.h"
#include "TreeText.h"
#include "UnprivilegedRun.h"

#include <QStringList>

#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace quorvane {
namespace {

using Outcome = Trash::Outcome;

using Call = FaultyFileSystemCalls::Call;

/// Takes things off the disk as a Trash does, without keeping them.
Outcome takeAway(const FilePath& path)
{
    std::error_code error;
    return std::filesystem::remove_all(path.bytes(), error) > 0 ? Outcome::moved : Outcome::missing;
}

class AppStateStaging : public StateFixture
{
protected:
    NodePointer node(std::string_view path)
    {
        FileNode& root = *state().rootNode.value();
        return state().share(&test::nodeAt(root, path));
    }

    std::vector<std::string> queue()
    {
        std::vector<std::string> names;
        for (const NodePointer& staged : state().stagedNodes.value()) {
            EXPECT_TRUE(staged->isStagedForTrash());
            names.emplace_back(staged->name());
        }
        return names;
    }

    void scanThreeFiles()
    {
        disk.file("a", 100);
        disk.file("b", 20);
        disk.file("c", 3);
        scan(disk.root());
    }

    /// What the batch tells, in the order in which it tells it: "{status} {progress}".
    QStringList sendAndListen()
    {
        QStringList told;
        const auto note = [this, &told] {
            const QString line = state().trashStatus.value().value_or(QString()) %
                                 QLatin1Char(' ') %
                                 QString::number(state().trashProgress.value(), 'f', 3);
            if (told.isEmpty() || told.last() != line) {
                told.append(line);
            }
        };
        const auto status = state().trashStatus.addNotifier(note);
        state().sendStagedToTrash();
        EXPECT_TRUE(state().isTrashingStaged.value());
        EXPECT_TRUE(state().stagedNodes.value().empty());
        EXPECT_TRUE(waitFor(
            [this] { return !state().isTrashingStaged.value() && !state().isScanning.value(); }));
        return told;
    }
};

TEST_F(AppStateStaging, TogglingTwiceLeavesListAndFlagAsBefore)
{
    scanThreeFiles();
    const NodePointer a = node("a");
    state().toggleStaged(a);
    state().toggleStaged(node("b"));
    EXPECT_EQ(queue(), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(state().stagedSpace(), 120);
    state().toggleStaged(a);
    EXPECT_FALSE(a->isStagedForTrash());
    EXPECT_EQ(queue(), std::vector<std::string>{"b"});
    state().toggleStaged(node("b"));
    EXPECT_TRUE(queue().empty());
    EXPECT_EQ(state().stagedSpace(), 0);
    EXPECT_EQ(state().flashMessage.value(), std::nullopt);
}

TEST_F(AppStateStaging, StagesTheSelectionButNeverTheRoot)
{
    scanThreeFiles();
    state().stageSelection();
    EXPECT_TRUE(queue().empty());
    state().select(nullptr);
    state().stageSelection();
    EXPECT_TRUE(queue().empty());
    state().select(node("c"));
    state().stageSelection();
    EXPECT_EQ(queue(), std::vector<std::string>{"c"});
    state().stageSelection();
    EXPECT_TRUE(queue().empty());
}

TEST_F(AppStateStaging, UnstagingWhatIsNotListedIsHarmless)
{
    scanThreeFiles();
    state().toggleStaged(node("a"));
    state().unstage(*node("b"));
    EXPECT_EQ(queue(), std::vector<std::string>{"a"});
    state().unstage(*node("a"));
    state().unstage(*node("a"));
    EXPECT_TRUE(queue().empty());
}

TEST_F(AppStateStaging, CountsAFileInsideAStagedFolderTwice)
{
    disk.file("folder/inside", 500);
    disk.file("folder/other", 60);
    scan(disk.root());
    state().toggleStaged(node("folder"));
    state().toggleStaged(node("folder/inside"));
    EXPECT_EQ(state().stagedSpace(), 560 + 500);
    platform.trash.answer = takeAway;
    sendAndListen();
    EXPECT_EQ(platform.trash.asked(), std::vector{disk.path("folder")}) << "the file went with it";
    EXPECT_EQ(state().trashStatus.value(), QStringLiteral("Moved 2 items to Trash."));
    EXPECT_TRUE(state().rootNode.value()->children().empty());
}

TEST_F(AppStateStaging, HugeClaimsThatCountTwiceEndAtTheLargestNumber)
{
    constexpr std::int64_t claim = std::int64_t{6} << 60;
    const auto tree = test::treeFromText("folder/\n  hole " + std::to_string(claim) + "\n");
    state().rootNode = tree->rootPointer();
    for (const char* const name : {"folder", "folder/hole"}) {
        state().toggleStaged(NodePointer(tree->rootPointer(), &test::nodeAt(tree->root(), name)));
    }
    EXPECT_EQ(state().stagedSpace(), std::numeric_limits<std::int64_t>::max());
}

TEST_F(AppStateStaging, ABatchGoesOnBehindAFailure)
{
    scanThreeFiles();
    for (const char* const name : {"b", "a", "c"}) {
        state().toggleStaged(node(name));
    }
    const NodePointer oldA = node("a");
    platform.trash.answer = [this](const FilePath& path) {
        return path == disk.path("a") ? Outcome::notPermitted : takeAway(path);
    };
    EXPECT_EQ(sendAndListen(), (QStringList{QStringLiteral("Moving 3 items to Trash… 0.000"),
                                            QStringLiteral("Moving 1 of 3 to Trash… 0.333"),
                                            QStringLiteral("Moving 2 of 3 to Trash… 0.667"),
                                            QStringLiteral("Moving 3 of 3 to Trash… 1.000"),
                                            QStringLiteral("Moved 3 items to Trash. 1.000")}));
    EXPECT_EQ(platform.trash.asked(),
              (std::vector{disk.path("b"), disk.path("a"), disk.path("c")}));
    EXPECT_FALSE(oldA->isStagedForTrash());
    ASSERT_TRUE(state().hasScan());
    EXPECT_NE(state().rootNode.value()->children().data(), nullptr);
    EXPECT_EQ(state().rootNode.value()->fileCount(), 1);
    EXPECT_FALSE(node("a")->isStagedForTrash());
    EXPECT_NE(node("a"), oldA);
    EXPECT_TRUE(std::filesystem::exists(disk.path("a").bytes()));
    EXPECT_TRUE(queue().empty());
}

TEST_F(AppStateStaging, ABatchOfOneSpeaksOfOneItem)
{
    scanThreeFiles();
    state().toggleStaged(node("a"));
    EXPECT_EQ(sendAndListen(), (QStringList{QStringLiteral("Moving 1 item to Trash… 0.000"),
                                            QStringLiteral("Moving 1 of 1 to Trash… 1.000"),
                                            QStringLiteral("Moved 1 item to Trash. 1.000")}));
}

TEST_F(AppStateStaging, AnEmptyBatchSpeaksOfNoItems)
{
    scanThreeFiles();
    EXPECT_EQ(sendAndListen(), (QStringList{QStringLiteral("Moving 0 items to Trash… 0.000"),
                                            QStringLiteral("Moved 0 items to Trash. 0.000")}));
}

TEST_F(AppStateStaging, WithoutARootNoScanFollows)
{
    disk.file("cache", 7);
    const NodePointer item = FileTree::stagedItem("cache", disk.path("cache"), 7);
    state().toggleStaged(item);
    EXPECT_EQ(state().stagedSpace(), 7);
    sendAndListen();
    EXPECT_FALSE(state().isScanning.value());
    EXPECT_FALSE(state().hasScan());
    EXPECT_EQ(platform.trash.asked(), std::vector{disk.path("cache")});
    EXPECT_TRUE(queue().empty());
}

TEST_F(AppStateStaging, ANewScanEmptiesTheQueue)
{
    scanThreeFiles();
    state().toggleStaged(node("a"));
    state().startScan(disk.root());
    EXPECT_TRUE(state().stagedNodes.value().empty());
    awaitScan();
    EXPECT_FALSE(node("a")->isStagedForTrash());
}

TEST_F(AppStateStaging, TheMainThreadStaysFreeAndStagesOnMeanwhile)
{
    scanThreeFiles();
    state().toggleStaged(node("a"));
    state().toggleStaged(node("b"));
    Gate gate;
    platform.trash.answer = [&gate](const FilePath& path) {
        gate.pass();
        return takeAway(path);
    };
    const NodePointer b = node("b");
    state().sendStagedToTrash();
    gate.awaitVisitor();
    EXPECT_TRUE(state().isTrashingStaged.value());
    EXPECT_DOUBLE_EQ(state().trashProgress.value(), 0);
    EXPECT_TRUE(b->isStagedForTrash()) << "loses its flag when it is its turn";
    state().toggleStaged(node("c"));
    EXPECT_EQ(queue(), std::vector<std::string>{"c"});
    gate.open();
    ASSERT_TRUE(waitFor(
        [this] { return !state().isTrashingStaged.value() && !state().isScanning.value(); }));
    EXPECT_TRUE(queue().empty()) << "the scan at the end empties it";
    EXPECT_TRUE(std::filesystem::exists(disk.path("c").bytes()));
}

/// A batch that waits in front of its first item, and a scan that was asked for meanwhile and waits
/// in front of the folder "deep", with what lies beside that folder listed already.
class ScanDuringABatch : public AppStateStaging
{
protected:
    void stageAndSend(std::string_view path)
    {
        state().toggleStaged(node(path));
        platform.trash.answer = [this](const FilePath& entry) {
            trashGate.pass();
            return takeAway(entry);
        };
        state().sendStagedToTrash();
        trashGate.awaitVisitor();
    }

    void startScanAndHold(const FilePath& folder)
    {
        calls.before(Call::openDirectory, [this](int, std::string_view opened) {
            if (FilePath(std::string(opened)).lastComponent() == "deep") {
                ++timesOpened;
                scanGate.pass();
            }
        });
        state().startScan(folder);
        scanGate.awaitVisitor();
    }

    /// The second scan begins while the batch of the first one's entry waits.
    void holdBatchAndScan(const FilePath& first, std::string_view staged, const FilePath& second)
    {
        scan(first);
        stageAndSend(staged);
        startScanAndHold(second);
    }

    void endBatch()
    {
        trashGate.open();
        ASSERT_TRUE(waitFor([this] { return !state().isTrashingStaged.value(); }));
        ASSERT_TRUE(state().isScanning.value());
    }

    void endScan()
    {
        scanGate.open();
        awaitScan();
    }

    Gate trashGate;
    Gate scanGate;
    std::atomic<int> timesOpened = 0;
};

TEST_F(ScanDuringABatch, StartsOverSoThatItShowsWhatTheBatchHasMoved)
{
    disk.file("big", 100);
    disk.file("deep/kept", 3);
    holdBatchAndScan(disk.root(), "big", disk.root());
    endBatch();
    endScan();
    ASSERT_TRUE(state().hasScan());
    EXPECT_EQ(state().rootNode.value()->fileCount(), 1);
    EXPECT_EQ(state().rootNode.value()->scannedBytes(), 3);
    EXPECT_EQ(state().progress.value()->filesScanned, 1);
    EXPECT_EQ(state().errorMessage.value(), std::nullopt);
    EXPECT_EQ(timesOpened, 2);
    EXPECT_EQ(state().trashStatus.value(), QStringLiteral("Moved 1 item to Trash."));
}

TEST_F(ScanDuringABatch, OfAFolderAboveStartsOverThere)
{
    disk.file("a/big", 100);
    disk.file("deep/kept", 3);
    holdBatchAndScan(disk.path("a"), "big", disk.root());
    endBatch();
    endScan();
    ASSERT_TRUE(state().hasScan());
    EXPECT_EQ(state().rootNode.value()->path(), disk.root());
    EXPECT_EQ(state().rootNode.value()->scannedBytes(), 3);
}

TEST_F(ScanDuringABatch, OfAFolderThatTheBatchTakesAwayFails)
{
    disk.file("staged/deep/file", 100);
    holdBatchAndScan(disk.root(), "staged", disk.path("staged"));
    endBatch();
    endScan();
    EXPECT_FALSE(state().hasScan());
    EXPECT_EQ(state().errorMessage.value(),
              QLatin1String("Cannot access ") % disk.path("staged").displayText());
}

TEST_F(ScanDuringABatch, OfAFolderElsewhereIsLeftToItsEnd)
{
    disk.file("here/big", 100);
    disk.file("there/deep/kept", 3);
    holdBatchAndScan(disk.path("here"), "big", disk.path("there"));
    endBatch();
    endScan();
    EXPECT_EQ(timesOpened, 1);
    EXPECT_EQ(state().rootNode.value()->path(), disk.path("there"));
}

TEST_F(ScanDuringABatch, DoesNotStartOverWhenItWasCancelledBefore)
{
    disk.file("big", 100);
    disk.file("deep/kept", 3);
    holdBatchAndScan(disk.root(), "big", disk.root());
    state().cancelScan();
    endBatch();
    endScan();
    EXPECT_FALSE(state().hasScan());
    EXPECT_EQ(state().errorMessage.value(), std::nullopt);
    EXPECT_EQ(timesOpened, 1);
}

TEST_F(ScanDuringABatch, DoesNotStartOverWhenItIsCancelledAfterTheBatch)
{
    disk.file("big", 100);
    disk.file("deep/kept", 3);
    holdBatchAndScan(disk.root(), "big", disk.root());
    endBatch();
    state().cancelScan();
    endScan();
    EXPECT_FALSE(state().hasScan());
    EXPECT_EQ(state().errorMessage.value(), std::nullopt);
    EXPECT_EQ(timesOpened, 1);
}

TEST_F(AppStateStaging, AStateThatGoesDuringABatchWaitsForItsEnd)
{
    scanThreeFiles();
    for (const char* const name : {"a", "b", "c"}) {
        state().toggleStaged(node(name));
    }
    Gate gate;
    platform.trash.answer = [&gate](const FilePath&) {
        gate.pass();
        return Outcome::moved;
    };
    state().sendStagedToTrash();
    gate.awaitVisitor();
    gate.open();
    end();
    EXPECT_EQ(platform.trash.asked(),
              (std::vector{disk.path("a"), disk.path("b"), disk.path("c")}));
}

TEST_F(AppStateStaging, TheEndOfTheProgramWaitsForTheBatch)
{
    scanThreeFiles();
    state().waitForBatch();
    for (const char* const name : {"a", "b", "c"}) {
        state().toggleStaged(node(name));
    }
    Gate gate;
    platform.trash.answer = [&gate](const FilePath&) {
        gate.pass();
        return Outcome::moved;
    };
    state().sendStagedToTrash();
    gate.awaitVisitor();
    gate.open();
    state().jobs().close();
    state().waitForBatch();
    EXPECT_EQ(platform.trash.asked().size(), 3u);
}

TEST_F(AppStateStaging, WhatHasChangedSinceTheScanStays)
{
    scanThreeFiles();
    state().toggleStaged(node("a"));
    state().toggleStaged(node("b"));
    disk.file("a", 101);
    platform.trash.answer = takeAway;
    sendAndListen();
    EXPECT_EQ(platform.trash.asked(), std::vector{disk.path("b")});
    EXPECT_TRUE(std::filesystem::exists(disk.path("a").bytes()));
}

TEST_F(AppStateStaging, EntriesOfOneIdAreToldApart)
{
    scanThreeFiles();
    const NodePointer a = node("a");
    // Made-up ids may meet those of a scan, and one another.
    const NodePointer item = FileTree::stagedItem("x", FilePath("x"), 5);
    const auto twinTree = FileTree::create(FilePath("/twin"), {a->id(), "twin", {}});
    const NodePointer twin = twinTree->rootPointer();
    ASSERT_EQ(twin->id(), a->id());
    for (const NodePointer& each : {a, twin, item}) {
        state().toggleStaged(each);
    }
    state().unstage(*twin);
    EXPECT_EQ(queue(), (std::vector<std::string>{"a", "x"}));
    state().toggleStaged(twin);
    state().toggleStaged(a);
    EXPECT_EQ(queue(), (std::vector<std::string>{"x", "twin"}));
    EXPECT_FALSE(a->isStagedForTrash());
}

TEST_F(AppStateStaging, AStandAloneEntryIsComparedWithWhatItsFinderSaw)
{
    scanThreeFiles();
    EntryStatus status;
    ASSERT_TRUE(FileSystemCalls::system().status(FileSystemCalls::noDirectory(),
                                                 disk.path("a").bytes().c_str(), status));
    TrashRequest found = TrashRequest::of(disk.path("a"), disk.root(), status);
    const NodePointer same = FileTree::stagedItem("a", disk.path("a"), 100);
    state().stageItem(same, found);
    state().stageItem(same, found);
    EXPECT_EQ(queue(), std::vector<std::string>{"a"});
    status.size += 1;
    const NodePointer other = FileTree::stagedItem("b", disk.path("b"), 20);
    state().stageItem(other, TrashRequest::of(disk.path("b"), disk.root(), status));
    platform.trash.answer = takeAway;
    sendAndListen();
    EXPECT_EQ(platform.trash.asked(), std::vector{disk.path("a")});
}

TEST_F(AppStateStaging, TellsWhatStandsInTheWayBeforeTheBatch)
{
    scanThreeFiles();
    for (const char* const name : {"a", "b", "c"}) {
        state().toggleStaged(node(name));
    }
    disk.file("b", 21);
    disk.remove("c");
    state().refreshQueueCautions();
    ASSERT_TRUE(waitFor([this] { return !state().queueCautions.value()->queue.empty(); }));
    const QueueCautions& cautions = *state().queueCautions.value();
    EXPECT_EQ(cautions.of(*node("a")).kind, QueueCaution::Kind::none);
    EXPECT_EQ(cautions.of(*node("b")).obstacle, TrashOutcome::changed);
    EXPECT_EQ(cautions.of(*node("c")).obstacle, TrashOutcome::missing);
    EXPECT_TRUE(platform.trash.asked().empty());
    scan(disk.root());
    EXPECT_TRUE(state().queueCautions.value()->queue.empty()) << "nothing of the old tree is left";
}

TEST_F(AppStateStaging, ALookThatHangsKeepsOneThreadHoweverOftenTheQueueChanges)
{
    scanThreeFiles();
    state().toggleStaged(node("a"));
    Gate gate;
    std::atomic<int> looks = 0;
    platform.trash.obstacle = [&](const FilePath&) {
        ++looks;
        gate.pass();
        return std::optional<Outcome>();
    };
    state().refreshQueueCautions();
    gate.awaitVisitor();
    state().toggleStaged(node("b"));
    for (int i = 0; i < 100; ++i) {
        state().refreshQueueCautions();
    }
    EXPECT_EQ(looks.load(), 1);
    gate.open();
    ASSERT_TRUE(waitFor([this] { return state().queueCautions.value()->queue.size() == 2; }));
    EXPECT_LE(looks.load(), 5) << "one look more at two entries, whatever came in between";
}

TEST_F(AppStateStaging, ABatchWithoutAThreadPutsTheQueueBack)
{
    disk.file("a", 100);
    const FilePath root = disk.root();
    inChildProcess([&root] {
        asUnprivilegedUser([&root] {
            FakePlatform poor{root, FileSystemCalls::system()};
            AppState state(poor.platform());
            const NodePointer item = FileTree::stagedItem("a", root.appending("a"), 100);
            state.toggleStaged(item);
            const rlimit none{0, 0};
            ASSERT_EQ(setrlimit(RLIMIT_NPROC, &none), 0);
            state.sendStagedToTrash();
            ASSERT_TRUE(waitFor([&state] { return !state.isTrashingStaged.value(); }));
            EXPECT_EQ(state.stagedNodes.value(), std::vector{item});
            EXPECT_TRUE(item->isStagedForTrash());
            EXPECT_TRUE(poor.trash.asked().empty());
            EXPECT_EQ(
                state.flashMessage.value(),
                QStringLiteral("Not enough memory to move the items to Trash. They are staged "
                               "again."));
            EXPECT_EQ(state.trashStatus.value(), std::nullopt);
        });
    });
}

} // namespace
} // namespace quorvane
