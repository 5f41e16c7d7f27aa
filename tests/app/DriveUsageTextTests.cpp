// SPDX-License-Identifier: MIT
#include "DriveUsageView.h"

#include <gtest/gtest.h>

namespace quorvane {
namespace {

TEST(DriveUsage, TheBarTurnsOrangeAtSeventyAndRedAtEightyFive)
{
    EXPECT_EQ(driveBarColor(0), ThemeColor::green);
    EXPECT_EQ(driveBarColor(69.999), ThemeColor::green);
    EXPECT_EQ(driveBarColor(70), ThemeColor::orange);
    EXPECT_EQ(driveBarColor(84.999), ThemeColor::orange);
    EXPECT_EQ(driveBarColor(85), ThemeColor::red);
    EXPECT_EQ(driveBarColor(100), ThemeColor::red);
}

TEST(DriveUsage, ThePercentageIsWholeAndNeverAheadOfTheColor)
{
    EXPECT_EQ(drivePercentText(0), QStringLiteral("0%"));
    EXPECT_EQ(drivePercentText(61.003), QStringLiteral("61%"));
    EXPECT_EQ(drivePercentText(69.999), QStringLiteral("69%"));
    EXPECT_EQ(drivePercentText(100), QStringLiteral("100%"));
}

} // namespace
} // namespace quorvane
