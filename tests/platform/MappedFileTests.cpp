// SPDX-License-Identifier: MIT
#include "MappedFile.h"

#include "DiskTree.h"
#include "StoredFiles.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <string>

namespace quorvane {
namespace {

std::string textOf(const std::optional<MappedFile>& file)
{
    if (!file) {
        return "no file";
    }
    const std::span<const std::byte> bytes = file->bytes();
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

TEST(MappedFile, AMappingStaysAsItWasWhenTheFileIsReplaced)
{
    const DiskTree disk;
    const FilePath file = disk.path("file");
    ASSERT_TRUE(StoredFiles::system().save(disk.root(), "file", "old"));
    const std::optional<MappedFile> before = MappedFile::open(file);
    ASSERT_TRUE(StoredFiles::system().save(disk.root(), "file", "newer"));
    EXPECT_EQ(textOf(before), "old");
    EXPECT_EQ(textOf(MappedFile::open(file)), "newer");
}

TEST(MappedFile, OnlyARegularFileOfThisUserIsMapped)
{
    DiskTree disk;
    disk.folder("folder");
    disk.fifo("pipe");
    disk.file("empty");
    disk.fileWithContents("file", "x");
    disk.symbolicLink("file", "link");
    EXPECT_FALSE(MappedFile::open(disk.path("folder")));
    EXPECT_FALSE(MappedFile::open(disk.path("pipe")));
    EXPECT_FALSE(MappedFile::open(disk.path("link")));
    EXPECT_FALSE(MappedFile::open(disk.path("none")));
    EXPECT_EQ(textOf(MappedFile::open(disk.path("empty"))), "");
    if (geteuid() == 0) {
        constexpr uid_t somebody = 65534;
        ASSERT_EQ(chown(disk.path("file").bytes().c_str(), somebody, somebody), 0);
        EXPECT_FALSE(MappedFile::open(disk.path("file")));
    }
}

TEST(MappedFile, AMappingCanBeMoved)
{
    DiskTree disk;
    disk.fileWithContents("file", "text");
    std::optional<MappedFile> first = MappedFile::open(disk.path("file"));
    MappedFile second = std::move(*first);
    EXPECT_TRUE(first->bytes().empty());
    EXPECT_EQ(second.bytes().size(), 4U);
    *first = std::move(second);
    EXPECT_EQ(textOf(first), "text");
}

} // namespace
} // namespace quorvane
