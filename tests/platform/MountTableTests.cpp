// SPDX-License-Identifier: MIT
#include "MountTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace quorvane {
namespace {

using testing::ElementsAre;

FilePath path(const char* bytes)
{
    return FilePath(bytes);
}

TEST(MountTableTests, ReadsTheFifthFieldOfEachLine)
{
    const MountTable table = MountTable::fromMountInfo(
        "22 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
        "36 22 0:31 / /home/mara/net rw,nosuid shared:9 - fuse.sshfs host: rw,user_id=1000\n"
        "37 22 0:40 / /misc rw - autofs systemd-1 rw,fd=50,pgrp=1,timeout=0\n"
        "38 22 8:1 /srv/data /home/mara/data rw - ext4 /dev/sda1 rw\n");
    EXPECT_THAT(table.mountPoints(), ElementsAre(path("/"), path("/home/mara/data"),
                                                 path("/home/mara/net"), path("/misc")));
}

TEST(MountTableTests, TakesOctalEscapesForTheBytesThatTheyStandFor)
{
    const MountTable table =
        MountTable::fromMountInfo("1 0 0:1 / /a\\040b\\011c\\012d\\134e\\043f rw - t s rw\n");
    EXPECT_THAT(table.mountPoints(), ElementsAre(path("/a b\tc\nd\\e#f")));
}

TEST(MountTableTests, LeavesABackslashThatStartsNoEscape)
{
    const MountTable table = MountTable::fromMountInfo("1 0 0:1 / /a\\04 rw\n"
                                                       "1 0 0:1 / /b\\9 rw\n"
                                                       "1 0 0:1 / /c\\777 rw\n"
                                                       "1 0 0:1 / /d\\");
    EXPECT_THAT(table.mountPoints(),
                ElementsAre(path("/a\\04"), path("/b\\9"), path("/c\\777"), path("/d\\")));
}

TEST(MountTableTests, PassesOverLinesWithoutAnAbsoluteMountPoint)
{
    EXPECT_TRUE(MountTable::fromMountInfo("").mountPoints().empty());
    EXPECT_TRUE(MountTable::fromMountInfo("\n\n1 2 3\n1 2 3 4 relative rw\n1 2 3 4 ")
                    .mountPoints()
                    .empty());
    EXPECT_THAT(MountTable::fromMountInfo("broken\n1 0 0:1 / /x").mountPoints(),
                ElementsAre(path("/x")));
}

TEST(MountTableTests, TellsAMountPointFromAFolderAroundOne)
{
    const MountTable table({path("/"), path("/a/b"), path("/a/b2/c")});
    EXPECT_TRUE(table.isMountPoint(path("/a/b")));
    EXPECT_FALSE(table.isMountPoint(path("/a")));
    EXPECT_FALSE(table.isMountPoint(path("/a/b/c")));
    EXPECT_TRUE(table.hasMountBelow(path("/a")));
    EXPECT_FALSE(table.hasMountBelow(path("/a/b")));
    EXPECT_TRUE(table.hasMountBelow(path("/a/b2")));
    EXPECT_FALSE(table.hasMountBelow(path("/a/b2/c/d")));
    EXPECT_TRUE(table.hasMountBelow(path("/")));
}

TEST(MountTableTests, TheSystemsOwnTableHoldsTheRoot)
{
    const auto table = MountTable::read();
    ASSERT_TRUE(table.has_value());
    EXPECT_TRUE(table->isMountPoint(path("/")));
}

} // namespace
} // namespace quorvane
