// SPDX-License-Identifier: MIT
#include "PolarShapes.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quorvane {
namespace {

constexpr double quarter = std::numbers::pi / 2;

/// Qt counts degrees, and counter-clockwise.
double toQtDegrees(double radians)
{
    return -radians * 180 / std::numbers::pi;
}

QRectF circleBox(const QPointF& center, double radius)
{
    return {center.x() - radius, center.y() - radius, 2 * radius, 2 * radius};
}

} // namespace

QPointF polarPoint(const QPointF& center, double radius, double angle)
{
    return {center.x() + radius * std::cos(angle), center.y() + radius * std::sin(angle)};
}

QPainterPath annulus(const RingSector& sector)
{
    const double from = toQtDegrees(sector.start);
    const double sweep = toQtDegrees(sector.end - sector.start);
    QPainterPath path;
    path.arcMoveTo(circleBox(sector.center, sector.outer), from);
    path.arcTo(circleBox(sector.center, sector.outer), from, sweep);
    path.arcTo(circleBox(sector.center, sector.inner), from + sweep, -sweep);
    path.closeSubpath();
    return path;
}

QPainterPath outerArc(const RingSector& sector)
{
    const QRectF box = circleBox(sector.center, sector.outer);
    QPainterPath path;
    path.arcMoveTo(box, toQtDegrees(sector.start));
    path.arcTo(box, toQtDegrees(sector.start), toQtDegrees(sector.end - sector.start));
    return path;
}

QRectF boundsOf(const RingSector& sector)
{
    const QPointF first = polarPoint(sector.center, sector.inner, sector.start);
    double left = first.x();
    double right = first.x();
    double top = first.y();
    double bottom = first.y();
    const auto include = [&](double radius, double angle) {
        const QPointF point = polarPoint(sector.center, radius, angle);
        left = std::min(left, point.x());
        right = std::max(right, point.x());
        top = std::min(top, point.y());
        bottom = std::max(bottom, point.y());
    };
    include(sector.outer, sector.start);
    include(sector.inner, sector.end);
    include(sector.outer, sector.end);
    // Where the outer arc passes an axis it reaches farthest.
    for (double axis = std::ceil(sector.start / quarter) * quarter; axis < sector.end;
         axis += quarter) {
        include(sector.outer, axis);
    }
    return {left, top, right - left, bottom - top};
}

} // namespace quorvane
