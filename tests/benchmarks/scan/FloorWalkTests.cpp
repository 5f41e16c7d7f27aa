// SPDX-License-Identifier: MIT
#include "DiskListing.h"
#include "FloorWalk.h"
#include "TreeGenerator.h"

#include <gtest/gtest.h>

namespace quorvane {
namespace {

using testing::ListedEntry;
using testing::TemporaryFolder;

void expectTotals(const std::string& folder, int workers)
{
    const testing::DiskListing listing = testing::listDisk(folder);
    const ListedEntry& root = listing.at("");
    const auto result = floorWalk(FilePath(folder), workers);
    ASSERT_TRUE(std::holds_alternative<WalkTotals>(result)) << std::get<std::string>(result);
    const WalkTotals& totals = std::get<WalkTotals>(result);
    EXPECT_EQ(totals.entries, static_cast<std::int64_t>(listing.size()) - 1);
    EXPECT_EQ(totals.files, root.fileCount);
    EXPECT_EQ(totals.directories, root.directoryCount - 1);
    EXPECT_EQ(totals.logicalBytes, root.scannedBytes);
    EXPECT_EQ(totals.diskBytes, root.scannedBytesOnDisk);
}

TEST(FloorWalk, SeesWhatIsThereWithAnyNumberOfWorkers)
{
    const TemporaryFolder folder;
    ASSERT_EQ(generateTree(FilePath(folder.path()), {5000, 9}), std::nullopt);
    testing::settle(folder.path());
    for (const int workers : {1, 2, 8}) {
        expectTotals(folder.path(), workers);
    }
}

TEST(FloorWalk, SeesANastyTree)
{
    const TemporaryFolder folder;
    testing::makeNastyTree(folder.path());
    expectTotals(folder.path(), 2);
}

TEST(FloorWalk, SeesNothingInAnEmptyFolder)
{
    const TemporaryFolder folder;
    expectTotals(folder.path(), 3);
}

TEST(FloorWalk, TellsWhyItCannotStart)
{
    const TemporaryFolder folder;
    testing::makeFile(folder.path("file"), 1);
    const auto missing = floorWalk(FilePath(folder.path("none")), 2);
    ASSERT_TRUE(std::holds_alternative<std::string>(missing));
    EXPECT_EQ(std::get<std::string>(missing), "Cannot access " + folder.path("none"));
    const auto file = floorWalk(FilePath(folder.path("file")), 2);
    ASSERT_TRUE(std::holds_alternative<std::string>(file));
    EXPECT_EQ(std::get<std::string>(file), "Not a directory: " + folder.path("file"));
}

} // namespace
} // namespace quorvane
