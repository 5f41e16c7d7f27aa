// SPDX-License-Identifier: MIT
#include "FileSystemCalls.h"

#include "DiskTree.h"
#include "PosixFileSystemCalls.h"
#include "UnprivilegedRun.h"
#include "WallClock.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cstdint>
#include <limits>
#include <set>
#include <string>

namespace quorvane {
namespace {

using test::secondsNow;

FileSystemCalls& calls()
{
    return FileSystemCalls::system();
}

int openWhole(const FilePath& path)
{
    return calls().openDirectory(FileSystemCalls::noDirectory(), path.bytes().c_str());
}

bool statusWhole(const FilePath& path, EntryStatus& status)
{
    return calls().status(FileSystemCalls::noDirectory(), path.bytes().c_str(), status);
}

std::multiset<std::string> namesIn(const NameList& names)
{
    std::multiset<std::string> all;
    for (std::size_t i = 0; i < names.spans.size(); ++i) {
        EXPECT_EQ(std::string(names.nameAt(i)).size(), names.spans[i].length);
        all.emplace(names.nameAt(i));
    }
    return all;
}

TEST(FileSystemCalls, OpenTakesFoldersAlone)
{
    DiskTree disk;
    disk.folder("folder");
    disk.file("file", 1);
    disk.fifo("pipe");
    disk.symbolicLink("folder", "link");
    EXPECT_LT(openWhole(disk.path("file")), 0);
    EXPECT_LT(openWhole(disk.path("pipe")), 0);
    EXPECT_LT(openWhole(disk.path("link")), 0);
    EXPECT_LT(openWhole(disk.path("absent")), 0);
    const int folder = openWhole(disk.path("folder"));
    ASSERT_GE(folder, 0);
    EXPECT_NE(fcntl(folder, F_GETFD) & FD_CLOEXEC, 0);
    calls().close(folder);
    EXPECT_EQ(fcntl(folder, F_GETFD), -1);
}

TEST(FileSystemCalls, OpenGoesFromAnOpenFolder)
{
    DiskTree disk;
    disk.folder("a/b");
    const int a = openWhole(disk.path("a"));
    const int b = calls().openDirectory(a, "b");
    EXPECT_GE(b, 0);
    EXPECT_LT(calls().openDirectory(a, "a"), 0);
    calls().close(b);
    calls().close(a);
}

TEST(FileSystemCalls, ListingHasEveryNameOnceAndNoDots)
{
    DiskTree disk;
    std::multiset<std::string> expected{".hidden", "...", "..x", "new\nline", "\xFF\xFE"};
    for (const std::string& name : expected) {
        disk.file("folder/" + name);
    }
    // More than one call's worth of names.
    for (int i = 0; i < 1500; ++i) {
        const std::string name = std::to_string(i) + std::string(200, 'n');
        disk.file("folder/" + name);
        expected.insert(name);
    }
    const int folder = openWhole(disk.path("folder"));
    NameList names;
    EXPECT_TRUE(calls().appendNames(folder, names));
    calls().close(folder);
    EXPECT_EQ(namesIn(names), expected);
}

TEST(FileSystemCalls, ListingAppends)
{
    DiskTree disk;
    disk.file("a/one");
    disk.file("b/two");
    NameList names;
    for (const char* const name : {"a", "b"}) {
        const int folder = openWhole(disk.path(name));
        EXPECT_TRUE(calls().appendNames(folder, names));
        calls().close(folder);
    }
    EXPECT_EQ(namesIn(names), (std::multiset<std::string>{"one", "two"}));
    names.clear();
    EXPECT_TRUE(names.spans.empty());
    EXPECT_TRUE(names.bytes.empty());
}

TEST(FileSystemCalls, ListingOfWhatIsNoFolderFails)
{
    DiskTree disk;
    disk.file("file", 1);
    NameList names;
    EXPECT_FALSE(calls().appendNames(-1, names));
    const int file = open(disk.path("file").bytes().c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_FALSE(calls().appendNames(file, names));
    close(file);
    EXPECT_TRUE(names.spans.empty());
}

TEST(FileSystemCalls, StatusTellsTheKinds)
{
    DiskTree disk;
    disk.folder("folder");
    disk.file("file", 1);
    disk.symbolicLink("folder", "link");
    disk.fifo("pipe");
    disk.socket("socket");
    const auto kindOf = [&disk](const char* name) {
        EntryStatus status;
        EXPECT_TRUE(statusWhole(disk.path(name), status)) << name;
        return status.kind;
    };
    EXPECT_EQ(kindOf("folder"), EntryStatus::Kind::directory);
    EXPECT_EQ(kindOf("file"), EntryStatus::Kind::regularFile);
    EXPECT_EQ(kindOf("link"), EntryStatus::Kind::symbolicLink);
    EXPECT_EQ(kindOf("pipe"), EntryStatus::Kind::other);
    EXPECT_EQ(kindOf("socket"), EntryStatus::Kind::other);
}

TEST(FileSystemCalls, StatusTellsSizesDateAndDevice)
{
    DiskTree disk;
    disk.file("file", 5000);
    disk.modified("file", -7);
    disk.hole("hole", std::int64_t{1} << 33);
    struct stat expected = {};
    ASSERT_EQ(lstat(disk.path("file").bytes().c_str(), &expected), 0);
    EntryStatus status;
    ASSERT_TRUE(statusWhole(disk.path("file"), status));
    struct stat after = {};
    ASSERT_EQ(lstat(disk.path("file").bytes().c_str(), &after), 0);
    EXPECT_EQ(status.size, 5000);
    // A file system may find room for a new file at any moment.
    EXPECT_TRUE(status.allocatedBytes == expected.st_blocks * 512 ||
                status.allocatedBytes == after.st_blocks * 512)
        << status.allocatedBytes;
    EXPECT_EQ(status.modifiedSeconds, -7);
    EXPECT_EQ(status.device, expected.st_dev);
    ASSERT_TRUE(statusWhole(disk.path("hole"), status));
    EXPECT_EQ(status.size, std::int64_t{1} << 33);
    EXPECT_EQ(status.allocatedBytes, 0);
}

TEST(FileSystemCalls, StatusFailsForWhatIsNotThere)
{
    const DiskTree disk;
    EntryStatus status;
    EXPECT_FALSE(statusWhole(disk.path("absent"), status));
    EXPECT_FALSE(statusWhole(FilePath(), status));
    EXPECT_FALSE(statusWhole(disk.path(std::string(256, 'x')), status));
}

TEST(FileSystemCalls, CreationDateStaysWhenTheFileChanges)
{
    DiskTree disk;
    const std::int64_t before = secondsNow();
    disk.file("file", 1);
    disk.modified("file", 1000);
    std::int64_t seconds = 0;
    const std::string absent = disk.path("absent").bytes();
    EXPECT_FALSE(calls().creationDate(FileSystemCalls::noDirectory(), absent.c_str(), seconds));
    const int folder = openWhole(disk.root());
    const bool isKept = calls().creationDate(folder, "file", seconds);
    calls().close(folder);
    if (!isKept) {
        GTEST_SKIP() << "this file system keeps no creation dates";
    }
    EXPECT_GE(seconds, before - 1);
    EXPECT_LE(seconds, secondsNow());
}

VolumeKind kindOf(const std::string& path)
{
    return calls().volumeKind(FileSystemCalls::noDirectory(), path.c_str());
}

TEST(FileSystemCalls, VolumesOfTheDiskAreOrdinary)
{
    const DiskTree disk;
    EXPECT_EQ(kindOf("/tmp"), VolumeKind::ordinary);
    EXPECT_EQ(kindOf("/"), VolumeKind::ordinary);
    EXPECT_EQ(kindOf(disk.root().bytes()), VolumeKind::ordinary);
    EXPECT_EQ(kindOf(disk.path("absent").bytes()), VolumeKind::ordinary);
}

/// Opens what is protected in the common part.
class OpenPosixCalls : public PosixFileSystemCalls
{
public:
    using PosixFileSystemCalls::statusFrom;
};

TEST(FileSystemCalls, ClaimsThatNoNumberHoldsAreKeptWithinItsRange)
{
    // A file system of a program (FUSE) is free to answer this.
    struct stat entry = {};
    entry.st_size = -1;
    entry.st_blocks = std::numeric_limits<blkcnt_t>::max();
    const EntryStatus status = OpenPosixCalls::statusFrom(entry);
    EXPECT_EQ(status.size, 0);
    EXPECT_EQ(status.allocatedBytes, std::numeric_limits<std::int64_t>::max() / 512 * 512);
    entry.st_blocks = -8;
    EXPECT_EQ(OpenPosixCalls::statusFrom(entry).allocatedBytes, 0);
}

TEST(FileSystemCalls, CapacityIsThatOfTheVolume)
{
    const DiskTree disk;
    struct statvfs expected = {};
    ASSERT_EQ(statvfs(disk.root().bytes().c_str(), &expected), 0);
    VolumeCapacity capacity;
    ASSERT_TRUE(calls().volumeCapacity(disk.root().bytes().c_str(), capacity));
    EXPECT_EQ(capacity.totalBytes, std::uint64_t{expected.f_blocks} * expected.f_frsize);
    EXPECT_LE(capacity.availableBytes, capacity.totalBytes);
    EXPECT_FALSE(calls().volumeCapacity(disk.path("absent").bytes().c_str(), capacity));
    EXPECT_FALSE(calls().volumeCapacity("", capacity));
}

TEST(FileSystemCalls, DescriptorLimitIsThatOfTheProcess)
{
    inChildProcess([] {
        rlimit limit = {};
        ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
        limit.rlim_cur = 123;
        ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
        EXPECT_EQ(calls().descriptorLimit(), 123);
    });
}

} // namespace
} // namespace quorvane
