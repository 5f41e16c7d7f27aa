// SPDX-License-Identifier: MIT
#include "SpotlightSearcher.h"

#include "DiskTree.h"
#include "FaultyFileSystemCalls.h"
#include "FileIndex.h"
#include "IndexSupport.h"
#include "UnprivilegedRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <atomic>
#include <cstring>
#include <fstream>
#include <thread>

namespace quorvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr double now = 1'700'000'000'000.0;

/// A folder on the disk, the index of it, and a searcher over both.
class Searching : public testing::Test
{
protected:
    void make() { ASSERT_EQ(m_index.make(m_disk.root(), m_stop), MappedFileIndex::Outcome::made); }
    void open() { ASSERT_TRUE(m_index.open()); }

    std::vector<SearchResult> results(const SearchRequest& request, double at = now)
    {
        return m_searcher.search(request, at, m_stop);
    }

    /// Paths relative to the folder.
    std::vector<std::string> find(const SearchRequest& request, double at = now)
    {
        std::vector<std::string> paths;
        for (const SearchResult& result : results(request, at)) {
            paths.push_back(result.path.bytes().substr(m_disk.root().bytes().size() + 1));
        }
        return paths;
    }

    std::vector<std::string> find(const char* words)
    {
        SearchRequest request;
        request.query = QString::fromUtf8(words);
        return find(request);
    }

    SearchRequest scoped(std::string_view folder = {}) const
    {
        SearchRequest request;
        request.scope = folder.empty() ? m_disk.root() : m_disk.path(folder);
        return request;
    }

    LockedFlag m_stop;
    DiskTree m_disk;
    DiskTree m_cache;
    FaultyFileSystemCalls m_calls;
    MappedFileIndex m_index{m_cache.path("new/folder/files.index"), m_calls};
    SpotlightSearcher m_searcher{m_index, m_calls};
};

TEST_F(Searching, FindsWhatIsThereWithItsSizeAndDateOfToday)
{
    m_disk.file("a/Report.pdf", 10);
    make();
    open();
    m_disk.file("a/Report.pdf", 12345);
    m_disk.modified("a/Report.pdf", 1'600'000'000);
    SearchRequest request;
    request.query = QStringLiteral("report");
    const std::vector<SearchResult> found = results(request);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.front().name(), "Report.pdf");
    EXPECT_EQ(found.front().kind, ResultKind::pdf);
    EXPECT_EQ(found.front().size, 12345);
    EXPECT_EQ(found.front().modifiedMS, 1.6e12);
    EXPECT_EQ(found.front().sizeLabel().toStdString(), "12.1 KB");
    EXPECT_EQ(found.front().dateLabel(now).toStdString(), "3 years ago");
}

TEST_F(Searching, WhatIsGoneSinceIsNotShown)
{
    m_disk.file("hit1");
    m_disk.file("hit2");
    make();
    open();
    m_disk.remove("hit1");
    EXPECT_THAT(find("hit"), ElementsAre("hit2"));
}

TEST_F(Searching, WhatIsGoneLeavesItsPlaceToTheNext)
{
    for (int i = 0; i < 150; ++i) {
        m_disk.file("hit" + std::to_string(i), 1);
    }
    make();
    open();
    for (int i = 0; i < 60; ++i) {
        m_disk.remove("hit" + std::to_string(i));
    }
    EXPECT_EQ(find("hit").size(), 90U);
}

TEST_F(Searching, AFileThatGrewOutOfTheFilterIsNotShownAndTheOrderIsThatOfToday)
{
    m_disk.hole("a", 1000);
    m_disk.hole("b", 2000);
    m_disk.hole("c", 3000);
    make();
    open();
    m_disk.hole("a", 9000);
    m_disk.hole("c", 10);
    SearchRequest request;
    request.filters.minBytes = 500;
    EXPECT_THAT(find(request), ElementsAre("a", "b"));
}

TEST_F(Searching, NoWordAndNoFilterOnTheWholeMachineFindsNothingAndAsksNobody)
{
    m_disk.file("a");
    make();
    open();
    const int asked = m_calls.count(FaultyFileSystemCalls::Call::status);
    EXPECT_THAT(find(""), IsEmpty());
    EXPECT_THAT(find("  "), IsEmpty());
    EXPECT_EQ(m_calls.count(FaultyFileSystemCalls::Call::status), asked);
}

TEST_F(Searching, AKindAloneSearchesTheWholeMachine)
{
    m_disk.file("deep/er/photo.JPG");
    m_disk.file("text.txt");
    make();
    open();
    SearchRequest request;
    request.kind = SearchFilterKind::image;
    EXPECT_THAT(find(request), ElementsAre("deep/er/photo.JPG"));
    request.kind = SearchFilterKind::application;
    EXPECT_THAT(find(request), IsEmpty());
}

TEST_F(Searching, AFolderWithoutWordsIsListed)
{
    m_disk.file("a.pdf");
    m_disk.file(".hidden.pdf");
    m_disk.file("sub/b.pdf");
    m_disk.file("c.txt");
    SearchRequest request = scoped();
    EXPECT_THAT(find(request), UnorderedElementsAre("a.pdf", "c.txt", "sub"));
    request.kind = SearchFilterKind::pdf;
    EXPECT_THAT(find(request), ElementsAre("a.pdf")) << "without an index at all";
    request.scope = m_disk.path("none");
    EXPECT_THAT(find(request), IsEmpty());
}

TEST_F(Searching, AFolderThatIsALinkIsListedAndSearchedUnderItsOwnName)
{
    m_disk.file("real/x.pdf");
    m_disk.symbolicLink("real", "link");
    EXPECT_THAT(find(scoped("link")), ElementsAre("link/x.pdf"));
    make();
    open();
    SearchRequest request = scoped("link");
    request.query = QStringLiteral("x");
    EXPECT_THAT(find(request), ElementsAre("real/x.pdf"));
}

TEST_F(Searching, AFolderWithALimitOnSizeIsSearchedWithAllBelow)
{
    m_disk.hole("sub/deep/big", 5000);
    m_disk.hole("other/big", 6000);
    make();
    open();
    SearchRequest request = scoped("sub");
    request.filters.minBytes = 4500;
    EXPECT_THAT(find(request), ElementsAre("sub/deep/big"));
}

TEST_F(Searching, AListingIsCutAtAHundred)
{
    for (int i = 0; i < 130; ++i) {
        m_disk.file("f" + std::to_string(i));
    }
    EXPECT_EQ(find(scoped()).size(), 100U);
}

TEST_F(Searching, TheCutComesAfterTheOrder)
{
    for (int i = 0; i < 149; ++i) {
        m_disk.hole("deep/f" + std::to_string(i), 10 + i);
    }
    m_disk.hole("f", 5);
    make();
    open();
    SearchRequest request;
    request.query = QStringLiteral("f");
    EXPECT_EQ(find(request).size(), 100U);
    EXPECT_EQ(find(request).front(), "f");
    request.filters.minBytes = 0;
    request.filters.maxBytes = 1000;
    EXPECT_EQ(find(request).front(), "deep/f148");
    EXPECT_EQ(find(request).back(), "deep/f49");
}

TEST_F(Searching, FilesOfExactlyTheLimitAreLeftOut)
{
    m_disk.hole("a", 5000);
    m_disk.hole("b", 5001);
    make();
    open();
    SearchRequest request;
    request.filters.minBytes = 5000;
    EXPECT_THAT(find(request), ElementsAre("b"));
}

TEST_F(Searching, TrashIsNotShown)
{
    m_disk.file("x.trash");
    m_disk.file("x.trash.txt");
    m_disk.file(".Trash/x");
    m_disk.file("sub/.Trash-1000/files/x");
    m_disk.file(".local/share/Trash/files/x");
    make();
    open();
    EXPECT_THAT(find("x"), ElementsAre("x.trash.txt"));
}

TEST_F(Searching, AnAnswerIsKeptForThirtySeconds)
{
    m_disk.file("hit");
    make();
    open();
    EXPECT_THAT(find("hit"), ElementsAre("hit"));
    m_disk.remove("hit");
    SearchRequest request;
    request.query = QStringLiteral("hit");
    EXPECT_THAT(find(request, now + 29'999), ElementsAre("hit"));
    EXPECT_THAT(find(request, now + 30'000), IsEmpty());
}

TEST_F(Searching, EveryPartOfARequestHasItsOwnAnswer)
{
    m_disk.hole("hit.pdf", 5);
    m_disk.hole("sub/hit.pdf", 15);
    make();
    open();
    SearchRequest request;
    request.query = QStringLiteral("hit");
    EXPECT_EQ(find(request).size(), 2U);
    request.scope = m_disk.path("sub");
    EXPECT_THAT(find(request), ElementsAre("sub/hit.pdf"));
    request.scope = FilePath("/");
    request.filters.minBytes = 10;
    EXPECT_THAT(find(request), ElementsAre("sub/hit.pdf"));
    request.filters = {};
    request.filters.maxBytes = 10;
    EXPECT_THAT(find(request), ElementsAre("hit.pdf"));
    request.filters = {};
    request.kind = SearchFilterKind::image;
    EXPECT_THAT(find(request), IsEmpty());
}

TEST_F(Searching, ANewIndexEndsWhatWasKept)
{
    m_disk.file("hit1");
    make();
    open();
    EXPECT_THAT(find("hit"), ElementsAre("hit1"));
    m_disk.file("hit2");
    make();
    EXPECT_THAT(find("hit"), UnorderedElementsAre("hit1", "hit2"));
}

TEST_F(Searching, AStoppedSearchTellsAndKeepsNothing)
{
    m_disk.file("hit");
    make();
    open();
    m_stop.set(true);
    EXPECT_THAT(find("hit"), IsEmpty());
    m_stop.set(false);
    EXPECT_THAT(find("hit"), ElementsAre("hit"));
}

TEST_F(Searching, WithoutAnIndexNothingIsFound)
{
    m_disk.file("hit");
    EXPECT_FALSE(m_index.open());
    EXPECT_THAT(find("hit"), IsEmpty());
}

TEST_F(Searching, AnIndexThatWasLetGoIsOpenedAgain)
{
    m_disk.file("hit");
    make();
    open();
    m_index.close();
    EXPECT_FALSE(m_index.madeMs());
    EXPECT_THAT(find("hit"), IsEmpty());
    open();
    EXPECT_EQ(m_index.rootPath(), m_disk.root());
    EXPECT_THAT(find("hit"), ElementsAre("hit"));
}

TEST_F(Searching, NamesOfAnyBytesAreFound)
{
    m_disk.file("bad\xFFname");
    m_disk.file("two\nlines name");
    make();
    open();
    EXPECT_THAT(find("NAME"), UnorderedElementsAre("bad\xFFname", "two\nlines name"));
}

TEST_F(Searching, WhatThePersonMayNotReadIsLeftOut)
{
    m_disk.file("open/hit");
    m_disk.file("shut/hit");
    m_disk.mode("shut", 0);
    m_disk.mode({}, 0755);
    m_cache.mode({}, 0777);
    asUnprivilegedUser([this] {
        make();
        open();
        EXPECT_THAT(find("hit"), ElementsAre("open/hit"));
    });
}

TEST_F(Searching, TheFileIsForThisUserAlone)
{
    make();
    struct stat status = {};
    ASSERT_EQ(stat(m_cache.path("new/folder/files.index").bytes().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    ASSERT_EQ(stat(m_cache.path("new").bytes().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
}

TEST_F(Searching, ABrokenFileIsNoIndexAndIsMadeAnew)
{
    m_disk.file("hit");
    m_cache.fileWithContents("new/folder/files.index", "what is this");
    EXPECT_FALSE(m_index.open());
    make();
    open();
    EXPECT_THAT(find("hit"), ElementsAre("hit"));
}

TEST_F(Searching, AnIndexThatCannotBeWrittenLeavesTheOldOne)
{
    m_disk.file("hit");
    make();
    m_disk.file("new");
    m_cache.mode("new/folder", 0500);
    m_disk.mode({}, 0755);
    asUnprivilegedUser([this] {
        EXPECT_EQ(m_index.make(m_disk.root(), m_stop), MappedFileIndex::Outcome::failed);
    });
    m_cache.mode("new/folder", 0700);
    open();
    EXPECT_THAT(find("hit"), ElementsAre("hit"));
    EXPECT_THAT(find("new"), IsEmpty());
}

TEST_F(Searching, AStoppedWalkLeavesTheOldOne)
{
    m_disk.file("hit");
    make();
    m_stop.set(true);
    EXPECT_EQ(m_index.make(m_disk.root(), m_stop), MappedFileIndex::Outcome::stopped);
    EXPECT_EQ(m_index.make(m_disk.path("none"), m_stop), MappedFileIndex::Outcome::stopped);
    m_stop.set(false);
    EXPECT_EQ(m_index.make(m_disk.path("none"), m_stop), MappedFileIndex::Outcome::failed);
    open();
    EXPECT_THAT(find("hit"), ElementsAre("hit"));
}

/// Each answer is that of one index or of the other, whole.
TEST_F(Searching, SearchesGoOnWhileTheIndexIsRewritten)
{
    const auto small = test::oddTree(1, 2000);
    const auto large = test::oddTree(2, 6000);
    ASSERT_EQ(m_index.makeFrom(small->root(), 1, m_stop), MappedFileIndex::Outcome::made);
    open();
    SearchRequest request;
    request.query = QStringLiteral("report");
    constexpr std::size_t limit = 100'000;
    const std::size_t ofSmall = test::plainSearch(small->root(), request, limit).size();
    const std::size_t ofLarge = test::plainSearch(large->root(), request, limit).size();
    ASSERT_NE(ofSmall, ofLarge);
    std::atomic<int> sawSmall = 0;
    std::atomic<int> sawLarge = 0;
    std::thread searching([&] {
        while (sawSmall < 5 || sawLarge < 5) {
            const auto candidates = m_index.candidates(request, limit, m_stop);
            ASSERT_TRUE(candidates);
            const std::size_t count = candidates->paths.size();
            ASSERT_TRUE(count == ofSmall || count == ofLarge) << count;
            ++(count == ofSmall ? sawSmall : sawLarge);
        }
    });
    while (sawSmall < 5 || sawLarge < 5) {
        ASSERT_EQ(m_index.makeFrom(large->root(), 1, m_stop), MappedFileIndex::Outcome::made);
        ASSERT_EQ(m_index.makeFrom(small->root(), 1, m_stop), MappedFileIndex::Outcome::made);
    }
    searching.join();
}

TEST_F(Searching, AMillionOddNamesAreSearched)
{
    const auto tree = test::oddTree(5, 1'000'000);
    ASSERT_EQ(m_index.makeFrom(tree->root(), 1, m_stop), MappedFileIndex::Outcome::made);
    open();
    SearchRequest request;
    request.query = QStringLiteral("REPORT 59 \u00E9");
    const auto candidates = m_index.candidates(request, 1000, m_stop);
    ASSERT_TRUE(candidates);
    std::vector<std::string> found;
    for (const FilePath& path : candidates->paths) {
        found.push_back(path.bytes());
    }
    EXPECT_EQ(found, test::plainSearch(tree->root(), request, 1000));
    EXPECT_FALSE(found.empty());
}

} // namespace
} // namespace quorvane
