// SPDX-License-Identifier: MIT
#pragma once

#include "TreemapLayout.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace quorvane::test {

/// The treemap once more, in the plainest way: every list copied, every sum taken anew, no look at
/// how the production code does it. Slow. Its results have to agree to the last bit.
namespace reference {

std::vector<TreemapLayout::Slice> layoutSlate(FileNode& root, Rect rect, bool disk,
                                              bool applySizeFold,
                                              const std::set<std::string>& excludedBloat);
std::vector<TreemapLayout::Placed> partition(std::vector<FileNode*> children, FileNode& parent,
                                             Rect rect, bool disk, double minItemFrac,
                                             bool aggregateMicro, bool foldBySize);
std::vector<double> enforceMinimum(const std::vector<double>& values, double minimum, double total);
FileTypeCategory folderCategory(const FileNode& node, bool disk);
std::int64_t weightOf(const FileNode& node, bool disk);
/// Of equals the first in the order of the cases; `other` for an empty table.
FileTypeCategory largest(const std::map<FileTypeCategory, std::int64_t>& table);

} // namespace reference
} // namespace quorvane::test
