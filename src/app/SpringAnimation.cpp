// SPDX-License-Identifier: MIT
#include "SpringAnimation.h"

#include "DesktopSettings.h"

namespace quorvane {

SpringAnimation::SpringAnimation(double response, double dampingFraction, double tolerance,
                                 QObject* parent)
    : QAbstractAnimation(parent)
    , m_spring(response, dampingFraction)
    , m_tolerance(tolerance)
{}

void SpringAnimation::moveTo(double target)
{
    if (reducedMotion()) {
        jumpTo(target);
        return;
    }
    m_spring.setTarget(target);
    if (state() != Running) {
        m_lastTime = 0;
        start();
    }
}

void SpringAnimation::jumpTo(double value)
{
    m_spring.reset(value);
    stop();
    Q_EMIT valueChanged(value);
}

void SpringAnimation::updateCurrentTime(int milliseconds)
{
    m_spring.advance((milliseconds - m_lastTime) / 1000.0);
    m_lastTime = milliseconds;
    if (m_spring.isSettled(m_tolerance)) {
        jumpTo(m_spring.target());
    } else {
        Q_EMIT valueChanged(m_spring.value());
    }
}

} // namespace quorvane
