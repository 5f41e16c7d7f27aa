// SPDX-License-Identifier: MIT
#include "RelativeDate.h"

#include <gtest/gtest.h>

#include <QDateTime>

#include <limits>

namespace quorvane {
namespace {

std::int64_t at(int year, int month, int day, int hour = 12)
{
    return QDateTime(QDate(year, month, day), QTime(hour, 0)).toSecsSinceEpoch();
}

std::string text(std::int64_t date, std::int64_t now)
{
    return relativeDate(date, now).toStdString();
}

TEST(RelativeDate, TakesTheLargestUnitThatFits)
{
    const std::int64_t now = at(2026, 3, 31);
    EXPECT_EQ(text(now, now), "0 sec. ago");
    EXPECT_EQ(text(now - 59, now), "59 sec. ago");
    EXPECT_EQ(text(now - 60, now), "1 min. ago");
    EXPECT_EQ(text(now - 3599, now), "59 min. ago");
    EXPECT_EQ(text(now - 3600, now), "1 hr. ago");
    EXPECT_EQ(text(now - 86400, now), "1 day ago");
    EXPECT_EQ(text(now - 6 * 86400, now), "6 days ago");
    EXPECT_EQ(text(now - 7 * 86400, now), "1 wk. ago");
    EXPECT_EQ(text(now - 27 * 86400, now), "3 wk. ago");
}

TEST(RelativeDate, CountsMonthsAndYearsByTheCalendar)
{
    EXPECT_EQ(text(at(2026, 2, 15), at(2026, 3, 15)), "1 mo. ago");
    EXPECT_EQ(text(at(2026, 2, 15), at(2026, 3, 14)), "3 wk. ago");
    EXPECT_EQ(text(at(2025, 3, 15), at(2026, 3, 14)), "11 mo. ago");
    EXPECT_EQ(text(at(2025, 3, 15), at(2026, 3, 15)), "1 yr. ago");
    EXPECT_EQ(text(at(1970, 1, 2), at(2026, 1, 2)), "56 yr. ago");
}

TEST(RelativeDate, TellsWhatIsStillToCome)
{
    const std::int64_t now = at(2026, 3, 31);
    EXPECT_EQ(text(now + 1, now), "in 1 sec.");
    EXPECT_EQ(text(now + 3 * 3600, now), "in 3 hr.");
}

TEST(RelativeDate, SurvivesDatesBeyondEveryCalendar)
{
    for (const std::int64_t date :
         {std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()}) {
        EXPECT_FALSE(relativeDate(date, at(2026, 3, 31)).isEmpty());
    }
}

} // namespace
} // namespace quorvane
