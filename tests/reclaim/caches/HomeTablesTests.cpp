// SPDX-License-Identifier: MIT
#include "HomeTables.h"

#include "DevCacheCleaner.h"
#include "DiskTree.h"
#include "FileContentCalls.h"
#include "FileSystemCalls.h"
#include "MountTable.h"
#include "QuickWins.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>
#include <string>

namespace quorvane {
namespace {

FileSystemCalls& disk()
{
    return FileSystemCalls::system();
}

/// Sets variables of the environment for one scope.
class Environment
{
public:
    explicit Environment(const std::map<std::string, std::string>& values)
    {
        for (const auto& [name, value] : values) {
            const char* const old = std::getenv(name.c_str());
            m_before[name] = old == nullptr ? "" : old;
            setenv(name.c_str(), value.c_str(), 1);
        }
    }
    ~Environment()
    {
        for (const auto& [name, value] : m_before) {
            setenv(name.c_str(), value.c_str(), 1);
        }
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    std::map<std::string, std::string> m_before;
};

TEST(HomeFolders, DefaultsLieBelowTheHome)
{
    const HomeFolders folders = HomeFolders::below(FilePath("/home/u"));
    EXPECT_EQ(folders.cache.bytes(), "/home/u/.cache");
    EXPECT_EQ(folders.config.bytes(), "/home/u/.config");
    EXPECT_EQ(folders.data.bytes(), "/home/u/.local/share");
    EXPECT_EQ(folders.state.bytes(), "/home/u/.local/state");
    EXPECT_TRUE(folders.system.isEmpty());
}

TEST(HomeFolders, VariablesOfTheOwnHomeMayLeadAnywhere)
{
    const Environment set({{"HOME", "/home/u"},
                           {"XDG_CACHE_HOME", "/fast/cache/"},
                           {"XDG_DATA_HOME", "relative/data"},
                           {"XDG_CONFIG_HOME", ""},
                           {"XDG_STATE_HOME", "/home/u/state"}});
    const HomeFolders folders = HomeFolders::fromEnvironment(FilePath("/home/u"));
    EXPECT_EQ(folders.cache.bytes(), "/fast/cache");
    EXPECT_EQ(folders.data.bytes(), "/home/u/.local/share");
    EXPECT_EQ(folders.config.bytes(), "/home/u/.config");
    EXPECT_EQ(folders.state.bytes(), "/home/u/state");
}

TEST(HomeFolders, VariablesThatLeadOutOfAnotherHomeAreNotItsOwn)
{
    const Environment set({{"HOME", "/home/u"},
                           {"XDG_CACHE_HOME", "/home/u/cache"},
                           {"XDG_CONFIG_HOME", "/tmp/home/conf"}});
    const HomeFolders folders = HomeFolders::fromEnvironment(FilePath("/tmp/home"));
    EXPECT_EQ(folders.cache.bytes(), "/tmp/home/.cache");
    EXPECT_EQ(folders.config.bytes(), "/tmp/home/conf");
}

TEST(HomeTables, EveryPlaceIsRelativeAndSaysWhatItIs)
{
    std::set<std::pair<int, std::string_view>> paths;
    for (const HomePlace& place : linuxPlaces()) {
        SCOPED_TRACE(place.path);
        EXPECT_FALSE(place.path.empty() || place.path.starts_with('/') ||
                     place.path.ends_with('/'));
        EXPECT_EQ(place.path.find(".."), std::string_view::npos);
        EXPECT_LE(std::count(place.path.begin(), place.path.end(), '*'), 1);
        EXPECT_FALSE(place.name.empty());
        EXPECT_TRUE(place.detail.ends_with('.'));
        EXPECT_EQ(place.command.empty(), place.upkeep != Upkeep::ownTool);
        EXPECT_TRUE(paths.emplace(static_cast<int>(place.base), place.path).second);
        if (place.base == HomePlace::Base::system) {
            EXPECT_EQ(place.upkeep, Upkeep::ownTool) << "of an administrator";
        }
    }
}

TEST(HomeTables, WhatCostsADownloadOrARebuildSaysSo)
{
    for (const HomePlace& place : linuxPlaces()) {
        if (place.upkeep == Upkeep::costly) {
            const bool saysSo = place.detail.find("ownload") != std::string_view::npos ||
                                place.detail.find("lost") != std::string_view::npos;
            EXPECT_TRUE(saysSo) << place.detail;
        }
    }
}

/// A home in which everything that cannot be had back is there.
void makeIrreplaceable(DiskTree& home)
{
    for (const char* const path :
         {".cache/pypoetry/virtualenvs/a", ".cache/huggingface/token", ".ollama/id_ed25519",
          ".android/avd/a", ".mozilla/firefox/a", ".var/app/org.a.A/data/a",
          ".var/app/org.a.A/config/a", ".config/google-chrome/Default/a", ".config/App/Cookies",
          ".config/App/Local Storage/a", ".config/App/IndexedDB/a", ".config/Code/User/a",
          ".local/share/Steam/steamapps/compatdata/a", ".local/share/containers/storage/volumes/a",
          ".local/share/Trash/files/a", "VirtualBox VMs/a"}) {
        home.file(path, 10);
    }
}

TEST(HomeTables, NoRowIsOrHoldsOrLiesInWhatCannotBeHadBack)
{
    DiskTree home;
    makeIrreplaceable(home);
    for (const char* const path : {".config/App/Cache/a", ".config/App/GPUCache/a",
                                   ".config/Code/CachedData/a", ".var/app/org.a.A/cache/a"}) {
        home.file(path, 10);
    }
    const HomeFolders folders = HomeFolders::below(home.root());
    const std::vector<FilePath> lost = irreplaceablePaths(folders, disk());
    EXPECT_EQ(lost.size(), 16U);
    for (const FoundPlace& found : resolvedPlaces(folders, disk())) {
        if (found.place->upkeep != Upkeep::ownTool) {
            EXPECT_FALSE(touches(found.path, lost)) << found.path.bytes();
        }
    }
    for (const QuickWins::FolderTarget& target : QuickWins::homeTargets()) {
        EXPECT_FALSE(touches(home.path(target.relativePath), lost));
    }
    for (const DevCacheCleaner::Location& location : DevCacheCleaner::curatedLocations()) {
        EXPECT_FALSE(touches(home.path(location.subpath), lost));
    }
}

TEST(HomeTables, TouchingGoesByWholeComponents)
{
    const FilePath lost[] = {FilePath("/h/a/b")};
    EXPECT_TRUE(touches(FilePath("/h/a/b"), lost));
    EXPECT_TRUE(touches(FilePath("/h/a"), lost));
    EXPECT_TRUE(touches(FilePath("/h/a/b/c"), lost));
    EXPECT_FALSE(touches(FilePath("/h/a/bc"), lost));
    EXPECT_FALSE(touches(FilePath("/h/a/c"), lost));
    EXPECT_FALSE(touches(FilePath("/h/a"), {}));
}

TEST(HomeTables, AStarStandsForEachFolderThatIsThere)
{
    DiskTree home;
    home.file(".var/app/org.b.B/cache/x", 1);
    home.file(".var/app/org.a.A/cache/x", 1);
    home.folder(".var/app/org.none.None");
    home.file(".var/app/.hidden/cache/x", 1);
    home.file(".config/Code/Code Cache/x", 1);
    std::vector<std::string> names;
    std::vector<std::string> ids;
    for (const FoundPlace& found : resolvedPlaces(HomeFolders::below(home.root()), disk())) {
        if (found.place->path.find('*') != std::string_view::npos) {
            names.push_back(found.name);
            ids.push_back(found.id);
        }
    }
    EXPECT_EQ(names, (std::vector<std::string>{"Cache of org.a.A", "Cache of org.b.B",
                                               "Code Code Cache"}));
    EXPECT_EQ(ids, (std::vector<std::string>{".var/app/org.a.A/cache", ".var/app/org.b.B/cache",
                                             ".config/Code/Code Cache"}));
}

TEST(HomeTables, PlacesOfTheSystemAreThereOnlyForAHomeWithASystem)
{
    DiskTree tree;
    tree.file("root/var/cache/apt/archives/a.deb", 10);
    HomeFolders folders = HomeFolders::below(tree.path("home"));
    EXPECT_TRUE(ownToolPlaces(folders, disk()).empty());
    folders.system = tree.path("root");
    const std::vector<FoundPlace> found = ownToolPlaces(folders, disk());
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.front().path, tree.path("root/var/cache/apt/archives"));
    EXPECT_EQ(found.front().id, found.front().path.bytes());
    EXPECT_EQ(found.front().place->command, "sudo apt clean");
}

TEST(HomeTables, PlacesFollowTheFoldersOfTheHome)
{
    HomeFolders folders = HomeFolders::below(FilePath("/h"));
    folders.cache = FilePath("/fast");
    for (const FoundPlace& found : resolvedPlaces(folders, disk())) {
        if (found.place->path == "pip") {
            EXPECT_EQ(found.path.bytes(), "/fast/pip");
            EXPECT_EQ(found.id, "/fast/pip");
            return;
        }
    }
    FAIL() << "no row for pip";
}

TEST(HomeTables, ShaderCachesOfEverySteamLibraryAreListedAndSavedGamesAreNot)
{
    DiskTree home;
    home.fileWithContents(".local/share/Steam/steamapps/libraryfolders.vdf",
                          "\"libraryfolders\" { \"0\" { \"path\" \"" +
                              home.path(".local/share/Steam").bytes() + "\" } \"1\" { \"path\" \"" +
                              home.path("games").bytes() + "\" } }");
    home.file("games/steamapps/shadercache/620/a", 10);
    home.file("games/steamapps/compatdata/620/save", 10);
    HomeFolders folders = HomeFolders::below(home.root());
    folders.findPlacesOutside(disk(), FileContentCalls::system());
    std::vector<FilePath> caches;
    for (const FoundPlace& found : resolvedPlaces(folders, disk())) {
        if (found.place->base == HomePlace::Base::steam) {
            caches.push_back(found.path);
        }
    }
    EXPECT_EQ(caches, (std::vector{home.path(".local/share/Steam/steamapps/shadercache"),
                                   home.path("games/steamapps/shadercache")}));
    EXPECT_EQ(irreplaceablePaths(folders, disk()),
              std::vector{home.path("games/steamapps/compatdata")});
}

TEST(HomeTables, AVolumesStoreGoesByItsOwnToolAndItsTrashIsNotHadBack)
{
    DiskTree home;
    home.file("volume/.pnpm-store/v3/a", 10);
    home.file("volume/.Trash-1000/files/node_modules/a", 10);
    home.file("share/.pnpm-store/v3/a", 10);
    HomeFolders folders = HomeFolders::below(home.root());
    folders.findPlacesOutside(
        MountTable(std::vector<MountedVolume>{{home.path("volume")},
                                              {home.path("share"), MountKind::remote, 1},
                                              {FilePath("/proc"), MountKind::kernelMade}}),
        disk(), FileContentCalls::system());
    EXPECT_EQ(folders.mounts, std::vector{home.path("volume")});
    const std::vector<FoundPlace> own = ownToolPlaces(folders, disk());
    ASSERT_EQ(own.size(), 1U);
    EXPECT_EQ(own.front().path, home.path("volume/.pnpm-store"));
    EXPECT_EQ(own.front().place->command, "pnpm store prune");
    EXPECT_TRUE(touches(home.path("volume/.Trash-1000/files/node_modules"),
                        irreplaceablePaths(folders, disk())));
}

/// What is known of each cache, by the documentation of its tool: S is made again by itself, D
/// costs a download or a rebuild, T goes by its own tool.
struct KnownCache
{
    const char* base;
    const char* path;
    char upkeep;
};

constexpr KnownCache knownCaches[] = {
    {"~", ".npm/_cacache", 'S'},
    {"~", ".npm/_npx", 'S'},
    {"cache", "yarn", 'S'},
    {"~", ".yarn/berry/cache", 'S'},
    {"data", "pnpm/store", 'T'},
    {"mount", ".pnpm-store", 'T'},
    {"~", ".bun/install/cache", 'S'},
    {"cache", "deno", 'S'},
    {"cache", "pip", 'S'},
    {"cache", "uv", 'S'},
    {"cache", "pypoetry/cache", 'S'},
    {"cache", "pypoetry/artifacts", 'S'},
    {"~", "miniconda3/pkgs", 'T'},
    {"~", ".conda/pkgs", 'T'},
    {"cache", "pre-commit", 'S'},
    {"cache", "composer", 'S'},
    {"cache", "gem", 'D'},
    {"~", ".nuget/packages", 'D'},
    {"~", ".cargo/registry", 'S'},
    {"~", ".cargo/git", 'S'},
    {"~", ".rustup/toolchains", 'D'},
    {"cache", "go-build", 'S'},
    {"~", "go/pkg/mod", 'T'},
    {"~", ".gradle/caches", 'D'},
    {"~", ".gradle/wrapper/dists", 'D'},
    {"~", ".m2/repository", 'D'},
    {"cache", "ccache", 'S'},
    {"cache", "sccache", 'S'},
    {"cache", "bazel", 'T'},
    {"/", "var/lib/docker", 'T'},
    {"data", "containers", 'T'},
    {"data", "flatpak/runtime", 'T'},
    {"/", "var/lib/flatpak/runtime", 'T'},
    {"~", ".var/app/*/cache", 'S'},
    {"/", "var/cache/apt/archives", 'T'},
    {"/", "var/log/journal", 'T'},
    {"/", "var/lib/systemd/coredump", 'T'},
    {"/", "var/lib/snapd/snaps", 'T'},
    {"cache", "JetBrains", 'D'},
    {"config", "*/Cache", 'S'},
    {"config", "*/Code Cache", 'S'},
    {"config", "*/CachedData", 'S'},
    {"config", "*/GPUCache", 'S'},
    {"cache", "mozilla", 'S'},
    {"cache", "google-chrome", 'S'},
    {"cache", "chromium", 'S'},
    {"cache", "thumbnails", 'S'},
    {"cache", "mesa_shader_cache", 'S'},
    {"steam", "steamapps/shadercache", 'D'},
    {"cache", "huggingface/hub", 'D'},
    {"~", ".ollama/models", 'D'},
    {"cache", "whisper", 'D'},
    {"cache", "torch", 'D'},
    {"cache", "ms-playwright", 'D'},
    {"cache", "Cypress", 'D'},
    {"cache", "puppeteer", 'D'},
    {"~", "Android/Sdk", 'D'},
};

TEST(HomeTables, EveryKnownCacheIsListedWithWhatItTakesToHaveItBack)
{
    const std::map<HomePlace::Base, std::string> bases{
        {HomePlace::Base::home, "~"},        {HomePlace::Base::cache, "cache"},
        {HomePlace::Base::config, "config"}, {HomePlace::Base::data, "data"},
        {HomePlace::Base::system, "/"},      {HomePlace::Base::steam, "steam"},
        {HomePlace::Base::mount, "mount"}};
    std::set<std::string> listed;
    for (const HomePlace& place : linuxPlaces()) {
        const char upkeep = place.upkeep == Upkeep::remade   ? 'S'
                            : place.upkeep == Upkeep::costly ? 'D'
                                                             : 'T';
        listed.insert(bases.at(place.base) + ' ' + std::string(place.path) + ' ' + upkeep);
    }
    std::set<std::string> known;
    for (const KnownCache& cache : knownCaches) {
        known.insert(std::string(cache.base) + ' ' + cache.path + ' ' + cache.upkeep);
    }
    EXPECT_EQ(listed, known);
}

} // namespace
} // namespace quorvane
