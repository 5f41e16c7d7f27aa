// SPDX-License-Identifier: MIT
#include "BubblePacking.h"

#include "CirclePacking.h"
#include "LayoutWalk.h"

#include <algorithm>
#include <cmath>

namespace quorvane {

std::optional<std::array<Point, 2>> placesTouching(const PlacedCircle& a, const PlacedCircle& b,
                                                   double radius)
{
    const double dx = b.center.x - a.center.x;
    const double dy = b.center.y - a.center.y;
    const double d = lengthOf(dx, dy);
    const double ra = radius + a.radius;
    const double rb = radius + b.radius;
    if (!(d > 0 && d <= ra + rb)) {
        return std::nullopt;
    }
    const double x = (ra * ra - rb * rb + d * d) / (2 * d);
    const double h = std::sqrt(std::max(ra * ra - x * x, 0.0));
    const double ux = dx / d;
    const double uy = dy / d;
    const double px = a.center.x + ux * x;
    const double py = a.center.y + uy * x;
    return std::array{Point{px - uy * h, py + ux * h}, Point{px + uy * h, py - ux * h}};
}

std::vector<Point> packCircles(std::span<const double> radii, const LockedFlag* stop,
                               PackingWork* work)
{
    CirclePacking packing(radii);
    for (std::size_t i = 0; i < radii.size(); ++i) {
        if (isStopped(stop)) {
            return {};
        }
        packing.place();
    }
    if (work != nullptr) {
        *work = packing.work();
    }
    return packing.take();
}

} // namespace quorvane
