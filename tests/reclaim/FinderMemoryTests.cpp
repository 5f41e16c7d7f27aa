// SPDX-License-Identifier: MIT
#include "DuplicateFinder.h"
#include "FileContentCalls.h"
#include "SizeCounters.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <string>

namespace quorvane {
namespace {

constexpr std::int64_t mebibyte = 1 << 20;

/// Bytes that the program has from malloc now; 0 under a sanitizer, which brings its own.
std::int64_t bytesInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<std::int64_t>(info.uordblks + info.hblkhd);
}

/// Files whose contents are the number in their names, made up on the spot: a descriptor is that
/// number, and a whole file one read. For one worker.
class MadeUpContents final : public FileContentCalls
{
public:
    int open(int, const char* name) override
    {
        m_isRead = false;
        return std::atoi(std::strrchr(name, '-') + 1);
    }
    bool status(int, OpenFileStatus& status) override
    {
        status = {true, 1'000'000'000, 1, ++m_opened, 1};
        return true;
    }
    std::int64_t read(int file, std::span<std::byte> room) override
    {
        if (m_isRead) {
            return 0;
        }
        m_isRead = true;
        std::fill_n(room.begin(), bytes, std::byte{1});
        std::memcpy(room.data(), &file, sizeof file);
        return bytes;
    }
    bool seek(int, std::int64_t) override { return true; }
    void close(int) override {}
    void willRead(int, std::int64_t, std::int64_t) override {}
    void willReadOnce(int) override {}

    static constexpr std::int64_t bytes = 2048;

private:
    std::uint64_t m_opened = 0;
    bool m_isRead = false;
};

/// The most that a search had at once beyond its tree, looked at every so many files.
class MemoryWatch
{
public:
    void look() { m_most = std::max(m_most, bytesInUse() - m_before); }
    bool isNeverCancelled()
    {
        if (++m_asked % 5000 == 0) {
            look();
        }
        return false;
    }
    std::int64_t most() const { return m_most; }

private:
    std::int64_t m_before = bytesInUse();
    std::int64_t m_most = 0;
    int m_asked = 0;
};

TEST(FinderMemory, FiftyThousandPairsStayFarBelowFortyMebibytes)
{
    if (bytesInUse() == 0) {
        GTEST_SKIP() << "no figures from this allocator";
    }
    constexpr int pairs = 50'000;
    std::string text;
    for (int folder = 0; folder < 500; ++folder) {
        text += "folder " + std::to_string(folder) + "/\n";
        for (int i = 0; i < 2 * pairs / 500; ++i) {
            const int number = (folder % 250) * 200 + i;
            text += "  f-" + std::to_string(number) + " 2048\n";
        }
    }
    const auto tree = test::treeFromText(text);
    MadeUpContents contents;
    MemoryWatch watch;
    DuplicateFinder::Options options;
    options.workers = 1;
    options.contents = &contents;
    options.onPassEnd = [&](const DuplicateFinder::PassReport&) { watch.look(); };
    const DuplicateFinder::Groups groups = DuplicateFinder::find(
        tree->rootPointer(), 1024, [](double) {}, [&] { return watch.isNeverCancelled(); },
        options);
    EXPECT_EQ(groups.size(), static_cast<std::size_t>(pairs));
    // A group is 192 bytes, two pointers and an identifier: 64 for each of these in the heap.
    EXPECT_LT(watch.most(), 22 * mebibyte);
    EXPECT_GT(watch.most(), 8 * mebibyte);
}

TEST(FinderMemory, SizesOfTheirOwnTakeNoRoomEach)
{
    if (bytesInUse() == 0) {
        GTEST_SKIP() << "no figures from this allocator";
    }
    std::string text;
    for (int i = 0; i < 200'000; ++i) {
        text += "f " + std::to_string(2000 + i) + "\n";
    }
    const auto tree = test::treeFromText(text);
    MadeUpContents contents;
    MemoryWatch watch;
    DuplicateFinder::Options options;
    options.contents = &contents;
    EXPECT_TRUE(DuplicateFinder::find(
                    tree->rootPointer(), 1024, [&](double) { watch.look(); },
                    [&] { return watch.isNeverCancelled(); }, options)
                    .empty());
    // A fifth of the counters is taken, so that some sizes meet in one; 16 bytes each would be 3.
    EXPECT_LT(watch.most(), 2 * mebibyte + mebibyte / 2);
}

TEST(SizeCounters, TellSizesThatCameTwice)
{
    DuplicateFinder::SizeCounters sizes;
    for (const std::int64_t bytes : {5000, 6000, 5000, 7000, 5000, 7000}) {
        sizes.add(bytes);
    }
    EXPECT_TRUE(sizes.isShared(5000));
    EXPECT_FALSE(sizes.isShared(6000));
    EXPECT_TRUE(sizes.isShared(7000));
    EXPECT_FALSE(sizes.isShared(8000));
    EXPECT_EQ(sizes.shared(), 5U);
}

} // namespace
} // namespace quorvane
