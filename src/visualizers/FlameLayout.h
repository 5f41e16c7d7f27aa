// SPDX-License-Identifier: MIT
#pragma once

#include "Geometry.h"
#include "SizeMode.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quorvane {

class BloatKeys;
class FileNode;
class LockedFlag;

/// Turns a folder into rows of rectangles, a row for each level, growing downwards. A width is the
/// item's share of the largest single item in any row, so that widths compare across rows. A row
/// ends where the canvas ends. Static functions without state, for any thread.
struct FlameLayout
{
    static constexpr double rowHeight = 34.0;
    /// Height of the canvas that the rows leave free.
    static constexpr double reservedHeight = 24;
    static constexpr double firstX = 4;
    static constexpr double firstY = 8;
    /// Between neighbours, in both directions.
    static constexpr double gap = 3;
    /// Width that every item has as long as its row has room.
    static constexpr double minWidth = 2;
    /// An item that is cut to this or less is not shown.
    static constexpr double thinnestShown = 1;

    struct RectSlice
    {
        FileNode* node = nullptr;
        Rect rect; ///< points
    };

    /// Rows from the top, in a row the largest first. Polls `stop`, if given, once a folder; a
    /// stopped layout is empty.
    static std::vector<RectSlice> layout(FileNode& root, double width, double height,
                                         SizeMode sizeMode, const BloatKeys& excludedBloat,
                                         const LockedFlag* stop = nullptr);
    /// Rows that a canvas of that height has room for; at least 1.
    static std::size_t maxRows(double height);
};

} // namespace quorvane
