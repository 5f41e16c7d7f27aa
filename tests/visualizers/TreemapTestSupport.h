// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"
#include "FileTree.h"
#include "TreemapLayout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

namespace quorvane::test {

/// Nothing hidden, sizes logical.
inline std::vector<TreemapLayout::Slice> layout(FileTree& tree, double width, double height,
                                                bool applySizeFold = false)
{
    return TreemapLayout::layoutSlate(tree.root(), {0, 0, width, height}, false, applySizeFold, {});
}

/// Throws std::out_of_range when the node has none.
inline const TreemapLayout::Slice& sliceOf(const std::vector<TreemapLayout::Slice>& slices,
                                           const FileNode& node)
{
    const auto found = std::find_if(slices.begin(), slices.end(),
                                    [&](const auto& slice) { return slice.id == node.id(); });
    if (found == slices.end()) {
        throw std::out_of_range("no slice of " + std::string(node.name()));
    }
    return *found;
}

inline void expectRect(const Rect& rect, double x, double y, double width, double height)
{
    EXPECT_NEAR(rect.x, x, 1e-9);
    EXPECT_NEAR(rect.y, y, 1e-9);
    EXPECT_NEAR(rect.width, width, 1e-9);
    EXPECT_NEAR(rect.height, height, 1e-9);
}

inline double area(const Rect& rect)
{
    return rect.width * rect.height;
}

/// Lines for treeFromText(): files named f1000 and up.
inline std::string equalFiles(int count, int bytes, int level = 0)
{
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += std::string(static_cast<std::size_t>(level) * 2, ' ') + "f" +
                std::to_string(1000 + i) + " " + std::to_string(bytes) + "\n";
    }
    return text;
}

} // namespace quorvane::test
