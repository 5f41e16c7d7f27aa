// SPDX-License-Identifier: MIT
#include "CountedMemory.h"
#include "DuplicateFinder.h"
#include "FileContentCalls.h"
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
constexpr std::int64_t minBytes = 64;

/// Files of 64 bytes that are made up on the spot from the number behind the dash in their names,
/// whatever size the scan saw.
class MadeUpContents final : public FileContentCalls
{
public:
    /// Which contents the file of that number has; equal numbers are equal contents.
    std::function<int(int)> contentsOf = [](int file) { return file; };
    /// What is told of the size of the file of that number.
    std::function<std::int64_t(int)> bytesOf = [](int) { return minBytes; };
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
        std::fill_n(room.begin(), minBytes, std::byte{1});
        const int contents = contentsOf(file / 2 - 1);
        std::memcpy(room.data(), &contents, sizeof contents);
        return minBytes;
    }
    bool seek(int, std::int64_t) override { return true; }
    void close(int) override {}
    void willRead(int, std::int64_t, std::int64_t) override {}
    void willReadOnce(int) override {}
};

/// What a search took beyond its tree, in bytes.
struct Taken
{
    std::int64_t peakReading = 0;  ///< at once until the groups were built
    std::int64_t peakBuilding = 0; ///< at once while they were
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
                taken.peakBuilding = CountedMemory::most() - before;
            } else {
                taken.peakReading = CountedMemory::most() - before;
            }
            if (report.pass == DuplicateFinder::Pass::verifying) {
                CountedMemory::forgetMost();
            }
        };
        CountedMemory::forgetMost();
        const DuplicateFinder::Groups groups = DuplicateFinder::find(
            root, minBytes, [](double) {}, DuplicateFinder::neverCancelled, options);
        taken.groups = CountedMemory::now() - before;
        taken.found = groups.size();
        RecordProperty("peakReading", std::to_string(taken.peakReading));
        RecordProperty("peakBuilding", std::to_string(taken.peakBuilding));
        RecordProperty("groups", std::to_string(taken.groups));
        std::printf("reading %.1f, building %.1f, groups %.1f MiB\n",
                    static_cast<double>(taken.peakReading) / mebibyte,
                    static_cast<double>(taken.peakBuilding) / mebibyte,
                    static_cast<double>(taken.groups) / mebibyte);
        return taken;
    }
    /// The groups that come out, half a million of which cannot be had for 40 MiB, are counted by
    /// themselves.
    static void expectPromiseKept(const Taken& taken)
    {
        EXPECT_LT(taken.peakReading, promised);
        EXPECT_LT(taken.peakBuilding - taken.groups, promised);
        // It did have to hold the files' places.
        EXPECT_GT(taken.peakReading, mebibyte);
    }

    MadeUpContents m_contents;
};

std::int64_t oneSize(int)
{
    return minBytes;
}

TEST_F(FinderMemory, FiftyThousandPairsStayFarBelowFortyMebibytes)
{
    m_contents.contentsOf = [](int file) { return file / 2; };
    const Taken taken = search(100'000, oneSize, 200);
    EXPECT_EQ(taken.found, 50'000U);
    // A group is 192 bytes, two pointers and an identifier: 64 for each of these in the heap.
    EXPECT_LT(taken.peakBuilding, 22 * mebibyte);
    EXPECT_GT(taken.peakBuilding, 8 * mebibyte);
}

TEST_F(FinderMemory, AMillionCopiesEachInAFolderOfItsOwn)
{
    m_contents.contentsOf = [](int) { return 1; };
    const Taken taken = search(million, oneSize, 1);
    EXPECT_EQ(taken.found, 1U);
    expectPromiseKept(taken);
    EXPECT_LT(taken.peakBuilding, promised);
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

TEST_F(FinderMemory, AMillionHardLinksOfOneFile)
{
    m_contents.contentsOf = [](int) { return 1; };
    m_contents.names = million;
    const Taken taken = search(million, oneSize, 1000);
    EXPECT_EQ(taken.found, 1U);
    expectPromiseKept(taken);
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
    // 32 bytes for each file, and the paths by which a Trash is told.
    EXPECT_LT(taken.peakReading, 128 * 1024);
}

} // namespace
} // namespace quorvane
