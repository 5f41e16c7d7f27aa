// SPDX-License-Identifier: MIT
#include "CheckedTrash.h"

#include "DiskScanner.h"
#include "DiskTree.h"
#include "FaultyFileSystemCalls.h"
#include "FileTree.h"
#include "ScriptedTrash.h"
#include "Trash.h"
#include "UnprivilegedRun.h"

#include <gtest/gtest.h>

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

namespace quorvane {
namespace {

namespace fs = std::filesystem;

bool exists(const FilePath& path)
{
    return fs::exists(fs::symlink_status(path.bytes()));
}

std::string contentsOf(const FilePath& file)
{
    std::ifstream stream(file.bytes(), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

class CheckedTrashTests : public testing::Test
{
protected:
    void SetUp() override
    {
        const char* const data = std::getenv("XDG_DATA_HOME");
        ASSERT_TRUE(data != nullptr &&
                    std::string(data).find("quorvane-test.") != std::string::npos)
            << "run through cmake/run-isolated: the user's own Trash is not for tests";
    }

    /// What a scan of the test's folder would ask for.
    TrashRequest request(std::string_view relative) const
    {
        EntryStatus status;
        EXPECT_TRUE(FileSystemCalls::system().status(FileSystemCalls::noDirectory(),
                                                     m_disk.path(relative).bytes().c_str(), status))
            << relative;
        return TrashRequest::of(m_disk.path(relative), m_disk.root(), status);
    }
    static FilePath home() { return FilePath(std::getenv("HOME")); }
    /// Through the door and into the real Trash.
    static TrashOutcome move(const TrashRequest& request)
    {
        return CheckedTrash(Trash::system(), home()).moveToTrash(request);
    }

    DiskTree m_disk;
};

TEST_F(CheckedTrashTests, MovesWhatLooksAsItDidWhenItWasScanned)
{
    m_disk.fileWithContents("a/file", "contents");
    m_disk.folder("a/folder");
    m_disk.symbolicLink("nowhere", "a/link");
    m_disk.fifo("a/pipe");
    for (const char* const name : {"a/file", "a/folder", "a/link", "a/pipe", "a"}) {
        EXPECT_EQ(move(request(name)), TrashOutcome::moved) << name;
        EXPECT_FALSE(exists(m_disk.path(name))) << name;
    }
}

TEST_F(CheckedTrashTests, AFileOfAnotherSizeOrDateStays)
{
    m_disk.fileWithContents("larger", "12345");
    m_disk.fileWithContents("later", "12345");
    m_disk.fileWithContents("earlier", "12345");
    for (const char* const name : {"larger", "later", "earlier"}) {
        m_disk.modified(name, 1'000'000);
    }
    const TrashRequest larger = request("larger");
    const TrashRequest later = request("later");
    const TrashRequest earlier = request("earlier");
    m_disk.fileWithContents("larger", "123456");
    m_disk.modified("larger", 1'000'000);
    m_disk.modified("later", 1'000'001);
    m_disk.modified("earlier", 999'999);
    for (const TrashRequest& each : {larger, later, earlier}) {
        EXPECT_EQ(move(each), TrashOutcome::changed) << each.path.bytes();
        EXPECT_TRUE(exists(each.path)) << each.path.bytes();
    }
}

TEST_F(CheckedTrashTests, AFolderMayChangeItsDate)
{
    m_disk.folder("folder");
    const TrashRequest folder = request("folder");
    m_disk.file("folder/new");
    m_disk.modified("folder", 5);
    EXPECT_EQ(move(folder), TrashOutcome::moved);
}

TEST_F(CheckedTrashTests, SomethingOfAnotherKindStays)
{
    m_disk.file("file");
    m_disk.folder("folder");
    m_disk.symbolicLink("elsewhere", "link");
    const TrashRequest file = request("file");
    const TrashRequest folder = request("folder");
    const TrashRequest link = request("link");
    m_disk.remove("file");
    m_disk.symbolicLink("folder", "file");
    m_disk.remove("folder");
    m_disk.symbolicLink("elsewhere", "folder");
    m_disk.remove("link");
    m_disk.folder("link");
    for (const TrashRequest& each : {file, folder, link}) {
        EXPECT_EQ(move(each), TrashOutcome::otherKind) << each.path.bytes();
        EXPECT_TRUE(exists(each.path)) << each.path.bytes();
    }
}

TEST_F(CheckedTrashTests, AFolderThatHasBecomeALinkSendsNothingOfAnotherPlace)
{
    m_disk.fileWithContents("project/cache/file", "old");
    m_disk.modified("project/cache/file", 77);
    const TrashRequest scanned = request("project/cache/file");
    m_disk.remove("project");
    m_disk.fileWithContents("precious/cache/file", "new");
    m_disk.modified("precious/cache/file", 77);
    m_disk.symbolicLink("precious", "project");
    EXPECT_EQ(move(scanned), TrashOutcome::behindLink);
    EXPECT_EQ(contentsOf(m_disk.path("precious/cache/file")), "new");
}

/// A scan of the folder at that place, which the test shares.
std::shared_ptr<FileTree> scanOf(const FilePath& folder)
{
    return std::get<std::shared_ptr<FileTree>>(DiskScanner().scan(folder));
}

TEST_F(CheckedTrashTests, AScannedFolderThatIsAnotherOneByNowSendsNothingOfThat)
{
    for (const bool becomesLink : {true, false}) {
        const std::string place = becomesLink ? "link/" : "moved/";
        m_disk.folder(place + "scanned/sub");
        m_disk.fileWithContents(place + "other/sub/precious", "theirs");
        const auto tree = scanOf(m_disk.path(place + "scanned"));
        const TrashRequest sub = TrashRequest::of(tree->root().children().front());
        fs::rename(m_disk.path(place + "scanned").bytes(), m_disk.path(place + "old").bytes());
        if (becomesLink) {
            m_disk.symbolicLink("other", place + "scanned");
        } else {
            fs::rename(m_disk.path(place + "other").bytes(),
                       m_disk.path(place + "scanned").bytes());
        }
        EXPECT_EQ(move(sub), TrashOutcome::behindLink) << place;
        EXPECT_EQ(differenceOnDisk(sub), TrashOutcome::behindLink) << place;
        EXPECT_EQ(contentsOf(m_disk.path(place + "scanned/sub/precious")), "theirs");
    }
}

TEST_F(CheckedTrashTests, ATreeThatIsReadBackKnowsNoLinkAsItsRoot)
{
    m_disk.folder("scanned/sub");
    m_disk.folder("other/sub");
    TrashRequest sub = TrashRequest::of(scanOf(m_disk.path("scanned"))->root().children().front());
    sub.rootIdentity.reset();
    m_disk.remove("scanned");
    m_disk.symbolicLink("other", "scanned");
    EXPECT_EQ(move(sub), TrashOutcome::behindLink);
    EXPECT_TRUE(exists(m_disk.path("other/sub")));
}

TEST_F(CheckedTrashTests, AFileWhoseSizeTheScanCappedMayGo)
{
    m_disk.file("hole", 10);
    m_disk.file("other", 10);
    FaultyFileSystemCalls calls;
    calls.changeStatus([](std::string_view name, EntryStatus& status) {
        if (name == "hole" || name == "other") {
            status.size = std::int64_t{6} << 60;
        }
    });
    const auto tree =
        std::get<std::shared_ptr<FileTree>>(DiskScanner(1, calls).scan(m_disk.root()));
    int capped = 0;
    for (const FileNode& file : tree->root().children()) {
        capped += file.isSizeCapped() ? 1 : 0;
        EXPECT_EQ(TrashRequest::of(file).size.has_value(), !file.isSizeCapped());
        EXPECT_EQ(move(TrashRequest::of(file)),
                  file.isSizeCapped() ? TrashOutcome::moved : TrashOutcome::changed);
    }
    EXPECT_EQ(capped, 1);
}

TEST_F(CheckedTrashTests, ALookSeesWhatTheTrashItselfWouldRefuse)
{
    ASSERT_EQ(chmod(m_disk.root().bytes().c_str(), 0755), 0);
    m_disk.file("closed/file");
    const TrashRequest file = request("closed/file");
    const CheckedTrash door(Trash::system(), home());
    EXPECT_EQ(door.obstacleTo(file), std::nullopt);
    ASSERT_EQ(chmod(m_disk.path("closed").bytes().c_str(), 0555), 0);
    asUnprivilegedUser([&] { EXPECT_EQ(door.obstacleTo(file), TrashOutcome::notPermitted); });
    ASSERT_EQ(chmod(m_disk.path("closed").bytes().c_str(), 0755), 0);
}

TEST_F(CheckedTrashTests, ARootThatLiesBelowALinkIsNoHindrance)
{
    m_disk.file("real/root/file");
    m_disk.symbolicLink("real", "link");
    TrashRequest file = request("real/root/file");
    file.root = m_disk.path("link/root");
    file.path = m_disk.path("link/root/file");
    EXPECT_EQ(move(file), TrashOutcome::moved);
    EXPECT_FALSE(exists(m_disk.path("real/root/file")));
}

TEST_F(CheckedTrashTests, WhatHasGoneIsMissing)
{
    m_disk.file("folder/file");
    const TrashRequest file = request("folder/file");
    m_disk.remove("folder");
    EXPECT_EQ(move(file), TrashOutcome::missing);
    m_disk.folder("folder");
    EXPECT_EQ(move(file), TrashOutcome::missing);
}

TEST_F(CheckedTrashTests, TheSystemIsNeverMovedWhateverIsAskedFor)
{
    ScriptedTrash trash;
    const CheckedTrash door(trash, home());
    for (const char* const path : {"/usr", "/usr/bin/env", "/bin", "/bin/sh", "/lib", "/sbin",
                                   "/etc/passwd", "/boot", "/", "/home", "/tmp"}) {
        TrashRequest request;
        request.path = FilePath(path);
        request.root = FilePath("/");
        EXPECT_EQ(door.moveToTrash(request), TrashOutcome::protectedPlace) << path;
    }
    EXPECT_TRUE(trash.asked().empty());
}

TEST_F(CheckedTrashTests, TheSystemIsNotMovedByAnotherNameEither)
{
    m_disk.symbolicLink("/usr", "innocent");
    ScriptedTrash trash;
    TrashRequest request;
    request.root = m_disk.path("innocent");
    request.path = m_disk.path("innocent/bin");
    EXPECT_EQ(CheckedTrash(trash, home()).moveToTrash(request), TrashOutcome::protectedPlace);
    EXPECT_TRUE(trash.asked().empty());
}

TEST_F(CheckedTrashTests, NeitherTheHomeNorAFolderAroundItIsMoved)
{
    m_disk.folder("people/mara/Downloads");
    m_disk.symbolicLink("people", "users");
    ScriptedTrash trash;
    for (const char* const home : {"people/mara", "users/mara"}) {
        const CheckedTrash door(trash, m_disk.path(home));
        for (const char* const kept : {"people/mara", "people"}) {
            EXPECT_EQ(door.moveToTrash(request(kept)), TrashOutcome::protectedPlace) << kept;
        }
    }
    EXPECT_TRUE(trash.asked().empty());
    EXPECT_EQ(CheckedTrash(trash, m_disk.path("people/mara"))
                  .moveToTrash(request("people/mara/Downloads")),
              TrashOutcome::moved);
}

TEST_F(CheckedTrashTests, NothingIsMovedWhileTheMountsAreNotKnown)
{
    m_disk.file("file");
    ScriptedTrash trash;
    const CheckedTrash door(trash, home(), [] { return std::optional<MountTable>(); });
    EXPECT_EQ(door.moveToTrash(request("file")), TrashOutcome::mountsUnknown);
    EXPECT_TRUE(trash.asked().empty());
}

TEST_F(CheckedTrashTests, AFolderAroundAMountThatNobodyHasTriggeredStays)
{
    m_disk.folder("site/homes");
    m_disk.folder("vault/plain text");
    const std::string root = fs::canonical(m_disk.root().bytes());
    const std::string mounts =
        "40 22 0:35 / " + root + "/site/homes rw - autofs /etc/auto.home rw,fd=6,indirect\n" +
        "41 22 0:36 / " + root + "/vault/plain\\040text rw - fuse.encfs encfs rw,user_id=1000\n";
    ScriptedTrash trash;
    const CheckedTrash door(trash, home(), [&mounts] { return MountTable::fromMountInfo(mounts); });
    EXPECT_EQ(door.moveToTrash(request("site")), TrashOutcome::holdsMount);
    EXPECT_EQ(door.moveToTrash(request("vault")), TrashOutcome::holdsMount);
    EXPECT_EQ(door.moveToTrash(request("vault/plain text")), TrashOutcome::mountPoint);
    EXPECT_TRUE(trash.asked().empty());
}

TEST_F(CheckedTrashTests, TheTableIsReadAnewForEachMove)
{
    m_disk.folder("one");
    m_disk.folder("two");
    const FilePath real(fs::canonical(m_disk.root().bytes()).string());
    std::vector<FilePath> mounts;
    ScriptedTrash trash;
    const CheckedTrash door(trash, home(), [&mounts] { return MountTable(mounts); });
    EXPECT_EQ(door.moveToTrash(request("one")), TrashOutcome::moved);
    mounts.push_back(real.appending("two/late"));
    EXPECT_EQ(door.moveToTrash(request("two")), TrashOutcome::holdsMount);
}

TEST_F(CheckedTrashTests, TellsTheObstacleWithoutMovingAnything)
{
    m_disk.file("file", 3);
    TrashRequest file = request("file");
    ScriptedTrash trash;
    const CheckedTrash door(trash, home());
    EXPECT_EQ(door.obstacleTo(file), std::nullopt);
    file.size = 4;
    EXPECT_EQ(door.obstacleTo(file), TrashOutcome::changed);
    EXPECT_TRUE(trash.asked().empty());
}

TEST_F(CheckedTrashTests, PassesOnWhatTheTrashAnswers)
{
    m_disk.file("file");
    const std::pair<Trash::Outcome, TrashOutcome> answers[] = {
        {Trash::Outcome::missing, TrashOutcome::missing},
        {Trash::Outcome::notPermitted, TrashOutcome::notPermitted},
        {Trash::Outcome::readOnly, TrashOutcome::readOnly},
        {Trash::Outcome::notOfferedHere, TrashOutcome::notOfferedHere},
        {Trash::Outcome::failed, TrashOutcome::failed}};
    for (const auto& [given, expected] : answers) {
        ScriptedTrash trash;
        trash.answer = [answer = given](const FilePath&) { return answer; };
        EXPECT_EQ(CheckedTrash(trash, home()).moveToTrash(request("file")), expected);
    }
}

TEST_F(CheckedTrashTests, ANodeOfAScanCarriesWhatItLookedLike)
{
    m_disk.file("folder/file", 12);
    m_disk.modified("folder/file", 4242);
    const DiskScanner::Result scanned = DiskScanner().scan(m_disk.root());
    ASSERT_TRUE(std::holds_alternative<std::shared_ptr<FileTree>>(scanned));
    FileTree& tree = *std::get<std::shared_ptr<FileTree>>(scanned);
    const FileNode& folder = tree.root().children().front();
    const TrashRequest folderRequest = TrashRequest::of(folder);
    EXPECT_EQ(folderRequest.path, m_disk.path("folder"));
    EXPECT_EQ(folderRequest.root, m_disk.root());
    EXPECT_EQ(folderRequest.kind, EntryStatus::Kind::directory);
    EXPECT_FALSE(folderRequest.size || folderRequest.modifiedSeconds);
    const TrashRequest fileRequest = TrashRequest::of(folder.children().front());
    TrashRequest expected = request("folder/file");
    EntryStatus root;
    ASSERT_TRUE(FileSystemCalls::system().status(FileSystemCalls::noDirectory(),
                                                 m_disk.root().bytes().c_str(), root));
    expected.mayRootBeLink = false;
    expected.rootIdentity = FolderIdentity{root.device, root.inode};
    EXPECT_EQ(fileRequest, expected);
    EXPECT_EQ(fileRequest.size, 12);
    EXPECT_EQ(fileRequest.modifiedSeconds, 4242);
}

TEST_F(CheckedTrashTests, AStandAloneNodeIsLookedForInItsOwnFolder)
{
    const NodePointer node = FileTree::stagedItem("Cache", m_disk.path("apps/Cache"), 9);
    const TrashRequest request = TrashRequest::of(*node);
    EXPECT_EQ(request.path, m_disk.path("apps/Cache"));
    EXPECT_EQ(request.root, m_disk.path("apps"));
    EXPECT_FALSE(request.kind || request.size || request.modifiedSeconds);
}

/// Mounts of a child process's own. Needs root.
class MountedTrashTests : public CheckedTrashTests
{
protected:
    void amongOwnMounts(const std::function<void()>& body)
    {
        if (!withPrivateMounts(body)) {
            GTEST_SKIP() << "no mounts of its own for this user: run as root";
        }
    }

    void expectToStay(std::string_view folder, const FilePath& witness, TrashOutcome outcome)
    {
        EXPECT_EQ(move(request(folder)), outcome) << folder;
        EXPECT_EQ(contentsOf(witness), "on the volume") << folder;
    }
};

TEST_F(MountedTrashTests, AFolderWithAVolumeInMemoryBelowItStays)
{
    m_disk.folder("folder/deep/volume");
    amongOwnMounts([this] {
        const FilePath top = m_disk.path("folder/deep/volume");
        ASSERT_EQ(mount("none", top.bytes().c_str(), "tmpfs", 0, nullptr), 0);
        std::ofstream(top.appending("file").bytes()) << "on the volume";
        expectToStay("folder", top.appending("file"), TrashOutcome::holdsMount);
        expectToStay("folder/deep", top.appending("file"), TrashOutcome::holdsMount);
        expectToStay("folder/deep/volume", top.appending("file"), TrashOutcome::mountPoint);
        // On the volume itself nothing is mounted: its own lack of a Trash keeps this one.
        expectToStay("folder/deep/volume/file", top.appending("file"),
                     TrashOutcome::notOfferedHere);
        ASSERT_EQ(umount(top.bytes().c_str()), 0);
        EXPECT_EQ(move(request("folder")), TrashOutcome::moved);
    });
}

TEST_F(MountedTrashTests, AFolderWithABoundFolderBelowItStays)
{
    m_disk.fileWithContents("precious/file", "on the volume");
    m_disk.folder("chroot/sp ace\tand\\more/data");
    amongOwnMounts([this] {
        const std::string place = m_disk.path("chroot/sp ace\tand\\more/data").bytes();
        ASSERT_EQ(mount(m_disk.path("precious").bytes().c_str(), place.c_str(), nullptr, MS_BIND,
                        nullptr),
                  0);
        const FilePath witness = m_disk.path("precious/file");
        expectToStay("chroot", witness, TrashOutcome::holdsMount);
        expectToStay("chroot/sp ace\tand\\more", witness, TrashOutcome::holdsMount);
        expectToStay("chroot/sp ace\tand\\more/data", witness, TrashOutcome::mountPoint);
    });
    EXPECT_EQ(contentsOf(m_disk.path("precious/file")), "on the volume");
}

TEST_F(MountedTrashTests, AFileOnWhichAnotherIsBoundStays)
{
    m_disk.fileWithContents("source", "on the volume");
    m_disk.file("folder/target");
    amongOwnMounts([this] {
        ASSERT_EQ(mount(m_disk.path("source").bytes().c_str(),
                        m_disk.path("folder/target").bytes().c_str(), nullptr, MS_BIND, nullptr),
                  0);
        expectToStay("folder/target", m_disk.path("source"), TrashOutcome::mountPoint);
        expectToStay("folder", m_disk.path("source"), TrashOutcome::holdsMount);
    });
}

TEST_F(MountedTrashTests, AMountIsSeenThroughALinkAboveTheRoot)
{
    m_disk.folder("real/root/folder/volume");
    m_disk.symbolicLink("real", "link");
    amongOwnMounts([this] {
        const FilePath top = m_disk.path("real/root/folder/volume");
        ASSERT_EQ(mount("none", top.bytes().c_str(), "tmpfs", 0, nullptr), 0);
        TrashRequest folder = request("link/root/folder");
        folder.root = m_disk.path("link/root");
        EXPECT_EQ(move(folder), TrashOutcome::holdsMount);
        EXPECT_TRUE(exists(top));
    });
}

TEST_F(MountedTrashTests, AFolderWithAnImageMountedBelowItStays)
{
    m_disk.hole("image", 8 << 20);
    m_disk.folder("folder/volume");
    if (geteuid() != 0 ||
        std::system(("mkfs.ext4 -q " + m_disk.path("image").bytes() + " 2>/dev/null").c_str()) !=
            0) {
        GTEST_SKIP() << "no image of a volume can be made here";
    }
    constexpr int noLoop = 78;
    const int status = endOfChildProcess([this] {
        const FilePath top = m_disk.path("folder/volume");
        if (unshare(CLONE_NEWNS) != 0 ||
            mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            std::system(("mount -o loop " + m_disk.path("image").bytes() + " " + top.bytes() +
                         " 2>/dev/null")
                            .c_str()) != 0) {
            _exit(noLoop);
        }
        std::ofstream(top.appending("file").bytes()) << "on the volume";
        expectToStay("folder", top.appending("file"), TrashOutcome::holdsMount);
        expectToStay("folder/volume", top.appending("file"), TrashOutcome::mountPoint);
        // What lies on the volume goes to the volume's own Trash.
        EXPECT_EQ(move(request("folder/volume/file")), TrashOutcome::moved);
        EXPECT_TRUE(exists(top.appending(".Trash-0/files/file")));
        EXPECT_EQ(umount2(top.bytes().c_str(), MNT_DETACH), 0);
    });
    if (WIFEXITED(status) && WEXITSTATUS(status) == noLoop) {
        GTEST_SKIP() << "no loop device for this user: run as root";
    }
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
}

} // namespace
} // namespace quorvane
