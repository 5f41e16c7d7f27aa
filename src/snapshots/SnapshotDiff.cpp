// SPDX-License-Identifier: MIT
#include "SnapshotDiff.h"

#include "ByteFormatter.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace quorvane {
namespace {

/// Sizes are never negative, so that the magnitude of a change is a number, too.
std::int64_t magnitude(std::int64_t bytes)
{
    constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
    return bytes == lowest ? std::numeric_limits<std::int64_t>::max() : std::abs(bytes);
}

std::int64_t saturatingAdd(std::int64_t a, std::int64_t b)
{
    std::int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum)) {
        return b < 0 ? std::numeric_limits<std::int64_t>::min()
                     : std::numeric_limits<std::int64_t>::max();
    }
    return sum;
}

/// Stable. The sort moves keys of sixteen bytes, and each row moves once.
std::vector<SnapshotDiff> largestFirst(std::vector<SnapshotDiff> rows)
{
    struct Key
    {
        std::int64_t change;
        std::size_t place;
    };
    std::vector<Key> keys;
    keys.reserve(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        keys.push_back({magnitude(rows[i].deltaBytes()), i});
    }
    std::sort(keys.begin(), keys.end(), [](const Key& a, const Key& b) {
        return a.change == b.change ? a.place < b.place : a.change > b.change;
    });
    std::vector<SnapshotDiff> sorted;
    sorted.reserve(rows.size());
    for (const Key& key : keys) {
        sorted.push_back(std::move(rows[key.place]));
    }
    return sorted;
}

} // namespace

QString SnapshotDiff::formattedPast() const
{
    return ByteFormatter::string(pastBytes);
}

QString SnapshotDiff::formattedPresent() const
{
    return ByteFormatter::string(presentBytes);
}

QString SnapshotDiff::formattedDelta() const
{
    return signedBytes(deltaBytes());
}

std::vector<SnapshotDiff> diff(const ScanSnapshot& past, const ScanSnapshot& present)
{
    std::vector<SnapshotDiff> rows;
    rows.reserve(past.items.size() + present.items.size());
    std::unordered_map<std::string_view, std::size_t> places;
    places.reserve(rows.capacity());
    const auto rowOf = [&](const std::string& path) -> SnapshotDiff& {
        const auto [known, isNew] = places.try_emplace(path, rows.size());
        if (isNew) {
            rows.push_back({path, 0, 0, SnapshotDiff::noItem});
        }
        return rows[known->second];
    };
    for (const ScanSnapshot::Entry& entry : past.items) {
        rowOf(entry.path).pastBytes = entry.bytes;
    }
    for (std::size_t i = 0; i < present.items.size(); ++i) {
        SnapshotDiff& row = rowOf(present.items[i].path);
        row.presentBytes = present.items[i].bytes;
        row.presentItem = i;
    }
    return largestFirst(std::move(rows));
}

std::int64_t netChange(std::span<const SnapshotDiff> diffs)
{
    std::int64_t net = 0;
    for (const SnapshotDiff& row : diffs) {
        net = saturatingAdd(net, row.deltaBytes());
    }
    return net;
}

QString netChangeText(std::int64_t net)
{
    return (net < 0 ? QStringLiteral("Net change ") : QStringLiteral("Net growth ")) +
           signedBytes(net);
}

QString signedBytes(std::int64_t bytes)
{
    return (bytes < 0 ? QStringLiteral("−") : QStringLiteral("+")) +
           ByteFormatter::string(magnitude(bytes));
}

} // namespace quorvane
