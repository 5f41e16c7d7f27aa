// SPDX-License-Identifier: MIT
#include "FilePath.h"

#include <gtest/gtest.h>

#include <QString>

#include <cstdio>
#include <string>

namespace quorvane {
namespace {

std::string bytesOfUrl(std::string_view url)
{
    return FilePath::fromFileUrl(url).bytes();
}

TEST(FilePath, DropsTrailingSlashesButKeepsTheRoot)
{
    EXPECT_EQ(FilePath("/home/mara/").bytes(), "/home/mara");
    EXPECT_EQ(FilePath("/home///").bytes(), "/home");
    EXPECT_EQ(FilePath("/").bytes(), "/");
    EXPECT_EQ(FilePath("//").bytes(), "/");
    EXPECT_TRUE(FilePath("").isEmpty());
    EXPECT_TRUE(FilePath().isEmpty());
}

TEST(FilePath, TellsItsLastComponent)
{
    EXPECT_EQ(FilePath("/home/mara").lastComponent(), "mara");
    EXPECT_EQ(FilePath("/home").lastComponent(), "home");
    EXPECT_EQ(FilePath("home").lastComponent(), "home");
    EXPECT_EQ(FilePath("/").lastComponent(), "");
    EXPECT_EQ(FilePath().lastComponent(), "");
}

TEST(FilePath, TellsItsParent)
{
    EXPECT_EQ(FilePath("/home/mara").parent(), FilePath("/home"));
    EXPECT_EQ(FilePath("/home").parent(), FilePath("/"));
    EXPECT_EQ(FilePath("/").parent(), FilePath("/"));
    EXPECT_EQ(FilePath("home").parent(), FilePath());
    EXPECT_EQ(FilePath("/home//mara").parent(), FilePath("/home"));
}

TEST(FilePath, HoldsItselfAndWhatLiesBelowIt)
{
    const FilePath home("/home/mara");
    EXPECT_TRUE(home.holds(home));
    EXPECT_TRUE(home.holds(FilePath("/home/mara/a/b")));
    EXPECT_FALSE(home.holds(FilePath("/home/mara2")));
    EXPECT_FALSE(home.holds(FilePath("/home")));
    EXPECT_FALSE(home.holds(FilePath("/other/home/mara")));
    EXPECT_TRUE(FilePath("/").holds(home));
    EXPECT_TRUE(FilePath("/").holds(FilePath("/")));
    EXPECT_FALSE(home.holds(FilePath("/")));
    EXPECT_FALSE(FilePath().holds(home));
    EXPECT_FALSE(home.holds(FilePath()));
}

TEST(FilePath, AppendsAComponentWithOneSlash)
{
    EXPECT_EQ(FilePath("/home").appending("mara"), FilePath("/home/mara"));
    EXPECT_EQ(FilePath("/").appending("home"), FilePath("/home"));
    EXPECT_EQ(FilePath().appending("home"), FilePath("home"));
    EXPECT_EQ(FilePath("/home").appending("mara").parent(), FilePath("/home"));
}

TEST(FilePath, KeepsAPathLongerThanTheSystemsLimit)
{
    FilePath path("/");
    const std::string name(255, 'n');
    for (int depth = 0; depth < 100; ++depth) {
        path = path.appending(name);
    }
    EXPECT_EQ(path.bytes().size(), 100u * 256u);
    EXPECT_EQ(path.lastComponent(), name);
    EXPECT_EQ(FilePath::fromFileUrl(path.fileUrl()), path);
}

TEST(FilePath, OrdersByBytes)
{
    EXPECT_LT(FilePath("/a"), FilePath("/b"));
    EXPECT_LT(FilePath("/Z"), FilePath("/a"));
    EXPECT_EQ(FilePath("/a/"), FilePath("/a"));
}

TEST(FilePath, TakesTextAsUtf8)
{
    EXPECT_EQ(FilePath::fromText(QStringLiteral("/tmp/Fotos März")).bytes(),
              "/tmp/Fotos M\xC3\xA4rz");
}

TEST(FilePath, ShowsIllFormedBytesAsReplacementCharacters)
{
    EXPECT_EQ(FilePath("/caf\xE9").displayText(), QStringLiteral("/caf\uFFFD"));
    EXPECT_EQ(FilePath("/caf\xC3\xA9").displayText(), QStringLiteral("/café"));
}

TEST(FilePath, EscapesEachByteOfAUrlThatDoesNotStandForItself)
{
    const std::string unreserved =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
    for (int value = 1; value < 256; ++value) {
        const char byte = static_cast<char>(value);
        if (byte == '/') {
            continue;
        }
        char escape[4] = {};
        std::snprintf(escape, sizeof escape, "%%%02X", static_cast<unsigned>(value));
        const bool plain = unreserved.find(byte) != std::string::npos;
        const FilePath path(std::string("/x") + byte);
        EXPECT_EQ(path.fileUrl(), "file:///x" + (plain ? std::string(1, byte) : escape)) << value;
    }
    EXPECT_EQ(FilePath("/a/b").fileUrl(), "file:///a/b");
}

TEST(FilePath, ReadsBackEveryByteFromItsEscape)
{
    for (int value = 1; value < 256; ++value) {
        for (const char* format : {"file:///x%%%02Xy", "file:///x%%%02xy"}) {
            char url[16] = {};
            std::snprintf(url, sizeof url, format, static_cast<unsigned>(value));
            EXPECT_EQ(bytesOfUrl(url), std::string("/x") + static_cast<char>(value) + "y") << url;
        }
        const FilePath path(std::string("/x") + static_cast<char>(value) + "y");
        EXPECT_EQ(FilePath::fromFileUrl(path.fileUrl()), path) << value;
    }
}

TEST(FilePath, ReadsTheFormsOfALocalUrl)
{
    EXPECT_EQ(bytesOfUrl("file:///home/mara"), "/home/mara");
    EXPECT_EQ(bytesOfUrl("file://localhost/home/mara"), "/home/mara");
    EXPECT_EQ(bytesOfUrl("file:/home/mara"), "/home/mara");
    EXPECT_EQ(bytesOfUrl("FILE://LocalHost/home/Mara/"), "/home/Mara");
    EXPECT_EQ(bytesOfUrl("file:///"), "/");
    EXPECT_EQ(bytesOfUrl("file:///My%20Files/a%2fb"), "/My Files/a/b");
}

TEST(FilePath, LeavesAPercentSignThatStartsNoEscape)
{
    EXPECT_EQ(bytesOfUrl("file:///100%"), "/100%");
    EXPECT_EQ(bytesOfUrl("file:///100%2"), "/100%2");
    EXPECT_EQ(bytesOfUrl("file:///100%zz"), "/100%zz");
    EXPECT_EQ(bytesOfUrl("file:///100%2g%41"), "/100%2gA");
    EXPECT_EQ(bytesOfUrl("file:///%2541"), "/%41");
}

TEST(FilePath, IsEmptyForAUrlThatIsNoFileOfThisMachine)
{
    for (const char* url : {"", "file", "file:", "file://", "file://localhost", "file:home",
                            "file://server/share", "http:///home", "/home/mara", "xfile:///home"}) {
        EXPECT_EQ(bytesOfUrl(url), "") << url;
    }
}

TEST(FilePath, IsEmptyForAUrlThatHoldsANul)
{
    EXPECT_EQ(bytesOfUrl("file:///home/mara%00.txt"), "");
    EXPECT_EQ(bytesOfUrl(std::string_view("file:///a\0b", 11)), "");
}

} // namespace
} // namespace quorvane
