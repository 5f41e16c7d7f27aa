// SPDX-License-Identifier: MIT
#include "BloatFilter.h"

#include "RandomTree.h"
#include "TreeText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

namespace quorvane {
namespace {

using testing::ElementsAre;

struct Family
{
    std::string key;
    std::string icon;
    std::vector<std::string> keywords;
};

const std::vector<Family> families{
    {"Node.js", "ellipsis.curlybraces", {"node_modules", ".npm", "pnpm", "yarn", "node"}},
    {"Xcode", "hammer", {"xcode", "deriveddata", "simulator", "devicesupport", "archives"}},
    {"Build Artifacts",
     "shippingbox",
     {"build", "dist", "target", "pods", "carthage", "__pycache__", "venv", "vendor", "gradle",
      ".swiftpm", "bazel"}},
    {"Docker", "shippingbox.fill", {"docker", "containers", "com.docker"}},
    {"Caches", "arrow.triangle.2.circlepath", {"cache", "webkit", "autosave"}},
};

/// The family of a name, or "-" for none.
std::string familyOf(const std::string& name)
{
    const auto tree = test::treeFromText(name + "/\n");
    return std::string(tree->root().children().front().bloatCategory().value_or("-"));
}

std::vector<std::string> visibleNames(const FileNode& node, const BloatKeys& keys)
{
    std::vector<std::string> names;
    for (const FileNode& child : node.visibleChildren(keys)) {
        names.emplace_back(child.name());
    }
    return names;
}

std::string inLowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string slowFamilyOf(const std::string& name)
{
    const std::string lower = inLowerCase(name);
    for (const Family& family : families) {
        for (const std::string& keyword : family.keywords) {
            if (lower.find(keyword) != std::string::npos) {
                return family.key;
            }
        }
    }
    return "-";
}

TEST(BloatFilter, FiveFamiliesInTheOrderThatDecidesTies)
{
    const auto items = BloatFilter::items();
    ASSERT_EQ(items.size(), families.size());
    for (std::size_t i = 0; i < families.size(); ++i) {
        EXPECT_EQ(items[i].key, families[i].key);
        EXPECT_EQ(items[i].icon, families[i].icon);
        EXPECT_EQ(std::vector<std::string>(items[i].keywords.begin(), items[i].keywords.end()),
                  families[i].keywords);
    }
}

TEST(BloatFilter, EveryKeywordClaimsNamesThatHoldItInAnyCase)
{
    for (const Family& family : families) {
        for (std::string keyword : family.keywords) {
            EXPECT_EQ(familyOf(keyword), slowFamilyOf(keyword)) << keyword;
            keyword.front() = static_cast<char>(std::toupper(keyword.front()));
            EXPECT_EQ(familyOf("My" + keyword + "Tools"), slowFamilyOf(keyword)) << keyword;
        }
    }
}

TEST(BloatFilter, NamesOnPaper)
{
    EXPECT_EQ(familyOf("MyBuildTools"), "Build Artifacts");
    EXPECT_EQ(familyOf("node-cache"), "Node.js");
    EXPECT_EQ(familyOf("cache of nodes"), "Node.js");
    EXPECT_EQ(familyOf("com.docker.docker"), "Docker");
    EXPECT_EQ(familyOf("Xcode Build"), "Xcode");
    EXPECT_EQ(familyOf("Photos"), "-");
    EXPECT_EQ(familyOf("nod"), "-");
    EXPECT_EQ(familyOf("edon"), "-");
}

TEST(BloatFilter, OnlyTheNodesOwnNameCounts)
{
    const auto tree = test::treeFromText("node_modules/\n"
                                         "  photo.png 5\n");
    EXPECT_EQ(test::nodeAt(tree->root(), "node_modules/photo.png").bloatCategory(), std::nullopt);
}

TEST(BloatFilter, LongAndForeignNames)
{
    EXPECT_EQ(familyOf(std::string(250, 'x') + "cache"), "Caches"); // 255 bytes
    EXPECT_EQ(familyOf(std::string(251, 'x') + "CACHE"), "Caches");
    EXPECT_EQ(familyOf(std::string(4000, 'x') + "CaChE"), "Caches");
    EXPECT_EQ(familyOf("\xC3\x89t\xC3\xA9 Cache"), "Caches");
    EXPECT_EQ(familyOf("bad\xFF"
                       "CACHE"),
              "Caches");
    // The Kelvin sign, U+212A, is a k in lower case.
    EXPECT_EQ(familyOf("doc\xE2\x84\xAA"
                       "er"),
              "Docker");
}

TEST(BloatFilter, AgreesWithTheObviousWayOnRandomNames)
{
    constexpr std::uint64_t seed = 97;
    SCOPED_TRACE(seed);
    test::Dice dice(seed);
    for (int i = 0; i < 4000; ++i) {
        std::string name = "z";
        for (std::uint64_t part = dice.below(4); part > 0; --part) {
            const Family& family = families[dice.below(families.size())];
            std::string word = family.keywords[dice.below(family.keywords.size())];
            word.resize(word.size() - dice.below(2));
            word[dice.below(word.size())] &= static_cast<char>(dice.chance(0.5) ? ~0x20 : ~0);
            name += word;
        }
        ASSERT_EQ(familyOf(name), slowFamilyOf(name)) << name;
    }
}

TEST(BloatFilter, MatchGivesTheFirstItemOfAText)
{
    EXPECT_EQ(BloatFilter::match("old logs /users/x/library/caches/old"), "Caches");
    EXPECT_EQ(BloatFilter::match("/users/x/node/library/caches"), "Node.js");
    EXPECT_EQ(BloatFilter::match(""), std::nullopt);
    EXPECT_EQ(BloatFilter::match("photos"), std::nullopt);
}

TEST(BloatFilter, NothingIsHiddenWithoutKeys)
{
    const auto tree = test::treeFromText("node_modules/\n"
                                         "  a 9\n"
                                         "b 5\n"
                                         "cache 1\n");
    const FileNode& root = tree->root();
    EXPECT_FALSE(test::nodeAt(tree->root(), "cache").isBloatHidden({}));
    EXPECT_THAT(visibleNames(root, {}), ElementsAre("node_modules", "b", "cache"));
    const BloatKeys none;
    const VisibleChildren visible = root.visibleChildren(none);
    ASSERT_FALSE(visible.empty());
    EXPECT_EQ(&*visible.begin(), root.children().data());
}

TEST(BloatFilter, HiddenFamiliesAreLeftOutAndTheOrderKept)
{
    const auto tree = test::treeFromText("zz 9\n"
                                         "node_modules/\n"
                                         "  a 8\n"
                                         "dist 7\n"
                                         "cache 6\n"
                                         "aa 5\n"
                                         "webkit 1\n");
    const FileNode& root = tree->root();
    EXPECT_THAT(visibleNames(root, {"Caches"}), ElementsAre("zz", "node_modules", "dist", "aa"));
    EXPECT_THAT(visibleNames(root, {"Caches", "Node.js"}), ElementsAre("zz", "dist", "aa"));
    EXPECT_THAT(visibleNames(root, {"Docker"}),
                ElementsAre("zz", "node_modules", "dist", "cache", "aa", "webkit"));
    EXPECT_THAT(visibleNames(root, {"no such family"}), testing::SizeIs(6));
}

TEST(BloatFilter, AllChildrenHiddenLeavesNothing)
{
    const auto tree = test::treeFromText("cache 2\nwebkit 1\n");
    const BloatKeys keys{"Caches"};
    EXPECT_TRUE(tree->root().visibleChildren(keys).empty());
    EXPECT_TRUE(tree->root().children().front().visibleChildren(keys).empty());
}

TEST(BloatFilter, EveryFamilyIsShownAtFirst)
{
    const auto shown = BloatFilter::defaultBloatFilters();
    ASSERT_EQ(shown.size(), families.size());
    for (const Family& family : families) {
        EXPECT_TRUE(shown.at(family.key));
    }
}

TEST(BloatFilter, StoredSwitchesAreMergedIntoTheDefaults)
{
    const auto shown = BloatFilter::merged({{"Xcode", false}, {"Docker", true}, {"Gone", false}});
    auto expected = BloatFilter::defaultBloatFilters();
    expected["Xcode"] = false;
    EXPECT_EQ(shown, expected);
    EXPECT_EQ(BloatFilter::merged({}), BloatFilter::defaultBloatFilters());
}

} // namespace
} // namespace quorvane
