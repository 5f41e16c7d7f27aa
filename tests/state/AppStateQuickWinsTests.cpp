// SPDX-License-Identifier: MIT
#include "Gate.h"
#include "StateFixture.h"
#include "TreeText.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace quorvane {
namespace {

using Call = FaultyFileSystemCalls::Call;
using Outcome = Trash::Outcome;

class AppStateQuickWins : public StateFixture
{
protected:
    /// Holds up every listing until the gate is opened.
    void holdListings()
    {
        calls.before(Call::openDirectory, [this](int, std::string_view) { gate.pass(); });
    }

    ~AppStateQuickWins() override { gate.open(); }

    void awaitWins()
    {
        ASSERT_TRUE(waitFor([this] { return !state().isQuickWinsLoading.value(); }));
    }

    void refresh()
    {
        state().refreshQuickWins();
        awaitWins();
    }

    std::vector<std::string> names()
    {
        std::vector<std::string> names;
        for (const QuickWin& win : state().quickWins.value()) {
            names.push_back(win.name);
        }
        return names;
    }

    QuickWin win(std::string_view name)
    {
        const std::vector<QuickWin>& wins = state().quickWins.value();
        const auto found = std::find_if(wins.begin(), wins.end(),
                                        [name](const QuickWin& each) { return each.name == name; });
        EXPECT_NE(found, wins.end()) << name;
        return found == wins.end() ? QuickWin() : *found;
    }

    void sendQueue()
    {
        state().sendStagedToTrash();
        ASSERT_TRUE(waitFor(
            [this] { return !state().isTrashingStaged.value() && !state().isScanning.value(); }));
        awaitWins();
    }

    QString flash() { return state().flashMessage.value().value_or(QString()); }

    bool isThere(std::string_view path)
    {
        return std::filesystem::symlink_status(disk.path(path).bytes()).type() !=
               std::filesystem::file_type::not_found;
    }

    Gate gate{Gate::State::open};
};

/// Takes things off the disk as a Trash does, without keeping them.
Outcome takeAway(const FilePath& path)
{
    std::error_code error;
    return std::filesystem::remove_all(path.bytes(), error) > 0 ? Outcome::moved : Outcome::missing;
}

TEST_F(AppStateQuickWins, WithoutAScanOnlyPlacesOfTheHomeAreListed)
{
    disk.file(".cache/pip/wheel", 5000);
    disk.file("project/node_modules/a", 9000);
    refresh();
    EXPECT_EQ(names(), std::vector<std::string>{"pip Cache"});
}

TEST_F(AppStateQuickWins, TheEndOfAScanSortsItsHitsInWithThePlacesOfTheHome)
{
    disk.file(".cache/pip/wheel", 50000);
    disk.file("project/node_modules/a", 90000);
    disk.file("project/target/a", 10000);
    disk.file("project/Cargo.toml", 1);
    scan(disk.path("project"));
    awaitWins();
    EXPECT_EQ(names(), (std::vector<std::string>{"node_modules", "pip Cache", "target"}));
    EXPECT_EQ(win("target").evidence.basis, "Cargo.toml beside it");
    EXPECT_EQ(win("node_modules").detail, "Found under project. Common build/junk directory.");
}

TEST_F(AppStateQuickWins, APlaceOfTheHomeThatLiesInTheScanIsListedOnceForEachFinder)
{
    disk.file(".cache/pip/a", 5000);
    scan(disk.root());
    awaitWins();
    EXPECT_EQ(names(), (std::vector<std::string>{"pip Cache", ".cache"}));
}

TEST_F(AppStateQuickWins, ARefreshDuringARefreshChangesNothing)
{
    disk.file(".cache/pip/a", 5000);
    gate.close();
    holdListings();
    state().refreshQuickWins();
    gate.awaitVisitor();
    state().refreshQuickWins();
    EXPECT_TRUE(state().isQuickWinsLoading.value());
    gate.open();
    awaitWins();
    EXPECT_EQ(names(), std::vector<std::string>{"pip Cache"});
}

TEST_F(AppStateQuickWins, ALookThatIsStoppedPublishesNothing)
{
    disk.file(".cache/pip/a", 5000);
    gate.close();
    holdListings();
    state().refreshQuickWins();
    gate.awaitVisitor();
    state().stopQuickWins();
    EXPECT_FALSE(state().isQuickWinsLoading.value());
    gate.open();
    refresh();
    EXPECT_EQ(state().quickWins.value().size(), 1U);
    state().refreshQuickWins();
    state().stopQuickWins();
    EXPECT_TRUE(state().quickWins.value().empty());
}

TEST_F(AppStateQuickWins, ANewScanEmptiesTheListAndEndsTheLook)
{
    disk.file(".cache/pip/a", 5000);
    refresh();
    ASSERT_FALSE(state().quickWins.value().empty());
    gate.close();
    holdListings();
    state().startScan(disk.root());
    EXPECT_TRUE(state().quickWins.value().empty());
    EXPECT_FALSE(state().isQuickWinsLoading.value());
    gate.open();
    awaitScan();
    awaitWins();
    EXPECT_EQ(state().quickWins.value().size(), 2U);
}

TEST_F(AppStateQuickWins, TheLookCountsThePlacesThatAreMeasured)
{
    disk.file(".cache/pip/a", 5000);
    refresh();
    const std::size_t places =
        QuickWins::homeTargets().size() +
        resolvedPlaces(HomeFolders::below(disk.root()), FileSystemCalls::system()).size();
    EXPECT_EQ(state().quickWinsMeasured.value(), static_cast<int>(places));
}

TEST_F(AppStateQuickWins, StagingTwiceLeavesTheQueueAsBefore)
{
    disk.file(".cache/pip/a", 5000);
    refresh();
    const QuickWin pip = win("pip Cache");
    state().stageQuickWin(pip);
    EXPECT_TRUE(state().isStagedQuickWin(pip));
    ASSERT_EQ(state().stagedNodes.value().size(), 1U);
    EXPECT_EQ(state().stagedNodes.value().front()->path(), disk.path(".cache/pip"));
    EXPECT_EQ(state().stagedSpace(), pip.bytes);
    EXPECT_EQ(flash(), QStringLiteral("Staged \"pip Cache\" for Trash — review it under Cleanup."));
    state().stageQuickWin(pip);
    EXPECT_FALSE(state().isStagedQuickWin(pip));
    EXPECT_TRUE(state().stagedNodes.value().empty());
    EXPECT_EQ(flash(), QStringLiteral("Removed \"pip Cache\" from the Trash queue."));
}

TEST_F(AppStateQuickWins, WhatIsStagedStandsAloneAndTheRealNodeStaysAsItIs)
{
    disk.file("project/node_modules/a", 9000);
    scan(disk.root());
    awaitWins();
    state().stageQuickWin(win("node_modules"));
    const NodePointer& item = state().stagedNodes.value().front();
    EXPECT_EQ(item->parent(), nullptr);
    EXPECT_TRUE(item->isStagedForTrash());
    EXPECT_FALSE(
        test::nodeAt(*state().rootNode.value(), "project/node_modules").isStagedForTrash());
}

TEST_F(AppStateQuickWins, ANodeOfTheTreeThatIsStagedCountsAsTheWin)
{
    disk.file("project/node_modules/a", 9000);
    scan(disk.root());
    awaitWins();
    FileNode& node = test::nodeAt(*state().rootNode.value(), "project/node_modules");
    state().toggleStaged(state().share(&node));
    const QuickWin hit = win("node_modules");
    EXPECT_TRUE(state().isStagedQuickWin(hit));
    EXPECT_EQ(state().areStaged(state().quickWins.value()), std::vector<bool>{true});
    state().stageQuickWin(hit);
    EXPECT_FALSE(node.isStagedForTrash());
    EXPECT_TRUE(state().stagedNodes.value().empty());
}

TEST_F(AppStateQuickWins, WinsOfOneMadeUpIdAreToldApart)
{
    // Sums below 3 are raised to 2, and every second path has one.
    std::vector<QuickWin> wins;
    for (int i = 0; wins.size() < 2; ++i) {
        QuickWin each;
        each.name = "build";
        each.url = disk.path(std::to_string(i) + "/a name that spreads the sums/build");
        if (FileTree::stagedItem(each.name, each.url, 1)->id() == 2) {
            wins.push_back(each);
        }
        ASSERT_LT(i, 1000);
    }
    state().stageQuickWin(wins[0]);
    state().stageQuickWin(wins[1]);
    state().stageQuickWin(wins[0]);
    EXPECT_FALSE(state().isStagedQuickWin(wins[0]));
    EXPECT_TRUE(state().isStagedQuickWin(wins[1]));
    EXPECT_EQ(state().areStaged(wins), (std::vector<bool>{false, true}));
}

TEST_F(AppStateQuickWins, WhatGoesByItsOwnToolIsNeverStaged)
{
    disk.file("go/pkg/mod/a", 5000);
    refresh();
    const QuickWin modules = win("go Module Cache");
    EXPECT_EQ(modules.command, "go clean -modcache");
    state().stageQuickWin(modules);
    EXPECT_TRUE(state().stagedNodes.value().empty());
    EXPECT_EQ(flash(), QString());
}

TEST_F(AppStateQuickWins, HiddenFamiliesAreLeftOut)
{
    disk.file("Library/Developer/Xcode/Archives/a", 5000);
    disk.file("Library/WebKit/a", 5000);
    refresh();
    EXPECT_EQ(state().filteredQuickWins().size(), 2U);
    EXPECT_FALSE(state().isQuickWinsFiltered());
    std::map<std::string, bool> filters = state().bloatFilters();
    filters["Xcode"] = false;
    state().setBloatFilters(filters);
    EXPECT_TRUE(state().isQuickWinsFiltered());
    ASSERT_EQ(state().filteredQuickWins().size(), 1U);
    EXPECT_EQ(state().filteredQuickWins().front().name, "WebKit website data");
    EXPECT_EQ(state().quickWins.value().size(), 2U);
}

TEST_F(AppStateQuickWins, AStagedWinGoesThroughTheBatch)
{
    disk.file("project/node_modules/a", 9000);
    scan(disk.root());
    awaitWins();
    platform.trash.answer = takeAway;
    state().stageQuickWin(win("node_modules"));
    sendQueue();
    EXPECT_FALSE(isThere("project/node_modules"));
    EXPECT_TRUE(isThere("project"));
    EXPECT_TRUE(state().quickWins.value().empty());
    EXPECT_TRUE(state().trashFailures.value().empty());
}

TEST_F(AppStateQuickWins, AFolderThatAFileHasReplacedStaysAndItsFailureIsKnown)
{
    disk.file("project/node_modules/a", 9000);
    scan(disk.root());
    awaitWins();
    platform.trash.answer = takeAway;
    state().stageQuickWin(win("node_modules"));
    disk.remove("project/node_modules");
    disk.file("project/node_modules", 7);
    sendQueue();
    EXPECT_TRUE(platform.trash.asked().empty());
    EXPECT_EQ(state().trashFailures.value(),
              (std::map<FilePath, TrashOutcome>{
                  {disk.path("project/node_modules"), TrashOutcome::otherKind}}));
}

TEST_F(AppStateQuickWins, AScanHitBehindAFolderThatBecameALinkStays)
{
    disk.file("project/node_modules/a", 9000);
    disk.file("elsewhere/node_modules/precious", 9);
    scan(disk.path("project"));
    scan(disk.root());
    awaitWins();
    platform.trash.answer = takeAway;
    QuickWin hit;
    for (const QuickWin& each : state().quickWins.value()) {
        hit = each.url == disk.path("project/node_modules") ? each : hit;
    }
    state().stageQuickWin(hit);
    disk.remove("project");
    disk.symbolicLink("elsewhere", "project");
    sendQueue();
    EXPECT_TRUE(platform.trash.asked().empty());
    EXPECT_TRUE(isThere("elsewhere/node_modules/precious"));
    EXPECT_EQ(state().trashFailures.value().at(hit.url), TrashOutcome::behindLink);
}

TEST_F(AppStateQuickWins, OfAPlaceThatIsALinkOnlyTheLinkIsMoved)
{
    disk.file("big disk/pip/a", 5000);
    disk.folder(".cache");
    disk.symbolicLink(disk.path("big disk/pip").bytes(), ".cache/pip");
    refresh();
    EXPECT_GE(win("pip Cache").bytes, 5000);
    platform.trash.answer = takeAway;
    state().stageQuickWin(win("pip Cache"));
    sendQueue();
    EXPECT_FALSE(isThere(".cache/pip"));
    EXPECT_TRUE(isThere("big disk/pip/a"));
}

TEST_F(AppStateQuickWins, WhatCouldNotBeMovedIsRememberedUntilALaterBatchMovesIt)
{
    disk.file(".cache/pip/a", 5000);
    scan(disk.root());
    awaitWins();
    platform.trash.answer = [](const FilePath&) { return Outcome::notPermitted; };
    state().stageQuickWin(win("pip Cache"));
    sendQueue();
    const FilePath pip = disk.path(".cache/pip");
    EXPECT_EQ(win("pip Cache").url, pip);
    EXPECT_EQ(state().trashFailures.value(),
              (std::map<FilePath, TrashOutcome>{{pip, TrashOutcome::notPermitted}}));
    platform.trash.answer = takeAway;
    state().stageQuickWin(win("pip Cache"));
    EXPECT_EQ(state().trashFailures.value().size(), 1U);
    sendQueue();
    EXPECT_TRUE(state().trashFailures.value().empty());
}

TEST_F(AppStateQuickWins, RevealShowsTheFolderInTheFileManager)
{
    disk.file(".cache/pip/a", 5000);
    refresh();
    state().revealQuickWin(win("pip Cache"));
    EXPECT_EQ(platform.workspace.revealed, std::vector{disk.path(".cache/pip")});
}

} // namespace
} // namespace quorvane
