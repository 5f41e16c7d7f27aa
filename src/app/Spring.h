// SPDX-License-Identifier: MIT
#pragma once

namespace quorvane {

/// A damped spring that pulls a value to a target. A plain value; exact for steps of any length.
class Spring
{
public:
    /// response: seconds of one undamped swing, above 0. dampingFraction: 1 never swings over,
    /// below 1 does; above 0 and at most 1.
    Spring(double response, double dampingFraction);

    double value() const { return m_value; }
    double target() const { return m_target; }
    /// Keeps value and speed: a moving spring bends towards the new target.
    void setTarget(double target) { m_target = target; }
    /// Rests at the value at once.
    void reset(double value);
    void advance(double seconds);
    /// Whether value and speed are so near to rest that the difference is within tolerance.
    bool isSettled(double tolerance) const;

private:
    double m_frequency; ///< radians a second
    double m_damping;
    double m_value = 0;
    double m_speed = 0;
    double m_target = 0;
};

} // namespace quorvane
