// SPDX-License-Identifier: MIT
#pragma once

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <chrono>

namespace quorvane {

/// Runs the event loop until the condition holds. Returns whether it did before the time was up.
/// The condition is looked at about once a millisecond, on this thread.
template<class Condition>
bool waitFor(Condition condition, std::chrono::milliseconds atMost = std::chrono::seconds(30))
{
    const QDeadlineTimer deadline(atMost);
    QEventLoop loop;
    QTimer poll;
    bool holds = condition();
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        holds = condition();
        if (holds || deadline.hasExpired()) {
            loop.quit();
        }
    });
    poll.start(std::chrono::milliseconds(1));
    if (!holds) {
        loop.exec();
    }
    return holds;
}

} // namespace quorvane
