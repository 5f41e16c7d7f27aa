// SPDX-License-Identifier: MIT
#include "DevCacheCleaner.h"

#include "DiskTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <string>

namespace quorvane {
namespace {

using DevCacheCleaner::CacheItem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

std::vector<std::string> namesOf(const std::vector<CacheItem>& items)
{
    std::vector<std::string> names;
    for (const CacheItem& item : items) {
        names.push_back(item.name);
    }
    return names;
}

CacheItem made(const std::string& path, std::int64_t bytes)
{
    CacheItem item;
    item.path = FilePath(path);
    item.name = item.path.lastComponent();
    item.bytes = bytes;
    return item;
}

std::vector<CacheItem> curated(const DiskTree& home)
{
    return DevCacheCleaner::scanCurated(HomeFolders::below(home.root()));
}

std::vector<CacheItem> deep(const DiskTree& home)
{
    return DevCacheCleaner::findBuildDirectories(HomeFolders::below(home.root()));
}

TEST(DevCacheCleaner, CategoriesHaveNamesAndSymbols)
{
    using DevCacheCleaner::Category;
    EXPECT_EQ(DevCacheCleaner::rawValue(Category::packageManagers), "packageManagers");
    EXPECT_EQ(DevCacheCleaner::displayName(Category::buildDirs), QStringLiteral("Build folders"));
    EXPECT_EQ(DevCacheCleaner::systemImage(Category::xcode), "macwindow.badge.plus");
}

TEST(DevCacheCleaner, MetricsNeedAnExistingFolder)
{
    DiskTree disk;
    disk.file("file", 3);
    disk.folder("empty");
    EXPECT_FALSE(DevCacheCleaner::metrics(disk.path("absent")).has_value());
    EXPECT_FALSE(DevCacheCleaner::metrics(disk.path("file")).has_value());
    const auto empty = DevCacheCleaner::metrics(disk.path("empty"));
    ASSERT_TRUE(empty.has_value());
    EXPECT_EQ(empty->bytes, 0);
    EXPECT_EQ(empty->count, 0);
    EXPECT_EQ(empty->modified, std::nullopt);
}

TEST(DevCacheCleaner, ALocationThatIsAFileIsLeftOutAndAnEmptyFolderIsListed)
{
    DiskTree home;
    home.file(".npm/_cacache", 10);
    home.folder(".gradle/caches");
    const std::vector<CacheItem> items = curated(home);
    ASSERT_THAT(namesOf(items), ElementsAre("Gradle Caches"));
    EXPECT_EQ(items.front().bytes, 0);
    EXPECT_EQ(items.front().formattedItems(), QStringLiteral("0 items"));
    EXPECT_EQ(items.front().id(), home.path(".gradle/caches").bytes());
}

TEST(DevCacheCleaner, EveryFixedRowIsFoundUnderItsNameAndInItsFamily)
{
    DiskTree home;
    for (const DevCacheCleaner::Location& location : DevCacheCleaner::curatedLocations()) {
        home.file(std::string(location.subpath) + "/a", 10);
    }
    const std::vector<CacheItem> items = curated(home);
    EXPECT_EQ(items.size(), 20U);
    for (const DevCacheCleaner::Location& location : DevCacheCleaner::curatedLocations()) {
        const auto item = DevCacheCleaner::item(location, home.root());
        ASSERT_TRUE(item.has_value()) << location.name;
        const auto listed = std::find_if(items.begin(), items.end(), [&](const CacheItem& each) {
            return each.id() == item->id();
        });
        ASSERT_NE(listed, items.end()) << location.name;
        EXPECT_EQ(listed->name, location.name);
        EXPECT_EQ(listed->category, location.category);
        EXPECT_EQ(listed->bytes, item->bytes);
    }
}

TEST(DevCacheCleaner, RowsOfTheLinuxDesktopFollowInTheirFamilies)
{
    DiskTree home;
    home.file(".cache/pip/a", 30);
    home.file(".cache/ccache/a", 20);
    home.file(".local/share/pnpm/store/a", 10);
    home.file(".cache/thumbnails/a", 10);
    const std::vector<CacheItem> items = curated(home);
    ASSERT_THAT(namesOf(items), ElementsAre("pip Cache", "ccache", "pnpm Store"));
    EXPECT_EQ(items[1].category, CacheCategory::buildDirs);
    EXPECT_TRUE(items[0].isMovable());
    EXPECT_FALSE(items[2].isMovable());
    EXPECT_EQ(items[2].command, "pnpm store prune");
}

TEST(DevCacheCleaner, AFixedRowKnowsWhatTheLinuxTableSaysOfItsPath)
{
    DiskTree home;
    home.file("go/pkg/mod/a", 10);
    home.file(".m2/repository/a", 20);
    home.file(".yarn/berry/cache/a", 30);
    const std::vector<CacheItem> items = curated(home);
    ASSERT_THAT(namesOf(items), ElementsAre("Yarn Cache", "Yarn Berry Cache", "Maven Repository",
                                            "go Module Cache"));
    EXPECT_EQ(items[0].evidence.caution, "may hold Yarn itself");
    EXPECT_EQ(items[2].upkeep, Upkeep::costly);
    EXPECT_FALSE(items[3].isMovable());
    EXPECT_EQ(items[3].command, "go clean -modcache");
    EXPECT_EQ(DevCacheCleaner::totalBytes(items), 60) << "what lies in another counts once";
}

TEST(DevCacheCleaner, EqualSizesStayInTableOrder)
{
    DiskTree home;
    home.file(".cache/pip/a", 10);
    home.file(".cargo/git/a", 10);
    home.file(".gradle/caches/a", 10);
    home.file(".npm/_cacache/a", 11);
    EXPECT_THAT(namesOf(curated(home)),
                ElementsAre("npm Cache", "Gradle Caches", "Cargo Git Cache", "pip Cache"));
}

TEST(DevCacheCleaner, ReportsEveryFifthRowInOrderAndThenOne)
{
    DiskTree home;
    home.file(".npm/_cacache/a", 10);
    const double rows = [&] {
        double count = 20;
        for (const HomePlace& place : linuxPlaces()) {
            bool isFixed = place.path.find('*') != std::string_view::npos ||
                           place.base == HomePlace::Base::system ||
                           place.base == HomePlace::Base::steam ||
                           place.base == HomePlace::Base::mount || !place.category;
            for (const DevCacheCleaner::Location& each : DevCacheCleaner::curatedLocations()) {
                isFixed =
                    isFixed || (place.base == HomePlace::Base::home && each.subpath == place.path);
            }
            count += isFixed ? 0 : 1;
        }
        return count;
    }();
    std::vector<double> told;
    DevCacheCleaner::scanCurated(HomeFolders::below(home.root()),
                                 [&](double fraction) { told.push_back(fraction); });
    std::vector<double> expected;
    for (double i = 0; i < rows; i += 5) {
        expected.push_back(i / rows);
    }
    expected.push_back(1);
    EXPECT_EQ(told, expected);
}

TEST(DevCacheCleaner, ACancelledScanGivesNothing)
{
    DiskTree home;
    home.file(".npm/_cacache/a", 10);
    EXPECT_THAT(
        DevCacheCleaner::scanCurated(HomeFolders::below(home.root()), {}, [] { return true; }),
        IsEmpty());
}

TEST(DevCacheCleaner, TheDeepWalkFindsBuildFoldersLargestFirst)
{
    DiskTree home;
    home.file("p/node_modules/a/node_modules/b", 50);
    home.file("p/package.json", 1);
    home.file("q/.venv/a", 20);
    home.file(".build/a", 30);
    home.file(".hidden/node_modules/a", 99);
    home.file("Library/node_modules/a", 99);
    home.file(".Trash/Pods/a", 99);
    home.file("r/vendor/bundle/a", 99);
    home.symbolicLink("p/node_modules", "node_modules");
    const std::vector<CacheItem> items = deep(home);
    ASSERT_THAT(namesOf(items), ElementsAre("node_modules", ".build", ".venv"));
    EXPECT_EQ(items[0].path, home.path("p/node_modules"));
    EXPECT_EQ(items[0].bytes, 50);
    EXPECT_EQ(items[0].itemCount, 1);
    EXPECT_EQ(items[0].category, CacheCategory::buildDirs);
    EXPECT_EQ(items[0].evidence.basis, "package.json beside it");
}

TEST(DevCacheCleaner, TheDeepWalkReportsOneAtItsEndOnly)
{
    DiskTree home;
    home.file("p/node_modules/a", 50);
    std::vector<double> told;
    DevCacheCleaner::findBuildDirectories(HomeFolders::below(home.root()),
                                          DevCacheCleaner::buildDirectoryNames(),
                                          [&](double fraction) { told.push_back(fraction); });
    EXPECT_THAT(told, ElementsAre(1.0));
    told.clear();
    DevCacheCleaner::findBuildDirectories(
        HomeFolders::below(home.root()), DevCacheCleaner::buildDirectoryNames(),
        [&](double fraction) { told.push_back(fraction); }, [] { return true; });
    EXPECT_THAT(told, IsEmpty());
}

TEST(DevCacheCleaner, TheDeepWalkLeavesOutWhatCannotBeHadBack)
{
    DiskTree home;
    home.file("VirtualBox VMs/m/node_modules/a", 10);
    home.file("p/node_modules/a", 10);
    ASSERT_EQ(deep(home).size(), 1U);
    EXPECT_EQ(deep(home).front().path, home.path("p/node_modules"));
}

TEST(DevCacheCleaner, ABuildFolderInTheModuleCacheGoesByItsOwnTool)
{
    DiskTree home;
    home.file("go/pkg/mod/m/node_modules/a", 10);
    ASSERT_EQ(deep(home).size(), 1U);
    EXPECT_FALSE(deep(home).front().isMovable());
    EXPECT_EQ(deep(home).front().command, "go clean -modcache");
}

TEST(DevCacheCleaner, MergingReplacesEqualPathsAndSorts)
{
    const std::vector<CacheItem> items{made("/a", 30), made("/b", 20)};
    const std::vector<CacheItem> incoming{made("/b", 50), made("/c", 40)};
    EXPECT_EQ(DevCacheCleaner::merged({}, incoming), incoming);
    EXPECT_EQ(DevCacheCleaner::merged(items, {}), items);
    EXPECT_EQ(DevCacheCleaner::merged(items, incoming),
              (std::vector<CacheItem>{made("/b", 50), made("/c", 40), made("/a", 30)}));
}

TEST(DevCacheCleaner, ATotalCountsWhatLiesInAnotherItemOnce)
{
    const CacheItem items[] = {made("/a/b", 5), made("/a", 20), made("/a/b/c", 1),
                               made("/ab", 100)};
    EXPECT_EQ(DevCacheCleaner::totalBytes(items), 120);
    EXPECT_EQ(DevCacheCleaner::totalBytes({}), 0);
}

TEST(DevCacheCleaner, OneItemIsSingular)
{
    CacheItem item;
    item.itemCount = 1;
    EXPECT_EQ(item.formattedItems(), QStringLiteral("1 item"));
    item.itemCount = 18342;
    EXPECT_EQ(item.formattedItems(), QStringLiteral("18342 items"));
}

} // namespace
} // namespace quorvane
