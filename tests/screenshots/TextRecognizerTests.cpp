// SPDX-License-Identifier: MIT
#include "LockedFlag.h"
#include "TextRecognizer.h"

#include "DiskTree.h"

#include <gtest/gtest.h>

#include <QString>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace quorvane {
namespace {

FilePath sample(std::string_view name)
{
    return FilePath(QUORVANE_SCREENSHOTS).appending(name);
}

/// The engine of the system, made ready once: that alone takes a good part of a second.
class TextOnPictures : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        s_recognizer = makeTextRecognizer("");
        ASSERT_EQ(s_recognizer->missingPackage(), "");
    }
    static void TearDownTestSuite() { s_recognizer.reset(); }

    static bool finds(const char* file, const QString& line)
    {
        const std::vector<QString> lines = s_recognizer->lines(sample(file), LockedFlag());
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    }

    static std::unique_ptr<TextRecognizer> s_recognizer;
};

std::unique_ptr<TextRecognizer> TextOnPictures::s_recognizer;

TEST_F(TextOnPictures, IsFoundOnALightScreen)
{
    EXPECT_TRUE(finds("light.png", QStringLiteral("Quarterly Sales Report")));
}

TEST_F(TextOnPictures, IsFoundOnADarkScreen)
{
    EXPECT_TRUE(finds("dark.png", QStringLiteral("Backup Plan for Winter")));
}

TEST_F(TextOnPictures, IsFoundOnASmallCutOut)
{
    EXPECT_TRUE(finds("small.png", QStringLiteral("Network Settings Overview")));
}

TEST_F(TextOnPictures, IsFoundInEveryKindOfFile)
{
    EXPECT_TRUE(finds("photo.tiff", QStringLiteral("Garden Planning Notes")));
    EXPECT_TRUE(finds("picture.gif", QStringLiteral("Train Ticket Booking")));
    EXPECT_TRUE(finds("phone.heic", QStringLiteral("Kitchen Renovation Budget")));
}

TEST_F(TextOnPictures, ComesInReadingOrder)
{
    const std::vector<QString> lines = s_recognizer->lines(sample("light.png"), LockedFlag());
    ASSERT_GE(lines.size(), 3U);
    EXPECT_EQ(lines[0], QStringLiteral("Quarterly Sales Report"));
    EXPECT_TRUE(lines[1].startsWith(QStringLiteral("Revenue grew in every region")));
}

TEST_F(TextOnPictures, IsReadInTheDesktopsLanguageToo)
{
    const std::unique_ptr<TextRecognizer> german = makeTextRecognizer("de");
    ASSERT_EQ(german->missingPackage(), "");
    const std::vector<QString> lines = german->lines(sample("german.png"), LockedFlag());
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.front(), QStringLiteral("Übersicht über größere Änderungen"));
}

TEST_F(TextOnPictures, ALanguageWithoutAModelLeavesEnglish)
{
    const std::unique_ptr<TextRecognizer> finnish = makeTextRecognizer("fi");
    EXPECT_EQ(finnish->missingPackage(), "");
    EXPECT_FALSE(finnish->lines(sample("small.png"), LockedFlag()).empty());
}

TEST_F(TextOnPictures, IsNoneWhereThereIsNoPicture)
{
    DiskTree disk;
    disk.fileWithContents("text.png", "this is no picture");
    disk.fileWithContents("short.heic", std::string("\0\0\0\x18"
                                                    "ftypheic\0\0\0\0broken",
                                                    22));
    disk.file("empty.png");
    disk.folder("folder.png");
    disk.fifo("pipe.png");
    for (const char* const name :
         {"text.png", "short.heic", "empty.png", "folder.png", "pipe.png", "missing.png"}) {
        EXPECT_TRUE(s_recognizer->lines(disk.path(name), LockedFlag()).empty()) << name;
    }
}

TEST_F(TextOnPictures, IsNotReadOnceStopped)
{
    LockedFlag stop;
    stop.set(true);
    EXPECT_TRUE(s_recognizer->lines(sample("light.png"), stop).empty());
}

} // namespace
} // namespace quorvane
