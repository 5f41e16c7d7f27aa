// SPDX-License-Identifier: MIT
#include "Spring.h"

#include <cmath>
#include <numbers>

namespace quorvane {

Spring::Spring(double response, double dampingFraction)
    : m_frequency(2 * std::numbers::pi / response)
    , m_damping(dampingFraction)
{}

void Spring::reset(double value)
{
    m_value = value;
    m_target = value;
    m_speed = 0;
}

void Spring::advance(double seconds)
{
    const double offset = m_value - m_target;
    if (m_damping >= 1) {
        const double decay = std::exp(-m_frequency * seconds);
        const double drift = m_speed + m_frequency * offset;
        m_value = m_target + decay * (offset + drift * seconds);
        m_speed = decay * (m_speed - m_frequency * drift * seconds);
        return;
    }
    const double rate = m_damping * m_frequency;
    const double swing = m_frequency * std::sqrt(1 - m_damping * m_damping);
    const double sideways = (m_speed + rate * offset) / swing;
    const double decay = std::exp(-rate * seconds);
    const double cosine = std::cos(swing * seconds);
    const double sine = std::sin(swing * seconds);
    m_value = m_target + decay * (offset * cosine + sideways * sine);
    m_speed = decay * ((sideways * swing - rate * offset) * cosine -
                       (offset * swing + rate * sideways) * sine);
}

bool Spring::isSettled(double tolerance) const
{
    return std::abs(m_value - m_target) <= tolerance &&
           std::abs(m_speed) <= tolerance * m_frequency;
}

} // namespace quorvane
