// SPDX-License-Identifier: MIT
#pragma once

#include "LockedFlag.h"
#include "TaskPool.h"

#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

namespace quorvane {

/// One background job: who holds it can ask it to stop. Its address is its run id.
class Job
{
public:
    /// Main thread. Takes effect when the work next polls; the result is discarded in any case.
    void cancel() { m_isCancelled.set(true); }
    bool isCancelled() const { return m_isCancelled.get(); }
    /// The flag that the work polls.
    const LockedFlag& cancelFlag() const { return m_isCancelled; }

private:
    LockedFlag m_isCancelled;
};

using JobHandle = std::shared_ptr<Job>;

/// What waits for the main thread. The blocks pass through a lock of our own and are run and
/// destroyed on the main thread, whatever thread has posted them.
class Mailbox
{
public:
    /// Any thread. False when closed; the block is then dropped.
    bool put(std::function<void()> block);
    /// Main thread: runs the block that waits longest, if there is one.
    void runNext();
    /// Main thread: drops what waits and takes no more.
    void close();
    /// Any thread. Takes no lock: work asks it often, and must not hold the main thread up.
    bool isClosed() const;

private:
    mutable std::mutex m_lock;
    std::deque<std::function<void()>> m_waiting;
    std::atomic<bool> m_isClosed = false; ///< written under the lock
};

/// Posts work to the main thread from any thread, as long as the runner that made it exists.
class MainThreadPoster
{
public:
    explicit MainThreadPoster(std::shared_ptr<Mailbox> mailbox)
        : m_mailbox(std::move(mailbox))
    {}
    /// In the order of the calls from one thread. Discarded when the runner has been destroyed
    /// meanwhile.
    void operator()(std::function<void()> block) const;
    /// Any thread but the main one: returns when the block has run there. False when it will not be
    /// waited for any longer, because the job is cancelled or the runner is destroyed.
    bool andWait(const Job& job, std::function<void()> block) const;
    /// Any thread: the runner is destroyed or shutting down: the work of its jobs is no longer
    /// needed.
    bool isClosed() const { return m_mailbox->isClosed(); }

private:
    std::shared_ptr<Mailbox> m_mailbox;
};

/// Starts the background jobs of one model. Main thread.
class JobRunner
{
public:
    explicit JobRunner(std::function<void()> lowerThisThread);
    JobRunner(const JobRunner&) = delete;
    JobRunner& operator=(const JobRunner&) = delete;
    /// Asks the jobs under way to stop and waits for them to return; nothing of theirs is published
    /// any more.
    ~JobRunner();

    /// Runs work(const Job&) on a pool thread, then publish(result) on the main thread, unless the
    /// job was cancelled or the runner is gone by then: the one place where a stale result is
    /// dropped. What a cancelled job has found may be large and ends on a pool thread. work takes
    /// what it needs by value and never sees the model or a QObject.
    ///
    /// failed() is called on the main thread in the place of publish() when the job cannot have a
    /// thread, or its work not the memory that it needs (std::bad_alloc).
    template<class Work, class Publish>
    JobHandle start(JobPriority priority, Work work, Publish publish,
                    std::function<void()> failed = {})
    {
        using Result = std::invoke_result_t<Work&, const Job&>;
        auto job = std::make_shared<Job>();
        remember(job);
        const auto fail = [job, post = poster(), failed = std::move(failed)] {
            post([job, failed] {
                if (!job->isCancelled() && failed) {
                    failed();
                }
            });
        };
        const bool isStarted = m_pool.run(priority, [this, job, post = poster(), fail,
                                                     work = std::move(work),
                                                     publish = std::move(publish)]() mutable {
            if (job->isCancelled()) {
                return;
            }
            std::shared_ptr<Result> result;
            try {
                result = std::make_shared<Result>(work(*job));
            } catch (const std::bad_alloc&) {
                fail();
                return;
            }
            // The block runs only as long as the runner is there.
            post([this, job, result = std::move(result), publish = std::move(publish)]() mutable {
                if (job->isCancelled()) {
                    release(std::move(result));
                } else {
                    publish(std::move(*result));
                }
            });
        });
        if (!isStarted) {
            fail();
        }
        return job;
    }

    /// Lets go of something large off the main thread.
    template<class T>
    void release(T thing)
    {
        // Nothing stays behind here: the last reference must be the one on the pool thread.
        m_pool.run(JobPriority::utility,
                   [holder = std::make_shared<T>(std::move(thing))]() mutable { holder.reset(); });
    }

    MainThreadPoster poster() const { return MainThreadPoster(m_mailbox); }

    /// Asks the jobs under way to stop; nothing is published any more. Returns at once.
    void close();
    /// Takes no more work, asks what runs to stop and waits for it, at most timeout. Nothing is
    /// published any more. Returns whether all has ended.
    bool drain(std::chrono::milliseconds timeout);

private:
    void remember(const JobHandle& job);

    std::shared_ptr<Mailbox> m_mailbox;
    std::vector<std::weak_ptr<Job>> m_started;
    TaskPool m_pool;
};

} // namespace quorvane
