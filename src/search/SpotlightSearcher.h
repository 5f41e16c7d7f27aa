// SPDX-License-Identifier: MIT
#pragma once

#include "FileIndex.h"
#include "LockedFlag.h"
#include "SearchResult.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace quorvane {

class FileSystemCalls;

/// Answers the overlay's queries from a file index. What it tells exists and carries today's size
/// and date. Any thread.
class SpotlightSearcher
{
public:
    /// The cut applied to every answer.
    static constexpr std::size_t maxResults = 100;
    /// Seconds that an answer stays good.
    static constexpr double cacheTTL = 30.0;

    /// Both must outlive it.
    SpotlightSearcher(FileIndex& index, FileSystemCalls& calls);

    /// The best rows for the request; never fails. With no word, filters the whole machine by kind,
    /// size and date, or lists a folder's own entries unless there is a limit on size or date. An
    /// answer is kept for cacheTTL, as long as the index stays the same. Blocks. Empty when stop
    /// was set. nowMs: milliseconds since 1970.
    std::vector<SearchResult> search(const SearchRequest& request, double nowMs,
                                     const LockedFlag& stop);

    /// Whether a request is answered from the index, not from a folder on the disk.
    static bool needsIndex(const SearchRequest& request);

private:
    struct Cached
    {
        double at = 0; ///< seconds since 1970
        std::uint64_t generation = 0;
        std::vector<SearchResult> results;
    };

    std::vector<SearchResult> listDirectChildren(const SearchRequest& request,
                                                 const LockedFlag& stop) const;
    std::optional<std::vector<SearchResult>> runIndex(const SearchRequest& request,
                                                      const LockedFlag& stop) const;
    std::vector<SearchResult> checked(const std::vector<FilePath>& paths,
                                      const SearchRequest& request, const LockedFlag& stop) const;

    FileIndex& m_index;
    FileSystemCalls& m_calls;
    std::mutex m_lock;
    std::map<std::string, Cached> m_cache;
};

/// How far down a result stands: the number of its path's components, and a hundred more below a
/// folder "node_modules". Lower ranks come first.
std::size_t searchRank(const FilePath& path);

} // namespace quorvane
