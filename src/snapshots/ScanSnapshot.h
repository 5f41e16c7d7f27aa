// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUuid>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class QLocale;

namespace quorvane {

/// What a snapshot is besides its files.
struct SnapshotHeading
{
    QUuid id;
    double date = 0;            ///< of the capture, seconds since 2001-01-01 00:00:00 UTC
    std::string rootPath;       ///< of the scan; UTF-8
    std::int64_t rootBytes = 0; ///< the root's scannedBytes

    /// Medium date and short time: "Aug 3, 2025 at 9:12 PM". Any date is safe.
    QString formattedDate(const QLocale& locale) const;
    /// The medium date alone: "Aug 3, 2025". Any date is safe.
    QString formattedDateOnly(const QLocale& locale) const;
    /// Month and day alone: "Aug 3". Any date is safe.
    QString formattedDay(const QLocale& locale) const;

    friend bool operator==(const SnapshotHeading&, const SnapshotHeading&) = default;
};

/// The large files of a finished scan at one time.
struct ScanSnapshot : SnapshotHeading
{
    struct Entry
    {
        std::string path;       ///< relative to the root with a leading "/"; UTF-8
        std::int64_t bytes = 0; ///< scannedBytes

        friend bool operator==(const Entry&, const Entry&) = default;
    };

    std::vector<Entry> items; ///< largest first

    friend bool operator==(const ScanSnapshot&, const ScanSnapshot&) = default;
};

/// Now, as a snapshot is dated. Any thread.
double snapshotDateNow();

/// The snapshot as it is stored: JSON in UTF-8 on one line, keys sorted.
std::string encodeSnapshot(const ScanSnapshot& snapshot);
/// Reads what encodeSnapshot() writes, with the keys of an object in any order and others beside
/// them. Nothing for a text in which one is missing or there twice, and for a size below zero,
/// which no file has. Any bytes are safe.
std::optional<ScanSnapshot> decodeSnapshot(std::string_view json);
/// The same text read to its end, but none of its files kept.
std::optional<SnapshotHeading> decodeSnapshotHeading(std::string_view json);

} // namespace quorvane
