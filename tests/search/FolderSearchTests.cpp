// SPDX-License-Identifier: MIT
#include "FolderSearch.h"

#include "FileTree.h"
#include "TreeText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace quorvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double now = 1'700'000'000;
constexpr std::int64_t daySeconds = 86400;

/// A tree and what is found in it, as "name score".
class Tree
{
public:
    explicit Tree(std::string_view text)
        : Tree(test::treeFromText(text, {FilePath("/0"), true}))
    {}
    explicit Tree(std::shared_ptr<FileTree> tree)
        : m_tree(std::move(tree))
        , m_nodes(m_tree->root())
    {}

    std::vector<FolderSearch::Hit> hits(const FolderSearch::Query& query) const
    {
        const LockedFlag stop;
        return FolderSearch::ranked(m_nodes, query, now, stop);
    }

    std::vector<std::string> find(const char* text, FolderSearch::Query query = {}) const
    {
        query.text = QString::fromUtf8(text);
        std::vector<std::string> found;
        for (const FolderSearch::Hit& hit : hits(query)) {
            found.push_back(std::string(hit.node->name()) + " " + std::to_string(hit.score));
        }
        return found;
    }

private:
    std::shared_ptr<FileTree> m_tree;
    NodeIndex m_nodes;
};

FolderSearch::Query only(KindFilter kind)
{
    FolderSearch::Query query;
    query.kind = kind;
    return query;
}

FolderSearch::Query aged(AgeFilter age)
{
    FolderSearch::Query query;
    query.age = age;
    return query;
}

/// So many files in one folder, named "{prefix}{number}".
std::shared_ptr<FileTree> manyFiles(std::size_t count, const std::string& prefix)
{
    NodeValues root;
    root.name = "many";
    root.metadata.isDirectory = true;
    std::vector<std::string> names(count);
    std::vector<NodeValues> values(count);
    for (std::size_t i = 0; i < count; ++i) {
        names[i] = prefix + std::to_string(i);
        values[i].id = static_cast<std::int64_t>(i + 1);
        values[i].name = names[i];
        values[i].metadata.isRegularFile = true;
    }
    auto tree = FileTree::create(FilePath("/many"), root);
    tree->addChildren(tree->root(), values);
    tree->root().finalizeTree();
    return tree;
}

TEST(FolderSearch, ABetterMatchStandsAbove)
{
    const Tree tree("myreport.txt 1\n"
                    "annual-report.pdf 1\n"
                    "report 1\n");
    EXPECT_THAT(tree.find("report"),
                ElementsAre("report 1100", "annual-report.pdf 400", "myreport.txt 200"));
}

TEST(FolderSearch, TheNameAsTypedGetsABonusWithCaseAndBlanks)
{
    const Tree tree("Report 1\nreport 1\n");
    EXPECT_THAT(tree.find("Report"), ElementsAre("Report 1100", "report 600"));
    EXPECT_THAT(tree.find("Report "), ElementsAre("Report 600", "report 600"));
}

TEST(FolderSearch, AWordBeginsBehindWhiteSpaceAndThreeSigns)
{
    const Tree tree("x a 1\nx-a 1\nx_a 1\nx.a 1\nx+a 1\nx\xE3\x80\x80"
                    "a 1\n"
                    "\xC3\xA4"
                    "a 1\n");
    EXPECT_THAT(tree.find("a"),
                testing::UnorderedElementsAre("x a 400", "x-a 400", "x_a 400", "x.a 400", "x+a 200",
                                              "x\xE3\x80\x80"
                                              "a 400",
                                              "\xC3\xA4"
                                              "a 200"));
}

TEST(FolderSearch, OnlyTheFirstOccurrenceCounts)
{
    EXPECT_THAT(Tree("xa-a 1\n").find("a"), ElementsAre("xa-a 200"));
}

TEST(FolderSearch, EveryWordHasToOccurInAnyOrderAndMayOverlap)
{
    const Tree tree("ab 1\nba 1\na 1\nb 1\n");
    EXPECT_THAT(tree.find("a b"), ElementsAre("ab 600", "ba 600"));
    EXPECT_THAT(tree.find("ab ab"), ElementsAre("ab 1200"));
    EXPECT_THAT(tree.find("a\tb\n"), ElementsAre("ab 600", "ba 600"));
    EXPECT_THAT(tree.find("a c"), IsEmpty());
}

TEST(FolderSearch, LetterCaseIsThatOfUnicode)
{
    EXPECT_THAT(Tree("\xC3\x84"
                     "pfel 1\n")
                    .find("\xC3\xA4PFEL"),
                ElementsAre("\xC3\x84"
                            "pfel 600"));
    EXPECT_THAT(Tree("A\xFF"
                     "B 1\n")
                    .find("b"),
                ElementsAre("A\xFF"
                            "B 200"));
}

TEST(FolderSearch, ANameLongerThanMostIsSearchedWhole)
{
    const std::string name(300, 'X');
    EXPECT_THAT(Tree(name + "end 1\n").find("end"), ElementsAre(name + "end 200"));
}

TEST(FolderSearch, FoldersAndSizeAddALittle)
{
    const Tree tree("a/\n"
                    "a1 524288\n"
                    "a2 1048576\n"
                    "a3 20971520\n");
    EXPECT_THAT(tree.find("a"), ElementsAre("a 1105", "a3 412", "a2 401", "a1 400"));
}

TEST(FolderSearch, EqualScoresStandByAscendingId)
{
    // Ids count up in the order of the lines; the children are sorted by size.
    EXPECT_THAT(Tree("a3 1\na1 2\na2 3\n").find("a"), ElementsAre("a3 400", "a1 400", "a2 400"));
}

TEST(FolderSearch, FiltersAloneListWhatPassesWithoutAScore)
{
    const Tree tree("d/\n"
                    "  f 1\n"
                    "l@ 1\n"
                    "p| 1\n");
    EXPECT_THAT(tree.find("", only(KindFilter::files)), ElementsAre("f 0", "p 0"));
    EXPECT_THAT(tree.find("", only(KindFilter::folders)), ElementsAre("0 0", "d 0"));
    EXPECT_THAT(tree.find("", only(KindFilter::everything)),
                ElementsAre("0 0", "d 0", "f 0", "l 0", "p 0"));
}

TEST(FolderSearch, ACategoryGoesByTheNameOfFoldersToo)
{
    FolderSearch::Query query;
    query.category = FileTypeCategory::doc;
    const Tree tree("notes.txt/\n"
                    "a.pdf 1\n"
                    "a.zip 1\n");
    EXPECT_THAT(tree.find("", query), ElementsAre("notes.txt 0", "a.pdf 0"));
}

TEST(FolderSearch, ASizeFilterTakesTheLimitItself)
{
    FolderSearch::Query query;
    query.kind = KindFilter::files;
    const Tree tree("a 1048575\nb 1048576\nc 10485760\nd 104857600\ne 1073741824\n");
    query.minBytes = ByteFilter::mb1;
    EXPECT_THAT(tree.find("", query), ElementsAre("b 0", "c 0", "d 0", "e 0"));
    query.minBytes = ByteFilter::mb10;
    EXPECT_THAT(tree.find("", query), ElementsAre("c 0", "d 0", "e 0"));
    query.minBytes = ByteFilter::mb100;
    EXPECT_THAT(tree.find("", query), ElementsAre("d 0", "e 0"));
    query.minBytes = ByteFilter::gb1;
    EXPECT_THAT(tree.find("", query), ElementsAre("e 0"));
}

TEST(FolderSearch, AgeFiltersMeetAtAYear)
{
    const auto dated = [](const char* name, std::int64_t secondsAgo) {
        return std::string(name) + " 1 1 @" +
               std::to_string(static_cast<std::int64_t>(now) - secondsAgo) + "\n";
    };
    const Tree tree(dated("month", 30 * daySeconds) + dated("past", 30 * daySeconds + 1) +
                    dated("year", 365 * daySeconds) + dated("older", 365 * daySeconds + 1));
    FolderSearch::Query query = aged(AgeFilter::lastMonth);
    query.kind = KindFilter::files;
    EXPECT_THAT(tree.find("", query), ElementsAre("month 0"));
    query.age = AgeFilter::lastYear;
    EXPECT_THAT(tree.find("", query), ElementsAre("month 0", "past 0", "year 0"));
    query.age = AgeFilter::overYear;
    EXPECT_THAT(tree.find("", query), ElementsAre("older 0"));
}

TEST(FolderSearch, NoAgeFilterTakesAnEntryWithoutADate)
{
    NodeValues root;
    root.name = "r";
    root.metadata.isDirectory = true;
    const Tree tree(FileTree::create(FilePath("/r"), root));
    EXPECT_THAT(tree.find("", aged(AgeFilter::overYear)), IsEmpty());
    EXPECT_THAT(tree.find("", aged(AgeFilter::lastYear)), IsEmpty());
    EXPECT_THAT(tree.find("r"), ElementsAre("r 1105"));
}

TEST(FolderSearch, AtMostThreeHundredAreTold)
{
    const Tree tree(manyFiles(1000, "f"));
    FolderSearch::Query query;
    query.text = QStringLiteral("f");
    EXPECT_EQ(tree.hits(query).size(), FolderSearch::maxHits);
    EXPECT_EQ(tree.hits(only(KindFilter::files)).size(), FolderSearch::maxHits);
}

TEST(FolderSearch, OfManyMatchesTheFirstNineHundredAreRanked)
{
    // "f899" is the last of the nine hundred, "f900" comes too late.
    const Tree tree(manyFiles(2000, "f"));
    EXPECT_EQ(tree.find("f").front(), "f0 400");
    FolderSearch::Query query;
    query.text = QStringLiteral("f899");
    EXPECT_EQ(tree.hits(query).front().score, 1100);
    query.text = QStringLiteral("f f899");
    EXPECT_EQ(tree.hits(query).size(), 1U);
    const Tree exactLast([] {
        auto tree = manyFiles(901, "ab");
        return tree;
    }());
    EXPECT_EQ(exactLast.find("ab90").front(), "ab90 1100");
}

TEST(FolderSearch, TwoThreadsFindWhatOneFinds)
{
    constexpr std::size_t count = 100'000;
    const std::shared_ptr<FileTree> made = manyFiles(count, "x");
    const Tree tree(made);
    // Matches in both halves; fewer than nine hundred, so that all are ranked.
    const std::vector<std::string> found = tree.find("777");
    std::vector<std::string> expected;
    for (std::size_t i = 0; i < count; ++i) {
        if (std::to_string(i).find("777") != std::string::npos) {
            expected.push_back("x" + std::to_string(i) + " 200");
        }
    }
    expected.resize(std::min(expected.size(), FolderSearch::maxHits));
    EXPECT_EQ(found, expected);
    // More than nine hundred in the first half alone: none of the second is ranked.
    EXPECT_THAT(tree.find("x"), testing::Contains("x299 400"));
    EXPECT_THAT(tree.find("x"), testing::Not(testing::Contains("x99999 400")));
}

TEST(FolderSearch, AnEmptyTreeGivesNothing)
{
    const LockedFlag stop;
    FolderSearch::Query query;
    query.text = QStringLiteral("a");
    EXPECT_TRUE(FolderSearch::ranked(NodeIndex(), query, now, stop).empty());
}

TEST(FolderSearch, AStoppedSearchEndsAtOnce)
{
    LockedFlag stop;
    stop.set(true);
    const auto tree = manyFiles(10, "a");
    const NodeIndex nodes(tree->root());
    EXPECT_TRUE(FolderSearch::ranked(nodes, only(KindFilter::files), now, stop).empty());
}

TEST(FolderSearch, FiltersHaveTitlesAndKeys)
{
    EXPECT_EQ(title(KindFilter::everything).toStdString(), "Everything");
    EXPECT_EQ(title(ByteFilter::mb10).toStdString(), "> 10 MB");
    EXPECT_EQ(title(AgeFilter::overYear).toStdString(), "Unchanged > 1 year");
    EXPECT_EQ(kindFilterFromRawValue("files"), KindFilter::files);
    EXPECT_EQ(byteFilterFromRawValue("gb1"), ByteFilter::gb1);
    EXPECT_EQ(ageFilterFromRawValue("lastMonth"), AgeFilter::lastMonth);
    EXPECT_FALSE(ageFilterFromRawValue("LastMonth"));
    EXPECT_FALSE(only(KindFilter::everything).hasActiveFilter());
    EXPECT_TRUE(only(KindFilter::files).hasActiveFilter());
    EXPECT_TRUE(aged(AgeFilter::lastYear).hasActiveFilter());
}

} // namespace
} // namespace quorvane
