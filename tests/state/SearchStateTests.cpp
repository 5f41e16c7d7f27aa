// SPDX-License-Identifier: MIT
#include "SearchState.h"

#include "DiskScanner.h"
#include "Gate.h"
#include "SearchQueryParser.h"
#include "StateFixture.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace quorvane {
namespace {

constexpr std::int64_t minuteMs = 60'000;

/// A home folder that is all of the machine, and no index of it.
class SearchIndex : public StateFixture
{
protected:
    SearchIndex()
    {
        std::filesystem::remove(MappedFileIndex::standardFile().bytes());
        platform.lowerThisThread = [this] { m_utilityGate.pass(); };
        disk.file("letters/tax report.pdf", 10);
        disk.file("films/report.mov", 20);
        disk.folder("elsewhere");
    }
    ~SearchIndex() override
    {
        m_utilityGate.open();
        end();
    }

    static std::int64_t nowMs()
    {
        return static_cast<std::int64_t>(SearchQueryParser::currentMs());
    }

    /// An index of the disk as it is now that says to have been begun so long ago.
    void makeIndex(std::int64_t ageMs)
    {
        MappedFileIndex index(MappedFileIndex::standardFile(), calls);
        DiskScanner scanner(0, calls);
        const DiskScanner::Result result =
            scanner.scan(disk.root(), [](const ScanProgress&) { return true; });
        const auto* const tree = std::get_if<std::shared_ptr<FileTree>>(&result);
        ASSERT_NE(tree, nullptr);
        ASSERT_EQ(index.makeFrom((*tree)->root(), nowMs() - ageMs, LockedFlag()),
                  MappedFileIndex::Outcome::made);
    }

    void awaitIndex()
    {
        ASSERT_TRUE(
            waitFor([this] { return state().indexMadeMs.value() && !state().isIndexing.value(); }));
    }

    SearchRequest request(const char* query)
    {
        SearchRequest wanted;
        wanted.query = QString::fromLatin1(query);
        return wanted;
    }

    /// Asks and remembers the names of the answer.
    void ask(const SearchRequest& wanted)
    {
        m_found.reset();
        state().searchMachine(wanted, [this](const std::vector<SearchResult>& results) {
            m_found.emplace();
            for (const SearchResult& result : results) {
                m_found->emplace(result.name());
            }
        });
    }

    std::set<std::string> answer(const char* query)
    {
        ask(request(query));
        EXPECT_TRUE(waitFor([this] { return m_found.has_value(); }));
        return m_found.value_or(std::set<std::string>{});
    }

    Gate m_utilityGate{Gate::State::open};
    std::optional<std::set<std::string>> m_found;
};

using Names = std::set<std::string>;

TEST_F(SearchIndex, TheFirstOpeningMakesOneAndASearchWaitsForIt)
{
    m_utilityGate.close();
    state().openIndex();
    ask(request("report"));
    ASSERT_TRUE(waitFor([this] { return state().isIndexing.value(); }));
    EXPECT_FALSE(m_found.has_value());
    m_utilityGate.open();
    ASSERT_TRUE(waitFor([this] { return m_found.has_value(); }));
    EXPECT_EQ(*m_found, (Names{"tax report.pdf", "report.mov"}));
    EXPECT_FALSE(state().isIndexing.value());
    EXPECT_GT(state().indexMadeMs.value().value_or(0), nowMs() - minuteMs);
}

TEST_F(SearchIndex, AFolderIsListedWithoutWaitingForTheFirstIndex)
{
    m_utilityGate.close();
    state().openIndex();
    ASSERT_TRUE(waitFor([this] { return state().isIndexing.value(); }));
    SearchRequest films = request("");
    films.scope = disk.path("films");
    ask(films);
    ASSERT_TRUE(waitFor([this] { return m_found.has_value(); }));
    EXPECT_EQ(*m_found, Names{"report.mov"});
}

TEST_F(SearchIndex, OneYoungerThanFiveMinutesIsUsedAsItIs)
{
    makeIndex(4 * minuteMs);
    state().openIndex();
    ASSERT_TRUE(waitFor([this] { return state().indexMadeMs.value().has_value(); }));
    EXPECT_FALSE(state().isIndexing.value());
    EXPECT_LE(*state().indexMadeMs.value(), nowMs() - 4 * minuteMs);
    EXPECT_EQ(answer("report"), (Names{"tax report.pdf", "report.mov"}));
}

TEST_F(SearchIndex, OneOlderThanFiveMinutesAnswersWhileItIsMadeAnew)
{
    makeIndex(6 * minuteMs);
    disk.file("report of today", 1);
    m_utilityGate.close();
    state().openIndex();
    ASSERT_TRUE(waitFor([this] { return state().isIndexing.value(); }));
    EXPECT_EQ(answer("report"), (Names{"tax report.pdf", "report.mov"}));
    m_utilityGate.open();
    ASSERT_TRUE(waitFor([this] { return !state().isIndexing.value(); }));
    EXPECT_GT(*state().indexMadeMs.value(), nowMs() - minuteMs);
    EXPECT_EQ(answer("report"), (Names{"tax report.pdf", "report.mov", "report of today"}));
}

TEST_F(SearchIndex, OneOfAPartOfTheMachineIsMadeAnewHoweverYoung)
{
    platform.homeFolder = disk.path("films");
    Platform wide = platform.platform();
    wide.searchedRoot = disk.root();
    m_utilityGate.close();
    AppState whole(wide);
    {
        MappedFileIndex index(MappedFileIndex::standardFile(), calls);
        ASSERT_EQ(index.make(disk.path("films"), LockedFlag()), MappedFileIndex::Outcome::made);
    }
    std::optional<std::set<std::string>> found;
    whole.openIndex();
    ASSERT_TRUE(waitFor([&] { return whole.isIndexing.value(); }));
    m_utilityGate.open();
    ASSERT_TRUE(waitFor([&] { return !whole.isIndexing.value(); }));
    whole.searchMachine(request("tax"), [&](const std::vector<SearchResult>& results) {
        found.emplace();
        for (const SearchResult& result : results) {
            found->emplace(result.name());
        }
    });
    ASSERT_TRUE(waitFor([&] { return found.has_value(); }));
    EXPECT_EQ(*found, Names{"tax report.pdf"});
}

TEST_F(SearchIndex, AScanOfTheHomeFolderBringsItUpToDate)
{
    makeIndex(4 * minuteMs);
    state().openIndex();
    ASSERT_TRUE(waitFor([this] { return state().indexMadeMs.value().has_value(); }));
    disk.file("report of today", 1);
    scan(disk.root());
    ASSERT_TRUE(waitFor([this] { return !state().isIndexing.value(); }));
    EXPECT_GT(*state().indexMadeMs.value(), nowMs() - minuteMs);
    EXPECT_EQ(answer("report"), (Names{"tax report.pdf", "report.mov", "report of today"}));
}

TEST_F(SearchIndex, AScanOfAnotherFolderLeavesItAlone)
{
    scan(disk.path("films"));
    EXPECT_FALSE(state().isIndexing.value());
    EXPECT_FALSE(std::filesystem::exists(MappedFileIndex::standardFile().bytes()));
}

TEST_F(SearchIndex, ASearchIsDiscardedByTheNextOne)
{
    makeIndex(0);
    state().openIndex();
    awaitIndex();
    bool isStaleReported = false;
    state().searchMachine(request("tax"),
                          [&](const std::vector<SearchResult>&) { isStaleReported = true; });
    EXPECT_EQ(answer("mov"), Names{"report.mov"});
    EXPECT_FALSE(isStaleReported);
}

TEST_F(SearchIndex, ClosingDiscardsTheSearchAndLetsTheIndexGo)
{
    makeIndex(0);
    state().openIndex();
    awaitIndex();
    ask(request("report"));
    state().closeIndex();
    EXPECT_FALSE(state().indexMadeMs.value().has_value());
    // A job behind it shows that nothing comes any more.
    scan(disk.path("elsewhere"));
    EXPECT_FALSE(m_found.has_value());
}

TEST_F(SearchIndex, OneThatIsClosedAndOpenedAtOnceIsOpen)
{
    makeIndex(0);
    state().openIndex();
    state().closeIndex();
    state().openIndex();
    awaitIndex();
    EXPECT_EQ(answer("mov"), Names{"report.mov"});
}

TEST_F(SearchIndex, ABrokenOneIsMadeAnew)
{
    makeIndex(0);
    std::filesystem::resize_file(MappedFileIndex::standardFile().bytes(), 100);
    state().openIndex();
    awaitIndex();
    EXPECT_EQ(answer("mov"), Names{"report.mov"});
}

} // namespace
} // namespace quorvane
