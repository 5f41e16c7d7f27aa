// SPDX-License-Identifier: MIT
#pragma once

#include "FileTypeCategory.h"
#include "LockedFlag.h"

#include <QString>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quorvane {

class FileNode;
class NodeIndex;

enum class KindFilter : std::uint8_t { everything, files, folders };
inline constexpr std::array allKindFilters{KindFilter::everything, KindFilter::files,
                                           KindFilter::folders};

enum class ByteFilter : std::uint8_t { any, mb1, mb10, mb100, gb1 };
inline constexpr std::array allByteFilters{ByteFilter::any, ByteFilter::mb1, ByteFilter::mb10,
                                           ByteFilter::mb100, ByteFilter::gb1};

enum class AgeFilter : std::uint8_t { any, lastMonth, lastYear, overYear };
inline constexpr std::array allAgeFilters{AgeFilter::any, AgeFilter::lastMonth, AgeFilter::lastYear,
                                          AgeFilter::overYear};

/// The case's name, for example "mb10".
std::string_view rawValue(KindFilter filter);
std::string_view rawValue(ByteFilter filter);
std::string_view rawValue(AgeFilter filter);
std::optional<KindFilter> kindFilterFromRawValue(std::string_view text);
std::optional<ByteFilter> byteFilterFromRawValue(std::string_view text);
std::optional<AgeFilter> ageFilterFromRawValue(std::string_view text);
/// What a picker reads, for example "> 10 MB".
QString title(KindFilter filter);
QString title(ByteFilter filter);
QString title(AgeFilter filter);

/// The search inside a scan.
struct FolderSearch
{
    struct Query
    {
        QString text; ///< words typed
        KindFilter kind = KindFilter::everything;
        std::optional<FileTypeCategory> category;
        ByteFilter minBytes = ByteFilter::any;
        AgeFilter age = AgeFilter::any;

        bool hasActiveFilter() const
        {
            return kind != KindFilter::everything || category || minBytes != ByteFilter::any ||
                   age != AgeFilter::any;
        }

        friend bool operator==(const Query&, const Query&) = default;
    };

    struct Hit
    {
        FileNode* node = nullptr;
        std::int64_t score = 0;
    };

    /// The cut applied to every answer.
    static constexpr std::size_t maxHits = 300;
    /// How many matches of words are ranked; those with higher ids are not looked at.
    static constexpr std::size_t maxRanked = 900;

    /// The words of a query, lower-cased, in UTF-8.
    static std::vector<std::string> wordsOf(const QString& text);

    /// The best matches, best first, equal ones by ascending id; without a word those that pass the
    /// filters. now: seconds since 1970. Blocks, on two threads for a large tree; the tree must
    /// outlive the call. The answer of a search that was stopped is of no use.
    static std::vector<Hit> ranked(const NodeIndex& nodes, const Query& query, double now,
                                   const LockedFlag& stop);
};

} // namespace quorvane
