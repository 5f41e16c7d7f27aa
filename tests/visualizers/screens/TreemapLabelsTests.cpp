// SPDX-License-Identifier: MIT
#include "TreemapLabels.h"

#include <gtest/gtest.h>

#include <QFont>
#include <QFontMetricsF>

namespace quorvane {
namespace {

TEST(TreemapLabelsTests, FontGrowsWithTheTile)
{
    EXPECT_EQ(TreemapLabels::fontSize(18), 9);
    EXPECT_EQ(TreemapLabels::fontSize(63.9), 9);
    EXPECT_EQ(TreemapLabels::fontSize(64), 10);
    EXPECT_EQ(TreemapLabels::fontSize(99.9), 10);
    EXPECT_EQ(TreemapLabels::fontSize(100), 11);
    EXPECT_EQ(TreemapLabels::fontSize(159.9), 11);
    EXPECT_EQ(TreemapLabels::fontSize(160), 12);
    EXPECT_EQ(TreemapLabels::fontSize(259.9), 12);
    EXPECT_EQ(TreemapLabels::fontSize(260), 13);
}

TEST(TreemapLabelsTests, AggregateIsCalledCacheFilesWhateverItHolds)
{
    EXPECT_EQ(TreemapLabels::aggregate(1572864), QStringLiteral("[1.5 MB Cache Files]"));
}

TEST(TreemapLabelsTests, CheapCutCountsCharacters)
{
    // (58 - 8) / 5 = 10 characters.
    EXPECT_EQ(TreemapLabels::fit(QStringLiteral("0123456789"), 58), QStringLiteral("0123456789"));
    EXPECT_EQ(TreemapLabels::fit(QStringLiteral("0123456789a"), 58), QStringLiteral("012345678…"));
    // The fraction is dropped: 57.9 leaves room for nine.
    EXPECT_EQ(TreemapLabels::fit(QStringLiteral("0123456789"), 57.9), QStringLiteral("01234567…"));
}

TEST(TreemapLabelsTests, CheapCutKeepsTwoCharactersAtLeast)
{
    EXPECT_EQ(TreemapLabels::fit(QStringLiteral("abc"), 0), QStringLiteral("a…"));
    EXPECT_EQ(TreemapLabels::fit(QStringLiteral("ab"), -50), QStringLiteral("ab"));
}

TEST(TreemapLabelsTests, CheapCutTrimsBlanksBeforeTheEllipsis)
{
    // Room for six: five characters, of which the last two are blanks.
    EXPECT_EQ(TreemapLabels::fit(QStringLiteral("abc  defgh"), 38), QStringLiteral("abc…"));
}

TEST(TreemapLabelsTests, CheapCutDoesNotSplitACharacter)
{
    // Five characters of two code units each; room for four.
    const QString faces = QStringLiteral("😀😁😂😃😄");
    EXPECT_EQ(TreemapLabels::fit(faces, 28), QStringLiteral("😀😁😂…"));
}

TEST(TreemapLabelsTests, ExactCutIsTheLongestPrefixThatFits)
{
    const LabelFont metrics(QFont(), 12, false, nullptr);
    const QString text = QStringLiteral("Application Support and more");
    for (double width = 5; width < 200; width += 7.3) {
        // The same answer from trying every prefix in turn.
        QString longest = QStringLiteral("…");
        if (metrics.width(text) <= width) {
            longest = text;
        } else {
            for (qsizetype count = 1; count <= text.size(); ++count) {
                QString prefix = text.left(count);
                while (prefix.endsWith(QLatin1Char(' '))) {
                    prefix.chop(1);
                }
                const QString candidate = prefix + QStringLiteral("…");
                if (metrics.width(candidate) <= width) {
                    longest = candidate;
                }
            }
        }
        const QString cut = TreemapLabels::truncateFit(text, width, metrics);
        EXPECT_EQ(cut.toStdString(), longest.toStdString()) << "width " << width;
    }
}

TEST(TreemapLabelsTests, ExactCutLeavesTheTextWhereThereIsNoWidth)
{
    const LabelFont metrics(QFont(), 12, false, nullptr);
    EXPECT_EQ(TreemapLabels::truncateFit(QStringLiteral("name"), 0, metrics),
              QStringLiteral("name"));
    EXPECT_EQ(TreemapLabels::truncateFit(QStringLiteral("name"), -3, metrics),
              QStringLiteral("name"));
    EXPECT_EQ(TreemapLabels::truncateFit(QString(), 10, metrics), QString());
}

TEST(TreemapLabelsTests, NameOfMegabytesIsCutLikeItsFront)
{
    const LabelFont metrics(QFont(), 12, false, nullptr);
    const QString name(4'000'000, QChar(u'é'));
    const QString cut = TreemapLabels::truncateFit(name, 200, metrics);
    EXPECT_EQ(cut, TreemapLabels::truncateFit(name.left(500), 200, metrics));
    EXPECT_LE(metrics.width(cut), 200);
    EXPECT_TRUE(cut.endsWith(QChar(0x2026)));
}

} // namespace
} // namespace quorvane
