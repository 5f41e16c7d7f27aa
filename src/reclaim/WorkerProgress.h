// SPDX-License-Identifier: MIT
#pragma once

#include "DuplicateFinder.h"

#include <cstddef>
#include <functional>
#include <mutex>

namespace quorvane::DuplicateFinder {

/// How the files of a parallel pass become a progress: start + share × done / all, at most limit,
/// looked at after every `step` files.
struct ProgressRange
{
    double start;
    double share;
    double limit;
    std::size_t step;
};

/// Counts what the workers have done and reports it, no more often than every 0.05 seconds over
/// both parallel passes. countOne() may come from any thread.
class WorkerProgress
{
public:
    /// clock in seconds; both callbacks must outlive this.
    WorkerProgress(const ProgressCallback& report, const std::function<double()>& clock)
        : m_report(report)
        , m_clock(clock)
    {}

    /// Begins a pass over so many files. Not while workers run.
    void begin(const ProgressRange& range, std::size_t all);
    /// Counts one more file; reports under the lock.
    void countOne();
    /// Files counted in this pass. Not while workers run.
    std::size_t done() const { return m_done; }

private:
    const ProgressCallback& m_report;
    const std::function<double()>& m_clock;
    ProgressRange m_range = {};
    double m_all = 0;

    std::mutex m_lock;
    std::size_t m_done = 0;
    double m_lastReport = 0;
};

} // namespace quorvane::DuplicateFinder
