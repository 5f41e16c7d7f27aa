// SPDX-License-Identifier: MIT
#include "TextNeedle.h"

#include "RandomTree.h"

#include <gtest/gtest.h>

namespace quorvane {
namespace {

TextNeedle needle(const char* text)
{
    return TextNeedle(QString::fromUtf8(text));
}

TEST(TextNeedle, IsFoundInEitherCase)
{
    EXPECT_TRUE(needle("invoice").isInName("INVOICE.pdf"));
    EXPECT_TRUE(needle("straße").isInName("Die STRAßE.txt"));
    EXPECT_TRUE(needle("ärger").isInName("kein ÄRGER"));
    EXPECT_FALSE(needle("invoices").isInName("INVOICE.pdf"));
    EXPECT_FALSE(needle("longer than the name").isInName("name"));
}

TEST(TextNeedle, AnEmptyOneIsFoundNowhere)
{
    EXPECT_FALSE(needle("").isInName(""));
    EXPECT_FALSE(needle("").isInContents("anything"));
}

TEST(TextNeedle, FindsDecomposedLettersByComposedOnesAndBack)
{
    EXPECT_TRUE(needle("café").isInName("Cafe\u0301.txt"));
    EXPECT_TRUE(needle("cafe\u0301").isInName("CAFÉ.txt"));
    EXPECT_TRUE(needle("café").isInContents("in the Cafe\u0301, at noon"));
}

TEST(TextNeedle, FindsTheCharactersBeyondAsciiThatFoldToAsciiLetters)
{
    EXPECT_TRUE(needle("kelvin").isInName("\u212Aelvin"));
    EXPECT_TRUE(needle("last").isInContents("la\u017Ft"));
    EXPECT_FALSE(needle("most").isInContents("la\u017Ft"));
}

TEST(TextNeedle, ReadsContentsThatAreNotUtf8AsLatin1)
{
    EXPECT_TRUE(needle("größe").isInContents("Gr\xF6\xDF"
                                             "e"));
    EXPECT_TRUE(needle("invoice").isInContents("\xFF\x01 INVOICE \x80"));
    // One byte that is no UTF-8 and all of it is Latin 1.
    EXPECT_FALSE(needle("größe").isInContents("größe \xFF"));
    EXPECT_TRUE(needle("grã¶").isInContents("größe \xFF"));
}

TEST(TextNeedle, FindsInNamesThatAreNotUtf8WhatIsLegible)
{
    EXPECT_TRUE(needle("report").isInName("Report\xFF.txt"));
}

/// The same answers as QStringMatcher over the decoded text, for a needle in ASCII.
TEST(TextNeedle, AgreesWithQStringMatcherOnRandomTexts)
{
    test::Dice dice(20260101);
    const QString letters = QStringLiteral("aAbBkKsS\u212A\u017Fé");
    for (int round = 0; round < 20000; ++round) {
        QString text;
        QString wanted;
        for (std::uint64_t i = dice.below(12); i > 0; --i) {
            text += letters[static_cast<qsizetype>(dice.below(11))];
        }
        for (std::uint64_t i = 1 + dice.below(3); i > 0; --i) {
            wanted += letters[static_cast<qsizetype>(dice.below(8))];
        }
        const bool expected = QStringMatcher(wanted, Qt::CaseInsensitive).indexIn(text) >= 0;
        ASSERT_EQ(TextNeedle(wanted).isInContents(text.toStdString()), expected)
            << wanted.toStdString() << " in " << text.toStdString();
    }
}

TEST(TextNeedle, ComparableTextIsLowerCasedAndComposed)
{
    EXPECT_EQ(comparableText("A.LOG"), "a.log");
    EXPECT_EQ(comparableText("CAFE\u0301"), "café");
    EXPECT_EQ(comparableText("A\xFFÄ"), "a\xFFÄ");
}

} // namespace
} // namespace quorvane
