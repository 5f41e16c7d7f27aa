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
    m_post([slot = m_slot, shared = m_shared] {
        std::function<void()> latest;
        {
            const std::lock_guard guard(shared->lock);
            latest = std::exchange(shared->waiting, nullptr);
        }
        if (slot->m_shared == shared) {
            latest();
        }
    });
}

void JobRun::report(double progress) const
{
    report([slot = m_slot, progress] { slot->m_fields.progress->setValue(progress); });
}

bool JobRun::reportAndWait(double progress, const QString& status) const
{
    return m_post.andWait(*m_job, [slot = m_slot, shared = m_shared, progress, status] {
        if (slot->m_shared == shared) {
            slot->m_fields.progress->setValue(progress);
            slot->m_fields.status->setValue(status);
        }
    });
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
    // Before the fields: who reacts to them may already ask the new run to stop.
    m_shared = std::make_shared<JobRun::Shared>();
    if (m_fields.running != nullptr) {
        *m_fields.running = true;
    }
    if (m_fields.progress != nullptr) {
        *m_fields.progress = 0;
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
