// SPDX-License-Identifier: MIT
#include "AgeMap.h"

#include "CheckedMath.h"
#include "LayoutWalk.h"

#include <QLocale>

#include <algorithm>
#include <map>

namespace quorvane {
namespace {

/// Sums by month. A month is looked up by its bounds, so that the calendar is asked once a month
/// and not once a file.
class MonthTable
{
public:
    void add(std::int64_t seconds, std::int64_t bytes)
    {
        if (m_last == m_months.end() || seconds < m_last->first ||
            seconds >= m_last->second.endSeconds) {
            m_last = monthOf(seconds);
        }
        m_last->second.bytes = checkedAdd(m_last->second.bytes, bytes, "computeAgeMap");
    }

    /// The newest so many, oldest first.
    std::vector<AgeBucket> newest(std::size_t count) const
    {
        std::vector<AgeBucket> buckets;
        const std::size_t cut = m_months.size() > count ? m_months.size() - count : 0;
        for (auto month = std::next(m_months.begin(), static_cast<std::ptrdiff_t>(cut));
             month != m_months.end(); ++month) {
            const QDate first = month->second.first;
            buckets.push_back({monthText(first), first, month->second.bytes});
        }
        return buckets;
    }

private:
    struct Month
    {
        std::int64_t endSeconds = 0; ///< first second after it
        QDate first;
        std::int64_t bytes = 0;
    };
    using Months = std::map<std::int64_t, Month>; ///< by the month's first second

    Months::iterator monthOf(std::int64_t seconds)
    {
        auto after = m_months.upper_bound(seconds);
        if (after != m_months.begin()) {
            --after;
            if (seconds < after->second.endSeconds) {
                return after;
            }
        }
        // Dates beyond what a calendar can tell come from broken disks; they count at its ends.
        constexpr std::int64_t calendarEnd = 9'000'000'000'000;
        const QDate day =
            QDateTime::fromSecsSinceEpoch(std::clamp(seconds, -calendarEnd, calendarEnd)).date();
        const QDate first(day.year(), day.month(), 1);
        const std::int64_t start = first.startOfDay().toSecsSinceEpoch();
        const std::int64_t end = first.addMonths(1).startOfDay().toSecsSinceEpoch();
        return m_months.try_emplace(start, Month{end, first, 0}).first;
    }

    Months m_months;
    Months::iterator m_last = m_months.end();
};

} // namespace

QString monthText(const QDate& month)
{
    return QLocale::c().toString(month, QStringLiteral("MMM yyyy"));
}

AgeMap computeAgeMap(FileNode& root, SizeMode sizeMode, const BloatKeys& excludedBloat,
                     const LockedFlag* stop, const QDateTime& now)
{
    const std::int64_t cutoff = now.addYears(-1).toSecsSinceEpoch();
    MonthTable months;
    TopRanked untouched(AgeMap::shownUntouched);
    const bool isComplete = walkVisible(root, excludedBloat, stop, [&](FileNode& node) {
        const std::optional<std::int64_t> modified = node.dateModified();
        if (node.isDirectory() || !modified) {
            return;
        }
        const std::int64_t size = weightBasis(node, sizeMode);
        months.add(*modified, size);
        if (size >= AgeMap::untouchedBytes && *modified < cutoff) {
            untouched.add({&node, size});
        }
    });
    AgeMap map;
    if (isComplete) {
        map.buckets = months.newest(AgeMap::shownMonths);
        for (const WeightedNode& file : untouched.takeSorted()) {
            map.untouched.push_back(file.node);
        }
    }
    return map;
}

} // namespace quorvane
