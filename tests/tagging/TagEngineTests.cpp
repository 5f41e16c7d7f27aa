// SPDX-License-Identifier: MIT
#include "TagEngine.h"

#include "RandomTree.h"
#include "Text.h"
#include "TreeText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace quorvane {
namespace {

using test::nodeAt;
using test::treeFromText;
using ::testing::ElementsAre;

TagCondition condition(TagConditionType type, const char* value)
{
    return TagCondition::make(type, QString::fromUtf8(value));
}

TagRule ruleOf(std::vector<TagCondition> conditions, bool matchAny = false)
{
    TagRule rule;
    rule.id = QUuid::createUuid();
    rule.tagName = QStringLiteral("Tag");
    rule.conditions = std::move(conditions);
    rule.matchAny = matchAny;
    return rule;
}

std::vector<std::string> names(const std::vector<FileNode*>& nodes)
{
    std::vector<std::string> result;
    for (const FileNode* const node : nodes) {
        result.emplace_back(node->name());
    }
    return result;
}

NodeValues fileOf(std::string_view name, std::int64_t bytes)
{
    NodeValues values;
    values.id = 2;
    values.name = name;
    values.metadata.isRegularFile = true;
    values.metadata.logicalSize = bytes;
    return values;
}

/// Whether one condition holds for a file of that name and size in a folder below the root.
bool holds(TagConditionType type, const char* value, const std::string& name = "a",
           std::int64_t bytes = 0, const char* root = "/scan")
{
    NodeValues folder;
    folder.name = "folder";
    folder.metadata.isDirectory = true;
    const auto tree = FileTree::create(FilePath(root), folder);
    FileNode& inner = tree->addChildren(tree->root(), std::span(&folder, 1)).front();
    const NodeValues file = fileOf(name, bytes);
    return TagEngine::matchCondition(condition(type, value),
                                     tree->addChildren(inner, std::span(&file, 1)).front());
}

TEST(TagEngine, ANameContainsIsTestedWithoutRegardToCase)
{
    EXPECT_TRUE(holds(TagConditionType::filenameContains, " VOICE\t", "Invoice.PDF"));
    EXPECT_FALSE(holds(TagConditionType::filenameContains, "bill", "Invoice.PDF"));
    EXPECT_FALSE(holds(TagConditionType::filenameContains, " \t", "a b"));
}

TEST(TagEngine, AStartOrAnEndThatIsEmptyFitsEveryName)
{
    EXPECT_TRUE(holds(TagConditionType::filenameStartsWith, " ", "x"));
    EXPECT_TRUE(holds(TagConditionType::filenameEndsWith, "", "x"));
}

TEST(TagEngine, StartsAndEndsAreComparedLowerCased)
{
    EXPECT_TRUE(holds(TagConditionType::filenameEndsWith, ".log", "a.LOG"));
    EXPECT_FALSE(holds(TagConditionType::filenameEndsWith, ".log", "a.log.gz"));
    EXPECT_FALSE(holds(TagConditionType::filenameEndsWith, "aa.log", "a.log"));
    EXPECT_TRUE(holds(TagConditionType::filenameStartsWith, "IMG_", "img_1.jpg"));
    EXPECT_FALSE(holds(TagConditionType::filenameStartsWith, "img_1.jpg.x", "img_1.jpg"));
    EXPECT_TRUE(holds(TagConditionType::filenameStartsWith, "Ärger", "äRGER.txt"));
    EXPECT_TRUE(holds(TagConditionType::filenameEndsWith, "É", "cafe\u0301"));
}

TEST(TagEngine, AnExtensionIsComparedWhole)
{
    EXPECT_TRUE(holds(TagConditionType::extensionIs, "PDF ", "a.pdf"));
    EXPECT_FALSE(holds(TagConditionType::extensionIs, ".pdf", "a.pdf"));
    EXPECT_FALSE(holds(TagConditionType::extensionIs, "df", "a.pdf"));
    EXPECT_TRUE(holds(TagConditionType::extensionIs, "gz", "a.tar.GZ"));
    EXPECT_FALSE(holds(TagConditionType::extensionIs, "bashrc", ".bashrc"));
    EXPECT_FALSE(holds(TagConditionType::extensionIs, "", "a"));
    EXPECT_FALSE(holds(TagConditionType::extensionIs, "", "a."));
    EXPECT_TRUE(holds(TagConditionType::extensionIs, "é", "a.É"));
}

TEST(TagEngine, AFolderIsSoughtInTheWholePathOfTheParent)
{
    EXPECT_TRUE(holds(TagConditionType::folderContains, "photos", "x.jpg", 0, "/Users/a/MyPhotos"));
    EXPECT_TRUE(holds(TagConditionType::folderContains, "/users/A/", "x", 0, "/Users/a/b"));
    EXPECT_TRUE(holds(TagConditionType::folderContains, "b/folder", "x", 0, "/a/b"));
    EXPECT_FALSE(holds(TagConditionType::folderContains, "x.jpg", "x.jpg"));
    EXPECT_FALSE(holds(TagConditionType::folderContains, " "));
}

TEST(TagEngine, ASizeIsNeitherGreaterNorSmallerThanItself)
{
    constexpr std::int64_t hundred = 104857600;
    EXPECT_FALSE(holds(TagConditionType::sizeGT, "100 MB", "a", hundred));
    EXPECT_TRUE(holds(TagConditionType::sizeGT, "100 MB", "a", hundred + 1));
    EXPECT_FALSE(holds(TagConditionType::sizeLT, "100 MB", "a", hundred));
    EXPECT_TRUE(holds(TagConditionType::sizeLT, "100 MB", "a", hundred - 1));
}

TEST(TagEngine, ASizeThatCannotBeReadOrHeldMatchesNothing)
{
    for (const char* const value : {"", "2O KB", "many", "9999999999 TB", "1e4000"}) {
        EXPECT_FALSE(holds(TagConditionType::sizeGT, value, "a", 5)) << value;
        EXPECT_FALSE(holds(TagConditionType::sizeLT, value, "a", 5)) << value;
    }
}

TEST(TagEngine, ARuleWithoutConditionsMatchesEveryRegularFileAlone)
{
    const auto tree = treeFromText("folder/\n  a 3\n  link@ 2\nb 1\npipe| 0\n");
    EXPECT_THAT(names(TagEngine::matches(ruleOf({}), tree->root())), ElementsAre("b", "a"));
    TagRule any = ruleOf({}, true);
    EXPECT_EQ(TagEngine::matches(any, tree->root()).size(), 2U);
}

TEST(TagEngine, ADisabledRuleMatchesNothing)
{
    const auto tree = treeFromText("a 3\n");
    TagRule rule = ruleOf({});
    rule.isEnabled = false;
    EXPECT_TRUE(TagEngine::matches(rule, tree->root()).empty());
}

TEST(TagEngine, AllOrAnyOfTheConditionsHaveToHold)
{
    const auto tree = treeFromText("a.pdf 10\nb.pdf 1\nc.txt 20\n");
    const std::vector conditions{condition(TagConditionType::extensionIs, "pdf"),
                                 condition(TagConditionType::sizeGT, "5")};
    EXPECT_THAT(names(TagEngine::matches(ruleOf(conditions), tree->root())), ElementsAre("a.pdf"));
    EXPECT_EQ(TagEngine::matches(ruleOf(conditions, true), tree->root()).size(), 3U);
}

TEST(TagEngine, TheRootItselfMayBeTheFile)
{
    const auto tree = FileTree::create(FilePath("/up/file.pdf"), fileOf("file.pdf", 3));
    const TagRule rule = ruleOf({condition(TagConditionType::folderContains, "up"),
                                 condition(TagConditionType::extensionIs, "pdf")});
    EXPECT_EQ(TagEngine::matches(rule, tree->root()).size(), 1U);
    EXPECT_TRUE(TagEngine::matchesRule(tree->root(), rule));
}

/// The walk and the test as they are laid down, one node after the other.
std::vector<FileNode*> plainMatches(const TagRule& rule, FileNode& root)
{
    std::vector<FileNode*> stack{&root};
    std::vector<FileNode*> found;
    while (!stack.empty()) {
        FileNode* const node = stack.back();
        stack.pop_back();
        for (FileNode& child : node->children()) {
            stack.push_back(&child);
        }
        if (node->isRegularFile() && TagEngine::matchesRule(*node, rule)) {
            found.push_back(node);
        }
    }
    return found;
}

TEST(TagEngine, ManyThreadsGiveTheOrderOfThePlainWalk)
{
    for (std::uint64_t seed = 1; seed <= 8; ++seed) {
        test::RandomTreeOptions options;
        options.entries = 3000;
        options.rootPath = FilePath(seed % 2 == 0 ? "/" : "/scan/Über");
        const auto tree = test::randomTree(seed, options);
        const std::vector<TagRule> rules{
            ruleOf({}),
            ruleOf({condition(TagConditionType::folderContains, "a/")}),
            ruleOf({condition(TagConditionType::folderContains, "/")}),
            ruleOf({condition(TagConditionType::folderContains, "er/l")}),
            ruleOf({condition(TagConditionType::sizeGT, "1 KB"),
                    condition(TagConditionType::filenameContains, "E")}),
            ruleOf({condition(TagConditionType::extensionIs, "jpg"),
                    condition(TagConditionType::folderContains, "m"),
                    condition(TagConditionType::filenameStartsWith, "i")},
                   true)};
        for (const TagRule& rule : rules) {
            TagEngine::Options threads;
            threads.workers = 4;
            ASSERT_EQ(TagEngine::matches(rule, tree->root(), threads),
                      plainMatches(rule, tree->root()))
                << "seed " << seed << ": " << rule.conditionSummary().toStdString();
        }
    }
}

TEST(TagEngine, AScanSortsBySizeAndKeepsTheOrderOfRulesAmongEquals)
{
    const auto tree = treeFromText("a 5\nb 7\nc 5\n");
    TagRule first = ruleOf({});
    first.tagName = QStringLiteral("First");
    first.tagColor = TagColor::green;
    TagRule off = ruleOf({});
    off.isEnabled = false;
    TagRule second = ruleOf({condition(TagConditionType::filenameContains, "a")});
    second.tagName = QStringLiteral("Second");
    std::vector<double> progress;
    const TagMatches found = TagEngine::scan(std::vector{first, off, second}, tree->rootPointer(),
                                             {}, [&](double share) { progress.push_back(share); });
    std::vector<std::string> rows;
    for (std::size_t i = 0; i < found.size(); ++i) {
        const TagMatch match = found.at(i);
        rows.push_back(match.name.toStdString() + ' ' + match.tagName.toStdString());
    }
    EXPECT_THAT(rows, ElementsAre("b First", "c First", "a First", "a Second"));
    EXPECT_THAT(progress, ElementsAre(0.5, 1.0));
    const TagMatch largest = found.at(0);
    EXPECT_EQ(largest.bytes, 7);
    EXPECT_EQ(largest.url, FilePath("/scan/b"));
    EXPECT_EQ(largest.nodeID, nodeAt(tree->root(), "b").id());
    EXPECT_EQ(largest.tagColorRaw, "green");
    EXPECT_EQ(found.nodeAt(0).get(), &nodeAt(tree->root(), "b"));
    EXPECT_EQ(found.summary(), QStringLiteral("Tagged 4 files with 2 tags."));
}

TEST(TagEngine, TheRulesOfANodeAreToldInTheirOrder)
{
    const auto tree = treeFromText("a 5\nb 7\n");
    TagRule first = ruleOf({});
    TagRule second = ruleOf({condition(TagConditionType::filenameContains, "a")});
    second.tagName = QStringLiteral("Second");
    const TagMatches found =
        TagEngine::scan(std::vector{first, second}, tree->rootPointer(), {}, [](double) {});
    const auto ofA = found.rulesOf(nodeAt(tree->root(), "a"));
    ASSERT_EQ(ofA.size(), 2U);
    EXPECT_EQ(ofA[0]->tagName, QStringLiteral("Tag"));
    EXPECT_EQ(ofA[1]->tagName, QStringLiteral("Second"));
    EXPECT_EQ(found.rulesOf(nodeAt(tree->root(), "b")).size(), 1U);
    EXPECT_TRUE(found.rulesOf(tree->root()).empty());
}

TEST(TagEngine, TheSummaryCountsMatchesAndDistinctTagsInSingularAndPlural)
{
    const auto tree = treeFromText("a 5\n");
    const auto summary = [&](const std::vector<TagRule>& rules) {
        return TagEngine::scan(rules, tree->rootPointer(), {}, [](double) {}).summary();
    };
    EXPECT_EQ(summary({}), QStringLiteral("Tagged 0 files with 0 tags."));
    EXPECT_EQ(summary({ruleOf({})}), QStringLiteral("Tagged 1 file with 1 tag."));
    EXPECT_EQ(summary({ruleOf({}), ruleOf({})}), QStringLiteral("Tagged 2 files with 1 tag."));
    EXPECT_EQ(summary({ruleOf({condition(TagConditionType::sizeGT, "")})}),
              QStringLiteral("Tagged 0 files with 0 tags."));
}

TEST(TagEngine, MatchesKeepTheTreeAlive)
{
    TagMatches found;
    {
        const auto tree = treeFromText("a 5\n");
        found = TagEngine::scan(std::vector{ruleOf({})}, tree->rootPointer(), {}, [](double) {});
    }
    EXPECT_EQ(found.at(0).url, FilePath("/scan/a"));
}

TEST(TagEngine, AFolderTenThousandLevelsDeepIsWalked)
{
    std::string text;
    for (int depth = 0; depth < 10000; ++depth) {
        text += std::string(static_cast<std::size_t>(depth) * 2, ' ') + "d/\n";
    }
    text += std::string(20000, ' ') + "deep.pdf 1\n";
    const auto tree = treeFromText(text);
    const TagRule rule = ruleOf({condition(TagConditionType::folderContains, "d/d"),
                                 condition(TagConditionType::extensionIs, "pdf")});
    EXPECT_THAT(names(TagEngine::matches(rule, tree->root())), ElementsAre("deep.pdf"));
}

TEST(TagEngine, ASetStopEndsTheScanWithoutAMatch)
{
    const auto tree = treeFromText("a 5\n");
    TagEngine::Options options;
    options.isCancelled = [] { return true; };
    EXPECT_TRUE(TagEngine::matches(ruleOf({}), tree->root(), options).empty());
}

} // namespace
} // namespace quorvane
