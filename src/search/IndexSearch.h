// SPDX-License-Identifier: MIT
#pragma once

#include "IndexTable.h"
#include "LockedFlag.h"
#include "SearchResult.h"

#include <cstddef>
#include <vector>

namespace quorvane {

/// What a search of an index came to.
struct IndexHits
{
    std::vector<IndexTable::Row> rows; ///< best first
    bool isComplete = true;            ///< false: there are more than were asked for
};

/// The best rows of an index for a request, at most `limit` of them. A row has to lie below the
/// scope, hold every word in its folded name, and pass kind and filters as they were when the index
/// was made. With a limit on the size the largest come first; otherwise the shallowest, and what
/// lies below a folder "node_modules" a hundred levels later; equal ones in the order of the rows.
/// Blocks, on two threads for a large index. The answer of a search that was stopped is of no use.
IndexHits searchIndex(const IndexTable& table, const SearchRequest& request, std::size_t limit,
                      const LockedFlag& stop);

} // namespace quorvane
