// SPDX-License-Identifier: MIT
#include "ScreenPictures.h"

#include "DiskTree.h"
#include "LockedFlag.h"
#include "TextRecognizer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <set>
#include <string>

namespace quorvane {
namespace {

TEST(ScreenPictures, AreOfEveryKindThatAPersonTakes)
{
    const std::vector<ScreenPicture> pictures = screenPictures();
    ASSERT_EQ(pictures.size(), 40U);
    std::set<QString> names;
    std::set<QString> kinds;
    int darkOnes = 0;
    int germanOnes = 0;
    int smallOnes = 0;
    for (const ScreenPicture& picture : pictures) {
        names.insert(picture.fileName);
        kinds.insert(picture.fileName.section(QLatin1Char('.'), -1));
        darkOnes += picture.isDark ? 1 : 0;
        germanOnes += picture.isGerman ? 1 : 0;
        smallOnes += picture.size.width() < 500 ? 1 : 0;
    }
    EXPECT_EQ(names.size(), pictures.size());
    EXPECT_EQ(kinds.size(), 7U);
    EXPECT_GE(darkOnes, 8);
    EXPECT_GE(germanOnes, 8);
    EXPECT_GE(smallOnes, 8);
}

TEST(ScreenPictures, HaveNineteenOfTwentyTitlesRead)
{
    const DiskTree disk;
    const std::unique_ptr<TextRecognizer> recognizer = makeTextRecognizer("de");
    ASSERT_EQ(recognizer->missingPackage(), "");
    ASSERT_EQ(recognizer->furtherPackage(), "") << "the German model is needed for this test";
    std::size_t read = 0;
    std::string missed;
    const std::vector<ScreenPicture> pictures = screenPictures();
    for (const ScreenPicture& picture : pictures) {
        ASSERT_TRUE(writeScreenPicture(picture, disk.root())) << picture.fileName.toStdString();
        const std::vector<QString> lines =
            recognizer->lines(disk.path(picture.fileName.toStdString()), LockedFlag());
        const bool isRead = std::any_of(lines.begin(), lines.end(), [&](const QString& line) {
            return line.trimmed() == picture.title;
        });
        read += isRead ? 1 : 0;
        if (!isRead) {
            missed += picture.fileName.toStdString() + ": " + picture.title.toStdString() + '\n';
        }
    }
    EXPECT_GE(read * 20, pictures.size() * 19) << "not read:\n" << missed;
}

} // namespace
} // namespace quorvane
