// SPDX-License-Identifier: MIT
#include "CountedMemory.h"
#include "DuplicateFinder.h"
#include "FileContentCalls.h"
#include "HeadStates.h"
#include "SizeCounters.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>

namespace quorvane {
namespace {

using test::CountedMemory;

constexpr std::int64_t mebibyte = 1 << 20;
constexpr std::int64_t promised = 40 * mebibyte;
constexpr int million = 1'000'000;
constexpr std::int64_t leastBytes = 64;

/// Files of 64 bytes that are made up on the spot from the number behind the dash in their names,
/// whatever size the scan saw.
class MadeUpContents final : public FileContentCalls
{
public:
    /// Which contents the file of that number has; equal numbers are equal contents.
    std::function<int(int)> contentsOf = [](int file) { return file; };
    /// What is told of the size of the file of that number.
    std::function<std::int64_t(int)> bytesOf = [](int) { return leastBytes; };
    /// Number of names that each inode has, one after the other.
    int names = 1;

    int open(int, const char* name) override
    {
        const char* const dash = std::strrchr(name, '-');
        // A file's descriptor is even, a folder's is 1.
        return dash == nullptr ? 1 : std::atoi(dash + 1) * 2 + 2;
    }
    bool status(int file, OpenFileStatus& status) override
    {
        const bool isFile = file % 2 == 0;
        const std::uint64_t inode = isFile ? static_cast<std::uint64_t>(file / 2 / names) + 10 : 2;
        status = {isFile, 1'000'000'000, 1, inode, static_cast<std::uint64_t>(names)};
        status.bytes = bytesOf(file / 2 - 1);
        return true;
    }
    std::int64_t read(int file, std::span<std::byte> room) override
    {
        thread_local int isRead = -1;
        if (isRead == file) {
            isRead = -1;
            return 0;
        }
        isRead = file;
        std::fill_n(room.begin(), leastBytes, std::byte{1});
        const int contents = contentsOf(file / 2 - 1);
        std::memcpy(room.data(), &contents, sizeof contents);
        return leastBytes;
    }
    bool seek(int, std::int64_t) override { return true; }
    void close(int) override {}
    void willRead(int, std::int64_t, std::int64_t) override {}
    void willReadOnce(int) override {}
};

/// What a search took beyond its tree, in bytes.
struct Taken
{
    std::int64_t mostReading = 0;  ///< at once until the groups were built
    std::int64_t mostBuilding = 0; ///< at once while they were
    std::int64_t groups = 0;       ///< that are left: the groups themselves
    std::size_t found = 0;
};

class FinderMemory : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (!CountedMemory::isCounted()) {
            GTEST_SKIP() << "another allocator is at work";
        }
    }

    /// Searches files whose sizes are given by number, in folders of so many.
    Taken search(int files, const std::function<std::int64_t(int)>& bytesOf, int inEachFolder)
    {
        std::shared_ptr<FileTree> tree;
        m_contents.bytesOf = bytesOf;
        {
            std::string text;
            for (int i = 0; i < files; ++i) {
                if (i % inEachFolder == 0) {
                    text += "d" + std::to_string(i) + "/\n";
                }
                text += "  f-" + std::to_string(i) + " " + std::to_string(bytesOf(i)) + "\n";
            }
            tree = test::treeFromText(text);
        }
        return search(tree);
    }
    Taken search(const std::shared_ptr<FileTree>& tree)
    {
        Taken taken;
        const NodePointer root = tree->rootPointer();
        const std::int64_t before = CountedMemory::now();
        DuplicateFinder::Options options;
        options.workers = 2;
        options.contents = &m_contents;
        options.onPassEnd = [&](const DuplicateFinder::PassReport& report) {
            if (report.pass == DuplicateFinder::Pass::building) {
                taken.mostBuilding = CountedMemory::most() - before;
            } else {
                taken.mostReading = CountedMemory::most() - before;
            }
            if (report.pass == DuplicateFinder::Pass::verifying) {
                CountedMemory::forgetMost();
            }
        };
        CountedMemory::forgetMost();
        const DuplicateFinder::Groups groups = DuplicateFinder::find(
            root, leastBytes, [](double) {}, DuplicateFinder::neverCancelled, options);
        taken.groups = CountedMemory::now() - before;
        taken.found = groups.size();
        RecordProperty("mostReading", std::to_string(taken.mostReading));
        RecordProperty("mostBuilding", std::to_string(taken.mostBuilding));
        RecordProperty("groups", std::to_string(taken.groups));
        std::printf("reading %.1f, building %.1f, groups %.1f MiB\n",
                    static_cast<double>(taken.mostReading) / mebibyte,
                    static_cast<double>(taken.mostBuilding) / mebibyte,
                    static_cast<double>(taken.groups) / mebibyte);
        return taken;
    }
    /// The groups that come out, half a million of which cannot be had for 40 MiB, are counted by
    /// themselves.
    static void expectPromiseKept(const Taken& taken)
    {
        EXPECT_LT(taken.mostReading, promised);
        EXPECT_LT(taken.mostBuilding - taken.groups, promised);
        // It did have to hold the files' places.
        EXPECT_GT(taken.mostReading, mebibyte);
    }

    MadeUpContents m_contents;
};

std::int64_t oneSize(int)
{
    return 100;
}

TEST_F(FinderMemory, FiftyThousandPairsStayFarBelowFortyMebibytes)
{
    m_contents.contentsOf = [](int file) { return file / 2; };
    const Taken taken = search(100'000, oneSize, 200);
    EXPECT_EQ(taken.found, 50'000U);
    // A group is 192 bytes, two pointers and an identifier: 64 for each of these in the heap.
    EXPECT_LT(taken.mostBuilding, 22 * mebibyte);
    EXPECT_GT(taken.mostBuilding, 8 * mebibyte);
}

TEST_F(FinderMemory, SizesOfTheirOwnTakeNoRoomEach)
{
    const Taken taken = search(
        200'000, [](int file) { return 2000 + file; }, 1000);
    EXPECT_EQ(taken.found, 0U);
    // A fifth of the counters is taken, so that some sizes meet in one; 16 bytes each would be 3.
    EXPECT_LT(taken.mostReading, 2 * mebibyte + mebibyte / 2);
}

TEST_F(FinderMemory, AMillionCopiesEachInAFolderOfItsOwn)
{
    m_contents.contentsOf = [](int) { return 1; };
    const Taken taken = search(million, oneSize, 1);
    EXPECT_EQ(taken.found, 1U);
    expectPromiseKept(taken);
    EXPECT_LT(taken.mostBuilding, promised);
}

TEST_F(FinderMemory, AMillionFilesOfOneSizeThatAllDiffer)
{
    const Taken taken = search(million, oneSize, million);
    EXPECT_EQ(taken.found, 0U);
    expectPromiseKept(taken);
}

TEST_F(FinderMemory, AMillionFilesOfOneSizeInPairs)
{
    m_contents.contentsOf = [](int file) { return file / 2; };
    const Taken taken = search(million, oneSize, 1000);
    EXPECT_EQ(taken.found, std::size_t{million / 2});
    expectPromiseKept(taken);
}

TEST_F(FinderMemory, AMillionFilesInPairsOfSizes)
{
    m_contents.contentsOf = [](int file) { return file / 2; };
    const Taken taken = search(
        million, [](int file) { return 5000 + file / 2; }, 1000);
    EXPECT_EQ(taken.found, std::size_t{million / 2});
    expectPromiseKept(taken);
}

TEST_F(FinderMemory, PairsOfSizesAndThenAllThatATableOfHeadsHoldsOfOneSize)
{
    constexpr int pairs = million - 2 * 65536;
    m_contents.contentsOf = [](int file) { return file / 2; };
    const Taken taken = search(
        million, [](int file) { return file < pairs ? 5000 + file / 2 : 4500; }, 1000);
    EXPECT_EQ(taken.found, std::size_t{million / 2});
    expectPromiseKept(taken);
}

TEST_F(FinderMemory, AMillionHardLinksOfOneFile)
{
    m_contents.contentsOf = [](int) { return 1; };
    m_contents.names = million;
    const Taken taken = search(million, oneSize, 1000);
    EXPECT_EQ(taken.found, 1U);
    expectPromiseKept(taken);
    EXPECT_LT(taken.mostBuilding, promised);
}

TEST_F(FinderMemory, AChainOfFoldersTakesNoRoomForEach)
{
    std::string text;
    for (int depth = 0; depth < 1500; ++depth) {
        const std::string indent(static_cast<std::size_t>(depth) * 2, ' ');
        text += indent + "f-" + std::to_string(depth) + " " + std::to_string(100 + depth) + "\n";
        text += indent + "d/\n";
    }
    const Taken taken = search(test::treeFromText(text));
    EXPECT_EQ(taken.found, 0U);
    // The counters of sizes are a mebibyte.
    EXPECT_LT(taken.mostReading - mebibyte, 16 * 1024);
}

TEST_F(FinderMemory, HeadsOfLargeFilesTakeABoundedRoom)
{
    const std::int64_t before = CountedMemory::now();
    DuplicateFinder::HeadStates heads;
    Sha256 hash;
    const auto digestOf = [](std::uint32_t number) {
        DuplicateFinder::Digest digest = {};
        std::memcpy(digest.data(), &number, sizeof number);
        return digest;
    };
    for (std::uint32_t i = 0; i < 3 * DuplicateFinder::HeadStates::mostKept; ++i) {
        hash.start();
        heads.keep(digestOf(i), hash.state());
    }
    EXPECT_NE(heads.find(digestOf(0)), nullptr);
    EXPECT_EQ(heads.find(digestOf(DuplicateFinder::HeadStates::mostKept)), nullptr);
    const std::int64_t taken = CountedMemory::now() - before;
    std::printf("heads %.1f MiB\n", static_cast<double>(taken) / mebibyte);
    // Below the room that a million files of the worst kind leave.
    EXPECT_LT(taken, 5 * mebibyte);
    heads.forget();
    EXPECT_LT(CountedMemory::now() - before, mebibyte / 4);
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
