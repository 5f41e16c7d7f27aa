// SPDX-License-Identifier: MIT
#include "PageCacheLinux.h"

#include "DiskTree.h"
#include "FileContentCalls.h"
#include "FileSystemCalls.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <functional>
#include <string>

namespace quorvane {
namespace {

constexpr std::int64_t pieceBytes = 65536;
constexpr std::int64_t fileBytes = pieceBytes * 8 - 100;

/// A file of eight pieces of which nothing was ever read and only two were written, so that the
/// cache can hold nothing but these. Written bytes stay there at least until they are on the disk.
class PageCacheOfTheSystem : public ::testing::Test
{
protected:
    PageCacheOfTheSystem()
    {
        m_disk.hole("f", fileBytes);
        m_file = open(m_disk.path("f").bytes().c_str(), O_RDWR | O_CLOEXEC);
        EXPECT_GE(m_file, 0);
        for (const std::int64_t place : {pieceBytes * 2 + 5, pieceBytes * 8 - 101}) {
            EXPECT_EQ(pwrite(m_file, "x", 1, place), 1);
        }
    }
    ~PageCacheOfTheSystem() override { close(m_file); }

    DiskTree m_disk;
    int m_file = -1;
};

constexpr std::uint64_t written = 1U << 2 | 1U << 7;

using Calls =
    std::function<std::optional<std::uint64_t>(int, std::int64_t, std::int64_t, std::int64_t)>;

/// Kernels before 6.5 and some sandboxes know only one of the calls, or neither.
bool answers(const Calls& calls, int file)
{
    return calls(file, 0, fileBytes, pieceBytes).has_value();
}

void expectPieces(const Calls& calls, int file)
{
    EXPECT_EQ(calls(file, 0, fileBytes, pieceBytes), written);
    EXPECT_EQ(calls(file, pieceBytes * 3, pieceBytes * 2, pieceBytes), 0U);
    EXPECT_NE(calls(file, pieceBytes * 2, 10, pieceBytes).value_or(0) & 1, 0U);
    EXPECT_EQ(calls(file, pieceBytes * 2, pieceBytes * 6, pieceBytes), written >> 2);
    // Behind the end there is nothing.
    EXPECT_EQ(calls(file, pieceBytes * 20, pieceBytes * 3, pieceBytes), 0U);
}

TEST_F(PageCacheOfTheSystem, TheMappingTellsWhatIsThere)
{
    if (!answers(cachedPiecesByMapping, m_file) && !answers(cachedPiecesByStatistics, m_file)) {
        GTEST_SKIP() << "this system does not tell";
    }
    expectPieces(cachedPiecesByMapping, m_file);
}

TEST_F(PageCacheOfTheSystem, TheStatisticsTellWhatIsThere)
{
    struct statfs system = {};
    ASSERT_EQ(fstatfs(m_file, &system), 0);
    if (system.f_type == OVERLAYFS_SUPER_MAGIC) {
        GTEST_SKIP() << "cachestat(2) sees nothing of a file in an overlay";
    }
    if (!answers(cachedPiecesByStatistics, m_file)) {
        GTEST_SKIP() << "cachestat(2) does not answer";
    }
    expectPieces(cachedPiecesByStatistics, m_file);
}

TEST_F(PageCacheOfTheSystem, ASystemWithoutAnAnswerIsNotTakenForAnEmptyCache)
{
    EXPECT_EQ(cachedPiecesByStatistics(-1, 0, fileBytes, pieceBytes), std::nullopt);
    EXPECT_EQ(cachedPiecesByMapping(-1, 0, fileBytes, pieceBytes), std::nullopt);
    EXPECT_EQ(FileContentCalls::system().cachedPieces(-1, 0, fileBytes, pieceBytes),
              ~std::uint64_t{0});
}

TEST_F(PageCacheOfTheSystem, IsAskedThroughTheCallsOnContents)
{
    FileContentCalls& contents = FileContentCalls::system();
    if (!answers(cachedPiecesByMapping, m_file) && !answers(cachedPiecesByStatistics, m_file)) {
        GTEST_SKIP() << "this system does not tell";
    }
    EXPECT_EQ(contents.cachedPieces(m_file, 0, fileBytes, pieceBytes), written);
    // Bytes that are not on the disk yet are never lost, wherever they are by then.
    contents.isDoneWith(m_file, 0, pieceBytes * 8);
    char byte = 0;
    ASSERT_EQ(pread(m_file, &byte, 1, pieceBytes * 2 + 5), 1);
    EXPECT_EQ(byte, 'x');
}

} // namespace
} // namespace quorvane
