// SPDX-License-Identifier: MIT
#include "CirclePacking.h"

#include <algorithm>
#include <cmath>

namespace quorvane {

namespace {

/// Of the square of a distance: nearer than that to its turn, an arc counts as turning.
constexpr double turnSlack = 1e-12;

/// By insertion, unless that takes more moves than given.
void sortNearlySorted(std::vector<std::pair<double, Index>>& list, std::size_t maxMoves)
{
    std::size_t moves = 0;
    for (std::size_t i = 1; i < list.size(); ++i) {
        const auto item = list[i];
        std::size_t at = i;
        for (; at > 0 && item < list[at - 1]; --at) {
            list[at] = list[at - 1];
        }
        list[at] = item;
        moves += i - at;
        if (moves > maxMoves) {
            std::sort(list.begin(), list.end());
            return;
        }
    }
}

} // namespace

/// A first good place makes the ring thin; the thinner it is, the less each line shows of itself.
void CirclePacking::searchSights()
{
    bool isDone = false;
    while (!isDone) {
        collectSights();
        arrangeRows();
        orderSights();
        isDone = weighMeetings();
    }
}

/// Under which angles each circle that is awake shows places between the floor and the best one.
void CirclePacking::collectSights()
{
    m_sights.clear();
    const double scale = m_reach + m_radii[0];
    const double roundingSlack = 16 * machineEpsilon * scale;
    const double likeSlack = likeSlackOf(largeLine * 2 * m_radius);
    m_ringNear = std::max(m_floor - likeSlack, 0.0);
    m_ringFar = m_winner.distance + likeSlack;
    m_orderSlack = 1e5 * machineEpsilon * scale / m_ringNear;
    for (Index index = 0; index < m_circles.size(); ++index) {
        const Circle& seen = m_circles[index];
        if (!seen.isAwake) {
            continue;
        }
        const double line = m_radius + m_radii[index];
        if (std::abs(seen.distance - line) > m_winner.distance + slackOf(line)) {
            continue;
        }
        const std::size_t wanted = seen.blockers.size() / 16 + 1;
        if (seen.unseenBlockers >= wanted && buryIfCovered(index)) {
            continue;
        }
        const double slack = slackOf(line);
        appendSights(index, std::max(m_floor - slack, 0.0),
                     m_winner.distance + slack + roundingSlack, slack);
    }
    m_work.looks += m_sights.size();
}

void CirclePacking::appendSights(Index index, double nearest, double farthest, double slack)
{
    const Circle& seen = m_circles[index];
    const PolarCircle line{seen.distance, seen.angle, m_radius + m_radii[index], slack};
    m_arcs.clear();
    appendVisibleArcs(line, nearest, farthest, m_arcs);
    // Two pieces may also be one, cut where the angles begin again.
    const bool isTwoSided =
        m_arcs.size() == 2 && m_arcs.front().end < seen.angle && m_arcs.back().start > seen.angle;
    const bool isCrossing = isTwoSided && !isLarge(index) && seen.distance > line.radius &&
                            crossesWholeRing(line, m_ringNear, m_ringFar);
    std::array<ArcEnds, 2> ends;
    double reach = infinity;
    if (isCrossing) {
        ends = arcsAcrossRing(line, m_centers[index], m_ringNear, m_ringFar);
        reach = reachOf(line, ends[0]);
    }
    for (std::size_t side = 0; side < m_arcs.size(); ++side) {
        Sight& sight = m_sights.emplace_back();
        sight.arc = m_arcs[side];
        sight.circle = index;
        sight.key = index * maxPieces + static_cast<Index>(side);
        sight.isCrossing = isCrossing;
        if (isCrossing) {
            sight.ends = ends[side];
            sight.reach = reach;
            if (seen.chain != 0) {
                sight.row = 2 * seen.chain + static_cast<Index>(side);
            }
        }
    }
}

/// From end to end the angle grows or falls all the way, unless the line turns where the origin
/// sees it edge on; the way along the arc is more than any angle on it. A place beside the line by
/// the slack lies beside the arc, at the same distance from the origin, by more where the line runs
/// aslant: by the slack over the sine of the slant, which the crossing keeps above a bound.
double CirclePacking::reachOf(const PolarCircle& line, const ArcEnds& ends) const
{
    // An arc of less than half a turn is at most pi / 2 its chord, and an angle of less than a
    // quarter at most as many times its sine.
    constexpr double margin = 1.6;
    const double aside = 4 * likeSlackOf(line.radius) * std::sqrt(line.radius / line.slack);
    const double squaredTangent = (line.distance - line.radius) * (line.distance + line.radius);
    const bool isTurning = squaredTangent > m_ringNear * m_ringNear * (1 - turnSlack) &&
                           squaredTangent < m_ringFar * m_ringFar * (1 + turnSlack);
    const double across =
        isTurning ? lengthOf(ends.far.x - ends.near.x, ends.far.y - ends.near.y)
                  : std::abs(ends.near.x * ends.far.y - ends.near.y * ends.far.x) / m_ringFar;
    return (margin * across + aside) / m_ringNear + m_orderSlack;
}

/// Only lines of like circles are so exact.
ArcPlace CirclePacking::placeOf(const Sight& sight, const Sight& other) const
{
    if (!sight.isCrossing || !other.isCrossing) {
        return ArcPlace::across;
    }
    const double line = m_radius + m_radii[other.circle];
    return placeOfArc({m_centers[sight.circle], m_radius + m_radii[sight.circle]}, sight.ends,
                      {m_centers[other.circle], line}, likeSlackOf(line));
}

/// By where they start. From one circle to the next little changes: the last order comes first, and
/// what has moved is pushed back to its place.
void CirclePacking::orderSights()
{
    m_sightsByKey.assign(m_circles.size() * maxPieces, noSight);
    for (Index i = 0; i < m_sights.size(); ++i) {
        m_sightsByKey[m_sights[i].key] = i;
    }
    m_order.clear();
    const auto take = [&](Index& i) {
        if (i != noSight) {
            m_order.push_back({m_sights[i].arc.start, i});
            i = noSight;
        }
    };
    for (const Index key : m_lastKeys) {
        take(m_sightsByKey[key]);
    }
    for (const Sight& sight : m_sights) {
        take(m_sightsByKey[sight.key]);
    }
    constexpr std::size_t movesPerSight = 8;
    sortNearlySorted(m_order, movesPerSight * m_order.size());
    m_lastKeys.clear();
    for (const auto& [start, i] : m_order) {
        m_lastKeys.push_back(m_sights[i].key);
    }
}

/// Weighs the pairs whose sights overlap. Gives up, with a better winner, when another search in
/// what is left of the ring will be shorter.
bool CirclePacking::weighMeetings()
{
    const double thickness = m_winner.distance - m_floor;
    constexpr std::size_t looksPerSight = 16;
    const std::size_t enough = m_work.looks + looksPerSight * m_sights.size();
    m_openRows.clear();
    for (const auto& [start, index] : m_order) {
        const Sight& sight = m_sights[index];
        weighMeetingsWith(sight);
        if (m_rows[sight.row].empty()) {
            m_openRows.push_back(sight.row);
        }
        m_rows[sight.row].push_back({sight.arc.end, sight.ends.nearAngle, sight.reach, index});
        if (m_work.looks > enough && m_winner.distance - m_floor < thickness / 2) {
            closeRows();
            return false;
        }
    }
    closeRows();
    return true;
}

/// Closes rows whose sights have all ended.
void CirclePacking::weighMeetingsWith(const Sight& sight)
{
    for (std::size_t open = 0; open < m_openRows.size();) {
        const Index row = m_openRows[open];
        if ((row == sight.row && row != 0) || weighMeetingsInRow(row, sight) > 0) {
            ++open;
        } else {
            m_openRows[open] = m_openRows.back();
            m_openRows.pop_back();
        }
    }
}

/// Forgets sights that have ended. How many are left.
std::size_t CirclePacking::weighMeetingsInRow(Index row, const Sight& sight)
{
    std::vector<Waiting>& members = m_rows[row];
    std::size_t kept = 0;
    for (std::size_t at = 0; at < members.size(); ++at) {
        const Waiting& member = members[at];
        if (member.end < sight.arc.start) {
            continue;
        }
        if (std::abs(member.nearAngle - sight.ends.nearAngle) <= member.reach + sight.reach) {
            weighMeeting(m_sights[member.sight], sight);
        }
        if (kept != at) {
            members[kept] = member;
        }
        ++kept;
    }
    m_work.looks += members.size();
    members.resize(kept);
    return kept;
}

void CirclePacking::weighMeeting(const Sight& one, const Sight& other)
{
    if (one.circle != other.circle && placeOf(one, other) == ArcPlace::across &&
        placeOf(other, one) == ArcPlace::across) {
        weigh({std::min(one.circle, other.circle), std::max(one.circle, other.circle)});
    }
}

void CirclePacking::closeRows()
{
    for (const Index row : m_openRows) {
        m_rows[row].clear();
    }
    m_openRows.clear();
}

} // namespace quorvane
