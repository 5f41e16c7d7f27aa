// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace quorvane {

/// How urgently the user waits for a job. Utility work yields to the rest of the machine.
enum class JobPriority { userInitiated, utility };

/// Threads for background work. A thread is reused when it is idle and made when none is, so that a
/// long job never keeps a short one waiting. Any thread may call it.
class TaskPool
{
public:
    /// Called once on each new utility thread, to lower its priority.
    using Yielder = std::function<void()>;

    explicit TaskPool(Yielder lowerThisThread = {});
    TaskPool(const TaskPool&) = delete;
    TaskPool& operator=(const TaskPool&) = delete;
    /// Waits for every job that was taken up; drops those that were not.
    ~TaskPool();

    void run(JobPriority priority, std::function<void()> work);

    /// Takes no more work and waits until every running job has ended, at most timeout. Returns
    /// whether all have.
    bool drain(std::chrono::milliseconds timeout);

private:
    struct Lane
    {
        std::deque<std::function<void()>> waiting;
        std::size_t idle = 0;
    };

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
