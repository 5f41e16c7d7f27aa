// SPDX-License-Identifier: MIT
#include "IndexTable.h"

#include "FileTree.h"
#include "IndexBuilder.h"
#include "IndexSearch.h"
#include "IndexSupport.h"
#include "SpotlightSearcher.h"
#include "TreeText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>

namespace quorvane {
namespace {

using test::IndexInMemory;
using test::treeFromText;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> find(const IndexInMemory& index, const SearchRequest& request,
                              std::size_t limit = 1000)
{
    const LockedFlag stop;
    std::vector<std::string> paths;
    for (const IndexTable::Row row : searchIndex(*index.table(), request, limit, stop).rows) {
        paths.push_back(index.table()->path(row).bytes());
    }
    return paths;
}

SearchRequest words(const char* text, const char* scope = "/")
{
    SearchRequest request;
    request.query = QString::fromUtf8(text);
    request.scope = FilePath(scope);
    return request;
}

TEST(IndexTable, TellsWhatTheTreeHad)
{
    const auto tree = treeFromText("Docs/\n"
                                   "  \xC3\x89t\xC3\xA9.PDF 1234 4096 @86400\n"
                                   "plain.txt 5 5 @7\n");
    const IndexInMemory index(tree->root());
    const IndexTable& table = *index.table();
    ASSERT_EQ(table.size(), 4U);
    EXPECT_EQ(table.rootPath(), FilePath("/scan"));
    EXPECT_EQ(table.madeMs(), IndexInMemory::madeMs);
    const std::optional<IndexTable::Row> row =
        table.rowAt(FilePath("/scan/Docs/\xC3\x89t\xC3\xA9.PDF"));
    ASSERT_TRUE(row);
    EXPECT_EQ(table.name(*row), "\xC3\x89t\xC3\xA9.PDF");
    EXPECT_EQ(table.foldedName(*row), "ete.pdf");
    EXPECT_EQ(table.bytesOf(*row), 1234);
    EXPECT_EQ(table.modifiedSeconds(*row), 86400);
    EXPECT_EQ(table.kind(*row), ResultKind::pdf);
    EXPECT_EQ(table.path(*row), FilePath("/scan/Docs/\xC3\x89t\xC3\xA9.PDF"));
    EXPECT_FALSE(table.rowAt(FilePath("/scan/docs")));
    EXPECT_FALSE(table.rowAt(FilePath("/other")));
    EXPECT_EQ(table.rowAt(FilePath("/scan")), 0U);
}

TEST(IndexTable, TheRootOfTheMachineIsTheFrontOfEveryPath)
{
    test::TreeTextOptions options;
    options.rootPath = FilePath("/");
    const auto tree = treeFromText("a/\n  b 1\n", options);
    const IndexInMemory index(tree->root());
    EXPECT_THAT(find(index, words("b")), ElementsAre("/a/b"));
    EXPECT_THAT(find(index, words("b", "/a")), ElementsAre("/a/b"));
}

TEST(IndexTable, AnEmptyFolderIsAnIndexOfOneRow)
{
    const auto tree = treeFromText("");
    const IndexInMemory index(tree->root());
    ASSERT_TRUE(index.table());
    EXPECT_EQ(index.table()->size(), 1U);
    EXPECT_THAT(find(index, words("scan")), IsEmpty()) << "the root itself is never found";
}

TEST(IndexTable, EveryCutAndEveryFlippedBitIsFoundOut)
{
    const auto tree = treeFromText("Docs/\n  a.PDF 1\n  b 2\nnode_modules/\n  c 3\n");
    const IndexInMemory index(tree->root());
    const std::string whole = index.bytes();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        ASSERT_FALSE(IndexInMemory(whole.substr(0, length)).table()) << length;
    }
    EXPECT_FALSE(IndexInMemory(whole + std::string(8, '\0')).table());
    for (std::size_t bit = 0; bit < whole.size() * 8; ++bit) {
        std::string flipped = whole;
        flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ (1 << (bit % 8)));
        ASSERT_FALSE(IndexInMemory(flipped).table()) << bit;
    }
    EXPECT_TRUE(IndexInMemory(whole).table());
}

TEST(IndexTable, AFileOfAnotherVersionIsNone)
{
    const auto tree = treeFromText("a 1\n");
    std::string bytes = IndexInMemory(tree->root()).bytes();
    bytes[offsetof(IndexHeader, version)] = 2;
    test::repairChecksum(bytes);
    EXPECT_FALSE(IndexInMemory(bytes).table());
}

TEST(IndexTable, RowsThatPointAnywhereAreRefusedWhateverTheChecksum)
{
    const auto tree = treeFromText("aa/\n  B.txt 1\ncc 2\n");
    const std::string whole = IndexInMemory(tree->root()).bytes();
    std::mt19937 random(99);
    std::size_t accepted = 0;
    for (int round = 0; round < 20'000; ++round) {
        std::string bytes = whole;
        const std::size_t place = offsetof(IndexHeader, entries) +
                                  random() % (bytes.size() - offsetof(IndexHeader, entries));
        bytes[place] = static_cast<char>(random());
        test::repairChecksum(bytes);
        const IndexInMemory index(bytes);
        if (index.table()) {
            ++accepted;
            test::readEverything(*index.table());
        }
    }
    // Sizes, dates, letters and marks may be anything that a disk could have told.
    EXPECT_GT(accepted, 0U);
    EXPECT_LT(accepted, 20'000U);
}

TEST(IndexSearch, WordsMatchWithoutCaseAndDiacritics)
{
    const auto tree = treeFromText("R\xC3\xA9sum\xC3\xA9 Final.PDF 1\nresume 1\nother 1\n");
    const IndexInMemory index(tree->root());
    EXPECT_EQ(find(index, words("RESUME")).size(), 2U);
    EXPECT_EQ(find(index, words("resume\xCC\x81")).size(), 2U);
    EXPECT_THAT(find(index, words("final  sum")),
                ElementsAre("/scan/R\xC3\xA9sum\xC3\xA9 Final.PDF"));
    SearchRequest filtered = words("R\xC3\x89SUM\xC3\x89");
    filtered.kind = SearchFilterKind::pdf;
    EXPECT_EQ(find(index, filtered).size(), 1U);
    EXPECT_THAT(find(index, words("esume fina x")), IsEmpty());
}

TEST(IndexSearch, NoWordReachesFromOneNameIntoTheNext)
{
    const auto tree = treeFromText("ab 2\ncd 1\n");
    const IndexInMemory index(tree->root());
    EXPECT_THAT(find(index, words("bc")), IsEmpty());
    SearchRequest request;
    request.query = QStringLiteral("b") + QChar(u'\0') + QStringLiteral("c");
    EXPECT_THAT(find(index, request), IsEmpty());
}

TEST(IndexSearch, NamesThatAreNotTextAndNamesWithNewlinesAreFound)
{
    auto tree = FileTree::create(FilePath("/r"), [] {
        NodeValues root;
        root.name = "r";
        root.metadata.isDirectory = true;
        return root;
    }());
    std::vector<NodeValues> values(2);
    values[0].id = 1;
    values[0].name = "bad\xFFname";
    values[1].id = 2;
    values[1].name = "two\nlines name";
    tree->addChildren(tree->root(), values);
    tree->root().finalizeTree();
    const IndexInMemory index(tree->root());
    EXPECT_THAT(find(index, words("NAME")), ElementsAre("/r/bad\xFFname", "/r/two\nlines name"));
}

TEST(IndexSearch, ShallowEntriesComeFirstAndThoseOfPackagesLast)
{
    const auto tree = treeFromText("node_modules/\n"
                                   "  hit0 1\n"
                                   "a/\n"
                                   "  b/\n"
                                   "    hit2 1\n"
                                   "  hit1 1\n"
                                   "  node_modules/\n"
                                   "    hit3 1\n"
                                   "hit 1\n"
                                   "node_modules.hit/\n"
                                   "  hit4 1\n");
    const IndexInMemory index(tree->root());
    const std::vector<std::string> expected{"/scan/hit",
                                            "/scan/node_modules.hit",
                                            "/scan/a/hit1",
                                            "/scan/node_modules.hit/hit4",
                                            "/scan/a/b/hit2",
                                            "/scan/node_modules/hit0",
                                            "/scan/a/node_modules/hit3"};
    std::vector<std::string> found = find(index, words("hit"));
    for (std::size_t i = 1; i < found.size(); ++i) {
        EXPECT_LE(searchRank(FilePath(found[i - 1])), searchRank(FilePath(found[i])));
    }
    EXPECT_THAT(found, testing::UnorderedElementsAreArray(expected));
    EXPECT_EQ(found.back(), "/scan/a/node_modules/hit3");
    EXPECT_THAT(find(index, words("hit"), 2),
                testing::UnorderedElementsAre("/scan/hit", "/scan/node_modules.hit"));
}

TEST(IndexSearch, AFolderNamedPackagesAboveTheRootCounts)
{
    test::TreeTextOptions options;
    options.rootPath = FilePath("/x/node_modules");
    const auto tree = treeFromText("a 1\n", options);
    const IndexInMemory index(tree->root());
    EXPECT_TRUE(index.table()->isBelowPackages(1));
}

TEST(IndexSearch, WithALimitOnTheSizeTheLargestComeFirst)
{
    const auto tree = treeFromText("d/\n  big 300\n  bigger 400\nsmall 100\nmiddle 200\n");
    const IndexInMemory index(tree->root());
    SearchRequest request;
    request.kind = SearchFilterKind::folder;
    EXPECT_THAT(find(index, request), ElementsAre("/scan/d"));
    request.kind.reset();
    request.filters.minBytes = 100;
    EXPECT_THAT(find(index, request), ElementsAre("/scan/d/bigger", "/scan/d/big", "/scan/middle"));
    EXPECT_THAT(find(index, request, 1), ElementsAre("/scan/d/bigger"));
    request.filters.maxBytes = 300;
    EXPECT_THAT(find(index, request), ElementsAre("/scan/middle"));
}

TEST(IndexSearch, AScopeIsAFolderAndWhatLiesBelow)
{
    const auto tree = treeFromText("a/\n  b/\n    x1 1\n  x2 1\nab/\n  x3 1\nx4 1\n");
    const IndexInMemory index(tree->root());
    EXPECT_THAT(find(index, words("x", "/scan/a")), ElementsAre("/scan/a/x2", "/scan/a/b/x1"));
    EXPECT_THAT(find(index, words("a", "/scan/a")), IsEmpty()) << "the folder itself is none of it";
    EXPECT_THAT(find(index, words("x", "/scan/x4")), IsEmpty());
    EXPECT_THAT(find(index, words("x", "/scan/none")), IsEmpty());
    EXPECT_THAT(find(index, words("x", "/elsewhere")), IsEmpty());
    EXPECT_EQ(find(index, words("x", "/scan")).size(), 4U);
    EXPECT_EQ(find(index, words("x", "/")).size(), 4U);
}

TEST(IndexSearch, TellsWhetherThereIsMore)
{
    const auto tree = treeFromText("a1 1\na2 1\na3 1\n");
    const IndexInMemory index(tree->root());
    const LockedFlag stop;
    EXPECT_FALSE(searchIndex(*index.table(), words("a"), 2, stop).isComplete);
    EXPECT_TRUE(searchIndex(*index.table(), words("a"), 3, stop).isComplete);
    EXPECT_TRUE(searchIndex(*index.table(), words("none"), 3, stop).isComplete);
}

TEST(IndexBuilder, TrashFoldersAndWhatIsInThemAreLeftOut)
{
    const auto tree = treeFromText(".Trash/\n  x1 1\n"
                                   ".trash/\n  x2 1\n"
                                   ".Trash-1000/\n  x3 1\n"
                                   ".Trash-/\n  x4 1\n"
                                   ".Trash-a/\n  x5 1\n"
                                   "Trash/\n  x6 1\n"
                                   ".local/\n"
                                   "  share/\n"
                                   "    Trash/\n"
                                   "      x7 1\n");
    const IndexInMemory index(tree->root());
    EXPECT_THAT(
        find(index, words("x")),
        testing::UnorderedElementsAre("/scan/.Trash-/x4", "/scan/.Trash-a/x5", "/scan/Trash/x6"));
    EXPECT_THAT(find(index, words("trash")),
                testing::UnorderedElementsAre("/scan/.Trash-", "/scan/.Trash-a", "/scan/Trash"));
}

TEST(IndexBuilder, AVolumeOfAnotherMachineIsAnEmptyFolder)
{
    const auto tree = treeFromText("mnt/\n  share/\n    x 1\n  disk/\n    x 1\n");
    const IndexInMemory index(tree->root(),
                              {{FilePath("/scan/mnt/share"), 7}, {FilePath("/z"), 8}});
    EXPECT_THAT(find(index, words("x")), ElementsAre("/scan/mnt/disk/x"));
    EXPECT_EQ(find(index, words("share")).size(), 1U);
}

TEST(IndexBuilder, ANewerPartTakesThePlaceOfTheOlder)
{
    const auto whole = treeFromText("home/\n  me/\n    old 1\n    both 1\n  you/\n    kept 1\n");
    const IndexInMemory older(whole->root());
    test::TreeTextOptions options;
    options.rootPath = FilePath("/scan/home/me");
    const auto part = treeFromText("new 2\nboth 9\n", options);
    const LockedFlag stop;
    IndexBuilder builder(IndexInMemory::madeMs + 1000, {});
    ASSERT_TRUE(builder.add(*older.table(), part->root(), stop));
    const IndexInMemory index(builder);
    ASSERT_TRUE(index.table());
    EXPECT_EQ(index.table()->madeMs(), IndexInMemory::madeMs) << "as old as its oldest part";
    EXPECT_THAT(find(index, words("e")),
                testing::UnorderedElementsAre("/scan/home", "/scan/home/me", "/scan/home/me/new",
                                              "/scan/home/you/kept"));
    EXPECT_THAT(find(index, words("old")), IsEmpty());
    EXPECT_EQ(index.table()->bytesOf(*index.table()->rowAt(FilePath("/scan/home/me/both"))), 9);
}

TEST(IndexBuilder, APartThatTheOlderDoesNotKnowIsLeftOut)
{
    const auto whole = treeFromText("a 1\n");
    const IndexInMemory older(whole->root());
    test::TreeTextOptions options;
    options.rootPath = FilePath("/scan/gone");
    const auto part = treeFromText("new 2\n", options);
    const LockedFlag stop;
    IndexBuilder builder(1, {});
    ASSERT_TRUE(builder.add(*older.table(), part->root(), stop));
    EXPECT_THAT(find(IndexInMemory(builder), words("")), ElementsAre("/scan/a"));
}

TEST(IndexBuilder, StopsWhenItIsTold)
{
    const auto tree = treeFromText("a 1\n");
    LockedFlag stop;
    stop.set(true);
    IndexBuilder builder(1, {});
    EXPECT_FALSE(builder.add(tree->root(), stop));
}

TEST(IndexSearch, AChainOfTenThousandFoldersIsSearchedAndNamed)
{
    const auto tree = test::chainTree(10'000);
    const IndexInMemory index(tree->root());
    ASSERT_TRUE(index.table());
    const std::vector<std::string> found = find(index, words("end"));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.front().size(), std::string("/chain").size() + 10'000 * 2 + 4);
    EXPECT_EQ(find(index, words("end", "/chain/d/d")).size(), 1U);
}

/// The same answer as asking each node by its path.
TEST(IndexSearch, GivesWhatAPlainWalkGives)
{
    for (const unsigned seed : {1U, 2U, 3U}) {
        const auto tree = test::oddTree(seed, 3000);
        const IndexInMemory index(tree->root());
        ASSERT_TRUE(index.table());
        std::mt19937 random(seed);
        for (int round = 0; round < 60; ++round) {
            const SearchRequest request = test::randomRequest(random, tree->root());
            const std::size_t limit = 1 + random() % 150;
            EXPECT_EQ(find(index, request, limit), test::plainSearch(tree->root(), request, limit))
                << "seed " << seed << " round " << round << " query " << request.query.toStdString()
                << " scope " << request.scope.bytes();
        }
    }
}

} // namespace
} // namespace quorvane
