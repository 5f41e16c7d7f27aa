// SPDX-License-Identifier: MIT
#include "JobSlot.h"

namespace quorvane {

void JobRun::report(std::function<void()> write) const
{
    if (isStopped()) {
        return;
    }
    {
        const std::lock_guard guard(m_shared->lock);
        const bool isPosted = static_cast<bool>(m_shared->waiting);
        m_shared->waiting = std::move(write);
        if (isPosted) {
            return;
        }
    }
    m_post([shared = m_shared] {
        std::function<void()> latest;
        {
            const std::lock_guard guard(shared->lock);
            latest = std::exchange(shared->waiting, nullptr);
        }
        if (shared->slot != nullptr) {
            latest();
        }
    });
}

void JobRun::report(double progress) const
{
    report([shared = m_shared, progress] { *shared->slot->m_fields.progress = progress; });
}

bool JobRun::reportAndWait(double progress, const QString& status) const
{
    return m_post.andWait(*m_job, [shared = m_shared, progress, status] {
        if (JobSlot* const slot = shared->slot) {
            *slot->m_fields.progress = progress;
            *slot->m_fields.status = status;
        }
    });
}

JobSlot::~JobSlot()
{
    requestStop();
    discard();
    detach();
}

void JobSlot::requestStop()
{
    if (m_shared) {
        m_shared->stop.set(true);
    }
}

void JobSlot::discard()
{
    if (const JobHandle job = std::exchange(m_job, nullptr)) {
        job->cancel();
    }
}

void JobSlot::stop()
{
    requestStop();
    discard();
    if (m_fields.running != nullptr) {
        *m_fields.running = false;
    }
}

void JobSlot::begin()
{
    discard();
    detach();
    // Before the fields: who reacts to them may already ask the new run to stop.
    m_shared = std::make_shared<JobRun::Shared>();
    m_shared->slot = this;
    if (m_fields.running != nullptr) {
        *m_fields.running = true;
    }
    if (m_fields.progress != nullptr) {
        *m_fields.progress = 0;
    }
}

/// Nothing that the latest run has reported is written any more.
void JobSlot::detach()
{
    if (m_shared) {
        m_shared->slot = nullptr;
    }
}

void JobSlot::end()
{
    m_job = nullptr;
    if (m_fields.running != nullptr) {
        *m_fields.running = false;
    }
}

} // namespace quorvane
