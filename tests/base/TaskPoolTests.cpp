// SPDX-License-Identifier: MIT
#include "TaskPool.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace quorvane {
namespace {

using namespace std::chrono_literals;

/// Longer than anything here takes on a loaded machine; reached only when something hangs.
constexpr auto patience = 60s;

/// A gate that jobs wait at until the test opens it.
class Gate
{
public:
    void open() { m_promise.set_value(); }
    void wait() const { m_future.wait(); }

private:
    std::promise<void> m_promise;
    std::shared_future<void> m_future = m_promise.get_future().share();
};

bool isReady(const std::future<void>& future)
{
    return future.wait_for(patience) == std::future_status::ready;
}

/// Runs a job in the pool and tells whether it ended.
bool runsToItsEnd(TaskPool& pool, JobPriority priority)
{
    auto done = std::make_shared<std::promise<void>>();
    const std::future<void> future = done->get_future();
    pool.run(priority, [done] { done->set_value(); });
    return isReady(future);
}

TEST(TaskPool, RunsAJobOnAnotherThread)
{
    TaskPool pool;
    std::promise<std::thread::id> where;
    pool.run(JobPriority::userInitiated, [&] { where.set_value(std::this_thread::get_id()); });
    EXPECT_NE(where.get_future().get(), std::this_thread::get_id());
}

TEST(TaskPool, ALongJobKeepsNoShortOneWaiting)
{
    Gate gate;
    TaskPool pool;
    pool.run(JobPriority::userInitiated, [&] { gate.wait(); });
    for (int i = 0; i < 1000; ++i) {
        ASSERT_TRUE(runsToItsEnd(pool, JobPriority::userInitiated)) << "job " << i;
    }
    gate.open();
}

TEST(TaskPool, AnIdleThreadIsUsedAgain)
{
    TaskPool pool;
    std::mutex lock;
    std::set<std::thread::id> threads;
    for (int i = 0; i < 200; ++i) {
        std::promise<void> done;
        pool.run(JobPriority::userInitiated, [&] {
            {
                const std::lock_guard guard(lock);
                threads.insert(std::this_thread::get_id());
            }
            done.set_value();
        });
        done.get_future().wait();
    }
    // A job announces its end a moment before its thread is idle again, so a second thread may be
    // made now and then, but never one for each job.
    EXPECT_LT(threads.size(), 100u);
}

TEST(TaskPool, AFloodOfJobsRunsWholeOnABoundedNumberOfThreads)
{
    constexpr int jobs = 5000;
    std::mutex lock;
    std::set<std::thread::id> threads;
    std::atomic<int> ended = 0;
    std::promise<void> allEnded;
    TaskPool pool;
    for (int i = 0; i < jobs; ++i) {
        pool.run(JobPriority::utility, [&] {
            {
                const std::lock_guard guard(lock);
                threads.insert(std::this_thread::get_id());
            }
            if (++ended == jobs) {
                allEnded.set_value();
            }
        });
    }
    ASSERT_TRUE(isReady(allEnded.get_future()));
    EXPECT_LE(threads.size(), TaskPool::maximumThreads);
}

TEST(TaskPool, UtilityJobsAreLoweredAndOthersAreNot)
{
    static thread_local bool isLowered = false;
    TaskPool pool([] { isLowered = true; });
    std::promise<bool> utility;
    std::promise<bool> user;
    pool.run(JobPriority::utility, [&] { utility.set_value(isLowered); });
    pool.run(JobPriority::userInitiated, [&] { user.set_value(isLowered); });
    EXPECT_TRUE(utility.get_future().get());
    EXPECT_FALSE(user.get_future().get());
}

TEST(TaskPool, WhatUtilityWorkStartsYieldsAndNothingElseDoes)
{
    static thread_local bool isLowered = false;
    TaskPool pool([] { isLowered = true; });
    std::promise<bool> inner;
    pool.run(JobPriority::utility,
             [&] { pool.run(JobPriority::userInitiated, [&] { inner.set_value(isLowered); }); });
    EXPECT_TRUE(inner.get_future().get()) << "a thread made there would have been slow for good";
    std::promise<bool> user;
    pool.run(JobPriority::userInitiated, [&] { user.set_value(isLowered); });
    EXPECT_FALSE(user.get_future().get());
}

TEST(TaskPool, AUserJobDoesNotWaitForUtilityJobsThatFillTheirThreads)
{
    Gate gate;
    TaskPool pool;
    for (std::size_t i = 0; i < TaskPool::maximumThreads + 10; ++i) {
        pool.run(JobPriority::utility, [&] { gate.wait(); });
    }
    EXPECT_TRUE(runsToItsEnd(pool, JobPriority::userInitiated));
    gate.open();
}

TEST(TaskPool, AJobMayStartAnother)
{
    TaskPool pool;
    std::promise<void> inner;
    pool.run(JobPriority::userInitiated,
             [&] { pool.run(JobPriority::userInitiated, [&] { inner.set_value(); }); });
    EXPECT_TRUE(isReady(inner.get_future()));
}

TEST(TaskPool, DrainWaitsForARunningJobAndTakesNoMore)
{
    TaskPool pool;
    Gate gate;
    std::promise<void> started;
    std::atomic<bool> ended = false;
    pool.run(JobPriority::userInitiated, [&] {
        started.set_value();
        gate.wait();
        ended = true;
    });
    started.get_future().wait();
    EXPECT_FALSE(pool.drain(0ms));
    EXPECT_FALSE(ended);
    std::atomic<bool> late = false;
    pool.run(JobPriority::userInitiated, [&] { late = true; });
    gate.open();
    EXPECT_TRUE(pool.drain(patience));
    EXPECT_TRUE(ended);
    EXPECT_FALSE(late);
}

TEST(TaskPool, DrainOfAnIdlePoolIsDoneAtOnceAndTwice)
{
    TaskPool pool;
    EXPECT_TRUE(pool.drain(0ms));
    ASSERT_TRUE(pool.drain(0ms));
}

TEST(TaskPool, DestructionWaitsForWhatRunsAndDropsWhatWaits)
{
    Gate gate;
    std::atomic<int> ended = 0;
    std::atomic<int> running = 0;
    std::promise<void> full;
    const auto capacity = static_cast<int>(TaskPool::maximumThreads);
    auto pool = std::make_unique<TaskPool>();
    for (int i = 0; i < capacity; ++i) {
        pool->run(JobPriority::userInitiated, [&] {
            if (++running == capacity) {
                full.set_value();
            }
            gate.wait();
            ++ended;
        });
    }
    ASSERT_TRUE(isReady(full.get_future()));
    auto token = std::make_shared<int>(0);
    const std::weak_ptr<int> waiting = token;
    pool->run(JobPriority::userInitiated, [&ended, token = std::move(token)] { ended += 1000; });
    std::thread destruction([&] { pool.reset(); });
    while (!waiting.expired()) {
        std::this_thread::yield();
    }
    EXPECT_EQ(ended, 0);
    gate.open();
    destruction.join();
    EXPECT_EQ(ended, capacity);
}

/// Calls the pool from its destructor, as the last holder of a job's data may.
struct CallsBack
{
    explicit CallsBack(TaskPool& target)
        : pool(target)
    {}
    CallsBack(const CallsBack&) = delete;
    CallsBack& operator=(const CallsBack&) = delete;
    ~CallsBack()
    {
        pool.run(JobPriority::userInitiated, [] {});
    }
    TaskPool& pool;
};

TEST(TaskPool, ADroppedJobMayCallBackIntoThePool)
{
    Gate gate;
    std::once_flag first;
    std::promise<void> started;
    TaskPool pool;
    for (std::size_t i = 0; i < TaskPool::maximumThreads; ++i) {
        pool.run(JobPriority::userInitiated, [&] {
            std::call_once(first, [&] { started.set_value(); });
            gate.wait();
        });
    }
    started.get_future().wait();
    auto data = std::make_shared<CallsBack>(pool);
    pool.run(JobPriority::userInitiated, [data = std::move(data)] {});
    EXPECT_FALSE(pool.drain(0ms));
    gate.open();
    EXPECT_TRUE(pool.drain(patience));
}

/// Runs the body in a child process that cannot have another thread; false when it did not hold.
bool holdsWithoutThreads(bool (*body)())
{
    const pid_t child = fork();
    if (child == 0) {
        const rlimit none{0, 0};
        const bool isPoor =
            (geteuid() != 0 || setuid(65534) == 0) && setrlimit(RLIMIT_NPROC, &none) == 0;
        _exit(isPoor && body() ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(TaskPool, RefusesWorkThatCanNeverHaveAThread)
{
    EXPECT_TRUE(holdsWithoutThreads([] {
        TaskPool pool;
        bool hasRun = false;
        const bool isTaken = pool.run(JobPriority::userInitiated, [&hasRun] { hasRun = true; });
        // Twice: the first refusal leaves nothing behind.
        return !isTaken && !pool.run(JobPriority::utility, [&hasRun] { hasRun = true; }) && !hasRun;
    }));
}

} // namespace
} // namespace quorvane
