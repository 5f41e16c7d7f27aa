// SPDX-License-Identifier: MIT
#include "CheckedMath.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace quorvane {
namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();

TEST(CheckedMath, SumsReachBothEndsOfTheRange)
{
    EXPECT_EQ(checkedAdd(largest - 1, 1, "here"), largest);
    EXPECT_EQ(checkedAdd(smallest + 1, -1, "here"), smallest);
    EXPECT_EQ(checkedAdd(largest, smallest, "here"), -1);
}

TEST(CheckedMath, ProductsReachBothEndsOfTheRange)
{
    EXPECT_EQ(checkedMultiply(largest, 1, "here"), largest);
    EXPECT_EQ(checkedMultiply(std::int64_t{1} << 62, -2, "here"), smallest);
    EXPECT_EQ(checkedMultiply(largest, 0, "here"), 0);
}

TEST(CheckedMathDeathTest, ASumBeyondTheRangeNamesItsPlace)
{
    EXPECT_DEATH(checkedAdd(largest, 1, "the Downloads rollup"),
                 "Quorvane: byte sum overflows in the Downloads rollup");
    EXPECT_DEATH(checkedAdd(smallest, -1, "below"), "byte sum overflows in below");
}

TEST(CheckedMathDeathTest, AProductBeyondTheRangeNamesItsPlace)
{
    EXPECT_DEATH(checkedMultiply(largest, 2, "a group of copies"),
                 "Quorvane: byte sum overflows in a group of copies");
    EXPECT_DEATH(checkedMultiply(smallest, -1, "negation"), "byte sum overflows in negation");
}

} // namespace
} // namespace quorvane
