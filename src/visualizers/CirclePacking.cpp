// SPDX-License-Identifier: MIT
#include "CirclePacking.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quorvane {

void CirclePacking::place()
{
    const std::size_t index = m_centers.size();
    m_radius = m_radii[index];
    if (index == 0) {
        add({});
        return;
    }
    const Point besideFirst{m_radii[0] + m_radius, 0};
    if (index == 1) {
        add(besideFirst);
        return;
    }
    const Pair previous = m_winner.pair;
    m_winner = {};
    m_floor = std::max(m_radius + m_radii[0] - bubbleTolerance, 0.0);
    wake();
    seed(previous);
    searchSpecialPairs();
    searchSights();
    settleSpecialPairs();
    const Index chain = chainOf(m_winner);
    add(m_winner.distance < infinity ? m_winner.place : besideFirst);
    m_circles.back().chain = chain;
}

/// Numbers from 1.
Index CirclePacking::chainOf(const Winner& winner)
{
    if (!(winner.distance < infinity)) {
        return 0;
    }
    const auto next = static_cast<Index>(m_chains.size() + 1);
    const std::array<Index, 3> parents{winner.pair.a, winner.pair.b,
                                       static_cast<Index>(winner.side)};
    return m_chains.try_emplace(parents, next).first->second;
}

void CirclePacking::add(const Point& center)
{
    const auto newer = static_cast<Index>(m_centers.size());
    m_centers.push_back(center);
    m_circles.push_back({lengthOf(center.x, center.y), std::atan2(center.y, center.x), {}});
    m_reach = std::max(m_reach, m_circles.back().distance + m_radius);
    if (isIdleTwin(newer)) {
        m_circles[newer].isAwake = false;
        return;
    }
    m_lastActive = newer;
    for (Index older = 0; older < newer; ++older) {
        relate(older, newer);
    }
    m_circles[newer].unseenBlockers = m_circles[newer].blockers.size() + 1;
}

/// Whether the circle equals an earlier one and no other kind of circle came between.
bool CirclePacking::isIdleTwin(Index newer)
{
    const Point& center = m_centers[newer];
    const auto [twin, isOriginal] =
        m_lastTwins.try_emplace({center.x, center.y, m_radii[newer]}, newer);
    if (isOriginal) {
        m_lastOriginal = newer;
        return false;
    }
    const Index previous = std::exchange(twin->second, newer);
    return m_lastOriginal <= previous;
}

void CirclePacking::relate(Index older, Index newer)
{
    const double distance = distanceOf({older, newer});
    const double large = m_radii[older];
    const double small = m_radii[newer];
    if (distance > large + small + 2 * small) {
        return;
    }
    // No later circle is larger than the newer one.
    if (small + small > bubbleTolerance) {
        m_circles[older].blockers.push_back(newer);
        ++m_circles[older].unseenBlockers;
    }
    if (small + large > bubbleTolerance) {
        m_circles[newer].blockers.push_back(older);
    }
    if (isSpecial({older, newer})) {
        m_specialPairs.push_back({older, newer});
        if (newer + std::size_t{1} < m_buckets.size()) {
            m_buckets[newer + std::size_t{1}].push_back({older, newer});
        }
    }
}

double CirclePacking::distanceOf(const Pair& pair) const
{
    return lengthOf(m_centers[pair.b].x - m_centers[pair.a].x,
                    m_centers[pair.b].y - m_centers[pair.a].y);
}

/// How far rounding can move a place off the line of a circle.
double CirclePacking::slackOf(double lineRadius) const
{
    constexpr double share = 4e-6;
    constexpr double margin = 4;
    const double scale = m_reach + m_radii[0];
    return share * lineRadius + margin * machineEpsilon * scale * scale / lineRadius +
           margin * std::sqrt(lineRadius * machineEpsilon * scale);
}

/// Whether lines of places around a circle and around the smallest one differ so much that their
/// meeting comes out less exact.
bool CirclePacking::isLarge(Index index) const
{
    return m_radii[index] + m_radius > largeLine * 2 * m_radius;
}

/// The same for pairs of which none is large. For lines L and at most 8 L, whose centres lie a
/// thousandth of their size apart or more, a place is off by some 1e5 epsilon L.
double CirclePacking::likeSlackOf(double lineRadius) const
{
    constexpr double share = 1e-11;
    constexpr double margin = 16;
    return share * lineRadius + margin * machineEpsilon * (m_reach + m_radii[0]);
}

void CirclePacking::wake()
{
    while (!m_sleepers.empty() && m_radius <= m_sleepers.top().wakeRadius) {
        Circle& sleeper = m_circles[m_sleepers.top().circle];
        sleeper.isAwake = true;
        sleeper.unseenBlockers = sleeper.blockers.size() + 1;
        m_sleepers.pop();
    }
}

bool CirclePacking::isCoveredBy(Index index, double depth)
{
    m_discs.clear();
    for (const Index other : m_circles[index].blockers) {
        m_discs.push_back({m_centers[other], m_radius + m_radii[other] - bubbleTolerance - depth});
    }
    return isCircleCovered({m_centers[index], m_radius + m_radii[index]}, m_discs, m_arcs);
}

/// When the radius shrinks by some length, a point of the line moves by at most that and every
/// blocker draws back by it: a line that stays covered when all blockers are smaller by some depth
/// is covered until the radius has shrunk by half of that.
bool CirclePacking::buryIfCovered(Index index)
{
    Circle& covered = m_circles[index];
    covered.unseenBlockers = 0;
    const double margin = 4 * slackOf(m_radius + m_radii[index]);
    double depth = 2 * margin;
    if (!isCoveredBy(index, depth)) {
        return false;
    }
    for (const double share : {0.5, 0.125, 1.0 / 32, 1.0 / 128}) {
        if (isCoveredBy(index, depth + m_radius * share)) {
            depth += m_radius * share;
            break;
        }
    }
    covered.isAwake = false;
    m_sleepers.push({m_radius - (depth - margin) / 2, index});
    return true;
}

/// First good places: where the last winner lay, and at the circle placed last.
void CirclePacking::seed(const Pair& previous)
{
    if (previous.b != 0) {
        weigh(previous);
    }
    for (Index other = 0; other < m_circles.size(); ++other) {
        if (m_circles[other].isAwake && other != m_lastActive) {
            weigh({std::min(other, m_lastActive), std::max(other, m_lastActive)});
        }
    }
}

void CirclePacking::weigh(const Pair& pair)
{
    ++m_work.pairs;
    const auto places = placesTouching(circle(pair.a), circle(pair.b), m_radius);
    if (!places || isSpecial(pair)) {
        return;
    }
    for (std::size_t side = 0; side < places->size(); ++side) {
        const Point& place = (*places)[side];
        const double distance = lengthOf(place.x, place.y);
        if (m_winner.losesTo(distance, pair, side) && isFree(place, pair.a, pair.b)) {
            m_winner = {place, distance, pair, side};
        }
    }
}

bool CirclePacking::overlaps(const Point& place, Index other) const
{
    const double distance = lengthOf(place.x - m_centers[other].x, place.y - m_centers[other].y);
    return distance < m_radius + m_radii[other] - bubbleTolerance;
}

/// What lies across a place that touches two circles is a blocker of both.
bool CirclePacking::isFree(const Point& place, Index a, Index b) const
{
    const Circle& first = m_circles[a];
    const Circle& second = m_circles[b];
    const std::vector<Index>& blockers =
        first.blockers.size() < second.blockers.size() ? first.blockers : second.blockers;
    if (overlaps(place, 0) || overlaps(place, a) || overlaps(place, b)) {
        return false;
    }
    return std::none_of(blockers.begin(), blockers.end(),
                        [&](Index other) { return overlaps(place, other); });
}

bool CirclePacking::isFreeOfAll(const Point& place) const
{
    for (Index other = 0; other < m_centers.size(); ++other) {
        if (overlaps(place, other)) {
            return false;
        }
    }
    return true;
}

} // namespace quorvane
