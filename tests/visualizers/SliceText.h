// SPDX-License-Identifier: MIT
#pragma once

#include "TreemapLayout.h"

#include <string>
#include <vector>

namespace quorvane::test {

/// Everything that a slice holds, in one line, numbers with all their digits.
std::string exactText(const TreemapLayout::Slice& slice);
std::string exactText(const TreemapLayout::Placed& placed);

template<typename Tile>
std::vector<std::string> exactTexts(const std::vector<Tile>& tiles)
{
    std::vector<std::string> texts;
    for (const Tile& tile : tiles) {
        texts.push_back(exactText(tile));
    }
    return texts;
}

/// The layout for the eye: indent by depth, name or label, rectangle in tenths of a point,
/// category.
std::string layoutText(const std::vector<TreemapLayout::Slice>& slices);

} // namespace quorvane::test
