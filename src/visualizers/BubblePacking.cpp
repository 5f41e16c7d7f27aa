// SPDX-License-Identifier: MIT
#include "BubblePacking.h"

#include "BubbleArcs.h"
#include "LayoutWalk.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <queue>
#include <utility>

namespace quorvane {
namespace {

using Index = std::uint32_t;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double machineEpsilon = std::numeric_limits<double>::epsilon();

double lengthOf(double x, double y)
{
    return std::sqrt(x * x + y * y);
}

} // namespace

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

namespace {

struct Pair
{
    Index a = 0; ///< below b
    Index b = 0;
};

/// The best place found for one circle.
struct Winner
{
    Point place;
    double distance = infinity;
    Pair pair;
    std::size_t side = 0;

    /// Whether the other is nearer, or as near and earlier in the order of the pairs.
    bool losesTo(double otherDistance, const Pair& otherPair, std::size_t otherSide) const
    {
        if (otherDistance != distance) {
            return otherDistance < distance;
        }
        if (otherPair.a != pair.a) {
            return otherPair.a < pair.a;
        }
        return otherPair.b != pair.b ? otherPair.b < pair.b : otherSide < side;
    }
};

/// The packing under way. What it leaves out of the search, and why nothing is lost:
///
/// - A place touches its two circles, so it lies on the circle of points that touch one of them.
///   Where others cover that whole line, none of its places is free: such a circle is buried, and
///   sleeps until the new circles are so much smaller that a gap could have opened.
/// - Only places between the edge of the first circle and the best place known are of interest.
///   Seen from the origin, the lines of two circles must meet there under a common angle: the
///   angles are sorted and only overlapping ones are paired.
/// - Circles smaller than the tolerance may lie on one place. One that equals an earlier circle
///   makes the same places later in the order: it matters only when another came in between.
/// - Such circles may also lie inside each other; then their places touch nothing and follow no
///   such rule. Those few pairs are kept apart, and each is looked at again when it could matter.
class Packing
{
public:
    explicit Packing(std::span<const double> radii)
        : m_radii(radii)
        , m_buckets(radii.size())
    {
        m_centers.reserve(radii.size());
    }

    void place();
    std::vector<Point> take() { return std::move(m_centers); }

private:
    struct Circle
    {
        double distance = 0; ///< of the centre from the origin
        double angle = 0;
        std::vector<Index> blockers; ///< what can lie across the line of places around it
        bool isAwake = true;
        std::size_t unseenBlockers = 0; ///< since it was last looked at whether it is buried
    };
    struct Sleeper
    {
        double wakeRadius = 0;
        Index circle = 0;
        bool operator<(const Sleeper& other) const { return wakeRadius < other.wakeRadius; }
    };
    struct Sight
    {
        ArcSpan arc;
        Index circle = 0;
        std::optional<ArcEnds> ends; ///< where the line crosses the whole ring on this side
    };

    PlacedCircle circle(Index index) const { return {m_centers[index], m_radii[index]}; }
    void add(const Point& center);
    bool isIdleTwin(Index newer);
    void relate(Index older, Index newer);
    double distanceOf(const Pair& pair) const;
    bool isSpecial(const Pair& pair) const;
    double slackOf(double lineRadius) const;
    void wake();
    void seed();
    void weigh(const Pair& pair);
    bool isFree(const Point& place, Index a, Index b) const;
    bool isFreeOfAll(const Point& place) const;
    bool overlaps(const Point& place, Index other) const;
    void searchSpecialPairs();
    double restOf(const Pair& pair, const Point& place) const;
    void weighSpecialPair(const Pair& pair);
    void settleSpecialPairs();
    void searchSights();
    bool weighMeetings();
    bool isLarge(Index index) const;
    double likeSlackOf(double lineRadius) const;
    bool canMeet(const Sight& sight, Index other) const;
    void collectSights();
    void appendSights(Index index, double nearest, double farthest, double slack);
    bool isCoveredBy(Index index, double depth);
    bool buryIfCovered(Index index);

    std::span<const double> m_radii;
    std::vector<Point> m_centers;
    std::vector<Circle> m_circles;
    std::priority_queue<Sleeper> m_sleepers;
    std::map<std::array<double, 3>, Index> m_lastTwins; ///< by centre and radius
    Index m_lastOriginal = 0;                           ///< that equals no earlier circle
    Index m_lastActive = 0;                             ///< that takes part in pairs
    std::vector<Pair> m_specialPairs;
    std::vector<std::vector<Pair>> m_buckets; ///< special pairs by the step that looks at them
    double m_ceiling = 0;                     ///< special pairs sleep above it
    double m_reach = 0;                       ///< of the farthest circle from the origin
    double m_radius = 0;                      ///< of the circle to place
    double m_floor = 0;                       ///< nothing nearer the origin is free
    Winner m_winner;
    std::vector<Sight> m_sights;
    std::vector<ArcSpan> m_arcs;
    std::vector<Disc> m_discs;
};

void Packing::place()
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
    m_winner = {};
    m_floor = std::max(m_radius + m_radii[0] - bubbleTolerance, 0.0);
    wake();
    seed();
    searchSpecialPairs();
    searchSights();
    settleSpecialPairs();
    add(m_winner.distance < infinity ? m_winner.place : besideFirst);
}

void Packing::add(const Point& center)
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
bool Packing::isIdleTwin(Index newer)
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

void Packing::relate(Index older, Index newer)
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

double Packing::distanceOf(const Pair& pair) const
{
    return lengthOf(m_centers[pair.b].x - m_centers[pair.a].x,
                    m_centers[pair.b].y - m_centers[pair.a].y);
}

/// One circle lies in the other or nearly has its centre, so that no place touches both, or none
/// that rounding would not spoil. A pair on one point has no places at all.
bool Packing::isSpecial(const Pair& pair) const
{
    constexpr double nestedSlack = 1 + 1e-9;
    constexpr double leastShare = 1e-3;
    const double distance = distanceOf(pair);
    const double nested = (m_radii[pair.a] - m_radii[pair.b]) * nestedSlack;
    const double least = leastShare * (m_radii[pair.a] + m_radii[pair.b]);
    return distance > 0 && distance < std::max(nested, least);
}

/// How far rounding can move a place off the line of a circle.
double Packing::slackOf(double lineRadius) const
{
    constexpr double share = 4e-6;
    constexpr double margin = 4;
    const double scale = m_reach + m_radii[0];
    return share * lineRadius + margin * machineEpsilon * scale * scale / lineRadius +
           margin * std::sqrt(lineRadius * machineEpsilon * scale);
}

/// Whether lines of places around a circle and around the smallest one differ so much that their
/// meeting comes out less exact.
bool Packing::isLarge(Index index) const
{
    constexpr double likeness = 8;
    return m_radii[index] + m_radius > likeness * 2 * m_radius;
}

/// The same for pairs of which none is large. For lines L and at most 8 L, whose centres lie a
/// thousandth of their size apart or more, a place is off by some 1e5 epsilon L.
double Packing::likeSlackOf(double lineRadius) const
{
    constexpr double share = 1e-9;
    constexpr double margin = 16;
    return share * lineRadius + margin * machineEpsilon * (m_reach + m_radii[0]);
}

void Packing::wake()
{
    while (!m_sleepers.empty() && m_radius <= m_sleepers.top().wakeRadius) {
        Circle& sleeper = m_circles[m_sleepers.top().circle];
        sleeper.isAwake = true;
        sleeper.unseenBlockers = sleeper.blockers.size() + 1;
        m_sleepers.pop();
    }
}

/// A first good place: at the circle placed last, where the last winner lay.
void Packing::seed()
{
    for (Index other = 0; other < m_circles.size(); ++other) {
        if (m_circles[other].isAwake && other != m_lastActive) {
            weigh({std::min(other, m_lastActive), std::max(other, m_lastActive)});
        }
    }
}

void Packing::weigh(const Pair& pair)
{
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

bool Packing::overlaps(const Point& place, Index other) const
{
    const double distance = lengthOf(place.x - m_centers[other].x, place.y - m_centers[other].y);
    return distance < m_radius + m_radii[other] - bubbleTolerance;
}

/// What lies across a place that touches two circles is a blocker of both.
bool Packing::isFree(const Point& place, Index a, Index b) const
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

bool Packing::isFreeOfAll(const Point& place) const
{
    for (Index other = 0; other < m_centers.size(); ++other) {
        if (overlaps(place, other)) {
            return false;
        }
    }
    return true;
}

void Packing::searchSpecialPairs()
{
    const std::vector<Pair> due = std::exchange(m_buckets[m_centers.size()], {});
    for (const Pair& pair : due) {
        weighSpecialPair(pair);
    }
}

/// By how much the radius may shrink before the places of a special pair can matter: the place
/// moves by at most so much for each point of it.
double Packing::restOf(const Pair& pair, const Point& place) const
{
    const double speed = (m_radii[pair.a] - m_radii[pair.b]) / distanceOf(pair);
    if (speed <= 1) {
        return 0;
    }
    const double distance = lengthOf(place.x, place.y);
    const double slack = slackOf(m_radius) * speed;
    if (distance < m_floor) {
        return (m_floor - distance - slack) / (speed + 1);
    }
    return distance > m_ceiling ? (distance - m_ceiling - slack) / speed : 0;
}

void Packing::weighSpecialPair(const Pair& pair)
{
    const auto places = placesTouching(circle(pair.a), circle(pair.b), m_radius);
    const double rest = places ? restOf(pair, places->front()) : 0;
    for (std::size_t side = 0; places && rest <= 0 && side < places->size(); ++side) {
        const Point& place = (*places)[side];
        const double distance = lengthOf(place.x, place.y);
        if (m_winner.losesTo(distance, pair, side) && isFreeOfAll(place)) {
            m_winner = {place, distance, pair, side};
        }
    }
    // Looked at again for the first later circle that is small enough.
    const std::size_t next = m_centers.size() + 1;
    const auto due =
        std::partition_point(m_radii.begin() + static_cast<std::ptrdiff_t>(next), m_radii.end(),
                             [&](double radius) { return rest > 0 && radius > m_radius - rest; });
    const auto step = static_cast<std::size_t>(due - m_radii.begin());
    if (step < m_buckets.size()) {
        m_buckets[step].push_back(pair);
    }
}

/// Special pairs sleep on the word that the best place is no farther than the ceiling.
void Packing::settleSpecialPairs()
{
    if (m_winner.distance > m_ceiling && !m_specialPairs.empty()) {
        m_ceiling = m_winner.distance + m_radius / 2;
        for (std::vector<Pair>& bucket : m_buckets) {
            bucket.clear();
        }
        for (const Pair& pair : m_specialPairs) {
            weighSpecialPair(pair);
        }
    }
    if (m_ceiling > m_winner.distance + m_radius) {
        m_ceiling = m_winner.distance + m_radius / 2;
    }
}

/// A first good place makes the ring thin; the thinner it is, the less each line shows of itself.
void Packing::searchSights()
{
    bool isDone = false;
    while (!isDone) {
        collectSights();
        std::sort(m_sights.begin(), m_sights.end(),
                  [](const Sight& a, const Sight& b) { return a.arc.start < b.arc.start; });
        isDone = weighMeetings();
    }
}

/// Weighs the pairs whose sights overlap. Gives up, with a better winner, when another search in
/// what is left of the ring will be shorter.
bool Packing::weighMeetings()
{
    const double thickness = m_winner.distance - m_floor;
    std::size_t looks = 0;
    for (std::size_t i = 0; i < m_sights.size(); ++i) {
        for (std::size_t j = i + 1;
             j < m_sights.size() && m_sights[j].arc.start <= m_sights[i].arc.end; ++j) {
            const Index one = m_sights[i].circle;
            const Index other = m_sights[j].circle;
            if (one != other && canMeet(m_sights[i], other) && canMeet(m_sights[j], one)) {
                weigh({std::min(one, other), std::max(one, other)});
            }
            ++looks;
        }
        constexpr std::size_t looksPerSight = 16;
        if (looks > looksPerSight * m_sights.size() &&
            m_winner.distance - m_floor < thickness / 2) {
            return false;
        }
    }
    return true;
}

/// Under which angles each circle that is awake shows places between the floor and the best one.
void Packing::collectSights()
{
    m_sights.clear();
    const double scale = m_reach + m_radii[0];
    const double roundingSlack = 16 * machineEpsilon * scale;
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
}

void Packing::appendSights(Index index, double nearest, double farthest, double slack)
{
    const Circle& seen = m_circles[index];
    const PolarCircle line{seen.distance, seen.angle, m_radius + m_radii[index], slack};
    m_arcs.clear();
    appendVisibleArcs(line, nearest, farthest, m_arcs);
    const bool isCrossing = m_arcs.size() == 2 && crossesWholeRing(line, nearest, farthest);
    for (std::size_t side = 0; side < m_arcs.size(); ++side) {
        Sight sight{m_arcs[side], index, std::nullopt};
        if (isCrossing) {
            sight.ends = arcAcrossRing(line, nearest, farthest, side == 0 ? -1 : 1);
        }
        m_sights.push_back(sight);
    }
}

bool Packing::canMeet(const Sight& sight, Index other) const
{
    if (!sight.ends || isLarge(sight.circle) || isLarge(other)) {
        return true;
    }
    const double line = m_radius + m_radii[other];
    return arcCanMeet({m_centers[sight.circle], m_radius + m_radii[sight.circle]}, *sight.ends,
                      {m_centers[other], line}, likeSlackOf(line));
}

bool Packing::isCoveredBy(Index index, double depth)
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
bool Packing::buryIfCovered(Index index)
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

} // namespace

std::vector<Point> packCircles(std::span<const double> radii, const LockedFlag* stop)
{
    Packing packing(radii);
    for (std::size_t i = 0; i < radii.size(); ++i) {
        if (isStopped(stop)) {
            return {};
        }
        packing.place();
    }
    return packing.take();
}

} // namespace quorvane
