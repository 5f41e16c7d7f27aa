// SPDX-License-Identifier: MIT
#include "ScanSnapshot.h"

#include "Json.h"
#include "Text.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <utility>

namespace quorvane {
namespace {

/// 2001-01-01 00:00:00 UTC in seconds since 1970.
constexpr double referenceDate = 978307200;
/// Beyond it, before and after, lies no date that anything was captured on: ten thousand years.
constexpr double farthestDate = 315569520000;

/// The shortest digits that read back as the same number, without an exponent.
void appendNumber(std::string& out, double value)
{
    std::array<char, 400> digits;
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                       std::chars_format::fixed);
    out.append(digits.data(), written.ptr);
}

/// Reads an object that has each of the keys once. readMember(place of the key).
template<std::size_t count, class ReadMember>
bool readObject(JsonReader& reader, const std::array<std::string_view, count>& keys,
                ReadMember readMember)
{
    if (!reader.beginObject()) {
        return false;
    }
    std::array<bool, count> isRead{};
    for (std::string key; reader.nextKey(key);) {
        const auto known = std::find(keys.begin(), keys.end(), key);
        if (known == keys.end()) {
            if (!reader.skipValue()) {
                return false;
            }
            continue;
        }
        const auto place = static_cast<std::size_t>(known - keys.begin());
        if (std::exchange(isRead[place], true) || !readMember(place)) {
            return false;
        }
    }
    return !reader.hasFailed() &&
           std::all_of(isRead.begin(), isRead.end(), [](bool isThere) { return isThere; });
}

bool readSize(JsonReader& reader, std::int64_t& out)
{
    return reader.integer(out) && out >= 0;
}

bool readId(JsonReader& reader, QUuid& out)
{
    std::string text;
    if (!reader.text(text)) {
        return false;
    }
    const std::optional<QUuid> id = uuidFromText(text);
    out = id.value_or(out);
    return id.has_value();
}

/// The files go to the list; without one they are read to be checked alone.
bool readItems(JsonReader& reader, std::vector<ScanSnapshot::Entry>* items)
{
    constexpr std::array<std::string_view, 2> keys{"bytes", "path"};
    if (!reader.beginArray()) {
        return false;
    }
    ScanSnapshot::Entry entry;
    while (reader.nextItem()) {
        const bool isRead = readObject(reader, keys, [&](std::size_t key) {
            if (key == 0) {
                return readSize(reader, entry.bytes);
            }
            return items != nullptr ? reader.text(entry.path) : reader.skipText();
        });
        if (!isRead) {
            return false;
        }
        if (items != nullptr) {
            items->push_back(std::move(entry));
        }
    }
    return !reader.hasFailed();
}

bool readSnapshot(std::string_view json, SnapshotHeading& heading,
                  std::vector<ScanSnapshot::Entry>* items)
{
    constexpr std::array<std::string_view, 5> keys{"date", "id", "items", "rootBytes", "rootPath"};
    JsonReader reader(json);
    return readObject(reader, keys,
                      [&](std::size_t key) {
                          switch (key) {
                          case 0:
                              return reader.real(heading.date);
                          case 1:
                              return readId(reader, heading.id);
                          case 2:
                              return readItems(reader, items);
                          case 3:
                              return readSize(reader, heading.rootBytes);
                          default:
                              return reader.text(heading.rootPath);
                          }
                      }) &&
           reader.isComplete();
}

/// Qt knows a long and a short date; the medium one is the long one with a short month and without
/// the day of the week.
QString mediumDateFormat(const QLocale& locale)
{
    QString format = locale.dateFormat(QLocale::LongFormat);
    for (const QLatin1String weekday :
         {QLatin1String("dddd, "), QLatin1String("dddd "), QLatin1String(", dddd"),
          QLatin1String(" dddd"), QLatin1String("dddd")}) {
        format.remove(weekday);
    }
    return format.replace(QLatin1String("MMMM"), QLatin1String("MMM"));
}

/// Without the year and what sets it apart.
QString dayFormat(const QLocale& locale)
{
    QString format = mediumDateFormat(locale);
    for (const QLatin1String year : {QLatin1String(", yyyy"), QLatin1String(" yyyy"),
                                     QLatin1String("yyyy"), QLatin1String("y")}) {
        format.remove(year);
    }
    return format.trimmed();
}

QDateTime timeOf(double date)
{
    const double seconds = std::clamp(date, -farthestDate, farthestDate) + referenceDate;
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(seconds * 1000));
}

} // namespace

QString SnapshotHeading::formattedDay(const QLocale& locale) const
{
    return locale.toString(timeOf(date).date(), dayFormat(locale));
}

QString SnapshotHeading::formattedDateOnly(const QLocale& locale) const
{
    return locale.toString(timeOf(date).date(), mediumDateFormat(locale));
}

QString SnapshotHeading::formattedDate(const QLocale& locale) const
{
    const QDateTime time = timeOf(date);
    const QString joint = locale.language() == QLocale::English || locale.language() == QLocale::C
                              ? QStringLiteral(" at ")
                              : QStringLiteral(", ");
    return locale.toString(time.date(), mediumDateFormat(locale)) + joint +
           locale.toString(time.time(), QLocale::ShortFormat);
}

double snapshotDateNow()
{
    using Seconds = std::chrono::duration<double>;
    const Seconds now = std::chrono::system_clock::now().time_since_epoch();
    return now.count() - referenceDate;
}

std::string encodeSnapshot(const ScanSnapshot& snapshot)
{
    constexpr std::size_t usualEntryBytes = 100;
    std::string out;
    out.reserve((snapshot.items.size() + 4) * usualEntryBytes);
    out.append("{\"date\":");
    appendNumber(out, snapshot.date);
    out.append(",\"id\":\"" + uuidText(snapshot.id) + "\",\"items\":[");
    bool isFirst = true;
    for (const ScanSnapshot::Entry& entry : snapshot.items) {
        out.append(std::exchange(isFirst, false) ? "{\"bytes\":" : ",{\"bytes\":");
        out.append(std::to_string(entry.bytes));
        out.append(",\"path\":");
        appendJsonString(out, entry.path);
        out.push_back('}');
    }
    out.append("],\"rootBytes\":" + std::to_string(snapshot.rootBytes) + ",\"rootPath\":");
    appendJsonString(out, snapshot.rootPath);
    out.push_back('}');
    return out;
}

std::optional<ScanSnapshot> decodeSnapshot(std::string_view json)
{
    ScanSnapshot snapshot;
    if (!readSnapshot(json, snapshot, &snapshot.items)) {
        return std::nullopt;
    }
    return snapshot;
}

std::optional<SnapshotHeading> decodeSnapshotHeading(std::string_view json)
{
    SnapshotHeading heading;
    if (!readSnapshot(json, heading, nullptr)) {
        return std::nullopt;
    }
    return heading;
}

} // namespace quorvane
