// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace quorvane {

/// How urgently the user waits for a job. Utility work yields to the rest of the machine.
enum class JobPriority { userInitiated, utility };

/// Threads for background work. A thread is reused when it is idle and made when none is, so that a
/// long job never keeps a short one waiting; a priority has at most `maximumThreads`, and what
/// comes beyond that waits its turn. Jobs of one priority are taken up in the order of their
/// coming. Any thread may call it. A job must not throw.
class TaskPool
{
public:
    /// Called once on each new utility thread, to lower its priority.
    using Yielder = std::function<void()>;

    /// Far above what the program has in flight at once, far below what a machine can bear.
    static constexpr std::size_t maximumThreads = 64;

    explicit TaskPool(Yielder lowerThisThread = {});
    TaskPool(const TaskPool&) = delete;
    TaskPool& operator=(const TaskPool&) = delete;
    /// Waits for every job that was taken up; drops those that were not. Not on a pool thread.
    ~TaskPool();

    /// Returns at once. After drain() or during destruction the work is dropped. What utility work
    /// starts is utility work, too. False when the system grants no thread and none is there: the
    /// work is dropped then as well.
    bool run(JobPriority priority, std::function<void()> work);

    /// Takes no more work, drops what is waiting, and waits until every running job has ended, at
    /// most timeout. Returns whether all have. Not on a pool thread.
    bool drain(std::chrono::milliseconds timeout);

private:
    struct Lane
    {
        std::deque<std::function<void()>> waiting;
        std::size_t idle = 0;    ///< threads that wait for work, those just woken included
        std::size_t threads = 0; ///< all threads, those not yet started up included
    };

    void close();
    void serve(JobPriority priority);
    Lane& lane(JobPriority priority)
    {
        return priority == JobPriority::utility ? m_utility : m_user;
    }

    std::mutex m_lock;
    std::condition_variable m_wake;
    std::condition_variable m_ended;
    Lane m_user;
    Lane m_utility;
    std::size_t m_running = 0;
    bool m_closing = false;
    Yielder m_lowerThisThread;
    std::vector<std::thread> m_threads;
};

} // namespace quorvane
