// SPDX-License-Identifier: MIT
#include "ByteFormatter.h"

#include "FileNode.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace quorvane {
namespace {

std::string text(std::int64_t bytes, int fractionDigits = 1)
{
    return ByteFormatter::string(bytes, fractionDigits).toStdString();
}

TEST(ByteFormatter, BelowOneKilobyteCountsBytesWithoutFraction)
{
    EXPECT_EQ(text(0), "0 B");
    EXPECT_EQ(text(512), "512 B");
    EXPECT_EQ(text(1023), "1023 B");
    EXPECT_EQ(text(1023, 3), "1023 B");
}

TEST(ByteFormatter, NegativeNumbersStayBytesHoweverLarge)
{
    EXPECT_EQ(text(-5), "-5 B");
    EXPECT_EQ(text(-4096), "-4096 B");
    EXPECT_EQ(text(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808 B");
}

TEST(ByteFormatter, EachUnitBeginsAt1024OfTheOneBefore)
{
    const std::vector<std::string> units{"KB", "MB", "GB", "TB", "PB"};
    std::int64_t bytes = 1024;
    for (const std::string& unit : units) {
        EXPECT_EQ(text(bytes), "1.0 " + unit);
        EXPECT_EQ(text(bytes + bytes / 2), "1.5 " + unit);
        bytes *= 1024;
    }
}

TEST(ByteFormatter, TheUnitIsChosenBeforeRounding)
{
    EXPECT_EQ(text(1048575), "1024.0 KB");
    EXPECT_EQ(text(1048575, 3), "1023.999 KB");
    EXPECT_EQ(text(1048576), "1.0 MB");
}

TEST(ByteFormatter, BeyondTheLastUnitTheNumberGrows)
{
    // 2^63 - 1 becomes 2^63 as a double, and 2^63 / 2^50 is 8192.
    EXPECT_EQ(text(std::numeric_limits<std::int64_t>::max()), "8192.0 PB");
    EXPECT_EQ(text(std::int64_t{2000} << 50), "2000.0 PB");
}

TEST(ByteFormatter, TheNumberOfDigitsIsTheCallers)
{
    EXPECT_EQ(text(1024 + 256, 2), "1.25 KB");
    EXPECT_EQ(text(1024 + 256, 4), "1.2500 KB");
    EXPECT_EQ(text(3 * 1024, 0), "3 KB");
}

TEST(ByteFormatter, ATieGoesToTheEvenDigit)
{
    EXPECT_EQ(text(1280), "1.2 KB");  // 1.25
    EXPECT_EQ(text(1792), "1.8 KB");  // 1.75
    EXPECT_EQ(text(2560, 0), "2 KB"); // 2.5
    EXPECT_EQ(text(3584, 0), "4 KB"); // 3.5
}

TEST(ByteSize, ReadsANumberAndAUnit)
{
    EXPECT_EQ(ByteSize::parse("1.5 gb"), 1610612736);
    EXPECT_EQ(ByteSize::parse("10"), 10);
    EXPECT_EQ(ByteSize::parse("  2 KiB  "), 2048);
    EXPECT_EQ(ByteSize::parse("\t2KiB\n"), 2048);
    EXPECT_EQ(ByteSize::parse("1.9 B"), 1);
    EXPECT_EQ(ByteSize::parse("\xC2\xA0"
                              "7 mb\xE2\x80\x83"),
              7 * 1048576);
}

TEST(ByteSize, EveryUnitWordInAnyCase)
{
    const std::vector<std::pair<std::int64_t, std::vector<std::string>>> table{
        {1, {"", "b", "Byte", "bytes"}},
        {1024, {"k", "KB", "kib", "kilobyte", "KiloBytes"}},
        {1048576, {"M", "mb", "MiB", "megabyte", "megabytes"}},
        {1073741824, {"g", "gb", "GIB", "gigabyte", "gigabytes"}},
        {1099511627776, {"T", "tb", "tib", "TeraByte", "terabytes"}}};
    for (const auto& [factor, words] : table) {
        for (const std::string& word : words) {
            EXPECT_EQ(ByteSize::parse("3" + word), 3 * factor) << word;
            EXPECT_EQ(ByteSize::parse("3  " + word), 3 * factor) << word;
        }
    }
}

TEST(ByteSize, ReadsWhatADecimalScannerReads)
{
    EXPECT_EQ(ByteSize::parse("+12"), 12);
    EXPECT_EQ(ByteSize::parse("-1.5 K"), -1536);
    EXPECT_EQ(ByteSize::parse(".5 K"), 512);
    EXPECT_EQ(ByteSize::parse("5. K"), 5120);
    EXPECT_EQ(ByteSize::parse("1e3"), 1000);
    EXPECT_EQ(ByteSize::parse("1.25E+2 b"), 125);
    EXPECT_EQ(ByteSize::parse("2500e-1 b"), 250);
    EXPECT_EQ(ByteSize::parse("1e-400 GB"), 0);
    EXPECT_EQ(ByteSize::parse("-0.9"), 0);
    EXPECT_EQ(ByteSize::parse("007"), 7);
}

TEST(ByteSize, NothingWithoutALeadingNumber)
{
    for (const char* input : {"", "  ", "gb", "x 5 gb", "-", "+", ".", "-.", "e5", ". 5", "- 5",
                              "--5", "inf", "nan", "infinity gb"}) {
        EXPECT_FALSE(ByteSize::parse(input)) << input;
    }
}

TEST(ByteSize, NothingForAnUnknownUnit)
{
    for (const char* input :
         {"5 XB", "5 PB", "0x10", "1,5 gb", "1.2.3", "5 k b", "5e", "5e+ b", "5EB", "1e400 XB"}) {
        EXPECT_FALSE(ByteSize::parse(input)) << input;
    }
}

TEST(ByteSize, TheLargestThatFitsIsRead)
{
    EXPECT_EQ(ByteSize::parse("8388607 TB"), std::int64_t{8388607} * 1099511627776);
    EXPECT_EQ(ByteSize::parse("-8388608 TB"), std::numeric_limits<std::int64_t>::min());
}

TEST(ByteSizeDeathTest, AProductBeyond64BitsEndsTheProgram)
{
    EXPECT_DEATH(ByteSize::parse("8388608 TB"), "overflows in ByteSize.parse");
    EXPECT_DEATH(ByteSize::parse("1e30"), "overflows in ByteSize.parse");
    EXPECT_DEATH(ByteSize::parse("1e4000"), "overflows in ByteSize.parse");
    EXPECT_DEATH(ByteSize::parse("-1e4000 kb"), "overflows in ByteSize.parse");
}

TEST(FileNodeText, ShowsItsRollupsWithOneDigit)
{
    const auto tree = test::treeFromText("a 1024 4096\n"
                                         "b 512 0\n");
    EXPECT_EQ(tree->root().formattedBytes().toStdString(), "1.5 KB");
    EXPECT_EQ(tree->root().formattedBytesOnDisk().toStdString(), "4.0 KB");
}

TEST(ByteSize, ReadingASizeBeyond64BitsSaysSoInsteadOfEndingTheProgram)
{
    for (const char* const input : {"8388608 TB", "1e30", "1e4000", "-1e4000 kb"}) {
        const ByteSize::Reading reading = ByteSize::read(input);
        EXPECT_TRUE(reading.isTooLarge) << input;
        EXPECT_FALSE(reading.bytes) << input;
    }
    EXPECT_EQ(ByteSize::read("2 KB").bytes, 2048);
    EXPECT_FALSE(ByteSize::read("2 KB").isTooLarge);
    EXPECT_FALSE(ByteSize::read("2O KB").bytes);
    EXPECT_FALSE(ByteSize::read("2O KB").isTooLarge);
}

} // namespace
} // namespace quorvane
