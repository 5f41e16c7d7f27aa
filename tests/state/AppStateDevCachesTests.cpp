// SPDX-License-Identifier: MIT
#include "Gate.h"
#include "StateFixture.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace quorvane {
namespace {

using CacheItem = DevCacheCleaner::CacheItem;
using Call = FaultyFileSystemCalls::Call;
using Outcome = Trash::Outcome;
using Found = std::optional<std::vector<CacheItem>>;

Outcome takeAway(const FilePath& path)
{
    std::error_code error;
    return std::filesystem::remove_all(path.bytes(), error) > 0 ? Outcome::moved : Outcome::missing;
}

class AppStateDevCaches : public StateFixture
{
protected:
    ~AppStateDevCaches() override { gate.open(); }

    DevCachesState::OnFound take()
    {
        return [this](Found items) {
            found = std::move(items);
            ++answers;
        };
    }

    std::vector<CacheItem> scanCaches(bool deep = false)
    {
        const int before = answers;
        deep ? state().deepScanBuildDirs(take()) : state().scanDevCaches(take());
        EXPECT_TRUE(waitFor([&] { return answers > before; }));
        return found.value_or(std::vector<CacheItem>());
    }

    std::vector<DevCachesState::Move> trash(const std::vector<CacheItem>& items)
    {
        std::optional<std::vector<DevCachesState::Move>> moves;
        counts.clear();
        state().trashDevCaches(
            items, [this](std::size_t count) { counts.push_back(count); },
            [&moves](const std::vector<DevCachesState::Move>& all) { moves = all; });
        EXPECT_TRUE(waitFor([&moves] { return moves.has_value(); }));
        return moves.value_or(std::vector<DevCachesState::Move>());
    }

    static std::vector<std::string> names(const std::vector<CacheItem>& items)
    {
        std::vector<std::string> names;
        for (const CacheItem& item : items) {
            names.push_back(item.name);
        }
        return names;
    }

    void holdListings()
    {
        gate.close();
        calls.before(Call::openDirectory, [this](int, std::string_view) { gate.pass(); });
    }

    bool isThere(std::string_view path) { return std::filesystem::exists(disk.path(path).bytes()); }

    Found found;
    int answers = 0;
    std::vector<std::size_t> counts;
    Gate gate{Gate::State::open};
};

TEST_F(AppStateDevCaches, MeasuresTheFixedPlacesWithoutAScan)
{
    disk.file(".npm/_cacache/a", 3000);
    disk.file(".cargo/registry/b", 5000);
    disk.file("project/node_modules/c", 9000);
    EXPECT_EQ(names(scanCaches()), (std::vector<std::string>{"Cargo Registry", "npm Cache"}));
    EXPECT_EQ(state().devCacheLocations.value(), 2);
    EXPECT_EQ(state().devCacheReclaimable.value(), 8000);
    EXPECT_FALSE(state().devCleanupScanIsRunning.value());
}

TEST_F(AppStateDevCaches, TheDeepWalkLeavesTheFiguresOfTheFixedPlacesAlone)
{
    disk.file(".npm/_cacache/a", 3000);
    disk.file("project/node_modules/c", 9000);
    scanCaches();
    EXPECT_EQ(names(scanCaches(true)), std::vector<std::string>{"node_modules"});
    EXPECT_EQ(state().devCacheLocations.value(), 1);
    EXPECT_EQ(state().devCacheReclaimable.value(), 3000);
}

TEST_F(AppStateDevCaches, ASecondLookDuringOneIsAnsweredWithNothingAtOnce)
{
    disk.file(".npm/_cacache/a", 3000);
    holdListings();
    state().scanDevCaches(take());
    EXPECT_TRUE(state().devCleanupScanIsRunning.value());
    gate.awaitVisitor();
    Found second = std::vector<CacheItem>();
    state().deepScanBuildDirs([&second](Found items) { second = std::move(items); });
    EXPECT_FALSE(second.has_value());
    gate.open();
    ASSERT_TRUE(waitFor([this] { return answers == 1; }));
    EXPECT_EQ(found->size(), 1U);
}

TEST_F(AppStateDevCaches, ACancelledDeepWalkGivesNothing)
{
    disk.file("project/node_modules/c", 9000);
    holdListings();
    state().deepScanBuildDirs(take());
    gate.awaitVisitor();
    state().cancelDevCleanupScan();
    gate.open();
    ASSERT_TRUE(waitFor([this] { return answers == 1; }));
    EXPECT_FALSE(found.has_value());
    EXPECT_FALSE(state().devCleanupScanIsRunning.value());
    // A cancel does not reach the next look.
    EXPECT_EQ(names(scanCaches(true)), std::vector<std::string>{"node_modules"});
}

TEST_F(AppStateDevCaches, ANewScanOfTheTreeLeavesTheFiguresAlone)
{
    disk.file(".npm/_cacache/a", 3000);
    scanCaches();
    scan(disk.root());
    EXPECT_EQ(state().devCacheLocations.value(), 1);
    EXPECT_EQ(state().devCacheReclaimable.value(), 3000);
}

TEST_F(AppStateDevCaches, MovesTheItemsOneByOneAndCounts)
{
    disk.file(".npm/_cacache/a", 3000);
    disk.file(".cargo/registry/b", 5000);
    const std::vector<CacheItem> items = scanCaches();
    platform.trash.answer = takeAway;
    const auto moves = trash(items);
    ASSERT_EQ(moves.size(), 2U);
    EXPECT_EQ(moves[0].id, disk.path(".cargo/registry").bytes());
    EXPECT_EQ(moves[0].outcome, TrashOutcome::moved);
    EXPECT_EQ(moves[1].outcome, TrashOutcome::moved);
    EXPECT_EQ(counts, (std::vector<std::size_t>{1, 2}));
    EXPECT_FALSE(isThere(".npm/_cacache"));
    EXPECT_TRUE(isThere(".npm"));
}

TEST_F(AppStateDevCaches, AnItemInsideOneThatHasMovedHasMovedWithIt)
{
    disk.file("a/node_modules/x", 10);
    std::vector<CacheItem> items = scanCaches(true);
    ASSERT_EQ(items.size(), 1U);
    CacheItem inside = items.front();
    inside.path = disk.path("a/node_modules/deep/.venv");
    items.push_back(inside);
    platform.trash.answer = takeAway;
    const auto moves = trash(items);
    EXPECT_EQ(moves[1].outcome, TrashOutcome::moved);
    EXPECT_EQ(platform.trash.asked().size(), 1U);
}

TEST_F(AppStateDevCaches, WhatGoesByItsOwnToolIsNeverMoved)
{
    disk.file("go/pkg/mod/a", 3000);
    const std::vector<CacheItem> items = scanCaches();
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(trash(items).front().outcome, TrashOutcome::protectedPlace);
    EXPECT_TRUE(platform.trash.asked().empty());
}

TEST_F(AppStateDevCaches, AFolderThatIsNotWhatWasFoundStays)
{
    disk.file(".npm/_cacache/a", 3000);
    const std::vector<CacheItem> items = scanCaches();
    disk.remove(".npm/_cacache");
    disk.file(".npm/_cacache", 3000);
    EXPECT_EQ(trash(items).front().outcome, TrashOutcome::otherKind);
    EXPECT_TRUE(platform.trash.asked().empty());
}

TEST_F(AppStateDevCaches, ADeepHitBehindAFolderThatBecameALinkStays)
{
    disk.file("a/node_modules/x", 10);
    disk.file("b/node_modules/precious", 10);
    std::vector<CacheItem> items = scanCaches(true);
    std::erase_if(
        items, [this](const CacheItem& each) { return each.path != disk.path("a/node_modules"); });
    ASSERT_EQ(items.size(), 1U);
    disk.remove("a");
    disk.symbolicLink("b", "a");
    platform.trash.answer = takeAway;
    EXPECT_EQ(trash(items).front().outcome, TrashOutcome::behindLink);
    EXPECT_TRUE(isThere("b/node_modules/precious"));
}

TEST_F(AppStateDevCaches, NothingOfTheSystemIsMovedWhateverAnItemSays)
{
    for (const char* const path :
         {"/usr/share/doc", "/usr/bin", "/bin/sh", "/lib", "/usr", "/etc/passwd", "/boot"}) {
        CacheItem item;
        item.path = FilePath(path);
        EXPECT_NE(trash({item}).front().outcome, TrashOutcome::moved) << path;
    }
    EXPECT_TRUE(platform.trash.asked().empty());
}

} // namespace
} // namespace quorvane
