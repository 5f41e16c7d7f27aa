// SPDX-License-Identifier: MIT
#pragma once

namespace quorvane {

/// An sRGB colour of no toolkit. Components from 0 to 1. A plain value.
struct Color
{
    double r = 0;
    double g = 0;
    double b = 0;
    double a = 1; ///< opacity

    /// From hue, saturation and brightness, each from 0 to 1; hues 0 and 1 are the same red.
    static Color hsb(double hue, double saturation, double brightness, double alpha = 1);

    static constexpr Color white() { return {1, 1, 1, 1}; }
    static constexpr Color clear() { return {0, 0, 0, 0}; }

    /// False when a component is not a number or not finite.
    bool isValid() const;

    friend bool operator==(const Color&, const Color&) = default;
};

} // namespace quorvane
