// SPDX-License-Identifier: MIT
#include "Text.h"

#include <gtest/gtest.h>

#include <QList>
#include <QString>

#include <cstdint>
#include <string>

namespace quorvane {
namespace {

/// The bytes of one code point, put together from the table of RFC 3629.
std::string encoded(std::uint32_t point)
{
    const auto tail = [](std::uint32_t bits) { return static_cast<char>(0x80 | (bits & 0x3F)); };
    if (point < 0x80) {
        return {static_cast<char>(point)};
    }
    if (point < 0x800) {
        return {static_cast<char>(0xC0 | (point >> 6)), tail(point)};
    }
    if (point < 0x10000) {
        return {static_cast<char>(0xE0 | (point >> 12)), tail(point >> 6), tail(point)};
    }
    return {static_cast<char>(0xF0 | (point >> 18)), tail(point >> 12), tail(point >> 6),
            tail(point)};
}

TEST(Text, EveryCodePointButTheSurrogatesIsUtf8)
{
    for (std::uint32_t point = 0; point <= 0x10FFFF; ++point) {
        const bool isSurrogate = point >= 0xD800 && point <= 0xDFFF;
        ASSERT_EQ(isUtf8(encoded(point)), !isSurrogate) << std::hex << point;
    }
    EXPECT_FALSE(isUtf8(encoded(0x110000)));
}

TEST(Text, OverlongFormsAreNotUtf8)
{
    EXPECT_FALSE(isUtf8("\xC0\x80"));
    EXPECT_FALSE(isUtf8("\xC1\xBF"));
    EXPECT_FALSE(isUtf8("\xE0\x9F\xBF"));
    EXPECT_FALSE(isUtf8("\xF0\x8F\xBF\xBF"));
}

TEST(Text, AByteThatLacksItsCompanionsIsNotUtf8)
{
    for (const char* text : {"\x80", "a\xBF", "\xC3", "\xE2\x82", "\xF0\x9F\x98", "\xC3(", "\xFE",
                             "\xFF", "caf\xE9", "\xF8\x88\x80\x80\x80"}) {
        EXPECT_FALSE(isUtf8(text)) << text;
    }
}

TEST(Text, NothingAndNulAreUtf8)
{
    EXPECT_TRUE(isUtf8(""));
    EXPECT_TRUE(isUtf8(std::string(3, '\0')));
}

TEST(Text, WellFormedTextIsShownAsItIs)
{
    EXPECT_EQ(displayText("plain"), QStringLiteral("plain"));
    EXPECT_EQ(displayText("\xC3\xA9t\xC3\xA9"), QStringLiteral("été"));
    EXPECT_EQ(displayText("\xF0\x9F\x98\x80").toUcs4(), QList<uint>{0x1F600});
    EXPECT_EQ(displayText(""), QString());
}

TEST(Text, IllFormedBytesAreShownAsReplacementCharacters)
{
    EXPECT_EQ(displayText("a\xFFz"), QStringLiteral("a\uFFFDz"));
    EXPECT_EQ(displayText("end\xC3"), QStringLiteral("end\uFFFD"));
    EXPECT_TRUE(displayText("\xED\xA0\x80").contains(QChar(QChar::ReplacementCharacter)));
}

TEST(Text, AByteOrderMarkIsPartOfAName)
{
    EXPECT_EQ(displayText("\xEF\xBB\xBFname"), QStringLiteral("\uFEFFname"));
    EXPECT_EQ(lowercased("\xEF\xBB\xBFNAME"), "\xEF\xBB\xBFname");
}

TEST(Text, LowersLettersOfEveryScript)
{
    EXPECT_EQ(lowercased("Report.PDF"), "report.pdf");
    EXPECT_EQ(lowercased("\xC3\x89T\xC3\x89"), "\xC3\xA9t\xC3\xA9");
    EXPECT_EQ(lowercased("\xCE\xA9"), "\xCF\x89");
    EXPECT_EQ(lowercased("I"), "i");
    EXPECT_EQ(lowercased(""), "");
}

TEST(Text, LowersOnlyAsciiInANameThatIsNotUtf8)
{
    EXPECT_EQ(lowercased("CAF\xC9.TXT"), "caf\xC9.txt");
    EXPECT_EQ(lowercased("\xFF@[Z"), "\xFF@[z");
}

TEST(TextTests, PrefixNeverEndsInsideASequence)
{
    EXPECT_EQ(utf8Prefix("abc", 3), "abc");
    EXPECT_EQ(utf8Prefix("abc", 2), "ab");
    // Two bytes a letter: a cut after the third would split the second one.
    EXPECT_EQ(utf8Prefix("\xC3\xA9\xC3\xA9", 3), "\xC3\xA9");
    EXPECT_EQ(utf8Prefix("\xC3\xA9\xC3\xA9", 2), "\xC3\xA9");
    // Four bytes: nothing of it fits.
    EXPECT_EQ(utf8Prefix("\xF0\x9F\x98\x80", 3), "");
    // What is no UTF-8 is cut where it is.
    EXPECT_EQ(utf8Prefix("\x80\x80\x80\x80\x80\x80\x80", 6).size(), 6U);
}

} // namespace
} // namespace quorvane
