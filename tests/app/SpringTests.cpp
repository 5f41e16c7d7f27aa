// SPDX-License-Identifier: MIT
#include "Spring.h"
#include "SpringAnimation.h"
#include "WaitFor.h"

#include "DesktopSettings.h"

#include <gtest/gtest.h>

#include <numbers>
#include <vector>

namespace quorvane {
namespace {

/// The spring's equation of motion, in steps so small that their error does not matter.
double simulated(double response, double damping, double target, double seconds)
{
    const double frequency = 2 * std::numbers::pi / response;
    const int steps = 200000;
    const double step = seconds / steps;
    double value = 0;
    double speed = 0;
    for (int i = 0; i < steps; ++i) {
        const double pull =
            frequency * frequency * (target - value) - 2 * damping * frequency * speed;
        speed += pull * step;
        value += speed * step;
    }
    return value;
}

TEST(Spring, MovesAsItsEquationSays)
{
    for (const double damping : {0.3, 0.85, 1.0}) {
        for (const double seconds : {0.02, 0.1, 0.25, 0.6}) {
            Spring spring(0.25, damping);
            spring.setTarget(10);
            spring.advance(seconds);
            EXPECT_NEAR(spring.value(), simulated(0.25, damping, 10, seconds), 0.01)
                << damping << " after " << seconds;
        }
    }
}

TEST(Spring, ManySmallStepsLeadWhereOneLongStepDoes)
{
    Spring one(0.25, 0.85);
    Spring many(0.25, 0.85);
    one.setTarget(1);
    many.setTarget(1);
    one.advance(0.2);
    for (int i = 0; i < 20; ++i) {
        many.advance(0.01);
    }
    EXPECT_NEAR(one.value(), many.value(), 1e-9);
}

TEST(Spring, AFullyDampedOneNeverRunsPastItsTarget)
{
    Spring spring(0.4, 1);
    spring.setTarget(100);
    double last = 0;
    while (!spring.isSettled(0.01)) {
        spring.advance(0.008);
        EXPECT_GE(spring.value(), last);
        EXPECT_LE(spring.value(), 100);
        last = spring.value();
    }
}

TEST(Spring, ResetRestsAtOnce)
{
    Spring spring(0.25, 0.85);
    spring.setTarget(5);
    spring.advance(0.1);
    spring.reset(2);
    EXPECT_TRUE(spring.isSettled(0));
    spring.advance(1);
    EXPECT_EQ(spring.value(), 2);
}

class SpringAnimationTest : public ::testing::Test
{
protected:
    ~SpringAnimationTest() override { DesktopSettings::instance().setReducedMotion(m_before); }

    bool m_before = reducedMotion();
    SpringAnimation m_animation{0.1, 1, 0.001, nullptr};
};

TEST_F(SpringAnimationTest, ArrivesAndStops)
{
    DesktopSettings::instance().setReducedMotion(false);
    std::vector<double> values;
    QObject::connect(&m_animation, &SpringAnimation::valueChanged,
                     [&values](double value) { values.push_back(value); });
    m_animation.moveTo(1);
    ASSERT_TRUE(waitFor([this] { return m_animation.state() == QAbstractAnimation::Stopped; }));
    EXPECT_EQ(m_animation.value(), 1);
    EXPECT_EQ(values.back(), 1);
}

TEST_F(SpringAnimationTest, ReducedMotionJumps)
{
    DesktopSettings::instance().setReducedMotion(true);
    m_animation.moveTo(1);
    EXPECT_EQ(m_animation.value(), 1);
    EXPECT_EQ(m_animation.state(), QAbstractAnimation::Stopped);
}

} // namespace
} // namespace quorvane
