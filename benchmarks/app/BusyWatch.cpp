// SPDX-License-Identifier: MIT
#include "BusyWatch.h"

#include <QAbstractEventDispatcher>
#include <QEventLoop>
#include <QTimer>

#include <time.h>

#include <algorithm>

namespace quorvane {
namespace {

/// Processor time of the calling thread.
double threadMilliseconds()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

} // namespace

BusyWatch::BusyWatch()
    : m_lastWait(threadMilliseconds())
{
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                     &m_context, [this] {
                         const double now = threadMilliseconds();
                         m_longest = std::max(m_longest, now - m_lastWait);
                         m_lastWait = now;
                     });
}

void BusyWatch::restart()
{
    m_longest = 0;
    m_lastWait = threadMilliseconds();
}

void runUntil(const std::function<bool()>& condition)
{
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (condition()) {
            loop.quit();
        }
    });
    poll.start(2);
    loop.exec();
}

} // namespace quorvane
