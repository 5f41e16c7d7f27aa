// SPDX-License-Identifier: MIT
#include "FileSystemCalls.h"

#include "DiskTree.h"
#include "UnprivilegedRun.h"

#include <gtest/gtest.h>

#include <sys/mount.h>

#include <string>

namespace quorvane {
namespace {

VolumeKind kindOf(const std::string& path)
{
    return FileSystemCalls::system().volumeKind(FileSystemCalls::noDirectory(), path.c_str());
}

/// One of each file system that the kernel makes up, mounted as the running kernel allows.
TEST(FileSystemCalls, WhatTheKernelMakesUpIsToldApartByItsKind)
{
    DiskTree disk;
    disk.folder("top");
    const std::string top = disk.path("top").bytes();
    const bool isPermitted = withPrivateMounts([&top] {
        int mounted = 0;
        for (const char* const type :
             {"proc", "sysfs", "cgroup2", "debugfs", "tracefs", "securityfs", "bpf", "devpts",
              "mqueue", "configfs", "fusectl", "pstore", "efivarfs", "binfmt_misc", "hugetlbfs",
              "selinuxfs"}) {
            if (mount("quorvane", top.c_str(), type, 0, nullptr) != 0) {
                continue;
            }
            ++mounted;
            EXPECT_EQ(kindOf(top), VolumeKind::kernelMade) << type;
            EXPECT_EQ(umount2(top.c_str(), MNT_DETACH), 0);
        }
        // Every kernel that runs a desktop has these: proc, sysfs, devpts, mqueue.
        EXPECT_GE(mounted, 4);
        ASSERT_EQ(mount("quorvane", top.c_str(), "tmpfs", 0, nullptr), 0);
        EXPECT_EQ(kindOf(top), VolumeKind::ordinary);
    });
    if (!isPermitted) {
        GTEST_SKIP() << "no folder can be mounted here";
    }
}

} // namespace
} // namespace quorvane
