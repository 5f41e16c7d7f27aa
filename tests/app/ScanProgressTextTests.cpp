// SPDX-License-Identifier: MIT
#include "ScanProgressText.h"

#include <gtest/gtest.h>

#include <string>

namespace quorvane {
namespace {

std::optional<ScanProgress> at(const std::string& path)
{
    ScanProgress progress;
    progress.currentPath = path;
    return progress;
}

ScanLiveLine line(const char* name, const char* parent = "")
{
    return {QString::fromUtf8(name), QString::fromUtf8(parent)};
}

TEST(ScanLiveLine, NamesTheFolderAndTheParentBehindTwoBlanks)
{
    EXPECT_EQ(scanLiveLine(at("/Users/mara/Library/Caches"), true),
              line("Caches", "  in /Users/mara/Library"));
    EXPECT_EQ(scanLiveLine(at("/usr"), false), line("usr", "  in /"));
}

TEST(ScanLiveLine, LeavesAnEmptyParentOut)
{
    EXPECT_EQ(scanLiveLine(at("loose"), true), line("loose"));
}

TEST(ScanLiveLine, PreparesUntilAPathWasShownAndFinishesAfterwards)
{
    for (const auto& progress : {std::optional<ScanProgress>(), at(""), at("/")}) {
        EXPECT_EQ(scanLiveLine(progress, false), line("Preparing to scan…"));
        EXPECT_EQ(scanLiveLine(progress, true), line("Finishing up…"));
    }
}

TEST(ScanLiveLine, TheRootCountsAsNoPath)
{
    EXPECT_FALSE(hasUsablePath(std::nullopt));
    EXPECT_FALSE(hasUsablePath(at("")));
    EXPECT_FALSE(hasUsablePath(at("/")));
    EXPECT_TRUE(hasUsablePath(at("/a")));
}

TEST(ScanLiveLine, ShowsIllFormedNamesWithReplacementCharacters)
{
    EXPECT_EQ(scanLiveLine(at("/a\xFF/b\xFE"), true), line("b\uFFFD", "  in /a\uFFFD"));
}

TEST(ScanLiveLine, APercentSignInAPathIsNoPlaceholder)
{
    EXPECT_EQ(scanLiveLine(at("/50%1/x"), true), line("x", "  in /50%1"));
}

} // namespace
} // namespace quorvane
