// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QProperty>

#include <functional>
#include <vector>

namespace quorvane {

/// Brings a screen up to date after a field of the model has changed: once for all changes of one
/// event, when that event is over, so that a half-changed model is never shown. Main thread.
class Refresher : public QObject
{
    Q_OBJECT

public:
    /// The owner outlives every call of refresh.
    Refresher(QObject* owner, std::function<void()> refresh);

    /// Refreshes after each change of these fields. The fields outlive the refresher.
    template<class... Fields>
    void watch(Fields&... fields)
    {
        (m_notifiers.push_back(fields.addNotifier([this] { schedule(); })), ...);
    }

    void schedule();
    bool isScheduled() const { return m_isScheduled; }
    /// Refreshes now and drops what was scheduled.
    void refreshNow();

private:
    std::function<void()> m_refresh;
    std::vector<QPropertyNotifier> m_notifiers;
    bool m_isScheduled = false;
};

} // namespace quorvane
