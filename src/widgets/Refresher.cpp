// SPDX-License-Identifier: MIT
#include "Refresher.h"

#include <QMetaObject>

#include <utility>

namespace quorvane {

Refresher::Refresher(QObject* owner, std::function<void()> refresh)
    : QObject(owner)
    , m_refresh(std::move(refresh))
{}

void Refresher::schedule()
{
    if (m_isScheduled) {
        return;
    }
    m_isScheduled = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_isScheduled) {
                refreshNow();
            }
        },
        Qt::QueuedConnection);
}

void Refresher::refreshNow()
{
    m_isScheduled = false;
    m_refresh();
}

} // namespace quorvane
