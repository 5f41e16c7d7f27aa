// SPDX-License-Identifier: MIT
#include "Color.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace quorvane {
namespace {

void expectNear(const Color& color, double r, double g, double b)
{
    EXPECT_NEAR(color.r, r, 1e-12);
    EXPECT_NEAR(color.g, g, 1e-12);
    EXPECT_NEAR(color.b, b, 1e-12);
}

TEST(Color, PureHuesAreTheCornersOfTheWheel)
{
    expectNear(Color::hsb(0, 1, 1), 1, 0, 0);
    expectNear(Color::hsb(1.0 / 6, 1, 1), 1, 1, 0);
    expectNear(Color::hsb(2.0 / 6, 1, 1), 0, 1, 0);
    expectNear(Color::hsb(3.0 / 6, 1, 1), 0, 1, 1);
    expectNear(Color::hsb(4.0 / 6, 1, 1), 0, 0, 1);
    expectNear(Color::hsb(5.0 / 6, 1, 1), 1, 0, 1);
    expectNear(Color::hsb(1, 1, 1), 1, 0, 0);
}

TEST(Color, WithoutSaturationEveryHueIsGrey)
{
    for (double hue = 0; hue < 1; hue += 0.05) {
        expectNear(Color::hsb(hue, 0, 0.4), 0.4, 0.4, 0.4);
    }
}

TEST(Color, AgreesWithTheClosedFormAllAroundTheWheel)
{
    for (int step = 0; step < 360; ++step) {
        const double hue = step / 360.0;
        const double saturation = (step % 11) / 10.0;
        const double brightness = (step % 7) / 6.0;
        const auto channel = [&](double n) {
            const double k = std::fmod(n + hue * 6, 6);
            return brightness - brightness * saturation * std::clamp(std::min(k, 4 - k), 0.0, 1.0);
        };
        expectNear(Color::hsb(hue, saturation, brightness), channel(5), channel(3), channel(1));
    }
}

TEST(Color, IsOpaqueUnlessToldOtherwise)
{
    EXPECT_EQ(Color::hsb(0.3, 0.5, 0.5).a, 1);
    EXPECT_EQ(Color::hsb(0.3, 0.5, 0.5, 0.25).a, 0.25);
    EXPECT_EQ((Color{0.1, 0.2, 0.3}).a, 1);
    EXPECT_EQ(Color::clear().a, 0);
}

TEST(Color, IsValidWhenAllComponentsAreNumbers)
{
    EXPECT_TRUE((Color{0.1, 0.2, 0.3}).isValid());
    EXPECT_FALSE((Color{std::numeric_limits<double>::quiet_NaN(), 0, 0}).isValid());
    EXPECT_FALSE((Color{0, std::numeric_limits<double>::infinity(), 0}).isValid());
}

} // namespace
} // namespace quorvane
