// SPDX-License-Identifier: MIT
#pragma once

#include "Spring.h"

#include <QAbstractAnimation>

namespace quorvane {

/// Runs a spring in real time until it rests. With reduced motion the value is at its target at
/// once. Main thread.
class SpringAnimation : public QAbstractAnimation
{
    Q_OBJECT

public:
    /// tolerance: how near to the target counts as there; see Spring for the rest.
    SpringAnimation(double response, double dampingFraction, double tolerance, QObject* parent);

    double value() const { return m_spring.value(); }
    double target() const { return m_spring.target(); }
    void setTolerance(double tolerance) { m_tolerance = tolerance; }
    void moveTo(double target);
    void jumpTo(double value);
    int duration() const override { return -1; }

Q_SIGNALS:
    void valueChanged(double value);

protected:
    void updateCurrentTime(int milliseconds) override;

private:
    Spring m_spring;
    double m_tolerance;
    int m_lastTime = 0;
};

} // namespace quorvane
