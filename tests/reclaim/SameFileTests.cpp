// SPDX-License-Identifier: MIT
#include "DiskScanner.h"
#include "DiskTree.h"
#include "FinderFixture.h"
#include "UnprivilegedRun.h"

#include <sys/mount.h>

#include <algorithm>

namespace quorvane {
namespace {

using test::FinderTest;
using test::GroupPaths;
using test::textOf;

class AliasTest : public FinderTest
{
protected:
    /// A file of so many bytes with its place on the disk.
    void fileAt(const std::string& path, std::uint64_t inode, std::uint64_t links,
                std::size_t bytes = 5000)
    {
        contents(path, textOf('q', bytes));
        file(path).inode = inode;
        file(path).links = links;
    }
    void folderAt(const std::string& path, std::uint64_t inode)
    {
        file(path + "/.").isRegularFile = false;
        file(path + "/.").inode = inode;
    }
};

TEST_F(AliasTest, OneNameSeenThroughTwoMountsIsNoCopyOfItself)
{
    for (const std::size_t bytes : {std::size_t{5000}, std::size_t{700000}}) {
        const std::string line = "  f " + std::to_string(bytes) + "\n";
        tree("a/\n" + line + "b/\n" + line);
        fileAt("a/f", 7, 1, bytes);
        fileAt("b/f", 7, 1, bytes);
        m_progress.clear();
        EXPECT_EQ(found(), GroupPaths());
        EXPECT_EQ(m_progress.back(), 1.0);
    }
}

TEST_F(AliasTest, ARealCopyMakesAGroupWithOneOfTheTwo)
{
    tree("a/\n  f 5000\nb/\n  f 5000\nc/\n  f 5000\n");
    fileAt("a/f", 7, 1);
    fileAt("b/f", 7, 1);
    fileAt("c/f", 8, 1);
    const GroupPaths groups = found();
    ASSERT_EQ(groups.size(), 1U);
    EXPECT_EQ(groups[0].size(), 2U);
    EXPECT_EQ(groups[0].count("c/f"), 1U);
}

TEST_F(AliasTest, HardLinksStay)
{
    tree("a/\n  one 5000\n  two 5000\nb/\n  one 5000\n");
    for (const char* path : {"a/one", "a/two", "b/one"}) {
        fileAt(path, 7, 3);
    }
    folderAt("a", 20);
    folderAt("b", 21);
    EXPECT_EQ(found(), (GroupPaths{{"a/one", "a/two", "b/one"}}));
}

TEST_F(AliasTest, HardLinksSeenThroughTwoMountsStayOnceEach)
{
    tree("a/\n  one 5000\n  sub/\n    two 5000\nb/\n  one 5000\n  sub/\n    two 5000\n");
    for (const char* mount : {"a", "b"}) {
        fileAt(std::string(mount) + "/one", 7, 2);
        fileAt(std::string(mount) + "/sub/two", 7, 2);
        folderAt(mount, 20);
        folderAt(std::string(mount) + "/sub", 21);
    }
    const GroupPaths groups = found();
    ASSERT_EQ(groups.size(), 1U);
    std::set<std::string> names;
    for (const std::string& path : groups[0]) {
        names.insert(path.substr(path.rfind('/') + 1));
    }
    EXPECT_EQ(groups[0].size(), 2U);
    EXPECT_EQ(names, (std::set<std::string>{"one", "two"}));
}

TEST_F(AliasTest, AFileIsNeverTakenForMoreNamesThanItHas)
{
    // Different folders and names, as where a single file is mounted over another.
    tree("a/\n  one 5000\nb/\n  two 5000\nc/\n  three 5000\n");
    for (const char* path : {"a/one", "b/two", "c/three"}) {
        fileAt(path, 7, 2);
    }
    folderAt("a", 20);
    folderAt("b", 21);
    folderAt("c", 22);
    const GroupPaths groups = found();
    ASSERT_EQ(groups.size(), 1U);
    EXPECT_EQ(groups[0].size(), 2U);
}

TEST_F(AliasTest, OneInodeNumberOnTwoDevicesIsTwoFiles)
{
    tree("a/\n  f 5000\nb/\n  f 5000\n");
    fileAt("a/f", 7, 1);
    fileAt("b/f", 7, 1);
    file("b/f").device = 2;
    EXPECT_EQ(found(), (GroupPaths{{"a/f", "b/f"}}));
}

TEST_F(AliasTest, NameThatVanishesBeforeItIsLookedAtIsDropped)
{
    tree("a/\n  one 5000\n  two 5000\nb/\n  one 5000\n");
    for (const char* path : {"a/one", "a/two", "b/one"}) {
        fileAt(path, 7, 3);
    }
    folderAt("a", 20);
    folderAt("b", 21);
    m_contents.beforeOpen = [this](const std::string& path, int) {
        if (path == "/scan/a/two" && filesOf(DuplicateFinder::Pass::verifying) > 0) {
            m_contents.remove(path);
        }
    };
    EXPECT_EQ(found(), (GroupPaths{{"a/one", "b/one"}}));
}

TEST_F(AliasTest, NamesOfTwoFilesAreToldApart)
{
    tree("a/\n  f 5000\n  g 5000\nb/\n  f 5000\n  g 5000\n");
    for (const char* path : {"a/f", "a/g", "b/f", "b/g"}) {
        // Of two files alike, each of which is seen through two mounts.
        fileAt(path, path[2] == 'f' ? 7 : 8, 1);
    }
    folderAt("a", 20);
    folderAt("b", 20);
    const GroupPaths groups = found();
    ASSERT_EQ(groups.size(), 1U);
    std::set<char> names;
    for (const std::string& path : groups[0]) {
        names.insert(path.back());
    }
    EXPECT_EQ(groups[0].size(), 2U);
    EXPECT_EQ(names, (std::set<char>{'f', 'g'}));
}

TEST_F(AliasTest, NamesOfOneFileAreMarkedAndItsCopiesAreNot)
{
    for (const std::size_t bytes : {std::size_t{5000}, std::size_t{700000}}) {
        const std::string size = std::to_string(bytes);
        tree("a " + size + "\nb " + size + "\nc " + size + "\nd " + size + "\n");
        fileAt("a", 7, 2, bytes);
        fileAt("b", 7, 2, bytes);
        fileAt("c", 8, 1, bytes);
        // Its other name is nowhere in the tree.
        fileAt("d", 9, 2, bytes);
        const DuplicateFinder::Groups groups = find();
        ASSERT_EQ(groups.size(), 1U);
        std::string marked;
        for (const FileNode* file : groups[0].files()) {
            marked += groups[0].isSameFile(*file) ? file->name() : "-";
            EXPECT_FALSE(groups[0].isBrokenOff(*file));
        }
        EXPECT_EQ(marked, "ab--");
    }
}

TEST_F(AliasTest, EachFileIsReadOnceHoweverManyNamesItHas)
{
    for (const std::size_t bytes : {std::size_t{2000}, std::size_t{5000}, std::size_t{700000}}) {
        SCOPED_TRACE(bytes);
        std::string text;
        for (int i = 0; i < 21; ++i) {
            text += "n" + std::to_string(i) + " " + std::to_string(bytes) + "\n";
        }
        tree(text + "other " + std::to_string(bytes) + "\n");
        for (int i = 0; i < 21; ++i) {
            fileAt("n" + std::to_string(i), 7, 21, bytes);
        }
        fileAt("other", 8, 1, bytes);
        const std::int64_t before = m_contents.bytesRead();
        EXPECT_EQ(found().at(0).size(), 22U);
        // Of two files the head, of large ones the ends, and all of it.
        const auto size = static_cast<std::int64_t>(bytes);
        const std::int64_t sampled =
            std::min<std::int64_t>(size, 4096) + (size > 524288 ? 524288 : 0);
        EXPECT_EQ(m_contents.bytesRead() - before, 2 * (sampled + size));
    }
}

TEST(AliasesOnDisk, AFolderMountedAtASecondPlaceHoldsNoCopies)
{
    DiskTree disk;
    for (const char* path : {"a/one", "a/sub/two", "a/copy"}) {
        disk.fileWithContents(path, textOf(path[2], 5000));
    }
    disk.fileWithContents("elsewhere", textOf('c', 5000));
    disk.hardLink("a/sub/two", "a/link");
    disk.folder("b");
    const bool isPermitted = withPrivateMounts([&] {
        ASSERT_EQ(mount(disk.path("a").bytes().c_str(), disk.path("b").bytes().c_str(), nullptr,
                        MS_BIND, nullptr),
                  0);
        DiskScanner scanner(2);
        const DiskScanner::Result result = scanner.scan(disk.root());
        const NodePointer root = std::get<std::shared_ptr<FileTree>>(result)->rootPointer();
        // Both places are in the tree: the folders, the files of both, and the one outside.
        ASSERT_EQ(root->directoryCount(), 5);
        GroupPaths groups = test::pathsOf(
            DuplicateFinder::find(root, DuplicateFinder::defaultMinimumBytes, [](double) {}),
            disk.root().bytes());
        ASSERT_EQ(groups.size(), 2U);
        for (std::set<std::string>& group : groups) {
            std::set<std::string> names;
            for (const std::string& path : group) {
                names.insert(path.substr(path.rfind('/') + 1));
            }
            EXPECT_EQ(group.size(), 2U);
            EXPECT_TRUE(names == (std::set<std::string>{"two", "link"}) ||
                        names == (std::set<std::string>{"copy", "elsewhere"}));
        }
        EXPECT_EQ(umount2(disk.path("b").bytes().c_str(), MNT_DETACH), 0);
    });
    if (!isPermitted) {
        GTEST_SKIP() << "no folder can be mounted here";
    }
}

} // namespace
} // namespace quorvane
