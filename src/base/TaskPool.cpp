// SPDX-License-Identifier: MIT
#include "TaskPool.h"

#include <exception>
#include <utility>

namespace quorvane {
namespace {

thread_local bool isUtilityThread = false;

} // namespace

TaskPool::TaskPool(Yielder lowerThisThread)
    : m_lowerThisThread(std::move(lowerThisThread))
{}

TaskPool::~TaskPool()
{
    close();
    for (std::thread& thread : m_threads) {
        thread.join();
    }
}

bool TaskPool::run(JobPriority priority, std::function<void()> work)
{
    if (isUtilityThread) {
        // A new thread inherits the priority of the one that makes it, and cannot get it back.
        priority = JobPriority::utility;
    }
    // Let go of outside the lock: what a job holds may call back into the pool.
    std::function<void()> refused;
    const std::lock_guard guard(m_lock);
    if (m_closing) {
        return true;
    }
    Lane& target = lane(priority);
    target.waiting.push_back(std::move(work));
    if (target.idle >= target.waiting.size()) {
        m_wake.notify_all();
    } else if (target.threads < maximumThreads) {
        try {
            m_threads.emplace_back([this, priority] { serve(priority); });
            ++target.threads;
        } catch (const std::exception&) {
            // std::system_error at the limit of threads, std::bad_alloc at that of memory: the work
            // waits for one of the threads that are there.
            if (target.threads == 0) {
                refused = std::move(target.waiting.back());
                target.waiting.pop_back();
                return false;
            }
        }
    }
    return true;
}

bool TaskPool::drain(std::chrono::milliseconds timeout)
{
    close();
    std::unique_lock guard(m_lock);
    return m_ended.wait_for(guard, timeout, [this] { return m_running == 0; });
}

void TaskPool::close()
{
    // What a dropped job holds is released outside the lock: it may call back into the pool.
    std::deque<std::function<void()>> dropped[2];
    {
        const std::lock_guard guard(m_lock);
        m_closing = true;
        dropped[0].swap(m_user.waiting);
        dropped[1].swap(m_utility.waiting);
    }
    m_wake.notify_all();
}

void TaskPool::serve(JobPriority priority)
{
    if (priority == JobPriority::utility) {
        isUtilityThread = true;
        if (m_lowerThisThread) {
            m_lowerThisThread();
        }
    }
    std::unique_lock guard(m_lock);
    Lane& own = lane(priority);
    for (;;) {
        ++own.idle;
        m_wake.wait(guard, [&] { return m_closing || !own.waiting.empty(); });
        --own.idle;
        if (own.waiting.empty()) {
            return;
        }
        std::function<void()> work = std::move(own.waiting.front());
        own.waiting.pop_front();
        ++m_running;
        guard.unlock();
        work();
        work = nullptr;
        guard.lock();
        --m_running;
        m_ended.notify_all();
    }
}

} // namespace quorvane
