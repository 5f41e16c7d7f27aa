// SPDX-License-Identifier: MIT
#include "NameFolding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quorvane {
namespace {

std::string folded(std::string_view name)
{
    std::string out;
    appendFoldedName(out, name);
    return out;
}

TEST(NameFolding, CaseAndDiacriticsGo)
{
    EXPECT_EQ(folded("Report.PDF"), "report.pdf");
    EXPECT_EQ(folded("\xC3\x89t\xC3\xA9"), "ete") << "composed";
    EXPECT_EQ(folded("E\xCC\x81te\xCC\x81"), "ete") << "decomposed";
    EXPECT_EQ(folded("\xC4\xB0stanbul"), "istanbul") << "capital i with a dot";
    EXPECT_EQ(folded("\xCE\xA3\xCE\xBF\xCF\x86\xCE\xAF\xCE\xB1"),
              "\xCF\x83\xCE\xBF\xCF\x86\xCE\xB9\xCE\xB1");
    EXPECT_EQ(folded("\xE6\x96\x87\xE4\xBB\xB6"), "\xE6\x96\x87\xE4\xBB\xB6") << "no case at all";
}

TEST(NameFolding, AppendsBehindWhatIsThere)
{
    std::string out = "AB";
    appendFoldedName(out, "Cd");
    appendFoldedName(out, "\xC3\x89");
    EXPECT_EQ(out, "ABcde");
}

TEST(NameFolding, BytesThatAreNotTextAreFoldedAsTheyAreShown)
{
    EXPECT_EQ(folded("\xC3\x89\xFF.X"), "e\xEF\xBF\xBD.x");
}

TEST(NameFolding, FoldingTwiceIsFoldingOnce)
{
    for (char32_t codePoint = 0x80; codePoint < 0x30000; ++codePoint) {
        if (QChar::isSurrogate(codePoint)) {
            continue;
        }
        const std::string once = folded(QString::fromUcs4(&codePoint, 1).toStdString());
        ASSERT_EQ(folded(once), once) << std::hex << static_cast<unsigned>(codePoint);
    }
}

TEST(NameFolding, WordsArePartedByBlanksAlone)
{
    EXPECT_THAT(foldedWords(QStringLiteral("  Two  Words ")), testing::ElementsAre("two", "words"));
    EXPECT_THAT(foldedWords(QStringLiteral("a\tb")), testing::ElementsAre("a\tb"));
    EXPECT_THAT(foldedWords(QString()), testing::IsEmpty());
    EXPECT_THAT(foldedWords(QStringLiteral("\u0301 x")), testing::ElementsAre("x"));
}

} // namespace
} // namespace quorvane
