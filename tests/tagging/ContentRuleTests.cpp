// SPDX-License-Identifier: MIT
#include "ContentReader.h"
#include "DiskScanner.h"
#include "DiskTree.h"
#include "FaultyFileSystemCalls.h"
#include "LockedFlag.h"
#include "TagEngine.h"
#include "UnprivilegedRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <set>

namespace quorvane {
namespace {

using ::testing::UnorderedElementsAre;

constexpr std::int64_t limit = TagEngine::maximumContentBytes;

/// The bytes of the system's files, counted and with a hook before each read.
class WatchedContents final : public FileContentCalls
{
public:
    std::function<void()> beforeRead;
    std::atomic<int> opened = 0;
    std::atomic<int> openNow = 0;
    std::atomic<std::int64_t> bytesRead = 0;
    bool failsToRead = false;
    bool failsToTell = false;

    int open(int parent, const char* name) override
    {
        const int file = m_system.open(parent, name);
        opened += file >= 0 ? 1 : 0;
        openNow += file >= 0 ? 1 : 0;
        return file;
    }
    bool status(int file, OpenFileStatus& status) override
    {
        return !failsToTell && m_system.status(file, status);
    }
    std::int64_t read(int file, std::span<std::byte> room) override
    {
        if (beforeRead) {
            beforeRead();
        }
        const std::int64_t got = failsToRead ? -1 : m_system.read(file, room);
        bytesRead += std::max<std::int64_t>(got, 0);
        return got;
    }
    bool seek(int file, std::int64_t position) override { return m_system.seek(file, position); }
    void close(int file) override
    {
        --openNow;
        m_system.close(file);
    }
    void willRead(int, std::int64_t, std::int64_t) override {}
    void willReadOnce(int) override {}

private:
    FileContentCalls& m_system = FileContentCalls::system();
};

class ContentRule : public ::testing::Test
{
protected:
    /// Names of the files whose contents hold the word.
    std::set<std::string> found(const char* word = "invoice")
    {
        DiskScanner scanner;
        return foundIn(std::get<std::shared_ptr<FileTree>>(scanner.scan(disk.root())), word);
    }

    std::set<std::string> foundIn(const std::shared_ptr<FileTree>& tree, const char* word)
    {
        TagRule rule;
        rule.conditions = {
            TagCondition::make(TagConditionType::contentContains, QString::fromUtf8(word))};
        std::set<std::string> names;
        for (const FileNode* const node : TagEngine::matches(rule, tree->root(), options)) {
            names.emplace(node->name());
        }
        EXPECT_EQ(contents.openNow, 0);
        EXPECT_EQ(fileSystem.openNow(), 0);
        return names;
    }

    DiskTree disk;
    WatchedContents contents;
    FaultyFileSystemCalls fileSystem;
    TagEngine::Options options{fileSystem, contents};
};

TEST_F(ContentRule, FindsTheWordInEitherCaseAndInAnyFolder)
{
    disk.fileWithContents("a.txt", "An Invoice of May");
    disk.fileWithContents("sub/b.bin", std::string("\0\xFFINVOICE", 9));
    disk.fileWithContents("sub/deeper/c.txt", "a letter");
    disk.file("empty", 0);
    EXPECT_THAT(found(), UnorderedElementsAre("a.txt", "b.bin"));
    EXPECT_EQ(contents.opened, 4);
}

TEST_F(ContentRule, AnEmptyWordIsFoundInNoFileAndReadsNone)
{
    disk.fileWithContents("a.txt", "text");
    EXPECT_TRUE(found(" \t").empty());
    EXPECT_EQ(contents.opened, 0);
}

TEST_F(ContentRule, NothingIsReadBeyondTheFirstMillionBytes)
{
    const std::string filler(static_cast<std::size_t>(limit), '.');
    disk.fileWithContents("inside", filler.substr(7) + "invoice" + filler);
    disk.fileWithContents("across", filler.substr(6) + "invoice");
    disk.fileWithContents("beyond", filler + "invoice");
    EXPECT_THAT(found(), UnorderedElementsAre("inside"));
    EXPECT_EQ(contents.bytesRead, 3 * limit);
}

TEST_F(ContentRule, ACharacterThatTheLimitCutsMakesTheTextLatin1)
{
    const std::string filler(static_cast<std::size_t>(limit) - 6, '.');
    disk.fileWithContents("whole", "größ" + filler); // "größ" takes six bytes
    disk.fileWithContents("cut", "größ." + filler.substr(2) + "ö");
    EXPECT_THAT(found("größ"), UnorderedElementsAre("whole"));
    EXPECT_THAT(found("grã¶"), UnorderedElementsAre("cut"));
}

TEST_F(ContentRule, ACheapConditionInFrontSavesTheReading)
{
    disk.fileWithContents("a.txt", "invoice");
    disk.fileWithContents("b.pdf", "invoice");
    DiskScanner scanner;
    const auto tree = std::get<std::shared_ptr<FileTree>>(scanner.scan(disk.root()));
    TagRule rule;
    rule.conditions = {TagCondition::make(TagConditionType::extensionIs),
                       TagCondition::make(TagConditionType::contentContains)};
    EXPECT_EQ(TagEngine::matches(rule, tree->root(), options).size(), 1U);
    EXPECT_EQ(contents.opened, 1);
}

TEST_F(ContentRule, FoldersLinksAndPipesAreNeverOpened)
{
    disk.fileWithContents("folder/real", "invoice");
    disk.symbolicLink("folder/real", "link");
    disk.fifo("pipe");
    EXPECT_THAT(found(), UnorderedElementsAre("real"));
    EXPECT_EQ(contents.opened, 1);
}

TEST_F(ContentRule, WhatTookTheNameOfAFileSinceTheScanIsNotRead)
{
    disk.fileWithContents("target", "invoice");
    disk.fileWithContents("link", "x");
    disk.fileWithContents("pipe", "x");
    disk.fileWithContents("folder", "x");
    disk.fileWithContents("gone", "invoice");
    DiskScanner scanner;
    const auto tree = std::get<std::shared_ptr<FileTree>>(scanner.scan(disk.root()));
    for (const char* const name : {"link", "pipe", "folder", "gone"}) {
        disk.remove(name);
    }
    disk.symbolicLink("target", "link");
    disk.fifo("pipe");
    disk.folder("folder");
    EXPECT_THAT(foundIn(tree, "invoice"), UnorderedElementsAre("target"));
}

TEST_F(ContentRule, AFileThatShrinksWhileItIsReadIsShorter)
{
    const std::string long_(4000, '.');
    disk.fileWithContents("a", long_ + "invoice");
    DiskScanner scanner;
    const auto tree = std::get<std::shared_ptr<FileTree>>(scanner.scan(disk.root()));
    contents.beforeRead = [this] {
        disk.remove("b");
        disk.fileWithContents("a", "cut");
    };
    EXPECT_TRUE(foundIn(tree, "invoice").empty());
    EXPECT_THAT(foundIn(tree, "cut"), UnorderedElementsAre("a"));
}

TEST_F(ContentRule, AFaultOfAnyCallIsNoMatch)
{
    disk.fileWithContents("a", "invoice");
    contents.failsToRead = true;
    EXPECT_TRUE(found().empty());
    contents.failsToRead = false;
    contents.failsToTell = true;
    EXPECT_TRUE(found().empty());
    contents.failsToTell = false;
    fileSystem.failAlways(FaultyFileSystemCalls::Call::openDirectory);
    EXPECT_TRUE(found().empty());
}

TEST_F(ContentRule, AFileWithoutPermissionIsNoMatch)
{
    disk.fileWithContents("open", "invoice");
    disk.fileWithContents("closed", "invoice");
    disk.mode("closed", 0);
    asUnprivilegedUser([this] { EXPECT_THAT(found(), UnorderedElementsAre("open")); });
}

TEST_F(ContentRule, NoFileOfAVolumeThatMustNotBeReadIsOpened)
{
    disk.fileWithContents("here", "invoice");
    disk.fileWithContents("server/a", "invoice");
    disk.fileWithContents("server/sub/b", "invoice");
    disk.fileWithContents("server/local/c", "invoice");
    disk.fileWithContents("serverlike/d", "invoice");
    options.volumes = {{FilePath("/"), MountKind::local},
                       {disk.path("server"), MountKind::remote},
                       {disk.path("server/local"), MountKind::local},
                       {disk.path("not there"), MountKind::kernelMade}};
    EXPECT_THAT(found(), UnorderedElementsAre("here", "c", "d"));
    EXPECT_EQ(contents.opened, 3);
}

TEST_F(ContentRule, ARootWithinAVolumeThatMustNotBeReadIsNotOpened)
{
    disk.fileWithContents("a", "invoice");
    disk.fileWithContents("sub/b", "invoice");
    options.volumes = {{FilePath("/"), MountKind::local},
                       {disk.root().parent(), MountKind::kernelMade}};
    EXPECT_TRUE(found().empty());
    // What is mounted over it later hides it.
    options.volumes.push_back({disk.root().parent(), MountKind::local});
    EXPECT_THAT(found(), UnorderedElementsAre("a", "b"));
}

TEST_F(ContentRule, AStopEndsTheReadingAtTheNextFile)
{
    for (int i = 0; i < 50; ++i) {
        disk.fileWithContents("f" + std::to_string(i), "invoice");
    }
    LockedFlag stop;
    options.isCancelled = [&stop] { return stop.get(); };
    options.workers = 1;
    contents.beforeRead = [&] { stop.set(contents.opened == 3); };
    found();
    EXPECT_EQ(contents.opened, 3);
}

TEST_F(ContentRule, FilesBeyondTheLongestPathAreRead)
{
    int folder = open(disk.root().bytes().c_str(), O_RDONLY | O_DIRECTORY);
    const std::string name(200, 'd');
    for (int depth = 0; depth < 30; ++depth) {
        ASSERT_EQ(mkdirat(folder, name.c_str(), 0700), 0);
        const int next = openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY);
        close(folder);
        folder = next;
    }
    const int file = openat(folder, "deep", O_CREAT | O_WRONLY, 0600);
    ASSERT_EQ(write(file, "invoice", 7), 7);
    close(file);
    close(folder);
    EXPECT_THAT(found(), UnorderedElementsAre("deep"));
}

TEST_F(ContentRule, ManyThreadsFindWhatOneFinds)
{
    std::set<std::string> expected;
    for (int i = 0; i < 600; ++i) {
        const std::string name = "f" + std::to_string(i);
        disk.fileWithContents("d" + std::to_string(i % 7) + '/' + name,
                              i % 3 == 0 ? "an invoice" : "a letter");
        if (i % 3 == 0) {
            expected.insert(name);
        }
    }
    options.workers = 4;
    EXPECT_EQ(found(), expected);
}

} // namespace
} // namespace quorvane
