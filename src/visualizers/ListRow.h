// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace quorvane {

class FileNode;

/// How lists write a node.
struct ListRow
{
    /// Name of the symbol that stands for a node, by its kind and the extension of its name.
    static QString iconName(const FileNode& node);
    /// A medium date, "Mar 4, 2024", in local time; empty for no date. Seconds since 1970.
    static QString dateText(std::optional<std::int64_t> seconds);
    /// A medium date and a short time, "Mar 4, 2024 at 3:05 PM".
    static QString dateAndTimeText(std::optional<std::int64_t> seconds);
    /// The share of a total, "9.8%". The total is positive.
    static QString shareText(std::int64_t bytes, std::int64_t total);
};

} // namespace quorvane
