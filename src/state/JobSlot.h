// SPDX-License-Identifier: MIT
#pragma once

#include "JobRunner.h"
#include "LockedFlag.h"

#include <QProperty>
#include <QString>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

namespace quorvane {

class JobSlot;

/// What the work of a slot's run is given: how it learns that it is to stop, and how it reports.
/// A value, to be copied into callbacks that end with the work. Any thread but the main one.
class JobRun
{
public:
    /// Whether the run was asked to stop or the model is shutting down.
    bool isStopped() const { return m_shared->stop.get() || m_post.isClosed(); }
    /// Whether it is stopped or its result will be discarded. What most work polls.
    bool isUnwanted() const { return m_job->isCancelled() || isStopped(); }
    /// The flag of a run that was restarted, discarded or stopped, or whose model shuts down; not
    /// of one that was only asked to stop. Lives as long as the run.
    const LockedFlag& cancelFlag() const { return m_job->cancelFlag(); }
    /// The flag that JobSlot::requestStop() and stop() set; one for each run.
    std::shared_ptr<const LockedFlag> stopFlag() const { return {m_shared, &m_shared->stop}; }

    /// The flag that is set when the run's result will be discarded, for work that polls a flag.
    const LockedFlag& discardFlag() const { return m_job->cancelFlag(); }

    /// Calls write on the main thread, in the order of the reports. A report that still waits there
    /// is replaced by the next one. Dropped once the run is stopped or the slot has begun another.
    void report(std::function<void()> write) const;
    /// The same for the progress field, 0 to 1.
    void report(double progress) const;
    /// Sets the progress and status fields and returns when the main thread has done so. False when
    /// the run is discarded or the model shuts down: the work should end.
    bool reportAndWait(double progress, const QString& status) const;

private:
    friend class JobSlot;

    struct Shared
    {
        LockedFlag stop;
        std::mutex lock;
        std::function<void()> waiting; ///< the report on its way to the main thread
        JobSlot* slot = nullptr;       ///< main thread; null when the slot has begun another run
    };

    JobRun(const Job& job, std::shared_ptr<Shared> shared, MainThreadPoster post)
        : m_job(&job)
        , m_shared(std::move(shared))
        , m_post(std::move(post))
    {}

    const Job* m_job;
    std::shared_ptr<Shared> m_shared;
    MainThreadPoster m_post;
};

/// The fields of a facet that tell of a job; each may be absent.
struct JobFields
{
    QProperty<bool>* running = nullptr;
    QProperty<double>* progress = nullptr; ///< 0 to 1
    QProperty<std::optional<QString>>* status = nullptr;
};

/// A kind of background job of the model and its current run: handle, stop flag, identity, and the
/// fields that show it. There is one current run at a time, and the result of no other is
/// published. The runner outlives it. Main thread.
class JobSlot
{
public:
    explicit JobSlot(JobRunner& jobs, JobFields fields = {})
        : m_jobs(jobs)
        , m_fields(fields)
    {}
    JobSlot(const JobSlot&) = delete;
    JobSlot& operator=(const JobSlot&) = delete;
    /// Stops the run and discards what it will find; does not wait for it.
    ~JobSlot();

    /// Discards the run before, sets running and a progress of 0, and runs work(const JobRun&) on a
    /// pool thread. When it returns, on the main thread: running becomes false, then
    /// publish(result) is called, unless the run was discarded or stopped meanwhile. work takes its
    /// inputs by value and never sees the model. Without a thread or memory for it, failed() is
    /// called instead of publish().
    template<class Work, class Publish>
    void restart(JobPriority priority, Work work, Publish publish,
                 std::function<void()> failed = {})
    {
        begin();
        m_job = m_jobs.start(
            priority,
            [shared = m_shared, post = m_jobs.poster(), work = std::move(work)](
                const Job& job) mutable { return work(JobRun(job, shared, post)); },
            [this, publish = std::move(publish)](auto result) mutable {
                end();
                publish(std::move(result));
            },
            [this, failed = std::move(failed)] {
                end();
                if (failed) {
                    failed();
                }
            });
    }

    /// Whether a run is under way whose result is wanted.
    bool isRunning() const { return m_job != nullptr; }
    /// Asks the run to end early. It stays current: its result is published.
    void requestStop();
    bool isStopRequested() const { return m_shared && m_shared->stop.get(); }
    /// Discards what the run will find and leaves the fields alone. Work that polls
    /// JobRun::isUnwanted() ends early, other work runs on to its end.
    void discard();
    /// Asks the run to end early and discards what it will find. running becomes false at once.
    void stop();

private:
    friend class JobRun;

    void begin();
    void detach();
    void end();

    JobRunner& m_jobs;
    JobFields m_fields;
    JobHandle m_job;                          ///< of the current run; null without one
    std::shared_ptr<JobRun::Shared> m_shared; ///< of the latest run; its address is the run's id
};

} // namespace quorvane
