// SPDX-License-Identifier: MIT
#include "JsonText.h"
#include "SeededRandom.h"
#include "Text.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <vector>

namespace quorvane {
namespace {

QJsonObject parsed(const std::string& line)
{
    EXPECT_TRUE(line.ends_with("}\n")) << line;
    return QJsonDocument::fromJson(QByteArray::fromStdString(line)).object();
}

std::string escaped(std::string_view bytes)
{
    std::string out;
    appendJsonText(out, bytes);
    return out;
}

TEST(JsonText, PlainTextStaysAsItIs)
{
    EXPECT_EQ(escaped("Documents/a b.txt"), "Documents/a b.txt");
    EXPECT_EQ(escaped("日本"), "日本");
}

TEST(JsonText, ControlCharactersQuotesAndLineSeparatorsAreEscaped)
{
    EXPECT_EQ(escaped("a\nb\tc\rd"), "a\\nb\\tc\\rd");
    EXPECT_EQ(escaped("\"\\"), "\\\"\\\\");
    EXPECT_EQ(escaped(std::string_view("\0\x1F\x7F", 3)), "\\u0000\\u001f\\u007f");
    EXPECT_EQ(escaped("\xC2\x85\xE2\x80\xA8\xE2\x80\xA9"), "\\u0085\\u2028\\u2029");
}

TEST(JsonText, EachIllFormedPartBecomesOneReplacementCharacter)
{
    const std::string mark = "\xEF\xBF\xBD";
    EXPECT_EQ(escaped("a\xFFz"), "a" + mark + "z");
    EXPECT_EQ(escaped("\xFF\xFE"), mark + mark);
    // A euro sign without its last byte is one cut character.
    EXPECT_EQ(escaped("\xE2\x82/"), mark + "/");
    EXPECT_EQ(escaped("\xE2\x82"), mark);
    // An overlong slash and a surrogate: no byte of them can begin or continue a character.
    EXPECT_EQ(escaped("\xC0\xAF"), mark + mark);
    EXPECT_EQ(escaped("\xED\xA0\x80"), mark + mark + mark);
}

TEST(JsonText, RandomBytesReadBackWhereTheyAreUtf8)
{
    constexpr std::uint64_t seed = 20240501;
    SeededRandom random(seed);
    const std::vector<std::string> pieces{"a",    "\n",   "é",        "日",
                                          "🗂", "\xFF", "\x80",     "\xE2\x82",
                                          "\"",   "\\",   "\xF0\x9F", std::string(1, '\0')};
    for (int round = 0; round < 2000; ++round) {
        std::string bytes;
        for (std::uint64_t i = random.below(8); i > 0; --i) {
            bytes += pieces[random.below(pieces.size())];
        }
        std::string line;
        JsonObject object(line);
        object.path(bytes);
        object.endLine();
        const QJsonObject read = parsed(line);
        ASSERT_EQ(read.contains(QLatin1String("rawPath")), !isUtf8(bytes)) << seed << ' ' << line;
        if (isUtf8(bytes)) {
            ASSERT_EQ(read[QLatin1String("path")].toString().toStdString(), bytes) << line;
        } else {
            const QByteArray hex = read[QLatin1String("rawPath")].toString().toLatin1();
            ASSERT_EQ(QByteArray::fromHex(hex).toStdString(), bytes) << line;
        }
    }
}

TEST(JsonText, NumbersKeepEveryDigit)
{
    std::string line;
    JsonObject object(line);
    object.integer("least", std::numeric_limits<std::int64_t>::min());
    object.integer("odd", 9007199254740993);
    object.real("tenth", 0.1);
    object.real("whole", 1600);
    object.null("nothing");
    object.boolean("yes", true);
    object.endLine();
    EXPECT_EQ(line,
              "{\"least\":-9223372036854775808,\"odd\":9007199254740993,"
              "\"tenth\":0.10000000000000001,\"whole\":1600,\"nothing\":null,\"yes\":true}\n");
}

TEST(JsonText, RandomDoublesReadBackToTheLastBit)
{
    SeededRandom random(7);
    for (int round = 0; round < 1000; ++round) {
        const double value =
            static_cast<double>(random.next()) / static_cast<double>(1 + random.below(1000));
        std::string line;
        JsonObject object(line);
        object.real("x", value);
        object.endLine();
        ASSERT_EQ(std::strtod(line.c_str() + std::strlen("{\"x\":"), nullptr), value) << line;
    }
}

} // namespace
} // namespace quorvane
