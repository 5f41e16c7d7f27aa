// SPDX-License-Identifier: MIT
#include "SystemMonitor.h"

#include "DiskTree.h"
#include "FaultyFileSystemCalls.h"

#include <gtest/gtest.h>

#include <sys/statvfs.h>

#include <limits>
#include <string>

namespace quorvane {
namespace {

using Call = FaultyFileSystemCalls::Call;

TEST(DriveSample, UsedIsTotalMinusFree)
{
    const DriveSample sample{1000, 250};
    EXPECT_EQ(sample.usedBytes(), 750U);
    EXPECT_DOUBLE_EQ(sample.usedPercent(), 75);
}

TEST(DriveSample, MoreFreeThanTotalIsNothingUsed)
{
    const DriveSample sample{1000, 1001};
    EXPECT_EQ(sample.usedBytes(), 0U);
    EXPECT_DOUBLE_EQ(sample.usedPercent(), 0);
}

TEST(DriveSample, NoBytesAtAllAreNoPercent)
{
    EXPECT_DOUBLE_EQ(DriveSample{}.usedPercent(), 0);
    EXPECT_DOUBLE_EQ((DriveSample{0, 5}).usedPercent(), 0);
    EXPECT_DOUBLE_EQ((DriveSample{5, 0}).usedPercent(), 100);
}

TEST(DriveSample, TextsHaveOneDigit)
{
    const DriveSample sample{std::uint64_t{3} << 39, 1536};
    EXPECT_EQ(sample.formattedTotal(), QStringLiteral("1.5 TB"));
    EXPECT_EQ(sample.formattedFree(), QStringLiteral("1.5 KB"));
    EXPECT_EQ(DriveSample{}.formattedFree(), QStringLiteral("0 B"));
    // Beyond the signed range the text stays at its end: 2^63 bytes are 8192 times 2^50.
    const DriveSample endless{std::numeric_limits<std::uint64_t>::max(), 0};
    EXPECT_EQ(endless.formattedTotal(), QStringLiteral("8192.0 PB"));
}

TEST(SystemMonitor, DriveUsageAsksForTheFolderAbove)
{
    DiskTree disk;
    FaultyFileSystemCalls calls;
    std::string asked;
    calls.before(Call::volumeCapacity, [&asked](int, std::string_view path) { asked = path; });
    // The folder itself need not even be there.
    const DriveSample sample = SystemMonitor::driveUsage(calls, disk.path("home"));
    EXPECT_EQ(asked, disk.root().bytes());
    struct statvfs volume = {};
    ASSERT_EQ(statvfs(disk.root().bytes().c_str(), &volume), 0);
    EXPECT_EQ(sample.totalBytes, std::uint64_t{volume.f_blocks} * volume.f_frsize);
    EXPECT_LE(sample.freeBytes, sample.totalBytes);
    EXPECT_GT(sample.totalBytes, 0U);
}

TEST(SystemMonitor, DriveUsageOfTheRootIsTheRoots)
{
    FaultyFileSystemCalls calls;
    std::string asked;
    calls.before(Call::volumeCapacity, [&asked](int, std::string_view path) { asked = path; });
    SystemMonitor::driveUsage(calls, FilePath("/"));
    EXPECT_EQ(asked, "/");
    SystemMonitor::driveUsage(calls, FilePath("/home"));
    EXPECT_EQ(asked, "/");
}

TEST(SystemMonitor, DriveUsageThatCannotBeReadIsZeros)
{
    FaultyFileSystemCalls calls;
    calls.failAlways(Call::volumeCapacity);
    EXPECT_EQ(SystemMonitor::driveUsage(calls, FilePath("/home")), DriveSample{});
    EXPECT_EQ(SystemMonitor::driveUsage(FileSystemCalls::system(), FilePath()), DriveSample{});
}

TEST(SystemMonitor, DriveUsageIsReadAnewEachTime)
{
    FaultyFileSystemCalls calls;
    SystemMonitor::driveUsage(calls, FilePath("/home"));
    SystemMonitor::driveUsage(calls, FilePath("/home"));
    EXPECT_EQ(calls.count(Call::volumeCapacity), 2);
}

} // namespace
} // namespace quorvane
