// SPDX-License-Identifier: MIT
#include "JobRunner.h"

#include <QCoreApplication>
#include <QMetaObject>

namespace quorvane {

void MainThreadPoster::operator()(std::function<void()> block) const
{
    QCoreApplication* const application = QCoreApplication::instance();
    if (application == nullptr) {
        return;
    }
    QMetaObject::invokeMethod(
        application,
        [alive = m_alive, block = std::move(block)] {
            if (!alive.expired()) {
                block();
            }
        },
        Qt::QueuedConnection);
}

JobRunner::JobRunner(std::function<void()> lowerThisThread)
    : m_alive(std::make_shared<const bool>(true))
    , m_pool(std::move(lowerThisThread))
{}

JobRunner::~JobRunner()
{
    m_alive.reset();
}

} // namespace quorvane
