// SPDX-License-Identifier: MIT
#pragma once

#include "TreemapLayout.h"

#include <cstdint>
#include <span>
#include <vector>

namespace quorvane {

/// What is squarified: a node, or a group of nodes that share one tile.
struct TreemapItem
{
    FileNode* node = nullptr;
    double weight = 0;      ///< share of the whole, above 0
    std::int64_t bytes = 0; ///< byteWeight of the node
    bool isAggregate = false;
    std::int64_t aggregateCount = 0;
    std::int64_t aggregateBytes = 0;
    FileTypeCategory aggregateCategory = FileTypeCategory::other;
    std::int64_t syntheticID = 0;
};

/// Lays the items into rect in rows whose tiles are as square as can be, strictly in the given
/// order, and appends a tile for each that comes out wider and taller than half a point. Folder
/// categories are left open.
void squarifyTreemap(std::span<const TreemapItem> items, const Rect& rect,
                     std::vector<TreemapLayout::Placed>& into);

} // namespace quorvane
