// SPDX-License-Identifier: MIT
#include "ListRow.h"

#include "FileTree.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <QDateTime>

#include <string>
#include <utility>
#include <vector>

namespace quorvane {
namespace {

std::string symbolOf(const std::string& line)
{
    const auto tree = test::treeFromText(line + " 1\n");
    return ListRow::iconName(tree->root().children()[0]).toStdString();
}

TEST(ListRow, SymbolFollowsTheExtension)
{
    const std::pair<const char*, std::vector<const char*>> rows[] = {
        {"photo", {"png", "jpg", "jpeg", "heic", "gif", "tiff", "JPEG"}},
        {"doc.richtext", {"pdf"}},
        {"archivebox", {"zip", "dmg", "7z", "tar", "gz", "bz2", "tar.gz"}},
        {"chevron.left.forwardslash.chevron.right",
         {"swift", "py", "js", "ts", "rb", "go", "rs", "c", "cpp", "h"}},
        {"film", {"mp4", "mov", "m4v"}},
        {"music.note", {"mp3", "m4a", "wav", "flac"}},
        {"doc", {"xyz", "txt", "mkv", ""}}};
    for (const auto& [symbol, extensions] : rows) {
        for (const char* const extension : extensions) {
            EXPECT_EQ(symbolOf(std::string("a.") + extension), symbol) << extension;
        }
    }
}

TEST(ListRow, NameWithoutADotIsAnythingElse)
{
    EXPECT_EQ(symbolOf("png"), "doc");
    EXPECT_EQ(symbolOf(".png"), "photo");
}

TEST(ListRow, LinksAndFoldersComeFirst)
{
    const auto tree = test::treeFromText("a.png/\nb.png@ 1\n");
    EXPECT_EQ(ListRow::iconName(test::nodeAt(tree->root(), "a.png")), QStringLiteral("folder"));
    EXPECT_EQ(ListRow::iconName(test::nodeAt(tree->root(), "b.png")), QStringLiteral("link"));
}

TEST(ListRow, WritesDatesInEnglish)
{
    const std::int64_t seconds = QDateTime(QDate(2024, 3, 4), QTime(15, 5)).toSecsSinceEpoch();
    EXPECT_EQ(ListRow::dateText(seconds), QStringLiteral("Mar 4, 2024"));
    EXPECT_EQ(ListRow::dateAndTimeText(seconds), QStringLiteral("Mar 4, 2024 at 3:05 PM"));
    EXPECT_EQ(ListRow::dateText(std::nullopt), QString());
}

TEST(ListRow, SharesHaveOneDigit)
{
    EXPECT_EQ(ListRow::shareText(98, 1000), QStringLiteral("9.8%"));
    EXPECT_EQ(ListRow::shareText(7, 7), QStringLiteral("100.0%"));
    EXPECT_EQ(ListRow::shareText(0, 7), QStringLiteral("0.0%"));
}

} // namespace
} // namespace quorvane
