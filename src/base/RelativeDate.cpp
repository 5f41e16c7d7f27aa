// SPDX-License-Identifier: MIT
#include "RelativeDate.h"

#include <QDateTime>

#include <algorithm>

namespace quorvane {
namespace {

constexpr std::int64_t minute = 60;
constexpr std::int64_t hour = 60 * minute;
constexpr std::int64_t day = 24 * hour;
constexpr std::int64_t week = 7 * day;
constexpr int monthsInYear = 12;

struct Span
{
    std::int64_t count;
    QLatin1String unit;
};

/// Whole calendar months between two dates, the earlier one first.
std::int64_t monthsBetween(std::int64_t from, std::int64_t to)
{
    const QDateTime start = QDateTime::fromSecsSinceEpoch(from);
    const QDateTime end = QDateTime::fromSecsSinceEpoch(to);
    if (!start.isValid() || !end.isValid()) {
        return 0;
    }
    int months = (end.date().year() - start.date().year()) * monthsInYear + end.date().month() -
                 start.date().month();
    if (months > 0 && start.addMonths(months) > end) {
        --months;
    }
    return months;
}

Span spanBetween(std::int64_t from, std::int64_t to)
{
    const std::int64_t seconds = to - from;
    if (seconds < minute) {
        return {seconds, QLatin1String("sec.")};
    }
    if (seconds < hour) {
        return {seconds / minute, QLatin1String("min.")};
    }
    if (seconds < day) {
        return {seconds / hour, QLatin1String("hr.")};
    }
    if (seconds < week) {
        const std::int64_t days = seconds / day;
        return {days, QLatin1String(days == 1 ? "day" : "days")};
    }
    const std::int64_t months = monthsBetween(from, to);
    if (months < 1) {
        return {seconds / week, QLatin1String("wk.")};
    }
    if (months < monthsInYear) {
        return {months, QLatin1String("mo.")};
    }
    return {months / monthsInYear, QLatin1String("yr.")};
}

} // namespace

QString relativeDate(std::int64_t seconds, std::int64_t now)
{
    // Far beyond every calendar, so that no difference can overflow.
    constexpr std::int64_t furthest = std::int64_t{1} << 60;
    seconds = std::clamp(seconds, -furthest, furthest);
    const bool isAhead = seconds > now;
    const Span span = isAhead ? spanBetween(now, seconds) : spanBetween(seconds, now);
    const QString words = QString::number(span.count) % QLatin1Char(' ') % span.unit;
    return isAhead ? QString(QLatin1String("in ") % words) : QString(words % QLatin1String(" ago"));
}

} // namespace quorvane
