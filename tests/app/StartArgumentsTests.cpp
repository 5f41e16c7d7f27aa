// SPDX-License-Identifier: MIT
#include "DiskTree.h"
#include "StartArguments.h"

#include <gtest/gtest.h>

namespace quorvane {
namespace {

using Action = StartArguments::Action;

StartArguments parsed(const std::vector<std::string_view>& arguments)
{
    return StartArguments::parse(arguments, FilePath("/work/here"));
}

void expectFolder(const std::vector<std::string_view>& arguments, const char* folder)
{
    const StartArguments result = parsed(arguments);
    EXPECT_EQ(result.action, Action::run) << result.problem;
    ASSERT_TRUE(result.folder.has_value());
    EXPECT_EQ(result.folder->bytes(), folder);
}

TEST(StartArguments, NothingOpensTheWindowAlone)
{
    const StartArguments result = parsed({});
    EXPECT_EQ(result.action, Action::run);
    EXPECT_FALSE(result.folder.has_value());
}

TEST(StartArguments, AnAbsolutePathStays)
{
    expectFolder({"/usr/share"}, "/usr/share");
    expectFolder({"/"}, "/");
    expectFolder({"/usr/share/"}, "/usr/share");
}

TEST(StartArguments, ARelativePathStartsAtTheWorkingFolder)
{
    expectFolder({"photos"}, "/work/here/photos");
    expectFolder({"./photos/2025"}, "/work/here/photos/2025");
    expectFolder({"."}, "/work/here");
    expectFolder({"../there"}, "/work/there");
}

TEST(StartArguments, AStepUpBehindALinkLeadsOutOfTheLinksTarget)
{
    DiskTree disk;
    disk.folder("a/inner");
    disk.folder("b");
    disk.symbolicLink("../a/inner", "b/link");
    const StartArguments result = StartArguments::parse({"link/.."}, disk.path("b"));
    ASSERT_TRUE(result.folder.has_value());
    EXPECT_EQ(result.folder->lastComponent(), "a");
}

TEST(StartArguments, AFileUrlIsTakenApart)
{
    expectFolder({"file:///home/mara/My%20Files"}, "/home/mara/My Files");
}

TEST(StartArguments, AUrlOfAnotherMachineIsRefused)
{
    EXPECT_EQ(parsed({"file://elsewhere/share"}).action, Action::reportUsage);
}

TEST(StartArguments, BytesThatAreNotUtf8Stay)
{
    expectFolder({"/data/caf\xE9"}, "/data/caf\xE9");
}

TEST(StartArguments, AfterTwoDashesEverythingIsAFolder)
{
    expectFolder({"--", "--help"}, "/work/here/--help");
}

TEST(StartArguments, ASecondFolderIsRefused)
{
    const StartArguments result = parsed({"/a", "/b"});
    EXPECT_EQ(result.action, Action::reportUsage);
    EXPECT_EQ(result.problem, "only one folder can be scanned at a time");
}

TEST(StartArguments, AnUnknownOptionIsNamed)
{
    const StartArguments result = parsed({"--fast", "/a"});
    EXPECT_EQ(result.action, Action::reportUsage);
    EXPECT_EQ(result.problem, "unknown option '--fast'");
}

TEST(StartArguments, AnEmptyNameIsRefused)
{
    EXPECT_EQ(parsed({""}).action, Action::reportUsage);
}

TEST(StartArguments, HelpAndVersionAreAnswered)
{
    EXPECT_EQ(parsed({"--help"}).action, Action::showHelp);
    EXPECT_EQ(parsed({"/a", "--version"}).action, Action::showVersion);
    EXPECT_NE(StartArguments::usage().find("quorvane [FOLDER]"), std::string::npos);
}

TEST(StartArguments, TheSearchIsOpenedWithAFolderOrWithout)
{
    EXPECT_FALSE(StartArguments::parse({"folder"}, FilePath("/home")).opensSearch);
    const StartArguments alone = StartArguments::parse({"--search"}, FilePath("/home"));
    EXPECT_EQ(alone.action, StartArguments::Action::run);
    EXPECT_TRUE(alone.opensSearch);
    EXPECT_FALSE(alone.folder.has_value());
    const StartArguments both = StartArguments::parse({"--search", "x"}, FilePath("/home"));
    EXPECT_TRUE(both.opensSearch);
    EXPECT_EQ(both.folder, FilePath("/home/x"));
    EXPECT_EQ(StartArguments::parse({"--", "--search"}, FilePath("/home")).folder,
              FilePath("/home/--search"));
}

} // namespace
} // namespace quorvane
