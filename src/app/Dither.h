// SPDX-License-Identifier: MIT
#pragma once

#include <QRgb>

#include <array>

namespace quorvane {

/// A colour with more than eight bits for each channel: 0 to 255, fractions included. The colour
/// channels are multiplied with alpha.
struct FineColor
{
    float red = 0;
    float green = 0;
    float blue = 0;
    float alpha = 255;
};

/// Rounds fine colours to eight bits so that a soft gradient on a dark ground shows no steps: how
/// far a channel lies between two levels decides for how many pixels of a small pattern it takes
/// the upper one. Any thread.
struct Dither
{
    /// Side of the pattern, which repeats; a power of two.
    static constexpr int side = 8;

    /// 0 to 1, both excluded.
    static float threshold(int x, int y);
    /// The colour of the pixel at (x, y). Both may be negative.
    static QRgb rounded(const FineColor& color, int x, int y);
};

} // namespace quorvane
