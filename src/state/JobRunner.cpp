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
    for (const std::weak_ptr<Job>& started : m_started) {
        if (const JobHandle job = started.lock()) {
            job->cancel();
        }
    }
}

void JobRunner::remember(const JobHandle& job)
{
    std::erase_if(m_started, [](const std::weak_ptr<Job>& started) { return started.expired(); });
    m_started.push_back(job);
}

} // namespace quorvane
