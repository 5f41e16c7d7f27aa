// SPDX-License-Identifier: MIT
#include "FlameLayout.h"

#include "LayoutWalk.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quorvane {
namespace {

using RectSlice = FlameLayout::RectSlice;

/// No row shows more: each item takes at least its least width and a gap, and the one that reaches
/// the canvas's edge ends the row.
std::size_t maxShown(double width)
{
    const double step = FlameLayout::minWidth + FlameLayout::gap;
    return static_cast<std::size_t>(std::max(std::ceil(width / step), 0.0)) + 1;
}

struct Rows
{
    std::vector<std::vector<WeightedNode>> ranked; ///< of each row what may be shown
    std::int64_t maxBytes = 0;
    bool isStopped = false;
};

Rows collectRows(FileNode& root, std::size_t maxRows, std::size_t limit, SizeMode mode,
                 const BloatKeys& hidden, const LockedFlag* stop)
{
    Rows rows;
    std::vector<FileNode*> folders{&root};
    while (!folders.empty() && rows.ranked.size() < maxRows) {
        std::vector<FileNode*> deeper;
        TopRanked row(limit);
        for (const FileNode* folder : folders) {
            rows.isStopped = rows.isStopped || isStopped(stop);
            if (rows.isStopped) {
                return rows;
            }
            for (FileNode& child : folder->visibleChildren(hidden)) {
                const std::int64_t bytes = weightBasis(child, mode);
                if (bytes < 1) {
                    continue;
                }
                row.add({&child, bytes});
                rows.maxBytes = std::max(rows.maxBytes, bytes);
                if (child.isDirectory()) {
                    deeper.push_back(&child);
                }
            }
        }
        rows.ranked.push_back(row.takeSorted());
        folders = std::move(deeper);
    }
    return rows;
}

void appendRow(const std::vector<WeightedNode>& row, double y, double width, double maxBytes,
               std::vector<RectSlice>& out)
{
    double x = FlameLayout::firstX;
    for (const WeightedNode& item : row) {
        const double share = width * static_cast<double>(item.weight) / maxBytes;
        const double w = std::min(std::max(share, FlameLayout::minWidth), width - x);
        if (w > FlameLayout::thinnestShown) {
            out.push_back({item.node, {x, y, w, FlameLayout::rowHeight - FlameLayout::gap}});
        }
        x += w + FlameLayout::gap;
    }
}

} // namespace

std::size_t FlameLayout::maxRows(double height)
{
    return static_cast<std::size_t>(
        std::max(std::trunc((height - reservedHeight) / rowHeight), 1.0));
}

std::vector<RectSlice> FlameLayout::layout(FileNode& root, double width, double height,
                                           SizeMode sizeMode, const BloatKeys& excludedBloat,
                                           const LockedFlag* stop)
{
    const Rows rows =
        collectRows(root, maxRows(height), maxShown(width), sizeMode, excludedBloat, stop);
    std::vector<RectSlice> slices;
    if (rows.isStopped) {
        return slices;
    }
    const auto maxBytes = static_cast<double>(std::max<std::int64_t>(rows.maxBytes, 1));
    for (std::size_t i = 0; i < rows.ranked.size(); ++i) {
        appendRow(rows.ranked[i], rowHeight * static_cast<double>(i) + firstY, width, maxBytes,
                  slices);
    }
    return slices;
}

} // namespace quorvane
