// SPDX-License-Identifier: MIT
#include "WorkerProgress.h"

#include <algorithm>

namespace quorvane::DuplicateFinder {
namespace {

constexpr double shortestGap = 0.05; ///< seconds between two reports from the workers

} // namespace

void WorkerProgress::begin(const ProgressRange& range, std::size_t all)
{
    m_range = range;
    m_all = static_cast<double>(all);
    m_done = 0;
}

void WorkerProgress::countOne()
{
    const std::lock_guard guard(m_lock);
    ++m_done;
    if (m_done % m_range.step != 0) {
        return;
    }
    const double progress = std::min(
        static_cast<double>(m_done) * m_range.share / m_all + m_range.start, m_range.limit);
    const double now = m_clock();
    const bool isLast = progress >= 1;
    if (!isLast && now - m_lastReport < shortestGap) {
        return;
    }
    if (!isLast) {
        m_lastReport = now;
    }
    m_report(progress);
}

} // namespace quorvane::DuplicateFinder
