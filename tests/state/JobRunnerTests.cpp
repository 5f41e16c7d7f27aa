// SPDX-License-Identifier: MIT
#include "JobRunner.h"

#include "Gate.h"
#include "WaitFor.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <atomic>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

namespace quorvane {
namespace {

/// Lives as long as a job, its result or its publishing block does.
using Token = std::shared_ptr<int>;

class JobRunnerTest : public testing::Test
{
protected:
    JobRunnerTest()
        : m_runner(std::make_unique<JobRunner>([this] { ++m_lowered; }))
    {}

    /// A job that passes the gate and counts what it publishes.
    JobHandle startAt(Gate& gate)
    {
        return m_runner->start(
            JobPriority::userInitiated,
            [&gate, token = m_token](const Job&) {
                gate.pass();
                return token;
            },
            [this](const Token&) { ++m_published; });
    }

    /// Waits until no trace of the jobs is left.
    void awaitEnd()
    {
        const std::weak_ptr<int> watch = std::exchange(m_token, nullptr);
        ASSERT_TRUE(waitFor([&watch] { return watch.expired(); }));
    }

    std::atomic<int> m_lowered = 0;
    int m_published = 0;
    Token m_token = std::make_shared<int>(0);
    std::unique_ptr<JobRunner> m_runner;
};

TEST_F(JobRunnerTest, WorksElsewhereAndPublishesHere)
{
    const std::thread::id here = std::this_thread::get_id();
    bool wasElsewhere = false;
    bool wasPublishedHere = false;
    m_runner->start(
        JobPriority::userInitiated,
        [here](const Job&) { return std::this_thread::get_id() != here; },
        [&](bool elsewhere) {
            wasElsewhere = elsewhere;
            wasPublishedHere = std::this_thread::get_id() == here;
        });
    ASSERT_TRUE(waitFor([&] { return wasPublishedHere; }));
    EXPECT_TRUE(wasElsewhere);
}

TEST_F(JobRunnerTest, OnlyUtilityWorkYields)
{
    bool isDone = false;
    const auto work = [](const Job&) { return true; };
    const auto publish = [&isDone](bool done) { isDone = done; };
    m_runner->start(JobPriority::userInitiated, work, publish);
    ASSERT_TRUE(waitFor([&isDone] { return isDone; }));
    EXPECT_EQ(m_lowered, 0);
    isDone = false;
    m_runner->start(JobPriority::utility, work, publish);
    ASSERT_TRUE(waitFor([&isDone] { return isDone; }));
    EXPECT_EQ(m_lowered, 1);
}

TEST_F(JobRunnerTest, JobThatIsCancelledAtOncePublishesNothing)
{
    Gate gate;
    gate.open();
    startAt(gate)->cancel();
    awaitEnd();
    EXPECT_EQ(m_published, 0);
}

TEST_F(JobRunnerTest, JobThatIsCancelledInTheMiddlePublishesNothing)
{
    Gate gate;
    const JobHandle job = startAt(gate);
    gate.awaitVisitor();
    job->cancel();
    job->cancel();
    EXPECT_TRUE(job->isCancelled());
    gate.open();
    awaitEnd();
    EXPECT_EQ(m_published, 0);
}

TEST_F(JobRunnerTest, WorkSeesThatItIsCancelled)
{
    std::atomic<bool> hasStarted = false;
    std::atomic<bool> sawIt = false;
    const JobHandle job = m_runner->start(
        JobPriority::userInitiated,
        [&](const Job& self) {
            hasStarted = true;
            while (!self.isCancelled() || !self.cancelFlag().get()) {
                std::this_thread::yield();
            }
            sawIt = true;
            return 0;
        },
        [this](int) { ++m_published; });
    ASSERT_TRUE(waitFor([&] { return hasStarted.load(); }));
    job->cancel();
    ASSERT_TRUE(waitFor([&] { return sawIt.load(); }));
    awaitEnd();
    EXPECT_EQ(m_published, 0);
}

TEST_F(JobRunnerTest, ResultThatWaitsForTheMainThreadIsDroppedByACancel)
{
    // The pool lets go of the work, and of what it holds, after it has posted the result.
    auto held = std::make_shared<int>(0);
    const std::weak_ptr<int> watch = held;
    const JobHandle job = m_runner->start(
        JobPriority::userInitiated, [held = std::move(held)](const Job&) { return 1; },
        [this](int) { ++m_published; });
    // No event loop runs here, so the result stays where it was posted.
    while (!watch.expired()) {
        std::this_thread::yield();
    }
    job->cancel();
    awaitEnd();
    QCoreApplication::processEvents();
    EXPECT_EQ(m_published, 0);
}

TEST_F(JobRunnerTest, ResultThatNobodyWantsAnyMoreEndsOnAnotherThread)
{
    auto held = std::make_shared<int>(0);
    const std::weak_ptr<int> watch = held;
    std::atomic<bool> hasEnded = false;
    std::thread::id where;
    const auto note = [&](const int* thing) {
        delete thing;
        where = std::this_thread::get_id();
        hasEnded = true;
    };
    const JobHandle job = m_runner->start(
        JobPriority::userInitiated,
        [held = std::move(held), note](const Job&) { return std::shared_ptr<int>(new int, note); },
        [this](const std::shared_ptr<int>&) { ++m_published; });
    while (!watch.expired()) {
        std::this_thread::yield();
    }
    ASSERT_FALSE(hasEnded) << "it waits for the main thread";
    job->cancel();
    ASSERT_TRUE(waitFor([&] { return hasEnded.load(); }));
    EXPECT_NE(where, std::this_thread::get_id());
    EXPECT_EQ(m_published, 0);
}

TEST_F(JobRunnerTest, CancelAfterTheEndChangesNothing)
{
    Gate gate;
    gate.open();
    const JobHandle job = startAt(gate);
    ASSERT_TRUE(waitFor([this] { return m_published == 1; }));
    job->cancel();
    awaitEnd();
    EXPECT_EQ(m_published, 1);
}

TEST_F(JobRunnerTest, SupersededJobIsStaleAndTheNewOneIsNot)
{
    Gate oldGate;
    Gate newGate;
    const JobHandle old = startAt(oldGate);
    oldGate.awaitVisitor();
    old->cancel();
    startAt(newGate);
    newGate.open();
    ASSERT_TRUE(waitFor([this] { return m_published == 1; }));
    oldGate.open();
    awaitEnd();
    EXPECT_EQ(m_published, 1);
}

TEST_F(JobRunnerTest, EndStopsJobsUnderWayAndPublishesNothing)
{
    std::atomic<bool> hasStarted = false;
    m_runner->start(
        JobPriority::userInitiated,
        [&hasStarted](const Job& self) {
            hasStarted = true;
            while (!self.isCancelled()) {
                std::this_thread::yield();
            }
            return 0;
        },
        [this](int) { ++m_published; });
    ASSERT_TRUE(waitFor([&hasStarted] { return hasStarted.load(); }));
    m_runner.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(m_published, 0);
}

TEST_F(JobRunnerTest, DrainingEndsAJobThatWaitsForTheMainThread)
{
    std::atomic<bool> waits = false;
    std::atomic<bool> hasRun = true;
    const JobHandle job = m_runner->start(
        JobPriority::userInitiated,
        [post = m_runner->poster(), &waits, &hasRun](const Job& self) {
            waits = true;
            hasRun = post.andWait(self, [] {});
            return 0;
        },
        [](int) {});
    // The main thread does not turn here, so the block of the job cannot run.
    while (!waits) {
        std::this_thread::yield();
    }
    EXPECT_TRUE(m_runner->drain(std::chrono::seconds(30)));
    EXPECT_TRUE(job->isCancelled());
    EXPECT_FALSE(hasRun);
}

TEST_F(JobRunnerTest, APosterKnowsWhenNobodyTakesItsBlocksAnyMore)
{
    static_assert(std::atomic<bool>::is_always_lock_free);
    const MainThreadPoster post = m_runner->poster();
    EXPECT_FALSE(post.isClosed());
    EXPECT_TRUE(m_runner->drain(std::chrono::seconds(30)));
    EXPECT_TRUE(post.isClosed());
    int runs = 0;
    post([&runs] { ++runs; });
    m_runner.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(runs, 0);
}

TEST_F(JobRunnerTest, EndDropsWhatWaitsForTheMainThread)
{
    std::atomic<bool> isWorkDone = false;
    m_runner->start(
        JobPriority::userInitiated,
        [&isWorkDone](const Job&) {
            isWorkDone = true;
            return 0;
        },
        [this](int) { ++m_published; });
    while (!isWorkDone) {
        std::this_thread::yield();
    }
    m_runner.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(m_published, 0);
}

TEST_F(JobRunnerTest, PosterKeepsTheOrderAndEndsWithTheRunner)
{
    const MainThreadPoster post = m_runner->poster();
    std::vector<int> seen;
    std::thread other([&] {
        for (int i = 0; i < 100; ++i) {
            post([&seen, i] { seen.push_back(i); });
        }
    });
    other.join();
    EXPECT_TRUE(seen.empty());
    QCoreApplication::processEvents();
    ASSERT_EQ(seen.size(), 100U);
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(seen[static_cast<std::size_t>(i)], i);
    }
    m_runner.reset();
    post([&seen] { seen.push_back(-1); });
    QCoreApplication::processEvents();
    EXPECT_EQ(seen.size(), 100U);
}

TEST_F(JobRunnerTest, WorkWithoutMemoryFailsOnTheMainThread)
{
    std::thread::id where;
    bool isPublished = false;
    m_runner->start(
        JobPriority::userInitiated, [](const Job&) -> int { throw std::bad_alloc(); },
        [&](int) { isPublished = true; }, [&] { where = std::this_thread::get_id(); });
    ASSERT_TRUE(waitFor([&] { return where == std::this_thread::get_id(); }));
    EXPECT_FALSE(isPublished);
}

TEST_F(JobRunnerTest, FailureOfACancelledJobIsNotTold)
{
    Gate gate;
    bool isTold = false;
    const JobHandle job = m_runner->start(
        JobPriority::userInitiated,
        [&gate](const Job&) -> int {
            gate.pass();
            throw std::bad_alloc();
        },
        [](int) {}, [&] { isTold = true; });
    job->cancel();
    gate.open();
    bool isLater = false;
    m_runner->start(
        JobPriority::userInitiated, [](const Job&) -> int { throw std::bad_alloc(); }, [](int) {},
        [&] { isLater = true; });
    ASSERT_TRUE(waitFor([&] { return isLater; }));
    m_runner.reset();
    EXPECT_FALSE(isTold);
}

TEST_F(JobRunnerTest, ReleasedThingEndsOnAnotherThread)
{
    std::atomic<bool> hasEnded = false;
    std::thread::id where;
    const auto note = [&](int* thing) {
        delete thing;
        where = std::this_thread::get_id();
        hasEnded = true;
    };
    std::shared_ptr<int> thing(new int(7), note);
    m_runner->release(std::move(thing));
    ASSERT_TRUE(waitFor([&hasEnded] { return hasEnded.load(); }));
    EXPECT_NE(where, std::this_thread::get_id());
}

} // namespace
} // namespace quorvane
