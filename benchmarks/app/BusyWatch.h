// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>

namespace quorvane {

/// The most processor time that the main thread spends between two waits for events: what holds the
/// window up on our account, however busy the machine is. Main thread, once the application is
/// made, with a dispatcher that tells when it goes to sleep (QT_NO_GLIB).
class BusyWatch
{
public:
    BusyWatch();

    void restart();
    double longestMilliseconds() const { return m_longest; }

private:
    QObject m_context;
    double m_lastWait;
    double m_longest = 0;
};

/// Runs the event loop until the condition holds, looked at every two milliseconds.
void runUntil(const std::function<bool()>& condition);

} // namespace quorvane
