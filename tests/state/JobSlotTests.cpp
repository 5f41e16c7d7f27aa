// SPDX-License-Identifier: MIT
#include "JobSlot.h"

#include "Gate.h"
#include "WaitFor.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace quorvane {
namespace {

class JobSlotTest : public testing::Test
{
protected:
    /// A run that passes the gate and finds the number.
    void startAt(Gate& gate, int number)
    {
        m_slot.restart(
            JobPriority::userInitiated,
            [&gate, number](const JobRun&) {
                gate.pass();
                return number;
            },
            [this](int found) {
                m_wasRunningAtPublish = m_running.value();
                m_published.push_back(found);
            });
    }

    /// Ends the runner, and with it every run.
    void end() { m_runner.reset(); }

    QProperty<bool> m_running{false};
    QProperty<double> m_progress{0};
    QProperty<std::optional<QString>> m_status;
    std::vector<int> m_published;
    bool m_wasRunningAtPublish = true;
    std::unique_ptr<JobRunner> m_runner = std::make_unique<JobRunner>(std::function<void()>());
    JobSlot m_slot{*m_runner, {&m_running, &m_progress, &m_status}};
};

TEST_F(JobSlotTest, RunsFromItsStartUntilItPublishes)
{
    Gate gate;
    m_progress = 1;
    startAt(gate, 7);
    EXPECT_TRUE(m_slot.isRunning());
    EXPECT_TRUE(m_running.value());
    EXPECT_EQ(m_progress.value(), 0);
    gate.open();
    ASSERT_TRUE(waitFor([this] { return !m_published.empty(); }));
    EXPECT_EQ(m_published, std::vector<int>{7});
    EXPECT_FALSE(m_wasRunningAtPublish);
    EXPECT_FALSE(m_slot.isRunning());
    EXPECT_FALSE(m_running.value());
}

TEST_F(JobSlotTest, PublishesTheLatestRunAlone)
{
    Gate first;
    Gate second;
    startAt(first, 1);
    first.awaitVisitor();
    startAt(second, 2);
    second.awaitVisitor();
    first.open();
    second.open();
    ASSERT_TRUE(waitFor([this] { return !m_running.value(); }));
    end();
    EXPECT_EQ(m_published, std::vector<int>{2});
}

TEST_F(JobSlotTest, PublishesARunThatWasOnlyAskedToStop)
{
    std::atomic<bool> hasStarted = false;
    m_slot.restart(
        JobPriority::userInitiated,
        [&hasStarted](const JobRun& run) {
            hasStarted = true;
            while (!run.isStopped() || !run.stopFlag()->get()) {
                std::this_thread::yield();
            }
            return 3;
        },
        [this](int found) { m_published.push_back(found); });
    ASSERT_TRUE(waitFor([&hasStarted] { return hasStarted.load(); }));
    EXPECT_FALSE(m_slot.isStopRequested());
    m_slot.requestStop();
    EXPECT_TRUE(m_slot.isStopRequested());
    EXPECT_TRUE(m_running.value());
    ASSERT_TRUE(waitFor([this] { return !m_running.value(); }));
    EXPECT_EQ(m_published, std::vector<int>{3});
}

TEST_F(JobSlotTest, DiscardedRunLeavesTheFieldsAloneAndIsNotStopped)
{
    Gate gate;
    std::atomic<bool> isStopped = true;
    std::atomic<bool> isUnwanted = false;
    std::atomic<bool> hasEnded = false;
    m_slot.restart(
        JobPriority::userInitiated,
        [&](const JobRun& run) {
            gate.pass();
            isStopped = run.isStopped();
            isUnwanted = run.isUnwanted();
            hasEnded = true;
            return 1;
        },
        [this](int found) { m_published.push_back(found); });
    gate.awaitVisitor();
    m_slot.discard();
    EXPECT_FALSE(m_slot.isRunning());
    EXPECT_TRUE(m_running.value());
    gate.open();
    ASSERT_TRUE(waitFor([&hasEnded] { return hasEnded.load(); }));
    EXPECT_FALSE(isStopped);
    EXPECT_TRUE(isUnwanted);
    end();
    EXPECT_TRUE(m_published.empty());
}

TEST_F(JobSlotTest, StoppedRunEndsAtOnceForTheScreensAndPublishesNothing)
{
    Gate gate;
    startAt(gate, 1);
    gate.awaitVisitor();
    m_slot.stop();
    EXPECT_FALSE(m_running.value());
    EXPECT_TRUE(m_slot.isStopRequested());
    gate.open();
    end();
    EXPECT_TRUE(m_published.empty());
}

TEST_F(JobSlotTest, StoppingAnIdleSlotDoesNotStopTheNextRun)
{
    Gate gate;
    gate.open();
    m_slot.stop();
    m_slot.requestStop();
    startAt(gate, 4);
    EXPECT_FALSE(m_slot.isStopRequested());
    ASSERT_TRUE(waitFor([this] { return !m_running.value(); }));
    EXPECT_EQ(m_published, std::vector<int>{4});
}

TEST_F(JobSlotTest, WhoReactsToTheStartCanStopTheRunThatStarts)
{
    Gate gate;
    gate.open();
    startAt(gate, 1);
    ASSERT_TRUE(waitFor([this] { return !m_running.value(); }));
    const auto watch = m_running.addNotifier([this] {
        if (m_running.value()) {
            m_slot.requestStop();
        }
    });
    startAt(gate, 2);
    EXPECT_TRUE(m_slot.isStopRequested());
    ASSERT_TRUE(waitFor([this] { return !m_running.value(); }));
}

TEST_F(JobSlotTest, ReportsThatWaitBecomeOneWithTheLastValue)
{
    std::atomic<bool> hasReported = false;
    Gate gate;
    std::vector<double> seen;
    const auto watch = m_progress.addNotifier([&] { seen.push_back(m_progress.value()); });
    m_slot.restart(
        JobPriority::userInitiated,
        [&](const JobRun& run) {
            for (int i = 1; i <= 1000; ++i) {
                run.report(i / 1000.0);
            }
            hasReported = true;
            gate.pass();
            return 0;
        },
        [](int) {});
    // No event loop runs here, so the reports wait where they were posted.
    while (!hasReported) {
        std::this_thread::yield();
    }
    EXPECT_TRUE(seen.empty());
    QCoreApplication::processEvents();
    EXPECT_EQ(seen, std::vector<double>{1.0});
    gate.open();
    ASSERT_TRUE(waitFor([this] { return !m_running.value(); }));
}

TEST_F(JobSlotTest, ReportOfAnEarlierRunIsDropped)
{
    Gate gate;
    std::atomic<bool> hasReported = false;
    m_slot.restart(
        JobPriority::userInitiated,
        [&](const JobRun& run) {
            run.report(0.5);
            hasReported = true;
            return 1;
        },
        [](int) {});
    while (!hasReported) {
        std::this_thread::yield();
    }
    startAt(gate, 2);
    QCoreApplication::processEvents();
    EXPECT_EQ(m_progress.value(), 0);
    gate.open();
    ASSERT_TRUE(waitFor([this] { return !m_running.value(); }));
}

TEST_F(JobSlotTest, StoppedRunReportsNoMore)
{
    Gate gate;
    m_slot.restart(
        JobPriority::userInitiated,
        [&](const JobRun& run) {
            gate.pass();
            run.report(0.5);
            return 1;
        },
        [](int) {});
    gate.awaitVisitor();
    m_slot.requestStop();
    gate.open();
    ASSERT_TRUE(waitFor([this] { return !m_running.value(); }));
    EXPECT_EQ(m_progress.value(), 0);
}

TEST_F(JobSlotTest, AwaitedReportSetsProgressAndStatusBeforeTheWorkGoesOn)
{
    std::atomic<bool> wasShown = false;
    QString shown;
    m_slot.restart(
        JobPriority::userInitiated,
        [&wasShown](const JobRun& run) {
            wasShown = run.reportAndWait(0.5, QStringLiteral("half"));
            return 1;
        },
        [&](int) { shown = m_status.value().value_or(QString()); });
    ASSERT_TRUE(waitFor([this] { return !m_running.value(); }));
    EXPECT_TRUE(wasShown);
    EXPECT_EQ(shown, QStringLiteral("half"));
    EXPECT_EQ(m_progress.value(), 0.5);
}

TEST_F(JobSlotTest, AwaitedReportReturnsWhenTheRunIsDiscarded)
{
    Gate gate;
    std::atomic<int> wasShown = -1;
    m_slot.restart(
        JobPriority::userInitiated,
        [&](const JobRun& run) {
            gate.pass();
            wasShown = run.reportAndWait(0.5, QStringLiteral("half")) ? 1 : 0;
            return 1;
        },
        [](int) {});
    gate.awaitVisitor();
    m_slot.discard();
    gate.open();
    // No event loop runs here: the report is never carried out.
    while (wasShown < 0) {
        std::this_thread::yield();
    }
    EXPECT_EQ(wasShown, 0);
    EXPECT_EQ(m_progress.value(), 0);
}

TEST_F(JobSlotTest, RunOutlivesItsSlotWithoutReportingOrPublishing)
{
    Gate gate;
    std::atomic<bool> hasEnded = false;
    std::atomic<bool> wasUnwanted = false;
    auto slot = std::make_unique<JobSlot>(*m_runner, JobFields{&m_running, &m_progress});
    slot->restart(
        JobPriority::userInitiated,
        [&](const JobRun& run) {
            run.report(0.25);
            gate.pass();
            wasUnwanted = run.isStopped() && run.discardFlag().get();
            run.report(0.5);
            hasEnded = true;
            return 1;
        },
        [this](int found) { m_published.push_back(found); });
    gate.awaitVisitor();
    slot.reset();
    gate.open();
    ASSERT_TRUE(waitFor([&hasEnded] { return hasEnded.load(); }));
    end();
    QCoreApplication::processEvents();
    EXPECT_TRUE(wasUnwanted);
    EXPECT_EQ(m_progress.value(), 0);
    EXPECT_TRUE(m_published.empty());
}

TEST_F(JobSlotTest, EndOfTheRunnerStopsTheWork)
{
    std::atomic<bool> hasStarted = false;
    m_slot.restart(
        JobPriority::utility,
        [&hasStarted](const JobRun& run) {
            hasStarted = true;
            while (!run.isStopped()) {
                std::this_thread::yield();
            }
            return 1;
        },
        [this](int found) { m_published.push_back(found); });
    ASSERT_TRUE(waitFor([&hasStarted] { return hasStarted.load(); }));
    end();
    QCoreApplication::processEvents();
    EXPECT_TRUE(m_published.empty());
}

} // namespace
} // namespace quorvane
