// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <QString>
#include <QStringList>

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quorvane {

/// How a word of a query was read.
enum class SearchTokenType : std::uint8_t {
    kind,
    location,
    size,
    date,
    term,
    pendingKind,
    pendingLocation
};

inline constexpr std::array allSearchTokenTypes{
    SearchTokenType::kind,           SearchTokenType::location, SearchTokenType::size,
    SearchTokenType::date,           SearchTokenType::term,     SearchTokenType::pendingKind,
    SearchTokenType::pendingLocation};

/// The case's name, for example "pendingKind".
std::string_view rawValue(SearchTokenType type);
std::optional<SearchTokenType> searchTokenTypeFromRawValue(std::string_view text);

/// The kinds that a query can ask for.
enum class SearchFilterKind : std::uint8_t {
    folder,
    image,
    video,
    audio,
    document,
    pdf,
    application,
    archive,
    developer
};

inline constexpr std::array allSearchFilterKinds{
    SearchFilterKind::folder,      SearchFilterKind::image,    SearchFilterKind::video,
    SearchFilterKind::audio,       SearchFilterKind::document, SearchFilterKind::pdf,
    SearchFilterKind::application, SearchFilterKind::archive,  SearchFilterKind::developer};

/// The case's name, for example "application".
std::string_view rawValue(SearchFilterKind kind);
std::optional<SearchFilterKind> searchFilterKindFromRawValue(std::string_view text);
/// What the filter's chip reads, for example "app".
QString chipText(SearchFilterKind kind);

/// Half open. Counted in user-perceived characters of the raw text, but used as offsets of UTF-16
/// units: behind a character of two units a range begins and ends one unit early.
struct SearchRange
{
    qsizetype start = 0;
    qsizetype end = 0;

    friend bool operator==(const SearchRange&, const SearchRange&) = default;
};

/// One word of the raw text, quotes included.
struct SearchToken
{
    SearchRange range;
    SearchTokenType type = SearchTokenType::term;

    friend bool operator==(const SearchToken&, const SearchToken&) = default;
};

/// A word still being typed that could become a filter word.
struct SearchPending
{
    SearchRange range;
    QString completion; ///< the filter word

    friend bool operator==(const SearchPending&, const SearchPending&) = default;
};

struct SearchSize
{
    std::optional<std::int64_t> minBytes; ///< set for a ">" word
    std::optional<std::int64_t> maxBytes; ///< set for a "<" word
    QString label;                        ///< for example ">100MB"

    friend bool operator==(const SearchSize&, const SearchSize&) = default;
};

struct SearchDate
{
    double fromMs = 0; ///< earliest modification, milliseconds since 1970
    QString label;     ///< for example "This week"

    friend bool operator==(const SearchDate&, const SearchDate&) = default;
};

/// What a query says. Made by SearchQueryParser alone; the raw text stays the source of truth.
struct ParsedSearch
{
    std::vector<SearchToken> tokens; ///< every word, in text order
    QStringList terms;               ///< the free words in their own case, without outer quotes
    std::optional<SearchFilterKind> kind;
    std::optional<QString> locationLabel;
    std::optional<FilePath> locationPath; ///< absent while the home folder is unknown
    std::optional<SearchPending> pending;
    std::optional<SearchSize> size;
    std::optional<SearchDate> date;

    /// Whether there is anything to search for. A locationPath alone does not count.
    bool searchable() const { return !terms.isEmpty() || size || date || kind || locationLabel; }
    /// The terms, joined with one blank.
    QString termQuery() const { return terms.join(QLatin1Char(' ')); }
};

/// The language of the search overlay's field: free words mixed in any order with words for kind,
/// location, size and date. Every text is a query; nothing is an error. Any thread.
struct SearchQueryParser
{
    /// The clock, in milliseconds since 1970.
    static double currentMs();

    /// home may be empty. nowMs is what the words for dates count back from. A size word beyond 64
    /// bits, for example ">99999999999tb", ends the program.
    static ParsedSearch parse(const QString& raw, const FilePath& home, double nowMs = currentMs());

    /// `size`, `date`, `kind` or `location` for a word of that category; quotes are not removed.
    static std::optional<SearchTokenType> aliasCategory(const QString& word);
    /// The category that a token counts for, the pending ones included; absent for a term.
    static std::optional<SearchTokenType> filterCategory(SearchTokenType type);

    /// The kind that a word names, in lower case; absent for any other word.
    static std::optional<SearchFilterKind> kindNamed(const QString& lowerCaseWord);
    /// The label of the location that a word names, in lower case.
    static std::optional<QString> locationLabelNamed(const QString& lowerCaseWord);
    /// The label of the date that a word names, in lower case.
    static std::optional<QString> dateLabelNamed(const QString& lowerCaseWord);

    /// The raw text with the word in the place of every word of its category, and a blank behind.
    static QString replacingFilter(const QString& word, const QString& raw, const FilePath& home);
    /// The raw text without the first word of the category, and a blank behind. Unchanged for a
    /// category of `term`, `pendingKind` or `pendingLocation`.
    static QString removing(SearchTokenType category, const QString& raw, const FilePath& home);
};

} // namespace quorvane
