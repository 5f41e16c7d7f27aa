// SPDX-License-Identifier: MIT
#include "AliasFilter.h"

#include "DiskScanner.h"
#include "DiskTree.h"
#include "FinderFixture.h"
#include "UnprivilegedRun.h"

#include <sys/mount.h>

#include <map>

namespace quorvane {
namespace {

using DuplicateFinder::AliasFilter;
using DuplicateFinder::Candidate;
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

    std::map<std::string, int> m_looks;
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

TEST_F(AliasTest, EqualHintsDropNothingByThemselves)
{
    tree("a 5000\nb 5000\nc 5000\nd 5000\n");
    std::vector<Candidate> files;
    for (FileNode& node : m_tree->root().children()) {
        files.emplace_back(&node);
    }
    for (const char* name : {"a", "b", "c"}) {
        contents(name, textOf('q', 5000));
    }
    // The last one has vanished, so that it is no copy any more.
    const std::vector<std::uint32_t> hints(files.size(), 5);
    AliasFilter(FileSystemCalls::system(), m_contents).dropAliases(files, hints);
    EXPECT_EQ(std::count_if(files.begin(), files.end(),
                            [](const Candidate& file) { return file.isDropped(); }),
              1);
    EXPECT_TRUE(files.back().isDropped());
}

TEST_F(AliasTest, NameThatVanishesWhileItIsLookedAtIsDropped)
{
    // The first time all are there; then one is gone, and the others stay for what they are.
    for (const bool areRepeated : {true, false}) {
        SCOPED_TRACE(areRepeated);
        tree("a/\n  f 5000\nb/\n  f 5000\nc/\n  f 5000\n");
        std::vector<Candidate> files;
        for (const char* name : {"a", "b", "c"}) {
            files.emplace_back(&test::nodeAt(m_tree->root(), std::string(name) + "/f"));
            fileAt(std::string(name) + "/f", 7, 1);
            folderAt(name, areRepeated ? 20 : std::uint64_t{20} + static_cast<unsigned>(*name));
        }
        m_contents.beforeOpen = [this](const std::string& path, int) {
            if (path == "/scan/a/f" && ++m_looks[path] % 2 == 0) {
                m_contents.remove(path);
            }
        };
        const std::vector<std::uint32_t> hints(files.size(), 5);
        AliasFilter(FileSystemCalls::system(), m_contents).dropAliases(files, hints);
        EXPECT_TRUE(files[0].isDropped());
        EXPECT_FALSE(files[1].isDropped());
        EXPECT_TRUE(files[2].isDropped());
        m_contents.beforeOpen = nullptr;
    }
}

TEST_F(AliasTest, NamesOfDifferentFilesWithOneHintAreToldApart)
{
    tree("a/\n  f 5000\n  g 5000\nb/\n  f 5000\n  g 5000\n");
    std::vector<Candidate> files;
    for (const char* path : {"a/f", "a/g", "b/f", "b/g"}) {
        files.emplace_back(&test::nodeAt(m_tree->root(), path));
        // Of two files, each of which is seen twice.
        fileAt(path, path[2] == 'f' ? 7 : 8, 1);
    }
    folderAt("a", 20);
    folderAt("b", 20);
    const std::vector<std::uint32_t> hints(files.size(), 5);
    AliasFilter(FileSystemCalls::system(), m_contents).dropAliases(files, hints);
    EXPECT_FALSE(files[0].isDropped());
    EXPECT_FALSE(files[1].isDropped());
    EXPECT_TRUE(files[2].isDropped());
    EXPECT_TRUE(files[3].isDropped());
}

TEST_F(AliasTest, ABucketOfManyIsSearchedAsAWhole)
{
    constexpr std::size_t count = 150'000;
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += "f" + std::to_string(i) + " 5000\n";
    }
    tree(text);
    std::vector<Candidate> files;
    std::vector<std::uint32_t> hints;
    for (FileNode& node : m_tree->root().children()) {
        hints.push_back(static_cast<std::uint32_t>(files.size()));
        files.emplace_back(&node);
    }
    // Two that lie far apart are one file; no other is ever opened.
    for (const std::size_t place : {std::size_t{3}, count - 1}) {
        hints[place] = 77'777'777;
        const std::string path = files[place].file()->path().bytes().substr(6);
        fileAt(path, 7, 1);
    }
    AliasFilter(FileSystemCalls::system(), m_contents).dropAliases(files, hints);
    EXPECT_FALSE(files[3].isDropped());
    EXPECT_TRUE(files.back().isDropped());
    EXPECT_EQ(std::count_if(files.begin(), files.end(),
                            [](const Candidate& file) { return file.isDropped(); }),
              1);
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
