// SPDX-License-Identifier: MIT
#include "Dither.h"

#include <algorithm>
#include <cstddef>

namespace quorvane {
namespace {

/// Bayer's ordered pattern: each value from 0 to 63 once, neighbours far apart.
constexpr std::array<std::array<int, Dither::side>, Dither::side> pattern{{
    {0, 32, 8, 40, 2, 34, 10, 42},
    {48, 16, 56, 24, 50, 18, 58, 26},
    {12, 44, 4, 36, 14, 46, 6, 38},
    {60, 28, 52, 20, 62, 30, 54, 22},
    {3, 35, 11, 43, 1, 33, 9, 41},
    {51, 19, 59, 27, 49, 17, 57, 25},
    {15, 47, 7, 39, 13, 45, 5, 37},
    {63, 31, 55, 23, 61, 29, 53, 21},
}};

int level(float channel, float threshold)
{
    return std::clamp(static_cast<int>(channel + threshold), 0, 255);
}

} // namespace

float Dither::threshold(int x, int y)
{
    const auto column = static_cast<std::size_t>(x & (side - 1));
    const auto row = static_cast<std::size_t>(y & (side - 1));
    return (static_cast<float>(pattern[row][column]) + 0.5F) / (side * side);
}

QRgb Dither::rounded(const FineColor& color, int x, int y)
{
    const float step = threshold(x, y);
    return qRgba(level(color.red, step), level(color.green, step), level(color.blue, step),
                 level(color.alpha, step));
}

} // namespace quorvane
