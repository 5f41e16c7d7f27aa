// SPDX-License-Identifier: MIT
#include "PinnedEntry.h"

#include "DiskTree.h"
#include "FolderDescriptors.h"
#include "ProtectedPlaces.h"
#include "UnprivilegedRun.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <string>

namespace quorvane {
namespace {

using Failure = PinnedEntry::Failure;
using Kind = EntryStatus::Kind;

class PinnedEntryTests : public testing::Test
{
protected:
    PinnedEntry reach(std::string_view relative)
    {
        return PinnedEntry::reach(m_disk.root(), m_disk.path(relative));
    }

    DiskTree m_disk;
};

TEST_F(PinnedEntryTests, ReachesAnEntryOfEachKindAsItself)
{
    m_disk.file("a/b/file", 5);
    m_disk.symbolicLink("file", "a/b/link");
    m_disk.fifo("a/b/pipe");
    const std::pair<const char*, Kind> entries[] = {{"a", Kind::directory},
                                                    {"a/b/file", Kind::regularFile},
                                                    {"a/b/link", Kind::symbolicLink},
                                                    {"a/b/pipe", Kind::other}};
    for (const auto& [relative, kind] : entries) {
        PinnedEntry entry = reach(relative);
        ASSERT_EQ(entry.failure(), Failure::none) << relative;
        EntryStatus status;
        ASSERT_TRUE(entry.pin(status)) << relative;
        EXPECT_EQ(status.kind, kind) << relative;
        EXPECT_TRUE(entry.isInPlace());
    }
}

TEST_F(PinnedEntryTests, DoesNotPassThroughALinkBelowTheRoot)
{
    m_disk.file("real/inner/file");
    m_disk.symbolicLink("real", "link");
    m_disk.symbolicLink("inner", "real/alias");
    EXPECT_EQ(reach("link/inner/file").failure(), Failure::behindLink);
    EXPECT_EQ(reach("real/alias/file").failure(), Failure::behindLink);
    EXPECT_EQ(reach("link/file").failure(), Failure::behindLink);
}

TEST_F(PinnedEntryTests, TakesARootBelowLinksAndTellsTheRealPath)
{
    m_disk.file("real/root/folder/file");
    m_disk.symbolicLink("real", "link");
    const FilePath root = m_disk.path("link/root");
    PinnedEntry entry = PinnedEntry::reach(root, root.appending("folder/file"));
    ASSERT_EQ(entry.failure(), Failure::none);
    const std::string realRoot = std::filesystem::canonical(m_disk.root().bytes());
    EXPECT_EQ(entry.realPath().bytes(), realRoot + "/real/root/folder/file");
}

TEST_F(PinnedEntryTests, TheRootItselfIsAnEntryOfTheFolderAroundIt)
{
    m_disk.folder("root");
    m_disk.symbolicLink("root", "link");
    EntryStatus status;
    PinnedEntry folder = PinnedEntry::reach(m_disk.path("root"), m_disk.path("root"));
    ASSERT_TRUE(folder.pin(status));
    EXPECT_EQ(status.kind, Kind::directory);
    PinnedEntry link = PinnedEntry::reach(m_disk.path("link"), m_disk.path("link"));
    ASSERT_TRUE(link.pin(status));
    EXPECT_EQ(status.kind, Kind::symbolicLink);
}

TEST_F(PinnedEntryTests, TakesNoPathThatLeadsUpOrLiesElsewhere)
{
    m_disk.file("root/file");
    m_disk.file("other");
    const FilePath root = m_disk.path("root");
    for (const char* const relative : {"../other", ".", "./file", "a/../file", "a//file"}) {
        EXPECT_EQ(PinnedEntry::reach(root, FilePath(root.bytes() + "/" + relative)).failure(),
                  Failure::unreachable)
            << relative;
    }
    EXPECT_EQ(PinnedEntry::reach(root, m_disk.path("other")).failure(), Failure::unreachable);
    EXPECT_EQ(PinnedEntry::reach(root, FilePath()).failure(), Failure::unreachable);
    EXPECT_EQ(PinnedEntry::reach(FilePath(), FilePath("a")).failure(), Failure::unreachable);
    EXPECT_EQ(PinnedEntry::reach(FilePath("/"), FilePath("/")).failure(), Failure::unreachable);
}

TEST_F(PinnedEntryTests, TellsWhatIsNotThere)
{
    m_disk.file("file");
    EXPECT_EQ(reach("gone/file").failure(), Failure::missing);
    EXPECT_EQ(reach("file/inside").failure(), Failure::missing);
    PinnedEntry entry = reach("gone");
    EntryStatus status;
    EXPECT_FALSE(entry.pin(status));
    EXPECT_EQ(entry.failure(), Failure::missing);
}

TEST_F(PinnedEntryTests, ReachesBeyondPathMax)
{
    const std::string name(200, 'd');
    m_disk.chain("deep", 40, name);
    std::string relative = "deep";
    for (int i = 0; i < 40; ++i) {
        relative += '/' + name;
    }
    PinnedEntry entry = reach(relative);
    ASSERT_EQ(entry.failure(), Failure::none);
    EntryStatus status;
    ASSERT_TRUE(entry.pin(status));
    EXPECT_EQ(status.kind, Kind::directory);
    EXPECT_TRUE(entry.realPath().bytes().ends_with(relative));
}

TEST_F(PinnedEntryTests, KnowsWhenAnotherEntryHasTakenTheName)
{
    m_disk.file("file");
    PinnedEntry entry = reach("file");
    EntryStatus status;
    ASSERT_TRUE(entry.pin(status));
    std::filesystem::rename(m_disk.path("file").bytes(), m_disk.path("moved").bytes());
    EXPECT_FALSE(entry.isInPlace());
    m_disk.file("file");
    EXPECT_FALSE(entry.isInPlace());
    ASSERT_TRUE(entry.whereabouts().has_value());
    EXPECT_EQ(entry.whereabouts()->lastComponent(), "moved");
}

TEST_F(PinnedEntryTests, AFolderThatMayNotBeEnteredIsUnreachable)
{
    m_disk.file("closed/inner/file");
    m_disk.mode("closed", 0600);
    std::filesystem::permissions(m_disk.root().bytes(), std::filesystem::perms(0755));
    asUnprivilegedUser(
        [this] { EXPECT_EQ(reach("closed/inner/file").failure(), Failure::unreachable); });
    m_disk.mode("closed", 0700);
}

/// The way for systems without a call of their own must hold to the same rules.
TEST_F(PinnedEntryTests, StepByStepFollowsNoLinkEither)
{
    m_disk.folder("real/inner");
    m_disk.symbolicLink("real", "link");
    m_disk.file("file");
    const OwnedDescriptor root(openFolder(m_disk.root().bytes().c_str()));
    ASSERT_TRUE(root.isOpen());
    const OwnedDescriptor inner(openFolderStepByStep(root.get(), "real/inner"));
    ASSERT_TRUE(inner.isOpen());
    struct stat found = {};
    struct stat expected = {};
    ASSERT_EQ(fstat(inner.get(), &found), 0);
    ASSERT_EQ(stat(m_disk.path("real/inner").bytes().c_str(), &expected), 0);
    EXPECT_EQ(found.st_ino, expected.st_ino);
    EXPECT_TRUE(OwnedDescriptor(openFolderStepByStep(root.get(), "")).isOpen());

    errno = 0;
    EXPECT_EQ(openFolderStepByStep(root.get(), "link/inner"), -1);
    EXPECT_EQ(errno, ELOOP);
    errno = 0;
    EXPECT_EQ(openFolderStepByStep(root.get(), "link"), -1);
    EXPECT_EQ(errno, ELOOP);
    errno = 0;
    EXPECT_EQ(openFolderStepByStep(root.get(), "file"), -1);
    EXPECT_EQ(errno, ENOTDIR);
    errno = 0;
    EXPECT_EQ(openFolderStepByStep(root.get(), "gone/inner"), -1);
    EXPECT_EQ(errno, ENOENT);
}

TEST(ProtectedPlacesTests, TheInstalledSystemStaysAsAWhole)
{
    for (const char* const place :
         {"/", "/usr", "/usr/bin/env", "/usr/local/bin/mine", "/bin", "/bin/sh", "/lib",
          "/lib/modules/6.1", "/sbin/init", "/etc/passwd", "/home", "/tmp", "/var", "/dev",
          "/dev/sda", "/dev/shm"}) {
        EXPECT_TRUE(isProtectedPlace(FilePath(place))) << place;
    }
    for (const char* const place :
         {"/home/mara", "/usrlocal", "/binaries/x", "/home/mara/usr/bin", "/tmp/build", "/opt/app",
          "/dev/shm/mine", "/library", "/media/mara/USB/film.mkv"}) {
        EXPECT_FALSE(isProtectedPlace(FilePath(place))) << place;
    }
}

} // namespace
} // namespace quorvane
