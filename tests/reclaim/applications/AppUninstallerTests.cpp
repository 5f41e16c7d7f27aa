// SPDX-License-Identifier: MIT
#include "AppUninstaller.h"

#include "DiskTree.h"
#include "FileSystemCalls.h"
#include "FolderMeter.h"
#include "PropertyLists.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace quorvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Home
{
    DiskTree disk;

    void bundle(const std::string& path, const std::string& identifier, std::int64_t bytes)
    {
        disk.fileWithContents(path + "/Contents/Info.plist", test::xmlList(identifier));
        disk.file(path + "/Contents/MacOS/program", bytes);
    }
    std::vector<UninstallableApp> apps(const std::vector<std::string>& locations)
    {
        std::vector<FilePath> folders;
        for (const std::string& location : locations) {
            folders.push_back(disk.path(location));
        }
        return AppUninstaller::scanApplications(folders, HomeFolders::below(disk.path("home")));
    }
};

std::vector<std::string> namesOf(const std::vector<UninstallableApp>& apps)
{
    std::vector<std::string> names;
    for (const UninstallableApp& app : apps) {
        names.push_back(app.name);
    }
    return names;
}

TEST(AppUninstaller, ListsBundlesByTotalsWithTheirLeftoversInTableOrder)
{
    Home home;
    home.bundle("apps/Small.app", "org.small", 1000);
    home.bundle("apps/Big.app", "org.big", 50000);
    home.disk.file("home/Library/Application Support/Small/a", 900000);
    home.disk.file("home/Library/Caches/org.small/a", 9000);
    home.disk.file("home/Library/Preferences/org.small.plist", 77);
    home.disk.file("home/Library/Preferences/org.big.plist");
    const auto apps = home.apps({"apps"});
    ASSERT_THAT(namesOf(apps), ElementsAre("Small", "Big"));
    EXPECT_EQ(apps[0].id, "org.small");
    EXPECT_EQ(apps[0].bundleBytes, directoryBytes(home.disk.path("apps/Small.app")));
    ASSERT_EQ(apps[0].components.size(), 3U);
    EXPECT_EQ(apps[0].components[0].label, "Caches");
    EXPECT_EQ(apps[0].components[1].label, "Application Support");
    EXPECT_EQ(apps[0].components[2].url,
              home.disk.path("home/Library/Preferences/org.small.plist"));
    EXPECT_EQ(apps[0].components[2].bytes, 77);
    EXPECT_EQ(apps[0].components[2].label, "Preferences");
    EXPECT_EQ(apps[0].components[2].seen->size, 77);
    EXPECT_EQ(apps[0].extraBytes(), directoryBytes(apps[0].components[0].url) +
                                        directoryBytes(apps[0].components[1].url) + 77);
    EXPECT_EQ(apps[0].totalBytes(), apps[0].bundleBytes + apps[0].extraBytes());
    EXPECT_THAT(apps[1].components, IsEmpty()) << "an empty file is no leftover";
}

TEST(AppUninstaller, CopiesInTwoFoldersAreOneRowWithTheSizesAddedUp)
{
    Home home;
    home.bundle("a/Foo.app", "org.foo", 5000);
    home.bundle("b/Foo.app", "org.foo", 50000);
    const auto apps = home.apps({"a", "b"});
    ASSERT_EQ(apps.size(), 1U);
    EXPECT_EQ(apps[0].bundleURL, home.disk.path("b/Foo.app"));
    EXPECT_EQ(apps[0].bundleBytes, directoryBytes(home.disk.path("a/Foo.app")) +
                                       directoryBytes(home.disk.path("b/Foo.app")));
}

TEST(AppUninstaller, EqualTotalsGoByName)
{
    Home home;
    home.bundle("apps/B.app", "org.b", 5000);
    home.bundle("apps/A.app", "org.a", 5000);
    home.bundle("apps/a.app", "org.c", 5000);
    EXPECT_THAT(namesOf(home.apps({"apps"})), ElementsAre("A", "B", "a"));
}

TEST(AppUninstaller, AnAppThatGotAnotherNameKeepsWhatGoesByIdentifier)
{
    Home home;
    home.bundle("apps/Renamed.app", "org.foo", 5000);
    home.disk.file("home/Library/Application Support/Foo/a", 10);
    home.disk.file("home/Library/Containers/org.foo/a", 10);
    const auto apps = home.apps({"apps"});
    ASSERT_EQ(apps.size(), 1U);
    ASSERT_EQ(apps[0].components.size(), 1U);
    EXPECT_EQ(apps[0].components[0].label, "Container data");
}

TEST(AppUninstaller, ABundleThatCallsItselfAPathReachesNothing)
{
    Home home;
    home.bundle("apps/Evil.app", "../../Documents", 5000);
    home.disk.file("home/Documents/letter", 10);
    home.disk.file("Documents/letter", 10);
    const auto apps = home.apps({"apps"});
    ASSERT_EQ(apps.size(), 1U);
    EXPECT_THAT(apps[0].components, IsEmpty());
}

TEST(AppUninstaller, FoldersThatCannotBeListedArePassedOver)
{
    Home home;
    home.bundle("apps/A.app", "org.a", 5000);
    EXPECT_THAT(namesOf(home.apps({"absent", "apps"})), ElementsAre("A"));
    EXPECT_THAT(home.apps({}), IsEmpty());
}

TEST(AppUninstaller, ACancelledScanGivesNothing)
{
    Home home;
    home.bundle("apps/A.app", "org.a", 5000);
    const FilePath folder = home.disk.path("apps");
    EXPECT_THAT(AppUninstaller::scanApplications(
                    {&folder, 1}, HomeFolders::below(home.disk.path("home")), [] { return true; }),
                IsEmpty());
}

TEST(AppUninstaller, TheHomesFolderIsALocationOnlyWhereItIsThere)
{
    DiskTree home;
    EXPECT_THAT(AppUninstaller::defaultLocations(home.root(), FileSystemCalls::system()),
                ElementsAre(FilePath("/Applications")));
    home.folder("Applications");
    EXPECT_THAT(AppUninstaller::defaultLocations(home.root(), FileSystemCalls::system()),
                ElementsAre(FilePath("/Applications"), home.path("Applications")));
}

TEST(RunningApps, AreThoseWhoseFilesRun)
{
    UninstallableApp app;
    app.bundleURL = FilePath("/opt/hal");
    app.kind = AppKind::folder;
    const auto runs = [&](std::string executable, std::string group = {}) {
        const Programs::Running running[] = {{std::move(executable), std::move(group)}};
        const FilePath programs[] = {FilePath("/usr/lib/wave/wave")};
        return AppUninstaller::isRunning(app, programs, running);
    };
    EXPECT_TRUE(runs("/opt/hal/bin/run"));
    EXPECT_FALSE(runs("/opt/halyard/run"));
    EXPECT_FALSE(runs(""));
    app.kind = AppKind::appImage;
    EXPECT_TRUE(runs("/opt/hal"));
    app.kind = AppKind::package;
    EXPECT_TRUE(runs("/usr/lib/wave/wave"));
    EXPECT_FALSE(runs("/usr/lib/wave"));
    app.kind = AppKind::flatpak;
    app.systemName = "org.a-b.C";
    const std::string slice = "/user.slice/app.slice/";
    EXPECT_TRUE(runs("", slice + "app-flatpak-org.a-b.C-123.scope"));
    EXPECT_TRUE(runs("", slice + "app-flatpak-org.a\\x2db.C-123.scope"));
    EXPECT_FALSE(runs("", slice + "app-flatpak-org.a-b.Cx-123.scope"));
    app.kind = AppKind::snap;
    app.systemName = "hal";
    EXPECT_TRUE(runs("", slice + "snap.hal.hal.1234.scope"));
    EXPECT_FALSE(runs("", slice + "snap.halyard.run.1234.scope"));
}

} // namespace
} // namespace quorvane
