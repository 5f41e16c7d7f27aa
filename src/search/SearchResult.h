// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "SearchQueryParser.h"

#include <QString>

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quorvane {

/// What a file is, as far as its name tells. The first nine cases are those of SearchFilterKind.
enum class ResultKind : std::uint8_t {
    folder,
    image,
    video,
    audio,
    document,
    pdf,
    application,
    archive,
    developer,
    diskImage,
    other
};

inline constexpr std::size_t resultKindCount = 11;

/// The text on a result row, for example "Disk Image".
std::string_view rawValue(ResultKind kind);
/// The case of the same name.
constexpr ResultKind resultKind(SearchFilterKind kind)
{
    return static_cast<ResultKind>(kind);
}

/// Kinds by name alone.
struct FileKindClassifier
{
    /// `application` for what ends in ".app", ".appimage" or ".desktop", folders included; else
    /// `folder` for a folder; else by the extension, in any case. A name that only begins with a
    /// point has none. Any thread.
    static ResultKind classify(std::string_view name, bool isDir);
};

/// Texts of result rows.
struct SearchResultsFormatter
{
    /// "0 B", "1023.0 B", "1.5 KB" and so on up to TB. A negative size ends the program.
    static QString size(std::int64_t bytes);
    /// How many days before nowMs, in the largest unit that fits: "Today", "3 days ago", "1 weeks
    /// ago". Empty unless ms is above 0. Both in milliseconds since 1970.
    static QString relativeDate(double ms, double nowMs);
};

/// Limits on the size and the age of what is found. The sizes themselves are left out.
struct SearchFilters
{
    std::optional<std::int64_t> minBytes;
    std::optional<std::int64_t> maxBytes;
    std::optional<double> fromMs; ///< earliest modification, milliseconds since 1970

    bool isEmpty() const { return !minBytes && !maxBytes && !fromMs; }
    /// Whether an entry of that size and date passes.
    bool pass(std::int64_t size, double modifiedMs) const
    {
        return (!minBytes || size > *minBytes) && (!maxBytes || size < *maxBytes) &&
               (!fromMs || modifiedMs >= *fromMs);
    }

    friend bool operator==(const SearchFilters&, const SearchFilters&) = default;
};

/// What is searched for.
struct SearchRequest
{
    QString query; ///< free words, parted by blanks
    FilePath scope{"/"};
    std::optional<SearchFilterKind> kind;
    SearchFilters filters;
};

/// A row of the overlay. A plain value; the path is also its identity.
struct SearchResult
{
    FilePath path;
    ResultKind kind = ResultKind::other;
    std::int64_t size = 0; ///< the entry's own, bytes
    double modifiedMS = 0; ///< milliseconds since 1970; 0 when unknown

    std::string_view name() const { return path.lastComponent(); }
    QString sizeLabel() const { return SearchResultsFormatter::size(size); }
    QString dateLabel(double nowMs) const
    {
        return SearchResultsFormatter::relativeDate(modifiedMS, nowMs);
    }

    friend bool operator==(const SearchResult&, const SearchResult&) = default;
};

} // namespace quorvane
