// SPDX-License-Identifier: MIT
#include "Dither.h"

#include <gtest/gtest.h>

#include <set>

namespace quorvane {
namespace {

TEST(Dither, EveryThresholdOccursOnceInThePattern)
{
    std::set<float> seen;
    for (int y = 0; y < Dither::side; ++y) {
        for (int x = 0; x < Dither::side; ++x) {
            const float threshold = Dither::threshold(x, y);
            EXPECT_GT(threshold, 0);
            EXPECT_LT(threshold, 1);
            seen.insert(threshold);
        }
    }
    EXPECT_EQ(seen.size(), 64U);
}

TEST(Dither, ThePatternRepeatsInAllDirections)
{
    EXPECT_EQ(Dither::threshold(-3, -8), Dither::threshold(5, 0));
    EXPECT_EQ(Dither::threshold(13, 17), Dither::threshold(5, 1));
}

TEST(Dither, WholeLevelsStayAsTheyAre)
{
    for (int i = 0; i < Dither::side; ++i) {
        EXPECT_EQ(Dither::rounded({0, 17, 255, 255}, i, 3), qRgba(0, 17, 255, 255));
    }
}

TEST(Dither, AQuarterOfALevelRaisesAQuarterOfThePixels)
{
    int raised = 0;
    for (int y = 0; y < Dither::side; ++y) {
        for (int x = 0; x < Dither::side; ++x) {
            const int red = qRed(Dither::rounded({20.25F, 0, 0, 255}, x, y));
            EXPECT_TRUE(red == 20 || red == 21);
            raised += red - 20;
        }
    }
    EXPECT_EQ(raised, 16);
}

TEST(Dither, NoColorChannelRisesAboveAlpha)
{
    for (int i = 0; i < 64; ++i) {
        const QRgb color = Dither::rounded({0.7F, 9.2F, 17.8F, 17.85F}, i % 8, i / 8);
        EXPECT_LE(qBlue(color), qAlpha(color));
        EXPECT_LE(qRed(color), qAlpha(color));
    }
}

} // namespace
} // namespace quorvane
