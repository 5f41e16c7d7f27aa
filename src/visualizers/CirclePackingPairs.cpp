// SPDX-License-Identifier: MIT
#include "CirclePacking.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quorvane {

/// One circle lies in the other or nearly so, or nearly has its centre, so that no place touches
/// both, or none that rounding would not spoil. A pair on one point has no places at all.
bool CirclePacking::isSpecial(const Pair& pair) const
{
    constexpr double nestedSlack = 1 + 1e-9;
    constexpr double nestedSlackNearby = 1 + 1e-6;
    constexpr double nearShare = 1e-3;
    constexpr double minShare = 1e-7;
    const double distance = distanceOf(pair);
    const double sum = m_radii[pair.a] + m_radii[pair.b];
    const double nested = (m_radii[pair.a] - m_radii[pair.b]) *
                          (distance < nearShare * sum ? nestedSlackNearby : nestedSlack);
    return distance > 0 && distance < std::max(nested, minShare * sum);
}

void CirclePacking::searchSpecialPairs()
{
    const std::vector<Pair> due = std::exchange(m_buckets[m_centers.size()], {});
    for (const Pair& pair : due) {
        weighSpecialPair(pair);
    }
}

/// How fast the places of a special pair can move while the radius shrinks, and how far rounding
/// can put them off.
CirclePacking::Motion CirclePacking::motionOf(const Pair& pair) const
{
    const double distance = distanceOf(pair);
    const double nested = (m_radii[pair.a] - m_radii[pair.b]) / distance;
    if (nested > 1) {
        return {nested, slackOf(m_radius) * nested};
    }
    // A place moves by 1 / cos(half the angle between its two circles); the angle grows as the
    // radius shrinks. Where the centres are so near each other, it is next to none.
    constexpr double smallSine = 1e-4;
    const double smallest = m_radii.back();
    const double difference = m_radii[pair.a] - m_radii[pair.b];
    const double squaredSine = (distance - difference) * (distance + difference) /
                               (4 * (m_radii[pair.a] + smallest) * (m_radii[pair.b] + smallest));
    if (!(squaredSine < smallSine)) {
        return {infinity, 0};
    }
    const double line = m_radii[pair.a] + m_radius;
    const double along = machineEpsilon * line * line / distance;
    constexpr double margin = 16;
    return {1 + smallSine, margin * (along + std::sqrt(2 * line * along) +
                                     machineEpsilon * (m_reach + m_radii[0]))};
}

/// By how much the radius may shrink before a place of a special pair can matter.
double CirclePacking::restOf(const Point& place, const Motion& motion) const
{
    if (motion.speed == infinity) {
        return 0;
    }
    const double distance = lengthOf(place.x, place.y);
    if (distance < m_floor) {
        return (m_floor - distance - motion.slack) / (motion.speed + 1);
    }
    return distance > m_ceiling ? (distance - m_ceiling - motion.slack) / motion.speed : 0;
}

void CirclePacking::weighSpecialPair(const Pair& pair)
{
    ++m_work.pairs;
    const auto places = placesTouching(circle(pair.a), circle(pair.b), m_radius);
    double rest = 0;
    if (places) {
        const Motion motion = motionOf(pair);
        rest = std::min(restOf(places->front(), motion), restOf(places->back(), motion));
    }
    for (std::size_t side = 0; places && rest <= 0 && side < places->size(); ++side) {
        const Point& place = (*places)[side];
        const double distance = lengthOf(place.x, place.y);
        if (m_winner.losesTo(distance, pair, side) && isFreeOfAll(place)) {
            m_winner = {place, distance, pair, side};
        }
    }
    // Looked at again for the first later circle that is small enough.
    std::size_t step = m_centers.size() + 1;
    if (rest > 0) {
        const auto later = m_radii.begin() + static_cast<std::ptrdiff_t>(step);
        const auto due = std::partition_point(
            later, m_radii.end(), [&](double radius) { return radius > m_radius - rest; });
        step = static_cast<std::size_t>(due - m_radii.begin());
    }
    if (step < m_buckets.size()) {
        m_buckets[step].push_back(pair);
    }
}

/// Special pairs sleep on the word that the best place is no farther than the ceiling.
void CirclePacking::settleSpecialPairs()
{
    const double headroom = m_radius / 256;
    if (m_winner.distance > m_ceiling && !m_specialPairs.empty()) {
        m_ceiling = m_winner.distance + headroom;
        for (std::vector<Pair>& bucket : m_buckets) {
            bucket.clear();
        }
        for (const Pair& pair : m_specialPairs) {
            weighSpecialPair(pair);
        }
    }
    if (m_ceiling > m_winner.distance + 2 * headroom) {
        m_ceiling = m_winner.distance + headroom;
    }
}

} // namespace quorvane
