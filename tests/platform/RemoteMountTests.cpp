// SPDX-License-Identifier: MIT
#include "MountTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace quorvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<RemoteMount> remoteIn(std::string_view mountInfo)
{
    return MountTable::fromMountInfo(mountInfo).remote();
}

TEST(RemoteMount, IsToldByTheTypeOfItsFileSystem)
{
    EXPECT_THAT(
        remoteIn("27 1 254:0 / / rw,relatime - ext4 /dev/vda rw\n"
                 "40 27 0:45 / /mnt/nas rw,relatime shared:7 master:2 - nfs4 server:/export rw\n"
                 "41 27 0:46 / /mnt/win rw - cifs //server/share rw\n"
                 "42 27 0:47 /home /home/me/cloud rw - fuse.sshfs me@host: rw\n"
                 "43 27 0:48 / /mnt/usb rw - fuseblk /dev/sdb1 rw\n"
                 "44 27 0:49 / /tmp rw - tmpfs nfs4 rw\n"),
        ElementsAre(RemoteMount{FilePath("/mnt/nas"), makedev(0, 45)},
                    RemoteMount{FilePath("/mnt/win"), makedev(0, 46)},
                    RemoteMount{FilePath("/home/me/cloud"), makedev(0, 47)}));
}

TEST(MountedVolume, HasTheKindOfItsFileSystemInTheOrderOfMounting)
{
    const MountTable table =
        MountTable::fromMountInfo("27 1 254:0 / / rw - ext4 /dev/vda rw\n"
                                  "40 27 0:45 / /mnt rw - nfs4 server:/export rw\n"
                                  "41 27 0:46 / /mnt rw - tmpfs tmpfs rw\n"
                                  "42 27 0:47 / /a\\040b rw shared:3 - proc proc rw\n"
                                  "43 27 0:48 / /win rw - fuseblk /dev/sdb1 rw\n"
                                  "44 27 0:49 / /bare rw\n");
    using enum MountKind;
    EXPECT_THAT(table.volumes(),
                ElementsAre(MountedVolume{FilePath("/"), local, makedev(254, 0)},
                            MountedVolume{FilePath("/mnt"), remote, makedev(0, 45)},
                            MountedVolume{FilePath("/mnt"), local, makedev(0, 46)},
                            MountedVolume{FilePath("/a b"), kernelMade, makedev(0, 47)},
                            MountedVolume{FilePath("/win"), local, makedev(0, 48)},
                            MountedVolume{FilePath("/bare"), local, makedev(0, 49)}));
}

TEST(MountedVolume, TheMachineTellsOfItsRootFolderAndItsProcesses)
{
    const std::optional<MountTable> table = MountTable::read();
    ASSERT_TRUE(table);
    const auto kindAt = [&](const char* path) {
        std::optional<MountKind> kind;
        for (const MountedVolume& volume : table->volumes()) {
            kind = volume.mountPoint == FilePath(path) ? volume.kind : kind;
        }
        return kind;
    };
    EXPECT_TRUE(kindAt("/"));
    EXPECT_EQ(kindAt("/proc"), MountKind::kernelMade);
}

TEST(RemoteMount, HasTheDeviceThatStatTells)
{
    EXPECT_THAT(remoteIn("1 1 4097:70000 / /a\\040b rw - nfs x rw"),
                ElementsAre(RemoteMount{FilePath("/a b"), makedev(4097, 70000)}));
}

TEST(RemoteMount, LinesOfAnotherFormArePassedOver)
{
    EXPECT_THAT(remoteIn(""), IsEmpty());
    EXPECT_THAT(remoteIn("\n\nnfs\n- nfs\n1 1 0:5 / relative rw - nfs x rw\n"
                         "1 1 05 / /a rw - nfs x rw\n1 1 0: / /a rw - nfs x rw\n"
                         "1 1 0:5x / /a rw - nfs x rw\n1 1 0:5 / /a rw nfs x rw"),
                IsEmpty());
}

} // namespace
} // namespace quorvane
