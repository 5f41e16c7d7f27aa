// SPDX-License-Identifier: MIT
#include "Json.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>

namespace quorvane {
namespace {

using namespace std::literals;

std::string written(std::string_view bytes)
{
    std::string out;
    appendJsonString(out, bytes);
    return out;
}

std::optional<std::string> textOf(std::string_view json)
{
    JsonReader reader(json);
    std::string out;
    if (!reader.text(out) || !reader.isComplete()) {
        return std::nullopt;
    }
    return out;
}

bool isSkipped(std::string_view json)
{
    JsonReader reader(json);
    return reader.skipValue() && reader.isComplete();
}

TEST(Json, AStringIsWrittenWithItsSlashesEscaped)
{
    EXPECT_EQ(written("/a \"b\" \\"), R"("\/a \"b\" \\")");
}

TEST(Json, ControlCharactersAreWrittenByTheirShortestEscape)
{
    EXPECT_EQ(written("\b\f\n\r\t\x01\x1F\x7F"), "\"\\b\\f\\n\\r\\t\\u0001\\u001f\x7F\"");
    EXPECT_EQ(written("a\0b"sv), R"("a\u0000b")");
}

TEST(Json, IllFormedBytesAreWrittenAsReplacementCharacters)
{
    EXPECT_EQ(written("é\xFF/"), "\"é\uFFFD\\/\"");
}

TEST(Json, WhatIsWrittenIsReadAgain)
{
    const std::string odd = "\uFEFF/\\\"\n\x02 é 😀"s + '\0';
    EXPECT_EQ(textOf(written(odd)), odd);
}

TEST(Json, EveryEscapeIsResolved)
{
    EXPECT_EQ(textOf(R"("\"\\\/\b\f\n\r\t\u0041\u00e9\uD83D\uDE00")"), "\"\\/\b\f\n\r\tAé😀");
}

TEST(Json, AWrongStringIsAFault)
{
    for (const std::string_view wrong :
         {"\"a", "\"a\\", "\"\\x\"", "\"\\u12\"", "\"\\u12G4\"", "\"\\uD83D\"", "\"\\uD83D\\n\"",
          "\"\\uDE00\"", "\"\\uD83D\\uD83D\"", "\"a\nb\"", "'a'", "a", "", "\"\xFF\""}) {
        EXPECT_FALSE(textOf(wrong)) << wrong;
    }
}

TEST(Json, IntegersAreExactAndWithoutFraction)
{
    const auto read = [](std::string_view json) -> std::optional<std::int64_t> {
        JsonReader reader(json);
        std::int64_t out = 0;
        return reader.integer(out) && reader.isComplete() ? std::optional(out) : std::nullopt;
    };
    EXPECT_EQ(read(" -9223372036854775808 "), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(read("0"), 0);
    for (const std::string_view wrong :
         {"9223372036854775808", "1.0", "1e3", "01", "+1", "-", "", "0x1", "1 2", "true"}) {
        EXPECT_FALSE(read(wrong)) << wrong;
    }
}

TEST(Json, NumbersFollowTheGrammarAndAreFinite)
{
    const auto read = [](std::string_view json) -> std::optional<double> {
        JsonReader reader(json);
        double out = 0;
        return reader.real(out) && reader.isComplete() ? std::optional(out) : std::nullopt;
    };
    EXPECT_EQ(read("775.25"), 775.25);
    EXPECT_EQ(read("-1e-2"), -0.01);
    EXPECT_EQ(read("7E+2"), 700);
    for (const std::string_view wrong : {"1.", ".5", "1e", "1e+", "1e999", "NaN", "00", "-"}) {
        EXPECT_FALSE(read(wrong)) << wrong;
    }
}

TEST(Json, MembersAndItemsComeInTheirOrder)
{
    JsonReader reader(R"( { "a" : [ 1 , 2 ] , "b" : {} , "c":true } )");
    std::string key;
    std::int64_t number = 0;
    bool flag = false;
    ASSERT_TRUE(reader.beginObject());
    ASSERT_TRUE(reader.nextKey(key));
    EXPECT_EQ(key, "a");
    ASSERT_TRUE(reader.beginArray());
    ASSERT_TRUE(reader.nextItem());
    ASSERT_TRUE(reader.integer(number));
    EXPECT_EQ(number, 1);
    ASSERT_TRUE(reader.nextItem());
    ASSERT_TRUE(reader.integer(number));
    EXPECT_EQ(number, 2);
    EXPECT_FALSE(reader.nextItem());
    ASSERT_TRUE(reader.nextKey(key));
    EXPECT_EQ(key, "b");
    ASSERT_TRUE(reader.skipValue());
    EXPECT_FALSE(reader.isComplete());
    ASSERT_TRUE(reader.nextKey(key));
    EXPECT_EQ(key, "c");
    ASSERT_TRUE(reader.boolean(flag));
    EXPECT_TRUE(flag);
    EXPECT_FALSE(reader.nextKey(key));
    EXPECT_TRUE(reader.isComplete());
}

TEST(Json, AnyValueCanBeSkipped)
{
    for (const std::string_view value :
         {"null", "true", "-1.5e3", "\"a\\u0041\"", "[]", "{}", "[1,[2,{\"a\":[]}],\"x\"]",
          "{\"a\":{\"b\":[null]},\"c\":0}"}) {
        EXPECT_TRUE(isSkipped(value)) << value;
    }
    for (const std::string_view wrong : {"[", "[1,]", "[1 2]", "{\"a\"}", "{\"a\":}", "{\"a\":1,}",
                                         "{,}", "[}", "{]", "nul", ""}) {
        EXPECT_FALSE(isSkipped(wrong)) << wrong;
    }
}

TEST(Json, AMillionLevelsAreSkippedWithoutRecursion)
{
    constexpr std::size_t levels = 1000000;
    EXPECT_TRUE(isSkipped(std::string(levels, '[') + std::string(levels, ']')));
    EXPECT_FALSE(isSkipped(std::string(levels, '[')));
}

TEST(Json, AFaultLasts)
{
    JsonReader reader("[x,1]");
    std::int64_t number = 0;
    ASSERT_TRUE(reader.beginArray());
    ASSERT_TRUE(reader.nextItem());
    EXPECT_FALSE(reader.integer(number));
    EXPECT_FALSE(reader.nextItem());
    EXPECT_FALSE(reader.skipValue());
    EXPECT_TRUE(reader.hasFailed());
    EXPECT_FALSE(reader.isComplete());
}

} // namespace
} // namespace quorvane
