// SPDX-License-Identifier: MIT
#include "Leftovers.h"

#include "DiskTree.h"
#include "FileSystemCalls.h"
#include "RandomTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

namespace quorvane {
namespace {

using Leftovers::Names;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> pathsOf(const std::vector<Leftovers::Place>& places)
{
    std::vector<std::string> paths;
    for (const Leftovers::Place& place : places) {
        paths.push_back(place.path.bytes());
    }
    return paths;
}

std::vector<std::string> pathsOf(const UninstallableApp& app)
{
    std::vector<std::string> paths;
    for (const UninstallComponent& component : app.components) {
        paths.push_back(component.url.bytes());
    }
    return paths;
}

Names programs(std::vector<std::string> names)
{
    Names result;
    result.programs = std::move(names);
    return result;
}

/// Applications that differ in nothing but their ids, with what is found of each.
std::vector<UninstallableApp> attached(const DiskTree& home, const std::vector<Names>& names)
{
    std::vector<UninstallableApp> apps(names.size());
    for (std::size_t i = 0; i < apps.size(); ++i) {
        apps[i].id = std::to_string(i);
    }
    Leftovers::attach(apps, names, HomeFolders::below(home.root()), {}, {},
                      FileSystemCalls::system());
    return apps;
}

TEST(Leftovers, NamesThatLeadElsewhereAreNotPlain)
{
    for (const std::string_view name : {"", ".", "..", "/", "a/b", "../../Documents", "a/", "/a"}) {
        EXPECT_FALSE(Leftovers::isPlainName(name)) << name;
    }
    EXPECT_FALSE(Leftovers::isPlainName(std::string_view("a\0b", 3)));
    for (const std::string_view name : {"a", "...", ".a", "org.a.B", "a b", "\xFF"}) {
        EXPECT_TRUE(Leftovers::isPlainName(name)) << name;
    }
}

TEST(Leftovers, GenericNamesAreKnownInAnyCase)
{
    for (const std::string_view name : {"data", "Update", "fonts", "FONTS", "applications"}) {
        EXPECT_TRUE(Leftovers::isGenericName(name)) << name;
    }
    for (const std::string_view name : {"halyard", "fonts2", "my-data", ""}) {
        EXPECT_FALSE(Leftovers::isGenericName(name)) << name;
    }
}

TEST(Leftovers, ABundleHasEightPlacesInTableOrder)
{
    Names names;
    names.identifier = "org.a.A";
    names.displayName = "My App";
    EXPECT_THAT(pathsOf(Leftovers::placesOf(names, HomeFolders::below(FilePath("/h")))),
                ElementsAre("/h/Library/Containers/org.a.A", "/h/Library/Group Containers/org.a.A",
                            "/h/Library/Caches/org.a.A", "/h/Library/Application Support/My App",
                            "/h/Library/Preferences/org.a.A.plist", "/h/Library/Logs/My App",
                            "/h/Library/Saved Application State/org.a.A.savedState",
                            "/h/Library/WebKit/org.a.A"));
}

TEST(Leftovers, ABundleWhoseIdentifierIsAPathKeepsOnlyWhatGoesByItsName)
{
    DiskTree home;
    home.file("Documents/letter", 10);
    home.file("Library/Application Support/App/a", 10);
    for (const char* const bad : {"../../Documents", "..", ".", "", "a/b"}) {
        Names names;
        names.identifier = bad;
        names.displayName = "App";
        const auto apps = attached(home, {names});
        EXPECT_THAT(pathsOf(apps.front()),
                    ElementsAre(home.path("Library/Application Support/App").bytes()))
            << bad;
    }
    Names names;
    names.identifier = names.displayName = "..";
    EXPECT_THAT(Leftovers::placesOf(names, HomeFolders::below(home.root())), IsEmpty());
}

TEST(Leftovers, AProgramsPlacesFollowTheFoldersOfTheHome)
{
    HomeFolders folders = HomeFolders::below(FilePath("/h"));
    folders.cache = FilePath("/fast");
    Names names = programs({"halyard"});
    names.desktopIds = {"org.halyard"};
    names.flatpak = "org.halyard.H";
    names.snap = "hal";
    EXPECT_THAT(pathsOf(Leftovers::placesOf(names, folders)),
                ElementsAre("/h/.config/halyard", "/fast/halyard", "/h/.local/share/halyard",
                            "/h/.local/state/halyard", "/h/.var/app/org.halyard.H", "/h/snap/hal",
                            "/h/.config/autostart/org.halyard.desktop",
                            "/h/.local/share/applications/org.halyard.desktop"));
}

TEST(Leftovers, OnlyWhatHoldsAnythingIsListedWithItsSizeAndKind)
{
    DiskTree home;
    home.file(".config/halyard/settings", 5000);
    home.folder(".cache/halyard");
    home.file(".local/share/halyard/.hidden", 10);
    home.fileWithContents(".config/autostart/halyard.desktop", "[Desktop Entry]");
    Names names = programs({"halyard"});
    names.desktopIds = {"halyard"};
    const UninstallableApp app = attached(home, {names}).front();
    ASSERT_THAT(pathsOf(app), ElementsAre(home.path(".config/halyard").bytes(),
                                          home.path(".config/autostart/halyard.desktop").bytes()));
    EXPECT_GE(app.components[0].bytes, 5000);
    EXPECT_EQ(app.components[0].label, "Configuration");
    EXPECT_EQ(app.components[1].bytes, 15);
    EXPECT_EQ(app.components[1].label, "Autostart entry");
}

TEST(Leftovers, NamesThatArePrefixesOrDifferInCaseAreOthers)
{
    DiskTree home;
    for (const char* const name : {"hal", "halyard", "Halyard", "HALYARD", "halyard-extra"}) {
        home.file(std::string(".config/") + name + "/a", 10);
    }
    const auto apps = attached(home, {programs({"halyard"}), programs({"hal"})});
    EXPECT_THAT(pathsOf(apps[0]), ElementsAre(home.path(".config/halyard").bytes()));
    EXPECT_THAT(pathsOf(apps[1]), ElementsAre(home.path(".config/hal").bytes()));
}

TEST(Leftovers, WhatTwoApplicationsLeadToBelongsToNeither)
{
    DiskTree home;
    home.file(".config/shared/a", 10);
    home.file(".config/own/a", 10);
    const auto apps = attached(home, {programs({"shared", "own"}), programs({"shared"})});
    EXPECT_THAT(pathsOf(apps[0]), ElementsAre(home.path(".config/own").bytes()));
    EXPECT_THAT(pathsOf(apps[1]), IsEmpty());
}

TEST(Leftovers, OneApplicationWithANameTwiceKeepsItsPlaceOnce)
{
    DiskTree home;
    home.file(".config/own/a", 10);
    const auto apps = attached(home, {programs({"own", "own"})});
    EXPECT_THAT(pathsOf(apps[0]), ElementsAre(home.path(".config/own").bytes()));
}

TEST(Leftovers, GenericNamesLeadNowhere)
{
    DiskTree home;
    for (const char* const name : {"data", "Update", "fonts", "systemd", "applications"}) {
        home.file(std::string(".config/") + name + "/a", 10);
        home.file(std::string(".local/share/") + name + "/a", 10);
        EXPECT_THAT(pathsOf(attached(home, {programs({name})}).front()), IsEmpty());
    }
    home.file("Library/Application Support/Update/a", 10);
    Names names;
    names.displayName = "Update";
    EXPECT_THAT(pathsOf(attached(home, {names}).front()), IsEmpty());
    names.displayName = "Player";
    home.file("Library/Logs/Player/a", 10);
    EXPECT_EQ(attached(home, {names}).front().components.size(), 1U) << "no shared place there";
}

TEST(Leftovers, WhatSomebodyElseClaimsIsLeftAlone)
{
    DiskTree home;
    home.file(".config/git/a", 10);
    home.file(".config/halyard/a", 10);
    std::vector<UninstallableApp> apps(1);
    const Names names[] = {programs({"git", "halyard"})};
    Leftovers::attach(
        apps, names, HomeFolders::below(home.root()),
        [](const UninstallableApp&, std::string_view name) { return name == "git"; }, {},
        FileSystemCalls::system());
    EXPECT_THAT(pathsOf(apps[0]), ElementsAre(home.path(".config/halyard").bytes()));
}

TEST(Leftovers, ALinkCountsAsItsTargetsContents)
{
    DiskTree home;
    home.file("elsewhere/a", 5000);
    home.symbolicLink("../elsewhere", ".config/halyard");
    const UninstallableApp app = attached(home, {programs({"halyard"})}).front();
    ASSERT_EQ(app.components.size(), 1U);
    EXPECT_EQ(app.components[0].url, home.path(".config/halyard"));
    EXPECT_GE(app.components[0].bytes, 5000);
}

/// Whatever names applications come up with, every place is a direct child of a fixed folder.
TEST(Leftovers, EveryPlaceIsADirectChildOfAFixedFolder)
{
    const HomeFolders folders = HomeFolders::below(FilePath("/h"));
    const std::set<std::string> fixed{"/h/Library/Containers",
                                      "/h/Library/Group Containers",
                                      "/h/Library/Caches",
                                      "/h/Library/Application Support",
                                      "/h/Library/Preferences",
                                      "/h/Library/Logs",
                                      "/h/Library/Saved Application State",
                                      "/h/Library/WebKit",
                                      "/h/.config",
                                      "/h/.cache",
                                      "/h/.local/share",
                                      "/h/.local/state",
                                      "/h/.var/app",
                                      "/h/snap",
                                      "/h/.config/autostart",
                                      "/h/.local/share/applications"};
    const std::string pieces[] = {"",  ".", "..", "/",  "a",  "Documents", "\\",  "//",
                                  " ", "*", "~",  "\n", "..", "data",      "%2F", "\xFF"};
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(seed);
        test::Dice dice(seed);
        const auto name = [&] {
            std::string text;
            for (std::uint64_t i = dice.below(4); i > 0; --i) {
                text += pieces[dice.below(std::size(pieces))];
            }
            return text;
        };
        Names names{name(), name(), {name(), name()}, {name()}, name(), name()};
        for (const Leftovers::Place& place : Leftovers::placesOf(names, folders)) {
            EXPECT_TRUE(fixed.contains(place.path.parent().bytes())) << place.path.bytes();
            EXPECT_FALSE(fixed.contains(place.path.bytes())) << place.path.bytes();
            EXPECT_NE(place.path.lastComponent(), "..");
        }
    }
}

} // namespace
} // namespace quorvane
