// SPDX-License-Identifier: MIT
#include "Color.h"

#include <cmath>

namespace quorvane {

Color Color::hsb(double hue, double saturation, double brightness, double alpha)
{
    const double turn = (hue - std::floor(hue)) * 6;
    const double sector = std::floor(turn);
    const double fraction = turn - sector;
    const double low = brightness * (1 - saturation);
    const double falling = brightness * (1 - saturation * fraction);
    const double rising = brightness * (1 - saturation * (1 - fraction));
    switch (static_cast<int>(sector)) {
    case 1:
        return {falling, brightness, low, alpha};
    case 2:
        return {low, brightness, rising, alpha};
    case 3:
        return {low, falling, brightness, alpha};
    case 4:
        return {rising, low, brightness, alpha};
    case 5:
        return {brightness, low, falling, alpha};
    default:
        return {brightness, rising, low, alpha};
    }
}

bool Color::isValid() const
{
    return std::isfinite(r) && std::isfinite(g) && std::isfinite(b) && std::isfinite(a);
}

} // namespace quorvane
