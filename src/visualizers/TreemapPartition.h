// SPDX-License-Identifier: MIT
#pragma once

#include "TreemapLayout.h"

#include <cstddef>
#include <span>
#include <vector>

namespace quorvane {

/// TreemapLayout::partition() with the folder categories left open: they cost a walk each, and a
/// layout asks for them only where a tile becomes a slice.
std::vector<TreemapLayout::Placed> partitionTreemap(std::span<FileNode* const> children,
                                                    FileNode& parent, const Rect& rect,
                                                    const TreemapLayout::PartitionOptions& options);

/// TreemapLayout::allChildrenMicro() over the visible children of a folder, in their stored order.
bool areAllMicro(std::span<FileNode* const> visible, const Rect& rect, bool disk, std::size_t cap);

} // namespace quorvane
