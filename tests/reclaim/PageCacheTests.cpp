// SPDX-License-Identifier: MIT
#include "FinderFixture.h"

namespace quorvane {
namespace {

using test::FinderTest;
using test::GroupPaths;
using test::MemoryContents;
using test::textOf;

/// Searches with a page cache that is known page by page.
class PageCacheTest : public FinderTest
{
protected:
    PageCacheTest() { m_contents.tellsCache = true; }

    void copies(const std::vector<std::string>& names, std::size_t bytes)
    {
        for (const std::string& name : names) {
            m_text += name + " " + std::to_string(bytes) + "\n";
            contents(name, textOf('q', bytes));
        }
        tree(m_text);
    }
    std::set<std::int64_t> cached(const std::string& name) { return file(name).cachedPages; }
    static std::int64_t pagesOf(std::int64_t bytes)
    {
        return (bytes + MemoryContents::pageBytes - 1) / MemoryContents::pageBytes;
    }

    std::string m_text;
};

using Pages = std::set<std::int64_t>;

TEST_F(PageCacheTest, IsLeftAsEmptyAsItWas)
{
    copies({"a", "b"}, 2000);
    copies({"c", "d"}, 100'000);
    copies({"e", "f"}, 524'289);
    copies({"g", "h"}, 9'000'000);
    EXPECT_EQ(found().size(), 4U);
    for (const char* name : {"a", "b", "c", "d", "e", "f", "g", "h"}) {
        EXPECT_EQ(cached(name), Pages()) << name;
    }
}

TEST_F(PageCacheTest, KeepsWhatOthersHaveInIt)
{
    copies({"a", "b"}, 5000);
    copies({"c", "d"}, 9'000'000);
    file("a").cachedPages = {0, 1};
    // In the head, in the middle and at the end, each in a piece of 48 pages.
    file("c").cachedPages = {3, 1000, 2197};
    EXPECT_EQ(found().size(), 2U);
    EXPECT_EQ(cached("a"), (Pages{0, 1}));
    EXPECT_EQ(cached("b"), Pages());
    // A piece of which anything was there is left as it is by then.
    Pages expected;
    for (const std::int64_t first : {0, 960, 2160}) {
        for (std::int64_t page = first; page < std::min<std::int64_t>(first + 48, 2198); ++page) {
            expected.insert(page);
        }
    }
    EXPECT_EQ(cached("c"), expected);
    EXPECT_EQ(cached("d"), Pages());
}

TEST_F(PageCacheTest, FilesWhollyInItAreLeftAlone)
{
    copies({"a", "b"}, 5000);
    copies({"c", "d"}, 2'000'000);
    for (const char* name : {"a", "b", "c", "d"}) {
        for (std::int64_t page = 0; page < pagesOf(2'000'000); ++page) {
            file(name).cachedPages.insert(page);
        }
    }
    EXPECT_EQ(found().size(), 2U);
    EXPECT_EQ(m_contents.takenOut(), 0);
    EXPECT_EQ(m_contents.pagesBroughtIn(), 0);
}

TEST_F(PageCacheTest, HeadsThatNobodySharesAreTakenOut)
{
    copies({"a", "b", "c"}, 100'000);
    contents("a", textOf('x', 100'000));
    contents("b", textOf('y', 100'000));
    file("b").cachedPages = {0};
    EXPECT_EQ(found(), GroupPaths());
    EXPECT_EQ(cached("a"), Pages());
    EXPECT_EQ(cached("b"), Pages{0});
    EXPECT_EQ(cached("c"), Pages());
    EXPECT_EQ(m_contents.pagesBroughtIn(), 2);
}

TEST_F(PageCacheTest, SeveralWorkersLeaveNothing)
{
    std::vector<std::string> names;
    for (int i = 0; i < 300; ++i) {
        names.push_back("f" + std::to_string(i));
    }
    copies(names, 20'000);
    for (std::size_t i = 0; i < names.size(); ++i) {
        // Two kinds of heads and a hundred of one file each.
        contents(names[i], textOf(static_cast<char>(i % 3 == 0 ? 'a' : 'k'), 20'000));
        if (i % 3 == 1) {
            file(names[i]).bytes.replace(0, 10, "head " + std::to_string(10'000 + i));
        }
    }
    m_options.workers = 4;
    EXPECT_EQ(found().size(), 2U);
    for (const std::string& name : names) {
        EXPECT_EQ(cached(name), Pages()) << name;
    }
}

TEST_F(PageCacheTest, WhereTheSystemDoesNotTellNothingIsTakenOut)
{
    m_contents.tellsCache = false;
    copies({"a", "b"}, 5000);
    copies({"c", "d"}, 2'000'000);
    EXPECT_EQ(found().size(), 2U);
    EXPECT_EQ(m_contents.takenOut(), 0);
    EXPECT_EQ(static_cast<std::int64_t>(cached("c").size()), pagesOf(2'000'000));
}

TEST_F(PageCacheTest, ALargeFileNeverFillsIt)
{
    copies({"a", "b"}, 36'000'000);
    std::int64_t max = 0;
    m_isCancelled = [&] {
        max = std::max(max, static_cast<std::int64_t>(cached("a").size() + cached("b").size()));
        return false;
    };
    EXPECT_EQ(found().size(), 1U);
    EXPECT_LE(max * MemoryContents::pageBytes, 10'000'000);
    EXPECT_EQ(cached("a"), Pages());
}

} // namespace
} // namespace quorvane
