// SPDX-License-Identifier: MIT
#include "ListRow.h"

#include "FileTree.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <QDateTime>

#include <string>
#include <utility>

namespace quorvane {
namespace {

TEST(ListRow, SymbolFollowsTheExtension)
{
    const std::pair<const char*, const char*> rows[] = {
        {"a.png", "photo"},
        {"a.JPEG", "photo"},
        {"a.pdf", "doc.richtext"},
        {"a.tar.gz", "archivebox"},
        {"a.7z", "archivebox"},
        {"a.cpp", "chevron.left.forwardslash.chevron.right"},
        {"a.h", "chevron.left.forwardslash.chevron.right"},
        {"a.m4v", "film"},
        {"a.flac", "music.note"},
        {"a.xyz", "doc"},
        {"png", "doc"},
        {"a.", "doc"},
        {".png", "photo"}};
    for (const auto& [name, symbol] : rows) {
        const auto tree = test::treeFromText(std::string(name) + " 1\n");
        EXPECT_EQ(ListRow::iconName(tree->root().children()[0]), QLatin1String(symbol)) << name;
    }
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
