// SPDX-License-Identifier: MIT
#pragma once

#include "Geometry.h"

#include <array>
#include <span>
#include <vector>

namespace quorvane {

/// A piece of a turn, radians, start at or below end.
struct ArcSpan
{
    double start = 0;
    double end = 0;
};

/// A circle as it is seen from the origin.
struct PolarCircle
{
    double distance = 0; ///< of its centre
    double angle = 0;    ///< of its centre, from -pi to pi
    double radius = 0;
    double slack = 0; ///< how far a point may lie beside the circle and still count
};

/// Appends the angles, from -pi to pi, under which points of the circle lie whose distance from the
/// origin is at least nearest and at most farthest. May tell too much, never too little. Nothing
/// when there are none.
void appendVisibleArcs(const PolarCircle& circle, double nearest, double farthest,
                       std::vector<ArcSpan>& arcs);

struct Disc
{
    Point center;
    double radius = 0; ///< nothing when not positive
};

/// Where a circle crosses the edges of a ring about the origin.
struct ArcEnds
{
    Point near;
    Point far;
    double nearAngle = 0; ///< at which the origin sees the near one
};

/// Whether a circle crosses the whole ring, from edge to edge on each side of its centre.
bool crossesWholeRing(const PolarCircle& circle, double nearest, double farthest);
/// The ends of the two arcs of such a circle, that at the smaller angles first.
std::array<ArcEnds, 2> arcsAcrossRing(const PolarCircle& circle, const Point& center,
                                      double nearest, double farthest);

enum class ArcPlace { inside, outside, across };
/// Where an arc of less than half a turn lies to another circle: across when any of its points may
/// be nearer to that circle's line than the slack. May say across too often, never too seldom.
ArcPlace placeOfArc(const Disc& circle, const ArcEnds& arc, const Disc& other, double slack);

/// Whether open discs cover the whole line of a circle. Reuses the list for its work.
bool isCircleCovered(const Disc& circle, std::span<const Disc> discs, std::vector<ArcSpan>& work);

} // namespace quorvane
