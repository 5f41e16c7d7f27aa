// SPDX-License-Identifier: MIT
#include "SteamLibraries.h"

#include <gtest/gtest.h>

#include <string>

namespace quorvane {
namespace {

std::vector<std::string> paths(std::string_view text)
{
    std::vector<std::string> paths;
    for (const FilePath& each : steamLibrariesIn(text)) {
        paths.push_back(each.bytes());
    }
    return paths;
}

TEST(SteamLibraries, AreThePathsOfTheFolders)
{
    EXPECT_EQ(paths("\"libraryfolders\"\n{\n"
                    "\t\"0\"\n\t{\n\t\t\"path\"\t\t\"/home/u/.local/share/Steam\"\n"
                    "\t\t\"label\"\t\t\"/not/a/path\"\n"
                    "\t\t\"apps\"\n\t\t{\n\t\t\t\"620\"\t\t\"12345\"\n\t\t}\n\t}\n"
                    "\t\"1\"\n\t{\n\t\t\"path\"\t\t\"/mnt/games/Steam Library\"\n\t}\n}\n"),
              (std::vector<std::string>{"/home/u/.local/share/Steam", "/mnt/games/Steam Library"}));
}

TEST(SteamLibraries, OlderFilesNumberThem)
{
    EXPECT_EQ(paths("\"LibraryFolders\"\n{\n\t\"TimeNextStatsReport\"\t\"1600000000\"\n"
                    "\t\"1\"\t\t\"/mnt/a\"\n\t\"2\"\t\t\"/mnt/b\"\n\t\"3\"\t\t\"/mnt/a\"\n}\n"),
              (std::vector<std::string>{"/mnt/a", "/mnt/b"}));
}

TEST(SteamLibraries, EscapesAndCommentsAreThoseOfTheFormat)
{
    EXPECT_EQ(paths("// \"path\" \"/no\"\n\"path\" \"/mnt/a \\\"b\\\" \\\\c\""),
              std::vector<std::string>{"/mnt/a \"b\" \\c"});
}

TEST(SteamLibraries, WhatLeadsElsewhereIsNone)
{
    for (const char* const path : {"", "games", "C:\\\\Games", "/mnt/../home", "/mnt/./a", "/.."}) {
        EXPECT_TRUE(paths("\"path\" \"" + std::string(path) + '"').empty()) << path;
    }
    EXPECT_EQ(paths("\"path\" \"/mnt/..a\""), std::vector<std::string>{"/mnt/..a"});
}

TEST(SteamLibraries, TextThatEndsAnywhereIsReadAsFarAsItGoes)
{
    EXPECT_TRUE(paths("").empty());
    EXPECT_TRUE(paths("\"path").empty());
    EXPECT_TRUE(paths("\"path\" {").empty());
    EXPECT_TRUE(paths("\"path\" \\").empty());
}

} // namespace
} // namespace quorvane
