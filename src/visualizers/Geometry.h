// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>

namespace quorvane {

/// A place in points. A plain value.
struct Point
{
    double x = 0;
    double y = 0;

    friend bool operator==(const Point&, const Point&) = default;
};

/// A rectangle in points, y growing downwards. A plain value; a width or height below 0 is empty.
struct Rect
{
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    double maxX() const { return x + width; }
    double maxY() const { return y + height; }

    /// The left and top edges belong to the rectangle, the right and bottom ones do not, so that a
    /// point on a common edge lies in one tile.
    bool contains(double pointX, double pointY) const
    {
        return pointX >= x && pointX < maxX() && pointY >= y && pointY < maxY();
    }

    /// The common part; its width or height is negative when there is none.
    Rect intersected(const Rect& other) const
    {
        const double left = std::max(x, other.x);
        const double top = std::max(y, other.y);
        const double right = std::min(maxX(), other.maxX());
        const double bottom = std::min(maxY(), other.maxY());
        return {left, top, right - left, bottom - top};
    }

    friend bool operator==(const Rect&, const Rect&) = default;
};

} // namespace quorvane
