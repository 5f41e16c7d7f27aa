// SPDX-License-Identifier: MIT
#pragma once

#include "SizeMode.h"

#include <QDate>
#include <QDateTime>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quorvane {

class BloatKeys;
class FileNode;
class LockedFlag;

/// The bytes last modified in one month of the user's calendar.
struct AgeBucket
{
    QString key; ///< the month as "MMM yyyy"
    QDate month; ///< its first day
    std::int64_t bytes = 0;

    friend bool operator==(const AgeBucket&, const AgeBucket&) = default;
};

struct AgeMap
{
    /// Files of at least so many bytes are listed when nobody touched them for a year.
    static constexpr std::int64_t untouchedBytes = 52428800;
    /// Of those the largest so many.
    static constexpr std::size_t shownUntouched = 200;
    /// The newest so many months are kept; older bytes fall off.
    static constexpr std::size_t shownMonths = 36;

    std::vector<AgeBucket> buckets;   ///< by month, only those with files
    std::vector<FileNode*> untouched; ///< largest first, equal ones by name
};

/// The text of a month, "MMM yyyy", in English.
QString monthText(const QDate& month);

/// Walks every visible file below a node: any thread but the main one. Files without a date count
/// nowhere. A stopped walk gives an empty map; a byte sum beyond 64 bits ends the program. A year
/// ago is counted from `now` in its own time zone, the months in the local one.
AgeMap computeAgeMap(FileNode& root, SizeMode sizeMode, const BloatKeys& excludedBloat,
                     const LockedFlag* stop = nullptr,
                     const QDateTime& now = QDateTime::currentDateTime());

} // namespace quorvane
