// SPDX-License-Identifier: MIT
#include "Trash.h"

#include "DiskTree.h"
#include "UnprivilegedRun.h"

#include <gtest/gtest.h>

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <string>

namespace quorvane {
namespace {

namespace fs = std::filesystem;
using Outcome = Trash::Outcome;

std::string contentsOf(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

bool exists(const FilePath& path)
{
    return fs::exists(fs::symlink_status(path.bytes()));
}

std::string withoutPercentEscapes(const std::string& text)
{
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%') {
            bytes += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            bytes += text[i];
        }
    }
    return bytes;
}

/// Reads a Trash folder as a desktop that is about to put things back does: from where each thing
/// came, as the info file tells it, to where it is now.
std::map<std::string, fs::path> thingsIn(const fs::path& trashFolder)
{
    std::map<std::string, fs::path> things;
    for (const fs::directory_entry& info : fs::directory_iterator(trashFolder / "info")) {
        std::ifstream lines(info.path());
        std::string heading;
        std::getline(lines, heading);
        EXPECT_EQ(heading, "[Trash Info]");
        std::string origin;
        bool hasDate = false;
        for (std::string line; std::getline(lines, line);) {
            if (line.rfind("Path=", 0) == 0) {
                origin = withoutPercentEscapes(line.substr(5));
            }
            hasDate = hasDate || line.rfind("DeletionDate=", 0) == 0;
        }
        EXPECT_TRUE(hasDate);
        things.emplace(origin, trashFolder / "files" / info.path().stem());
    }
    return things;
}

class TrashTests : public testing::Test
{
protected:
    void SetUp() override
    {
        const char* const data = std::getenv("XDG_DATA_HOME");
        ASSERT_TRUE(data != nullptr &&
                    std::string(data).find("quorvane-test.") != std::string::npos)
            << "run through cmake/run-isolated: the user's own Trash is not for tests";
        m_homeTrash = fs::path(data) / "Trash";
        fs::remove_all(m_homeTrash);
    }

    static Outcome move(const FilePath& path) { return Trash::system().moveToTrash(path); }

    /// Where a thing from that place lies in the home's Trash now; empty when it is not there.
    fs::path placeOf(const FilePath& origin) const
    {
        const auto things = thingsIn(m_homeTrash);
        const auto found = things.find(origin.bytes());
        return found == things.end() ? fs::path() : found->second;
    }

    fs::path m_homeTrash;
    DiskTree m_disk;
};

TEST_F(TrashTests, MakesTheTrashFolderAndMovesAFileThere)
{
    m_disk.fileWithContents("folder/report.txt", "every byte");
    ASSERT_FALSE(fs::exists(m_homeTrash));
    EXPECT_EQ(move(m_disk.path("folder/report.txt")), Outcome::moved);
    EXPECT_FALSE(exists(m_disk.path("folder/report.txt")));
    EXPECT_TRUE(exists(m_disk.path("folder")));
    EXPECT_EQ(contentsOf(placeOf(m_disk.path("folder/report.txt"))), "every byte");
    EXPECT_EQ(fs::status(m_homeTrash).permissions(), fs::perms::owner_all);
}

TEST_F(TrashTests, WhatItMovedCanBePutBack)
{
    m_disk.fileWithContents("a/b/c.txt", "inside");
    m_disk.symbolicLink("c.txt", "a/b/link");
    ASSERT_EQ(move(m_disk.path("a")), Outcome::moved);
    ASSERT_FALSE(exists(m_disk.path("a")));
    fs::rename(placeOf(m_disk.path("a")), m_disk.path("a").bytes());
    EXPECT_EQ(contentsOf(m_disk.path("a/b/c.txt").bytes()), "inside");
    EXPECT_EQ(fs::read_symlink(m_disk.path("a/b/link").bytes()), "c.txt");
}

TEST_F(TrashTests, TakesNamesByTheirBytes)
{
    const std::string names[] = {"not \xff utf-8 \xc3", "100%41 sure", "new\nline", "-rf", " "};
    for (const std::string& name : names) {
        m_disk.fileWithContents(name, name);
        EXPECT_EQ(move(m_disk.path(name)), Outcome::moved) << name;
        EXPECT_FALSE(exists(m_disk.path(name))) << name;
        EXPECT_EQ(contentsOf(placeOf(m_disk.path(name))), name);
    }
}

TEST_F(TrashTests, MovesALinkAndNeverItsTarget)
{
    m_disk.fileWithContents("kept.txt", "kept");
    m_disk.symbolicLink("kept.txt", "link");
    m_disk.symbolicLink("nowhere", "dangling");
    EXPECT_EQ(move(m_disk.path("link")), Outcome::moved);
    EXPECT_EQ(move(m_disk.path("dangling")), Outcome::moved);
    EXPECT_FALSE(exists(m_disk.path("link")));
    EXPECT_FALSE(exists(m_disk.path("dangling")));
    EXPECT_EQ(contentsOf(m_disk.path("kept.txt").bytes()), "kept");
    EXPECT_TRUE(fs::is_symlink(placeOf(m_disk.path("dangling"))));
}

TEST_F(TrashTests, KeepsThingsOfTheSameNameApart)
{
    m_disk.fileWithContents("one/same.txt", "one");
    m_disk.fileWithContents("two/same.txt", "two");
    EXPECT_EQ(move(m_disk.path("one/same.txt")), Outcome::moved);
    EXPECT_EQ(move(m_disk.path("two/same.txt")), Outcome::moved);
    EXPECT_EQ(contentsOf(placeOf(m_disk.path("one/same.txt"))), "one");
    EXPECT_EQ(contentsOf(placeOf(m_disk.path("two/same.txt"))), "two");
}

TEST_F(TrashTests, TellsWhatIsNotThereAnyMore)
{
    EXPECT_EQ(move(m_disk.path("gone")), Outcome::missing);
    EXPECT_EQ(move(m_disk.path("gone/with/its/folder")), Outcome::missing);
    EXPECT_EQ(move(FilePath()), Outcome::missing);
}

TEST_F(TrashTests, LeavesWhatTheUserMayNotMove)
{
    m_disk.fileWithContents("closed/file.txt", "stays");
    m_disk.mode("closed", 0555);
    fs::permissions(m_disk.root().bytes(), fs::perms(0755));
    for (const char* const folder : {"", "files", "info"}) {
        fs::create_directory(m_homeTrash / folder);
        fs::permissions(m_homeTrash / folder, fs::perms::all);
    }
    asUnprivilegedUser(
        [this] { EXPECT_EQ(move(m_disk.path("closed/file.txt")), Outcome::notPermitted); });
    m_disk.mode("closed", 0755);
    EXPECT_EQ(contentsOf(m_disk.path("closed/file.txt").bytes()), "stays");
    EXPECT_TRUE(thingsIn(m_homeTrash).empty());
}

TEST_F(TrashTests, LeavesTheFileWhereNoTrashFolderCanBeMade)
{
    std::ofstream(m_homeTrash) << "a file in the way";
    m_disk.fileWithContents("file.txt", "stays");
    EXPECT_NE(move(m_disk.path("file.txt")), Outcome::moved);
    EXPECT_EQ(contentsOf(m_disk.path("file.txt").bytes()), "stays");
    fs::remove(m_homeTrash);
}

TEST_F(TrashTests, LeavesWhatNoCallCanReach)
{
    m_disk.chain("deep", 100, std::string(50, 'd'));
    FilePath deepest = m_disk.path("deep");
    for (int i = 0; i < 100; ++i) {
        deepest = deepest.appending(std::string(50, 'd'));
    }
    EXPECT_EQ(move(deepest), Outcome::failed);
    EXPECT_EQ(move(m_disk.path("deep")), Outcome::moved);
    EXPECT_FALSE(exists(m_disk.path("deep")));
}

TEST_F(TrashTests, TellsAVolumeThatHasNoTrash)
{
    struct stat home
    {};
    struct stat memory
    {};
    ASSERT_EQ(stat(m_disk.root().bytes().c_str(), &home), 0);
    if (stat("/dev/shm", &memory) != 0 || memory.st_dev == home.st_dev) {
        GTEST_SKIP() << "no volume in memory here";
    }
    std::string place = "/dev/shm/quorvane-test.XXXXXX";
    if (mkdtemp(place.data()) == nullptr) {
        GTEST_SKIP() << "the volume in memory takes no folder";
    }
    const fs::path file = fs::path(place) / "file.txt";
    std::ofstream(file) << "stays";
    EXPECT_EQ(Trash::system().obstacleTo(FilePath(file.string())), Outcome::notOfferedHere);
    EXPECT_EQ(move(FilePath(file.string())), Outcome::notOfferedHere);
    EXPECT_EQ(contentsOf(file), "stays");
    fs::remove_all(place);
}

TEST_F(TrashTests, MovesTenThousandThings)
{
    constexpr int count = 10'000;
    for (int i = 0; i < count; ++i) {
        m_disk.file("many/" + std::to_string(i));
    }
    int moved = 0;
    for (int i = 0; i < count; ++i) {
        moved += move(m_disk.path("many/" + std::to_string(i))) == Outcome::moved ? 1 : 0;
    }
    EXPECT_EQ(moved, count);
    EXPECT_TRUE(fs::is_empty(m_disk.path("many").bytes()));
    EXPECT_EQ(thingsIn(m_homeTrash).size(), static_cast<std::size_t>(count));
}

/// A second volume, made in a file and mounted for a child process alone. Needs root.
class VolumeTests : public TrashTests
{
protected:
    /// Runs the body with the volume mounted at the path that it gets.
    void onAnotherVolume(const std::function<void(const FilePath&)>& body)
    {
        m_disk.file("volume/image", 8 << 20);
        m_disk.folder("volume/top");
        const std::string image = m_disk.path("volume/image").bytes();
        const FilePath top = m_disk.path("volume/top");
        if (geteuid() != 0 ||
            std::system(("mkfs.ext4 -q " + image + " 2>/dev/null").c_str()) != 0) {
            GTEST_SKIP() << "no volume can be made here";
        }
        constexpr int notMounted = 77;
        const int status = endOfChildProcess([&] {
            if (unshare(CLONE_NEWNS) != 0 ||
                mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
                std::system(
                    ("mount -o loop " + image + " " + top.bytes() + " 2>/dev/null").c_str()) != 0) {
                _exit(notMounted);
            }
            body(top);
            EXPECT_EQ(umount2(top.bytes().c_str(), MNT_DETACH), 0);
        });
        if (WIFEXITED(status) && WEXITSTATUS(status) == notMounted) {
            GTEST_SKIP() << "no volume can be mounted here";
        }
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
    }
};

TEST_F(VolumeTests, AnotherVolumeHasATrashOfItsOwn)
{
    onAnotherVolume([this](const FilePath& top) {
        std::ofstream(top.appending("big.iso").bytes()) << "far from home";
        EXPECT_EQ(Trash::system().obstacleTo(top.appending("big.iso")), std::nullopt);
        EXPECT_FALSE(exists(top.appending(".Trash-0"))) << "a look makes nothing";
        EXPECT_EQ(move(top.appending("big.iso")), Outcome::moved);
        EXPECT_FALSE(exists(top.appending("big.iso")));
        const auto things = thingsIn(top.appending(".Trash-0").bytes());
        ASSERT_EQ(things.count("big.iso"), 1u);
        EXPECT_EQ(contentsOf(things.at("big.iso")), "far from home");
        EXPECT_FALSE(fs::exists(m_homeTrash / "info"));
    });
}

TEST_F(VolumeTests, AReadOnlyVolumeKeepsItsFiles)
{
    onAnotherVolume([](const FilePath& top) {
        std::ofstream(top.appending("film.mkv").bytes()) << "pressed";
        ASSERT_EQ(mount(nullptr, top.bytes().c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
        EXPECT_EQ(Trash::system().obstacleTo(top.appending("film.mkv")), Outcome::readOnly);
        const Outcome outcome = move(top.appending("film.mkv"));
        EXPECT_TRUE(outcome == Outcome::readOnly || outcome == Outcome::notOfferedHere)
            << static_cast<int>(outcome);
        EXPECT_EQ(contentsOf(top.appending("film.mkv").bytes()), "pressed");
    });
}

} // namespace
} // namespace quorvane
