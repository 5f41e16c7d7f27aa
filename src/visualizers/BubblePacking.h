// SPDX-License-Identifier: MIT
#pragma once

#include "Geometry.h"

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace quorvane {

class LockedFlag;

/// How far two bubbles may overlap, so that touching ones pass whatever the rounding.
inline constexpr double bubbleTolerance = 0.5;

struct PlacedCircle
{
    Point center;
    double radius = 0;
};

/// The two places where a circle of the given radius touches both others; absent when they lie too
/// far apart or on one point.
std::optional<std::array<Point, 2>> placesTouching(const PlacedCircle& a, const PlacedCircle& b,
                                                   double radius);

/// What a search for places took.
struct PackingWork
{
    std::size_t pairs = 0; ///< whose places were computed
    std::size_t looks = 0; ///< at circles, and at two of them beside each other
};

/// Centres of circles that touch each other, the first on the origin, the second to its right.
///
/// Every further circle goes to the place nearest the origin that touches two circles before it and
/// lies in none by more than the tolerance; of places equally near, to the first in the order of
/// the pairs. When there is no such place it touches the first circle from the right. The radii are
/// positive and do not grow.
///
/// The search leaves out pairs that cannot win, and only those. Polls `stop`, if given, once a
/// circle; a stopped packing is empty. Tells its work, if asked; a stopped one does not. Any
/// thread.
std::vector<Point> packCircles(std::span<const double> radii, const LockedFlag* stop = nullptr,
                               PackingWork* work = nullptr);

} // namespace quorvane
