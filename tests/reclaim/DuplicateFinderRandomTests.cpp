// SPDX-License-Identifier: MIT
#include "DiskScanner.h"
#include "DiskTree.h"
#include "FinderFixture.h"
#include "RandomTree.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <mutex>
#include <tuple>
#include <utility>

namespace quorvane {
namespace {

using DuplicateFinder::Group;
using DuplicateFinder::Groups;
using test::Dice;
using test::FinderTest;
using test::GroupPaths;
using test::pathsOf;
using test::textOf;

constexpr int workerCounts[] = {1, 2, 3};

/// Sizes on both sides of each that is treated differently; those that come more than once are
/// those of most files.
constexpr std::size_t sizes[] = {5000, 5000, 5000,  5000,  5000,  5000,   4095,   4095,   4096,
                                 4096, 4097, 4097,  1024,  1024,  1025,   1023,   1023,   0,
                                 15,   16,   65535, 65536, 65537, 262143, 262144, 524287, 524288};

/// A byte that differs, at a place where a pass begins or ends to look.
void setOneByte(std::string& bytes, Dice& dice, char value)
{
    const std::size_t size = bytes.size();
    const std::size_t places[] = {0,        4095,          4096,          262143,  262144,
                                  size / 2, size - 262144, size - 262145, size - 1};
    const std::size_t place = places[dice.below(std::size(places))];
    if (size > 0) {
        bytes[place < size ? place : size - 1] = value;
    }
}

std::string someBytes(Dice& dice, double largeShare)
{
    constexpr std::size_t large[] = {524289, 700000};
    const std::size_t size =
        dice.chance(largeShare) ? large[dice.below(2)] : sizes[dice.below(std::size(sizes))];
    std::string bytes = textOf('q', size);
    if (dice.chance(0.6)) {
        setOneByte(bytes, dice, static_cast<char>(dice.below(3)));
    }
    return bytes;
}

std::string someName(Dice& dice, int number)
{
    const char* const kinds[] = {"f", "\xFF\xC3", "line\nbreak", "\xE6\x97\xA5 ", "-", "\\\"'"};
    std::string path;
    for (std::uint64_t depth = dice.below(4); depth > 0; --depth) {
        path += "d\xFE" + std::to_string(dice.below(3)) + "/";
    }
    // Names meet in different folders, so that groups of one size and number are told by them.
    return path + kinds[dice.below(std::size(kinds))] + std::to_string(number % 50) + "." +
           std::to_string(number / 50);
}

/// By all bytes of what is on the disk, read in another way.
GroupPaths plainGroups(const std::string& root)
{
    std::map<std::string, std::set<std::string>> byContents;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        if (entry.is_symlink() || !entry.is_regular_file() || entry.file_size() < 1024) {
            continue;
        }
        std::ifstream in(entry.path(), std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(in), {}};
        byContents[bytes].insert(entry.path().native().substr(root.size() + 1));
    }
    GroupPaths groups;
    for (auto& item : byContents) {
        if (item.second.size() > 1) {
            groups.push_back(std::move(item.second));
        }
    }
    std::sort(groups.begin(), groups.end());
    return groups;
}

void expectInOrder(const Groups& groups)
{
    for (std::size_t i = 1; i < groups.size(); ++i) {
        const Group& before = groups[i - 1];
        const Group& group = groups[i];
        EXPECT_GE(before.reclaimableBytes(), group.reclaimableBytes());
        if (before.reclaimableBytes() == group.reclaimableBytes()) {
            EXPECT_LE(before.files().front()->name(), group.files().front()->name());
        }
    }
    for (const Group& group : groups) {
        for (const FileNode* file : group.files()) {
            EXPECT_EQ(file->scannedBytes(), group.bytes());
        }
    }
}

void expectRising(const std::vector<double>& progress)
{
    EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
    EXPECT_GE(progress.front(), 0);
    EXPECT_EQ(progress.back(), 1.0);
}

void fillAtRandom(DiskTree& disk, Dice& dice)
{
    for (int i = 0; i < 150; ++i) {
        const std::string path = someName(dice, i);
        disk.fileWithContents(path, someBytes(dice, 0.05));
        if (dice.chance(0.05)) {
            disk.symbolicLink(disk.path(path).bytes(), path + "-alias");
        } else if (dice.chance(0.1)) {
            disk.hardLink(path, path + "-link");
        }
    }
}

TEST(DuplicateFinderAtRandom, GroupsOnTheDiskAreThoseOfAPlainComparisonWithAnyWorkers)
{
    for (const std::uint64_t seed : {101U, 102U, 103U}) {
        SCOPED_TRACE(seed);
        Dice dice(seed);
        DiskTree disk(DiskTree::Place::memory);
        fillAtRandom(disk, dice);
        const GroupPaths expected = plainGroups(disk.root().bytes());
        ASSERT_GT(expected.size(), 5U);
        DiskScanner scanner(2);
        const DiskScanner::Result result = scanner.scan(disk.root());
        const NodePointer root = std::get<std::shared_ptr<FileTree>>(result)->rootPointer();
        for (const int workers : workerCounts) {
            SCOPED_TRACE(workers);
            DuplicateFinder::Options options;
            options.workers = workers;
            std::mutex lock;
            std::vector<double> progress;
            const Groups groups = DuplicateFinder::find(
                root, DuplicateFinder::defaultMinimumBytes,
                [&](double value) {
                    const std::lock_guard guard(lock);
                    progress.push_back(value);
                },
                DuplicateFinder::neverCancelled, options);
            GroupPaths found = pathsOf(groups, disk.root().bytes());
            std::sort(found.begin(), found.end());
            EXPECT_EQ(found, expected);
            expectInOrder(groups);
            expectRising(progress);
        }
    }
}

/// What the sampling of a file of that contents looks at.
std::string sampleOf(const std::string& bytes)
{
    return bytes.size() <= 524288 ? bytes
                                  : bytes.substr(0, 262144) + bytes.substr(bytes.size() - 262144);
}

/// Files that are changed between sampling and verifying.
class ChangingFilesTest : public FinderTest
{
protected:
    struct Contents
    {
        std::string sampled;
        std::string verified; ///< empty: not readable any more
    };

    void makeFiles(Dice& dice)
    {
        std::string text;
        for (int i = 0; i < 100; ++i) {
            const std::string name = "f" + std::to_string(i);
            std::string bytes = someBytes(dice, 0.4);
            text += name + " " + std::to_string(bytes.size()) + "\n";
            test::MemoryFile& made = file(name);
            made = {};
            made.bytes = bytes;
            m_files[name] = {bytes, bytes};
        }
        tree(text);
    }
    /// Once sampling is over and before anything is verified. Small files have been read by then.
    void changeSome(Dice& dice)
    {
        for (auto& item : m_files) {
            if (item.second.sampled.size() <= 524288 || dice.chance(0.6)) {
                continue;
            }
            test::MemoryFile& changed = file(item.first);
            changed.bytes += dice.chance(0.3) ? "x" : "";
            changed.opens = dice.chance(0.8);
            setOneByte(changed.bytes, dice, static_cast<char>(20 + dice.below(2)));
            item.second.verified = changed.opens ? changed.bytes : std::string();
        }
    }
    /// Of the files that were alike by their samples those that are alike in the end.
    GroupPaths certainlyFound() const
    {
        using Key = std::tuple<std::size_t, std::string, std::string>;
        std::map<Key, std::set<std::string>> alike;
        for (const auto& item : m_files) {
            const Contents& contents = item.second;
            if (contents.sampled.size() >= 1024 && !contents.verified.empty()) {
                alike[{contents.sampled.size(), sampleOf(contents.sampled), contents.verified}]
                    .insert(item.first);
            }
        }
        GroupPaths groups;
        for (auto& item : alike) {
            if (item.second.size() > 1) {
                groups.push_back(std::move(item.second));
            }
        }
        return groups;
    }
    /// Files whose samples met by chance and that have become alike are a group as well.
    void expectFound(const GroupPaths& groups) const
    {
        std::map<std::string, std::size_t> groupOf;
        for (std::size_t i = 0; i < groups.size(); ++i) {
            const Contents& first = m_files.at(*groups[i].begin());
            EXPECT_FALSE(first.verified.empty());
            for (const std::string& name : groups[i]) {
                EXPECT_TRUE(m_files.at(name).verified == first.verified) << name;
                EXPECT_EQ(m_files.at(name).sampled.size(), first.sampled.size()) << name;
                EXPECT_TRUE(groupOf.emplace(name, i).second) << name;
            }
        }
        const GroupPaths certain = certainlyFound();
        EXPECT_GT(certain.size(), 3U);
        for (const std::set<std::string>& alike : certain) {
            std::set<std::size_t> numbers;
            for (const std::string& name : alike) {
                const auto found = groupOf.find(name);
                ASSERT_NE(found, groupOf.end()) << name;
                numbers.insert(found->second);
            }
            EXPECT_EQ(numbers.size(), 1U) << *alike.begin();
        }
    }

    std::map<std::string, Contents> m_files;
};

TEST_F(ChangingFilesTest, AreGroupedByWhatTheyHoldInTheEndWithAnyWorkers)
{
    for (std::uint64_t seed = 200; seed < 202; ++seed) {
        for (const int workers : workerCounts) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", " << workers << " workers");
            Dice dice(seed);
            makeFiles(dice);
            m_passes.clear();
            m_progress.clear();
            std::once_flag areChanged;
            m_contents.beforeOpen = [&](const std::string&, int) {
                if (filesOf(DuplicateFinder::Pass::sampling) > 0) {
                    std::call_once(areChanged, [&] { changeSome(dice); });
                }
            };
            m_options.workers = workers;
            const Groups groups = find();
            expectFound(pathsOf(groups));
            expectInOrder(groups);
            expectRising(m_progress);
        }
    }
}

/// The files' pages that are in the page cache, by piece of those that are left alone as a whole.
using CachedPieces = std::map<std::pair<std::string, std::int64_t>, std::set<std::int64_t>>;

class CachedFilesTest : public FinderTest
{
protected:
    void makeFiles(Dice& dice)
    {
        std::string text;
        for (int i = 0; i < 100; ++i) {
            const std::string name = "f" + std::to_string(i);
            std::string bytes = someBytes(dice, 0.25);
            text += name + " " + std::to_string(bytes.size()) + "\n";
            test::MemoryFile& made = file(name);
            made = {};
            for (std::uint64_t count = dice.below(4); count > 0 && !bytes.empty(); --count) {
                const std::uint64_t place = dice.below(bytes.size());
                made.cachedPages.insert(static_cast<std::int64_t>(place) /
                                        test::MemoryContents::pageBytes);
            }
            made.bytes = std::move(bytes);
        }
        tree(text);
    }
    CachedPieces cached()
    {
        constexpr std::int64_t pagesOfAPiece = 64;
        CachedPieces pieces;
        for (int i = 0; i < 100; ++i) {
            const std::string name = "f" + std::to_string(i);
            for (const std::int64_t page : file(name).cachedPages) {
                pieces[{name, page / pagesOfAPiece}].insert(page);
            }
        }
        return pieces;
    }
};

TEST_F(CachedFilesTest, AreInThePageCacheAsTheyWereWithAnyWorkers)
{
    m_contents.tellsCache = true;
    for (const int workers : workerCounts) {
        SCOPED_TRACE(workers);
        Dice dice(300);
        makeFiles(dice);
        const CachedPieces before = cached();
        m_options.workers = workers;
        EXPECT_GT(find().size(), 3U);
        const CachedPieces after = cached();
        EXPECT_EQ(after.size(), before.size());
        for (const auto& [piece, pages] : before) {
            const auto left = after.find(piece);
            ASSERT_NE(left, after.end()) << piece.first;
            EXPECT_TRUE(
                std::includes(left->second.begin(), left->second.end(), pages.begin(), pages.end()))
                << piece.first;
        }
    }
}

} // namespace
} // namespace quorvane
