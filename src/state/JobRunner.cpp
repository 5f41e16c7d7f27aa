// SPDX-License-Identifier: MIT
#include "JobRunner.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <atomic>
#include <future>

namespace quorvane {
namespace {

/// How often a job that waits for the main thread polls whether it is to stop.
constexpr std::chrono::milliseconds cancelPollInterval{20};

} // namespace

bool Mailbox::put(std::function<void()> block)
{
    const std::lock_guard guard(m_lock);
    if (m_isClosed) {
        return false;
    }
    m_waiting.push_back(std::move(block));
    return true;
}

void Mailbox::runNext()
{
    std::function<void()> block;
    {
        const std::lock_guard guard(m_lock);
        if (m_waiting.empty()) {
            return;
        }
        block = std::move(m_waiting.front());
        m_waiting.pop_front();
    }
    block();
}

void Mailbox::close()
{
    std::deque<std::function<void()>> dropped;
    const std::lock_guard guard(m_lock);
    m_isClosed = true;
    dropped.swap(m_waiting);
}

bool Mailbox::isClosed() const
{
    return m_isClosed;
}

void MainThreadPoster::operator()(std::function<void()> block) const
{
    QCoreApplication* const application = QCoreApplication::instance();
    if (application == nullptr || !m_mailbox->put(std::move(block))) {
        return;
    }
    QMetaObject::invokeMethod(
        application, [mailbox = m_mailbox] { mailbox->runNext(); }, Qt::QueuedConnection);
}

bool MainThreadPoster::andWait(const Job& job, std::function<void()> block) const
{
    // The event that carries the block owns the promise: an event that is dropped ends the waiting.
    const auto hasRun = std::make_shared<std::atomic<bool>>(false);
    auto end = std::make_shared<std::promise<void>>();
    const std::future<void> ended = end->get_future();
    (*this)([hasRun, end = std::move(end), block = std::move(block)] {
        block();
        hasRun->store(true);
    });
    while (ended.wait_for(cancelPollInterval) != std::future_status::ready) {
        if (job.isCancelled()) {
            return false;
        }
    }
    return hasRun->load();
}

JobRunner::JobRunner(std::function<void()> lowerThisThread)
    : m_mailbox(std::make_shared<Mailbox>())
    , m_pool(std::move(lowerThisThread))
{}

JobRunner::~JobRunner()
{
    close();
}

bool JobRunner::drain(std::chrono::milliseconds timeout)
{
    close();
    return m_pool.drain(timeout);
}

void JobRunner::close()
{
    m_mailbox->close();
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
