// SPDX-License-Identifier: MIT
#pragma once

#include "BubbleArcs.h"
#include "BubblePacking.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <queue>
#include <span>
#include <utility>
#include <vector>

namespace quorvane {

using Index = std::uint32_t;

inline constexpr Index noSight = std::numeric_limits<Index>::max();
/// In how many pieces a line can be seen.
inline constexpr Index maxPieces = 4;
/// By how many times the largest line among like ones exceeds the smallest.
inline constexpr double largeLine = 8;
inline constexpr double infinity = std::numeric_limits<double>::infinity();
inline constexpr double machineEpsilon = std::numeric_limits<double>::epsilon();

inline double lengthOf(double x, double y)
{
    return std::sqrt(x * x + y * y);
}

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
/// - Many small circles touch the same two on the same side, one after the other, where the next
///   one goes too. Their lines stand across the ring side by side: when each is apart from the
///   next, no two of them meet there, and none of those many pairs is looked at.
/// - Circles smaller than the tolerance may lie on one place. One that equals an earlier circle
///   makes the same places later in the order: it matters only when another came in between.
/// - Such circles may also lie inside each other; then their places touch nothing and follow no
///   such rule. Those pairs are kept apart, and each is looked at again when it could matter.
class CirclePacking
{
public:
    explicit CirclePacking(std::span<const double> radii)
        : m_radii(radii)
        , m_buckets(radii.size())
    {
        m_centers.reserve(radii.size());
    }

    /// Finds the next circle's place. Once for each radius.
    void place();
    std::vector<Point> take() { return std::move(m_centers); }
    const PackingWork& work() const { return m_work; }

private:
    struct Circle
    {
        double distance = 0; ///< of the centre from the origin
        double angle = 0;
        std::vector<Index> blockers; ///< what can lie across the line of places around it
        bool isAwake = true;
        Index chain = 0;                ///< of the circles that touch the same two on the same side
        std::size_t unseenBlockers = 0; ///< since it was last looked at whether it is buried
    };
    struct Sleeper
    {
        double wakeRadius = 0;
        Index circle = 0;
        bool operator<(const Sleeper& other) const { return wakeRadius < other.wakeRadius; }
    };
    /// A sight that has begun and may overlap the next ones.
    struct Waiting
    {
        double end = 0;
        double nearAngle = 0;
        double reach = 0;
        Index sight = 0;
    };
    struct Sight
    {
        ArcSpan arc;
        Index circle = 0;
        Index key = 0;           ///< of the circle and the piece of its line
        bool isCrossing = false; ///< the whole ring, on this side
        ArcEnds ends;            ///< of a line that does so
        /// How far from the angle of the near end meetings with a like one can be.
        double reach = infinity;
        bool isPost = false;  ///< of its row
        std::size_t slot = 0; ///< in its row
        Index row = 0;        ///< sights of one row cannot meet each other; 0 is no row
    };

    struct Motion
    {
        double speed = 0; ///< points for each point of the radius
        double slack = 0; ///< points
    };

    PlacedCircle circle(Index index) const { return {m_centers[index], m_radii[index]}; }
    double distanceOf(const Pair& pair) const;
    void add(const Point& center);
    bool isIdleTwin(Index newer);
    void relate(Index older, Index newer);
    Index chainOf(const Winner& winner);
    double slackOf(double lineRadius) const;
    double likeSlackOf(double lineRadius) const;
    bool isLarge(Index index) const;
    void wake();
    bool isCoveredBy(Index index, double depth);
    bool buryIfCovered(Index index);

    void seed(const Pair& previous);
    void weigh(const Pair& pair);
    bool isFree(const Point& place, Index a, Index b) const;
    bool isFreeOfAll(const Point& place) const;
    bool overlaps(const Point& place, Index other) const;

    bool isSpecial(const Pair& pair) const;
    void searchSpecialPairs();
    Motion motionOf(const Pair& pair) const;
    double restOf(const Point& place, const Motion& motion) const;
    void weighSpecialPair(const Pair& pair);
    void settleSpecialPairs();

    void searchSights();
    void collectSights();
    void appendSights(Index index, double nearest, double farthest, double slack);
    double reachOf(const PolarCircle& line, const ArcEnds& ends) const;
    void orderSights();
    bool weighMeetings();
    void weighMeetingsWith(const Sight& sight);
    std::size_t weighMeetingsInRow(Index row, const Sight& sight);
    void weighMeeting(const Sight& one, const Sight& other);
    ArcPlace placeOf(const Sight& sight, const Sight& other) const;

    void arrangeRows();
    void arrangeRow(std::vector<Index>& members);
    void setPosts(const std::vector<Index>& members);
    bool isBetweenPosts(const Sight& sight) const;
    bool isApart(const Sight& one, const Sight& other) const;
    void weighNeighbours(const std::vector<Index>& members);
    void closeRows();

    std::span<const double> m_radii;
    std::vector<Point> m_centers;
    PackingWork m_work;
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
    double m_orderSlack = 0;                  ///< angles of sights that differ by more are in order
    double m_ringNear = 0; ///< of the ring in which lines of like circles are looked at
    double m_ringFar = 0;
    double m_floor = 0; ///< nothing nearer the origin is free
    Winner m_winner;
    std::map<std::array<Index, 3>, Index> m_chains; ///< by the two touched and the side
    std::vector<std::vector<Waiting>> m_rows;       ///< in the first, sights of no row
    std::vector<std::vector<Index>> m_rowMembers;
    std::vector<Index> m_openRows;
    std::vector<std::size_t> m_posts; ///< sights of the row being arranged
    std::vector<Index> m_sightsByKey;
    std::vector<Index> m_lastKeys; ///< of the sights of the last search in their order
    std::vector<Sight> m_sights;
    std::vector<std::pair<double, Index>> m_order; ///< of the sights by where they start
    std::vector<ArcSpan> m_arcs;
    std::vector<Disc> m_discs;
};

} // namespace quorvane
