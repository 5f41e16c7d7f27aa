// SPDX-License-Identifier: MIT
#include "BubblePacking.h"

#include "LockedFlag.h"
#include "RandomTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

namespace quorvane {
namespace {

double distanceBetween(const Point& a, const Point& b)
{
    const double dx = a.x - b.x;
    const double dy = a.y - b.y;
    return std::sqrt(dx * dx + dy * dy);
}

/// The rule word by word: every pair, every circle placed before.
std::vector<Point> plainPacking(const std::vector<double>& radii)
{
    std::vector<Point> centers;
    for (std::size_t i = 0; i < radii.size(); ++i) {
        const double r = radii[i];
        if (i == 0) {
            centers.push_back({});
            continue;
        }
        Point best{radii[0] + r, 0};
        double bestDistance = std::numeric_limits<double>::infinity();
        for (std::size_t a = 0; a < i && i > 1; ++a) {
            for (std::size_t b = a + 1; b < i; ++b) {
                const double d = distanceBetween(centers[b], centers[a]);
                const double ra = r + radii[a];
                const double rb = r + radii[b];
                if (d <= 0 || d > ra + rb) {
                    continue;
                }
                const double x = (ra * ra - rb * rb + d * d) / (2 * d);
                const double h = std::sqrt(std::max(ra * ra - x * x, 0.0));
                const Point u{(centers[b].x - centers[a].x) / d, (centers[b].y - centers[a].y) / d};
                const Point p{centers[a].x + u.x * x, centers[a].y + u.y * x};
                for (const Point& place :
                     {Point{p.x - u.y * h, p.y + u.x * h}, Point{p.x + u.y * h, p.y - u.x * h}}) {
                    bool isFree = true;
                    for (std::size_t j = 0; j < i && isFree; ++j) {
                        isFree = distanceBetween(place, centers[j]) >= r + radii[j] - 0.5;
                    }
                    const double distance = distanceBetween(place, {});
                    if (isFree && distance < bestDistance) {
                        bestDistance = distance;
                        best = place;
                    }
                }
            }
        }
        centers.push_back(best);
    }
    return centers;
}

/// Radii whose areas fill a container as the bytes of a folder would.
std::vector<double> radiiOf(std::vector<double> weights, double container)
{
    std::sort(weights.begin(), weights.end(), std::greater<>());
    double total = 0;
    for (const double weight : weights) {
        total += weight;
    }
    for (double& weight : weights) {
        weight = std::sqrt(weight / total) * container * 0.9;
    }
    return weights;
}

std::vector<double> weights(std::uint64_t seed, std::size_t count,
                            const std::function<double(test::Dice&)>& draw)
{
    test::Dice dice(seed);
    std::vector<double> result;
    for (std::size_t i = 0; i < count; ++i) {
        result.push_back(draw(dice));
    }
    return result;
}

void expectSameAsPlain(const std::vector<double>& radii, const std::string& what)
{
    const std::vector<Point> plain = plainPacking(radii);
    const std::vector<Point> found = packCircles(radii);
    ASSERT_EQ(found.size(), plain.size()) << what;
    for (std::size_t i = 0; i < plain.size(); ++i) {
        ASSERT_EQ(found[i].x, plain[i].x) << what << ", circle " << i << " of " << radii[i];
        ASSERT_EQ(found[i].y, plain[i].y) << what << ", circle " << i << " of " << radii[i];
    }
}

struct Family
{
    const char* name;
    double container;
    std::function<double(test::Dice&)> draw;
};

/// How the sizes of folders are spread, from all equal to a few giants over much dust.
std::vector<Family> families()
{
    const auto power = [](double largest) {
        return [largest](test::Dice& dice) {
            return std::floor(std::exp2(dice.fraction() * largest)) + 1;
        };
    };
    return {
        {"equal", 470, [](test::Dice&) { return 4096.0; }},
        {"even", 470, [](test::Dice& dice) { return 1 + std::floor(dice.fraction() * 1e6); }},
        {"blocks", 470,
         [](test::Dice& dice) {
             return 4096.0 * std::floor(1 + 40 * dice.fraction() * dice.fraction());
         }},
        {"ten octaves", 470, power(10)},
        {"twenty octaves", 470, power(20)},
        {"thirty octaves", 470, power(30)},
        {"forty octaves", 200, power(40)},
        {"small canvas", 21, power(12)},
        {"smaller than the tolerance", 2, power(6)},
        {"dust around a giant", 470,
         [](test::Dice& dice) { return dice.chance(0.02) ? 1e12 : 1000 + 1000 * dice.fraction(); }},
        {"grains below the tolerance around a giant", 470,
         [](test::Dice& dice) { return dice.chance(0.01) ? 1e12 : 1e5 + 5e4 * dice.fraction(); }},
        {"one giant", 470,
         [](test::Dice& dice) {
             return dice.chance(0.02) ? 5e9 : 4096.0 * (1 + std::floor(3 * dice.fraction()));
         }},
    };
}

/// A few giants, and then so many smaller ones that all the giants' places are theirs.
struct GiantFamily
{
    const char* name;
    std::size_t giants;
    double giant;
    std::function<double(test::Dice&, std::size_t)> draw;

    std::vector<double> radii(std::uint64_t seed, std::size_t count) const
    {
        test::Dice dice(seed);
        std::vector<double> all(giants, giant);
        while (all.size() < count) {
            all.push_back(draw(dice, all.size()));
        }
        return radiiOf(all, 470);
    }
};

/// Small circles that differ little all go to one place, one after the other, and nearly every two
/// of them make places just beside it.
std::vector<GiantFamily> giantFamilies()
{
    const auto between = [](double low, double high) {
        return [low, high](test::Dice& dice, std::size_t) {
            return low + (high - low) * dice.fraction();
        };
    };
    return {
        {"dust around one giant", 1, 1e12, between(1000, 2000)},
        {"dust around two giants", 2, 1e12, between(1000, 2000)},
        {"dust around twenty giants", 20, 1e12, between(1000, 2000)},
        {"dust around four small giants", 4, 1e11, between(1e4, 2e4)},
        {"grains around one giant", 1, 1e12, between(1e5, 1.5e5)},
        {"grains of a fifth of a point", 1, 1e11, between(2000, 22000)},
        {"grains of half a point", 1, 1e10, between(2000, 22000)},
        {"pebbles around one giant", 1, 1e10, between(1.5e4, 2.5e4)},
        {"dust of one size", 1, 1e12, between(4096, 4096)},
        {"dust of one byte", 1, 1e9, between(1, 1)},
        {"dust of three sizes", 1, 1e12,
         [](test::Dice& dice, std::size_t) { return 4096 * std::floor(1 + 3 * dice.fraction()); }},
        {"dust of twelve octaves", 1, 1e13,
         [](test::Dice& dice, std::size_t) {
             return std::floor(std::exp2(4 + 12 * dice.fraction()));
         }},
        {"dust that grows by bytes", 1, 1e13,
         [](test::Dice&, std::size_t index) { return 1000.0 + static_cast<double>(index); }},
        {"dust in a slow series", 1, 1e15,
         [](test::Dice&, std::size_t index) {
             return 1e6 * std::pow(0.9995, static_cast<double>(index));
         }},
        {"a series of hundredths", 0, 0,
         [](test::Dice&, std::size_t index) {
             return 1e15 * std::pow(0.99, static_cast<double>(index)) + 1;
         }},
        {"a series of tenths", 0, 0,
         [](test::Dice&, std::size_t index) {
             return std::floor(1e15 * std::pow(0.9, static_cast<double>(index))) + 1;
         }},
    };
}

TEST(BubblePacking, OneCircleStandsOnTheOrigin)
{
    EXPECT_EQ(packCircles(std::vector<double>{7}), std::vector<Point>{Point{}});
}

TEST(BubblePacking, TwoCirclesTouchOnTheAxis)
{
    EXPECT_EQ(packCircles(std::vector<double>{5, 3}), (std::vector<Point>{{0, 0}, {8, 0}}));
}

TEST(BubblePacking, ThirdOfEqualCirclesMakesATriangleBelow)
{
    const std::vector<Point> centers = packCircles(std::vector<double>{10, 10, 10});
    ASSERT_EQ(centers.size(), 3U);
    EXPECT_NEAR(centers[2].x, 10, 1e-9);
    // The first of the two places is the one that grows downwards on screen.
    EXPECT_NEAR(centers[2].y, std::sqrt(300.0), 1e-9);
}

TEST(BubblePacking, SevenEqualCirclesMakeAFlower)
{
    const std::vector<Point> centers = packCircles(std::vector<double>(7, 10.0));
    for (std::size_t i = 1; i < centers.size(); ++i) {
        EXPECT_NEAR(distanceBetween(centers[i], {}), 20, 1e-6) << i;
    }
}

TEST(BubblePacking, CirclesOverlapByTheToleranceAtMost)
{
    for (const Family& family : families()) {
        const std::vector<double> radii = radiiOf(weights(3, 120, family.draw), family.container);
        const std::vector<Point> centers = packCircles(radii);
        for (std::size_t i = 0; i < radii.size(); ++i) {
            for (std::size_t j = 0; j < i; ++j) {
                EXPECT_GE(distanceBetween(centers[i], centers[j]), radii[i] + radii[j] - 0.5)
                    << family.name << ' ' << i << ' ' << j;
            }
        }
    }
}

TEST(BubblePacking, PrunedSearchAnswersAsThePlainOne)
{
    for (const Family& family : families()) {
        for (std::uint64_t seed = 1; seed <= 40; ++seed) {
            const std::size_t count = 3 + seed * 3 % 90;
            expectSameAsPlain(radiiOf(weights(seed, count, family.draw), family.container),
                              std::string(family.name) + ", seed " + std::to_string(seed));
            if (::testing::Test::HasFatalFailure()) {
                return;
            }
        }
    }
}

TEST(BubblePacking, PrunedSearchAnswersAsThePlainOneForManyCircles)
{
    for (const Family& family : families()) {
        expectSameAsPlain(radiiOf(weights(77, 220, family.draw), family.container), family.name);
    }
}

TEST(BubblePacking, PrunedSearchAnswersAsThePlainOneAroundGiants)
{
    for (const GiantFamily& family : giantFamilies()) {
        for (std::uint64_t seed = 1; seed <= 12; ++seed) {
            const std::size_t count = 22 + seed * 7;
            expectSameAsPlain(family.radii(seed, count),
                              std::string(family.name) + ", seed " + std::to_string(seed));
            if (::testing::Test::HasFatalFailure()) {
                return;
            }
        }
    }
}

TEST(BubblePacking, PrunedSearchAnswersAsThePlainOneInLongRowsOfDust)
{
    for (const GiantFamily& family : giantFamilies()) {
        expectSameAsPlain(family.radii(5, 180), family.name);
        if (::testing::Test::HasFatalFailure()) {
            return;
        }
    }
}

/// The plain search computes the places of a third of the cube: 300 times the square here.
TEST(BubblePacking, WorkGrowsWithTheSquareOfTheCircles)
{
    static constexpr std::size_t count = 900;
    static constexpr std::size_t maxPerSquare = 16;
    const auto expectLittleWork = [](const std::vector<double>& radii, const char* name) {
        PackingWork work;
        EXPECT_EQ(packCircles(radii, nullptr, &work).size(), count) << name;
        EXPECT_LE(work.pairs + work.looks, maxPerSquare * count * count) << name;
    };
    for (const Family& family : families()) {
        expectLittleWork(radiiOf(weights(9, count, family.draw), family.container), family.name);
    }
    for (const GiantFamily& family : giantFamilies()) {
        expectLittleWork(family.radii(9, count), family.name);
    }
}

TEST(BubblePacking, TellsItsWork)
{
    PackingWork work;
    packCircles(std::vector<double>{5, 3, 2}, nullptr, &work);
    EXPECT_GE(work.pairs, 1U);
    EXPECT_GE(work.looks, 2U);
}

TEST(BubblePacking, StoppedPackingIsEmpty)
{
    LockedFlag stop;
    stop.set(true);
    EXPECT_TRUE(packCircles(std::vector<double>{5, 3}, &stop).empty());
}

} // namespace
} // namespace quorvane
