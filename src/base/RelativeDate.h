// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>

namespace quorvane {

/// How far a date lies from now, in the largest unit that fits and in short words: "2 min. ago",
/// "8 mo. ago", "in 3 hr.". Both in whole seconds since 1970; months and years are those of the
/// local calendar, a week is seven days. Any thread.
QString relativeDate(std::int64_t seconds, std::int64_t now);

} // namespace quorvane
