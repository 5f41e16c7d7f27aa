// SPDX-License-Identifier: MIT
#include "BubbleArcs.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quorvane {
namespace {

constexpr double pi = std::numbers::pi;
constexpr double angleSlack = 1e-12;

/// Appends a span that may reach beyond one end of the turn, in at most two pieces.
void appendWrapped(double start, double end, std::vector<ArcSpan>& arcs)
{
    if (end - start >= 2 * pi) {
        arcs.push_back({-pi, pi});
    } else if (start < -pi) {
        arcs.push_back({start + 2 * pi, pi});
        arcs.push_back({-pi, end});
    } else if (end > pi) {
        arcs.push_back({start, pi});
        arcs.push_back({-pi, end - 2 * pi});
    } else {
        arcs.push_back({start, end});
    }
}

/// For the angle at the origin between the circle's centre and its points at a distance s, the
/// square of the sine of its half: it stays exact where the angle is small.
double squaredHalfSine(double distance, double radius, double s)
{
    const double across = std::abs(distance - s);
    const double squared = (radius - across) * (radius + across) / (4 * distance * s);
    return std::clamp(squared, 0.0, 1.0);
}

double angleOf(double squaredHalfSine)
{
    return 2 * std::asin(std::sqrt(squaredHalfSine));
}

} // namespace

void appendVisibleArcs(const PolarCircle& circle, double nearest, double farthest,
                       std::vector<ArcSpan>& arcs)
{
    const double distance = circle.distance;
    const double outer = circle.radius + circle.slack;
    const double inner = std::max(circle.radius - circle.slack, 0.0);
    const double reachNear = std::max(distance - outer, inner - distance);
    const double from = std::max(nearest, reachNear);
    const double to = std::min(farthest, distance + outer);
    if (from > to) {
        return;
    }
    if (distance <= circle.slack || from <= circle.slack) {
        arcs.push_back({-pi, pi});
        return;
    }
    double widest =
        std::max(squaredHalfSine(distance, outer, from), squaredHalfSine(distance, outer, to));
    if (distance > outer) {
        const double tangent = std::sqrt((distance - outer) * (distance + outer));
        if (tangent > from && tangent < to) {
            widest = squaredHalfSine(distance, outer, tangent);
        }
    }
    const double narrowest =
        std::min(squaredHalfSine(distance, inner, from), squaredHalfSine(distance, inner, to));
    const double low = std::max(angleOf(narrowest) - angleSlack, 0.0);
    const double high = angleOf(widest) + angleSlack;
    if (low <= angleSlack) {
        appendWrapped(circle.angle - high, circle.angle + high, arcs);
    } else {
        appendWrapped(circle.angle - high, circle.angle - low, arcs);
        appendWrapped(circle.angle + low, circle.angle + high, arcs);
    }
}

bool crossesWholeRing(const PolarCircle& circle, double nearest, double farthest)
{
    return circle.distance > circle.slack && nearest > circle.slack &&
           nearest > std::abs(circle.distance - circle.radius) + circle.slack &&
           farthest < circle.distance + circle.radius - circle.slack;
}

std::array<ArcEnds, 2> arcsAcrossRing(const PolarCircle& circle, const Point& center,
                                      double nearest, double farthest)
{
    const auto placesAt = [&](double distance, double squared) {
        // The centre's direction, turned by the angle to either side.
        const double scale = distance / circle.distance;
        const double cosine = scale * (1 - 2 * squared);
        const double sine = scale * 2 * std::sqrt(squared * (1 - squared));
        return std::array{
            Point{center.x * cosine + center.y * sine, center.y * cosine - center.x * sine},
            Point{center.x * cosine - center.y * sine, center.y * cosine + center.x * sine}};
    };
    const double squared = squaredHalfSine(circle.distance, circle.radius, nearest);
    const auto near = placesAt(nearest, squared);
    const auto far = placesAt(farthest, squaredHalfSine(circle.distance, circle.radius, farthest));
    const double angle = angleOf(squared);
    return {ArcEnds{near[0], far[0], circle.angle - angle},
            ArcEnds{near[1], far[1], circle.angle + angle}};
}

ArcPlace placeOfArc(const Disc& circle, const ArcEnds& arc, const Disc& other, double slack)
{
    // Along a circle the square of the distance from a point is a cosine, whose extremes lie in the
    // direction of that point and opposite to it: between two places it stays on their side of a
    // value unless it turns in between.
    const double x = other.center.x - circle.center.x;
    const double y = other.center.y - circle.center.y;
    const Point near{arc.near.x - circle.center.x, arc.near.y - circle.center.y};
    const Point far{arc.far.x - circle.center.x, arc.far.y - circle.center.y};
    const double line = other.radius * other.radius;
    const auto beyond = [&](const Point& place) {
        const double dx = place.x - x;
        const double dy = place.y - y;
        return dx * dx + dy * dy - line;
    };
    const double atNear = beyond(near);
    const double atFar = beyond(far);
    double lowest = std::min(atNear, atFar);
    double highest = std::max(atNear, atFar);
    if (!((near.x * y - near.y * x) * (far.x * y - far.y * x) > 0)) {
        const double distance = std::sqrt(x * x + y * y);
        const double nearest = circle.radius - distance;
        const double farthest = circle.radius + distance;
        const double nearTowards = near.x * x + near.y * y;
        const double farTowards = far.x * x + far.y * y;
        // An arc of less than half a turn whose ends lie on the side of the other centre, or on the
        // far side, holds one of the two directions alone.
        if (!(nearTowards < 0 && farTowards < 0)) {
            lowest = std::min(lowest, nearest * nearest - line);
        }
        if (!(nearTowards > 0 && farTowards > 0)) {
            highest = std::max(highest, farthest * farthest - line);
        }
    }
    const double squareSlack = 4 * slack * (other.radius + slack);
    if (lowest > squareSlack) {
        return ArcPlace::outside;
    }
    return highest < -squareSlack ? ArcPlace::inside : ArcPlace::across;
}

bool isCircleCovered(const Disc& circle, std::span<const Disc> discs, std::vector<ArcSpan>& work)
{
    work.clear();
    for (const Disc& disc : discs) {
        const double dx = disc.center.x - circle.center.x;
        const double dy = disc.center.y - circle.center.y;
        const double distance = std::sqrt(dx * dx + dy * dy);
        if (disc.radius <= 0 || disc.radius <= std::abs(distance - circle.radius)) {
            if (distance + circle.radius < disc.radius) {
                return true;
            }
            continue;
        }
        const double cosine =
            (distance * distance + circle.radius * circle.radius - disc.radius * disc.radius) /
            (2 * distance * circle.radius);
        const double half = std::acos(std::clamp(cosine, -1.0, 1.0)) - angleSlack;
        if (half > 0) {
            const double middle = std::atan2(dy, dx);
            appendWrapped(middle - half, middle + half, work);
        }
    }
    std::sort(work.begin(), work.end(),
              [](const ArcSpan& a, const ArcSpan& b) { return a.start < b.start; });
    double reached = -pi;
    for (const ArcSpan& arc : work) {
        if (arc.start > reached) {
            return false;
        }
        reached = std::max(reached, arc.end);
    }
    return reached >= pi;
}

} // namespace quorvane
