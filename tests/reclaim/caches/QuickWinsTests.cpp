// SPDX-License-Identifier: MIT
#include "QuickWins.h"

#include "DiskTree.h"
#include "FileContentCalls.h"
#include "FileSystemCalls.h"
#include "RandomTree.h"
#include "TreeText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <set>
#include <string>

namespace quorvane {
namespace {

using test::treeFromText;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> idsOf(const std::vector<QuickWin>& wins)
{
    std::vector<std::string> ids;
    for (const QuickWin& win : wins) {
        ids.push_back(win.id);
    }
    return ids;
}

std::vector<std::string> namesOf(const std::vector<QuickWin>& wins)
{
    std::vector<std::string> names;
    for (const QuickWin& win : wins) {
        names.push_back(win.name);
    }
    return names;
}

std::vector<QuickWin> hitsIn(std::string_view tree, std::size_t limit = QuickWins::defaultLimit)
{
    return QuickWins::detect(treeFromText(tree)->rootPointer(), limit);
}

QuickWin named(std::string name, std::string path)
{
    QuickWin win;
    win.name = std::move(name);
    win.url = FilePath(std::move(path));
    return win;
}

TEST(QuickWins, ATargetThatHoldsAnythingIsListedWithItsSentence)
{
    DiskTree home;
    home.file("Library/Developer/Xcode/Archives/2024/a", 50000);
    home.folder("Library/Developer/Xcode/DerivedData");
    home.file("Library/WebKit/.hidden", 5000);
    const std::vector<QuickWin> wins = QuickWins::detect(HomeFolders::below(home.root()));
    ASSERT_THAT(idsOf(wins), ElementsAre("Library/Developer/Xcode/Archives"));
    EXPECT_EQ(wins.front().name, "Xcode Archives");
    EXPECT_EQ(wins.front().url, home.path("Library/Developer/Xcode/Archives"));
    EXPECT_EQ(wins.front().bytes, directoryBytes(wins.front().url));
    EXPECT_EQ(wins.front().detail,
              "Archived app releases and their dSYMs. Safe to delete after shipping or moving "
              "off-drive.");
    EXPECT_TRUE(wins.front().isStageable());
    EXPECT_EQ(wins.front().evidence.caution, "not made again");
}

TEST(QuickWins, WhatBelongsToTheSystemIsListedAndNotStaged)
{
    QuickWin win;
    for (const char* const path : {"/usr/share/vim/dist", "/usr", "/lib/x/__pycache__"}) {
        win.url = FilePath(path);
        EXPECT_TRUE(win.isOfSystem()) << path;
        EXPECT_FALSE(win.isStageable()) << path;
    }
    win.url = FilePath("/home/mara/dist");
    EXPECT_FALSE(win.isOfSystem());
    EXPECT_TRUE(win.isStageable());
}

TEST(QuickWins, EveryRowOfBothTablesIsFoundInAHomeThatHasThemAll)
{
    DiskTree home;
    std::set<std::string> expected;
    for (const QuickWins::FolderTarget& target : QuickWins::homeTargets()) {
        home.file(std::string(target.relativePath) + "/a", 10);
        expected.emplace(target.relativePath);
    }
    EXPECT_EQ(expected.size(), 9U);
    const std::array<std::string, 7> bases{
        "", ".cache/", ".config/", ".local/share/", "system/", ".local/share/Steam/", "volume/"};
    for (const HomePlace& place : linuxPlaces()) {
        std::string path = bases.at(static_cast<std::size_t>(place.base)) + std::string(place.path);
        if (const std::size_t star = path.find('*'); star != std::string::npos) {
            path.replace(star, 1, "App");
        }
        home.file(path + "/a", 10);
        expected.insert(path);
    }
    HomeFolders folders = HomeFolders::below(home.root());
    folders.system = home.path("system");
    folders.mounts = {home.path("volume")};
    const std::vector<std::string> ids = idsOf(QuickWins::detect(folders));
    EXPECT_EQ(std::set<std::string>(ids.begin(), ids.end()), expected);
    EXPECT_EQ(ids.size(), expected.size());
}

TEST(QuickWins, RowsThatGoByTheirOwnToolCannotBeStaged)
{
    DiskTree home;
    home.file("go/pkg/mod/a", 10);
    home.file(".cache/pip/a", 10);
    for (const QuickWin& win : QuickWins::detect(HomeFolders::below(home.root()))) {
        EXPECT_EQ(win.isStageable(), win.id != "go/pkg/mod");
        EXPECT_EQ(win.command, win.id == "go/pkg/mod" ? "go clean -modcache" : "");
    }
}

TEST(QuickWins, ATargetThatIsALinkIsItsTargetsContents)
{
    DiskTree home;
    home.file("elsewhere/a", 50000);
    home.symbolicLink("../elsewhere", ".cache/pip");
    const std::vector<QuickWin> wins = QuickWins::detect(HomeFolders::below(home.root()));
    ASSERT_THAT(idsOf(wins), ElementsAre(".cache/pip"));
    EXPECT_EQ(wins.front().bytes, directoryBytes(home.path("elsewhere")));
}

TEST(QuickWins, ACancelledLookAtTheHomeFindsNothing)
{
    DiskTree home;
    home.file(".cache/pip/a", 10);
    FolderMeter::Hooks hooks;
    hooks.isCancelled = [] { return true; };
    EXPECT_THAT(QuickWins::detect(HomeFolders::below(home.root()), hooks), IsEmpty());
}

TEST(QuickWins, NoScanGivesNoHits)
{
    EXPECT_THAT(QuickWins::detect(NodePointer()), IsEmpty());
}

TEST(QuickWins, ElevenFoldersOfOneNameGiveTheEightLargest)
{
    std::string tree;
    for (int i = 1; i <= 11; ++i) {
        tree += "p" + std::to_string(i) + "/\n  node_modules/\n    a " + std::to_string(i) + "\n";
    }
    const std::vector<QuickWin> hits = hitsIn(tree);
    ASSERT_EQ(hits.size(), 8U);
    for (std::size_t i = 0; i < hits.size(); ++i) {
        EXPECT_EQ(hits[i].bytes, 11 - static_cast<std::int64_t>(i));
    }
}

TEST(QuickWins, AHitTellsItsNodeAndTheRootsName)
{
    const std::vector<QuickWin> hits = hitsIn("p/\n  target/\n    a 7\n");
    ASSERT_EQ(hits.size(), 1U);
    EXPECT_EQ(hits.front().id, "scan:2");
    EXPECT_EQ(hits.front().name, "target");
    EXPECT_EQ(hits.front().url.bytes(), "/scan/p/target");
    EXPECT_EQ(hits.front().bytes, 7);
    EXPECT_EQ(hits.front().detail, "Found under scan. Common build/junk directory.");
}

TEST(QuickWins, HitsInsideHitsAreCandidatesOfTheirOwn)
{
    EXPECT_THAT(namesOf(hitsIn("node_modules/\n  vendor/\n    a 5\n  b 1\n")),
                ElementsAre("node_modules", "vendor"));
}

TEST(QuickWins, NamesAreComparedWithCaseIntactAndBazelAsAPrefix)
{
    EXPECT_THAT(namesOf(hitsIn("bazel-out/\n  a 3\nbazel-/\n  a 2\nBazel-out/\n  a 1\n"
                               "Build/\n  a 1\nbuilds/\n  a 1\nNODE_MODULES/\n  a 1\n")),
                ElementsAre("bazel-out", "bazel-"));
}

TEST(QuickWins, FilesAndLinksOfThoseNamesAreNoHits)
{
    EXPECT_THAT(hitsIn("build 10\ndist@ 4\nvendor| 0\n"), IsEmpty());
}

TEST(QuickWins, TheRootItselfIsTested)
{
    test::TreeTextOptions options;
    options.rootPath = FilePath("/home/u/vendor");
    const auto tree = treeFromText("a 4\n", options);
    EXPECT_THAT(idsOf(QuickWins::detect(tree->rootPointer())), ElementsAre("scan:0"));
}

TEST(QuickWins, EqualSizesGoByName)
{
    EXPECT_THAT(namesOf(hitsIn("venv/\n  a 1\nbuild/\n  a 1\ndist/\n  a 1\ntarget/\n  a 2\n")),
                ElementsAre("target", "build", "dist", "venv"));
}

TEST(QuickWins, ALimitOfZeroGivesNoHits)
{
    EXPECT_THAT(hitsIn("venv/\n  a 1\n", 0), IsEmpty());
}

TEST(QuickWins, HitsThatTouchWhatCannotBeHadBackAreLeftOutBeforeTheLimit)
{
    const auto tree = treeFromText(".cache/\n  huggingface/\n    token 100\nVMs/\n  build/\n"
                                   "    a 50\np/\n  build/\n    a 1\n");
    const FilePath lost[] = {FilePath("/scan/.cache/huggingface/token"), FilePath("/scan/VMs")};
    const std::vector<QuickWin> hits = QuickWins::detect(tree->rootPointer(), 1, lost);
    ASSERT_EQ(hits.size(), 1U);
    EXPECT_EQ(hits.front().url.bytes(), "/scan/p/build");
}

TEST(QuickWins, HitsAreThoseOfAPlainSearchOfRandomTrees)
{
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        test::Dice dice(seed);
        const char* const names[] = {"build", "node_modules", "src", "bazel-x", ".git", "b"};
        std::string text;
        std::size_t depth = 0;
        std::vector<std::set<std::string>> used(1);
        for (int i = 0; i < 200; ++i) {
            depth = std::min(depth, used.size() - 1);
            std::string name = names[dice.below(std::size(names))];
            if (!used[depth].insert(name).second) {
                name += std::to_string(i);
            }
            const bool isFolder = dice.chance(0.5);
            text += std::string(2 * depth, ' ') + name + (isFolder ? "/" : " ") +
                    (isFolder ? "" : std::to_string(dice.below(50))) + "\n";
            used.resize(depth + 1);
            if (isFolder) {
                used.emplace_back();
                ++depth;
            } else {
                depth = dice.below(depth + 1);
            }
        }
        const auto tree = treeFromText(text);
        std::vector<std::pair<std::int64_t, std::string>> expected;
        std::vector<const FileNode*> pending{&tree->root()};
        while (!pending.empty()) {
            const FileNode& node = *pending.back();
            pending.pop_back();
            const auto known = QuickWins::scanTargetNames();
            if (node.isDirectory() &&
                (std::find(known.begin(), known.end(), node.name()) != known.end() ||
                 node.name().substr(0, 6) == "bazel-")) {
                expected.emplace_back(-node.scannedBytes(), node.name());
            }
            for (const FileNode& child : node.children()) {
                pending.push_back(&child);
            }
        }
        std::sort(expected.begin(), expected.end());
        std::vector<std::pair<std::int64_t, std::string>> found;
        for (const QuickWin& hit : QuickWins::detect(tree->rootPointer(), 1000)) {
            found.emplace_back(-hit.bytes, hit.name);
        }
        EXPECT_EQ(found, expected);
    }
}

TEST(QuickWins, EvidenceIsReadFromTheDiskAndTheDateFromTheTree)
{
    DiskTree disk;
    disk.file("p/target/a", 10);
    disk.file("p/Cargo.toml", 1);
    disk.file("q/target/b", 5);
    test::TreeTextOptions options;
    options.rootPath = disk.root();
    const auto tree = treeFromText("p/\n  target/\n    d/\n      a 10 10 @900\n    c 1 1 @950\n"
                                   "q/\n  target/\n    b 5 5 @100\n",
                                   options);
    std::vector<QuickWin> hits = QuickWins::detect(tree->rootPointer());
    QuickWins::addEvidence(hits, tree->root(), {}, FileSystemCalls::system(),
                           FileContentCalls::system());
    ASSERT_EQ(hits.size(), 2U);
    EXPECT_EQ(hits[0].evidence, (Evidence{"Cargo.toml beside it", 950, {}}));
    EXPECT_EQ(hits[1].evidence, (Evidence{{}, 100, hasNoManifest}));
}

TEST(QuickWins, AHitInAPlaceThatGoesByItsOwnToolGetsThatTool)
{
    DiskTree home;
    home.file("go/pkg/mod/m/vendor/a", 10);
    home.file(".cache/bazel/b", 10);
    home.file("p/vendor/a", 10);
    test::TreeTextOptions options;
    options.rootPath = home.root();
    const auto tree = treeFromText("go/\n  pkg/\n    mod/\n      m/\n        vendor/\n          a "
                                   "30\n.cache/\n  bazel/\n    b 20\np/\n  vendor/\n    a 10\n",
                                   options);
    const HomeFolders folders = HomeFolders::below(home.root());
    std::vector<QuickWin> hits = QuickWins::detect(tree->rootPointer());
    QuickWins::addEvidence(hits, tree->root(), ownToolPlaces(folders, FileSystemCalls::system()),
                           FileSystemCalls::system(), FileContentCalls::system());
    ASSERT_EQ(hits.size(), 3U);
    EXPECT_EQ(hits[0].command, "go clean -modcache");
    EXPECT_FALSE(hits[0].isStageable());
    EXPECT_EQ(hits[1].command, "bazel clean --expunge");
    EXPECT_FALSE(hits[1].isStageable());
    EXPECT_TRUE(hits[2].isStageable());
}

TEST(QuickWins, FamiliesGoByNameAndWholePath)
{
    const auto family = [](std::string_view relative, std::string_view home) {
        for (const QuickWins::FolderTarget& target : QuickWins::homeTargets()) {
            if (target.relativePath == relative) {
                return named(std::string(target.name),
                             std::string(home) + "/" + std::string(relative))
                    .bloatCategory();
            }
        }
        return std::optional<std::string_view>("no such row");
    };
    EXPECT_EQ(family("Library/Developer/Xcode/Archives", "/Users/mara"), "Xcode");
    EXPECT_EQ(family("Library/WebKit", "/Users/mara"), "Caches");
    EXPECT_EQ(
        family("Library/Containers/com.apple.mail/Data/Library/Mail Downloads", "/Users/mara"),
        "Docker");
    EXPECT_EQ(family("Library/Application Support/MobileSync/Backup", "/Users/mara"), std::nullopt);
    EXPECT_EQ(family("Library/WebKit", "/Users/NodeFan"), "Node.js");
}

TEST(QuickWins, HiddenFamiliesDropOutAndTheRestKeepsItsOrder)
{
    const std::vector<QuickWin> wins{named("node_modules", "/a"), named("plain", "/b"),
                                     named("build", "/c"), named("other", "/d")};
    EXPECT_EQ(QuickWins::filtered(wins, {}), wins);
    EXPECT_THAT(namesOf(QuickWins::filtered(wins, {"Node.js", "Caches"})),
                ElementsAre("plain", "build", "other"));
}

TEST(QuickWins, MergedListsAreSortedAsOne)
{
    std::vector<QuickWin> wins{named("b", "/1"), named("a", "/2"), named("c", "/3")};
    wins[2].bytes = 5;
    QuickWins::sort(wins);
    EXPECT_THAT(namesOf(wins), ElementsAre("c", "a", "b"));
}

} // namespace
} // namespace quorvane
