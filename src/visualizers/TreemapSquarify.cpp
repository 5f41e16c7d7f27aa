// SPDX-License-Identifier: MIT
#include "TreemapSquarify.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

namespace quorvane {
namespace {

constexpr double minPlacedSide = 0.5;

/// Sum and extremes of the items of a row: enough to judge it.
struct Row
{
    double sum = 0;
    double big = 0;
    double small = 0;
    std::size_t count = 0;

    Row with(double weight) const
    {
        if (count == 0) {
            return {weight, weight, weight, 1};
        }
        return {sum + weight, std::max(big, weight), std::min(small, weight), count + 1};
    }

    /// The worst ratio of sides among its tiles when it lies along a side of that length.
    double worst(double side) const
    {
        if (count == 0 || !(side > 0)) {
            return std::numeric_limits<double>::infinity();
        }
        return std::max(side * side * big / (sum * sum), sum * sum / (side * side * small));
    }
};

/// Fills a free area, whose size equals the sum of all weights, row by row, and maps each tile back
/// into the rectangle.
class RowPacker
{
public:
    RowPacker(const Rect& rect, double scale, std::vector<TreemapLayout::Placed>& into)
        : m_rect(rect)
        , m_scale(scale)
        , m_free{0, 0, rect.width * scale, rect.height * scale}
        , m_into(into)
    {}

    double side() const { return std::min(m_free.width, m_free.height); }

    void place(std::span<const TreemapItem> row, double sum)
    {
        const double width = m_free.width;
        const double height = m_free.height;
        if (!(sum > 0) || !(width > 0) || !(height > 0)) {
            return;
        }
        if (height <= width) {
            const double thickness = sum / height;
            double y = m_free.y;
            for (const TreemapItem& item : row) {
                const double length = height * item.weight / sum;
                emit(item, {m_free.x, y, thickness, length});
                y += length;
            }
            m_free.x += thickness;
            m_free.width -= thickness;
        } else {
            const double thickness = sum / width;
            double x = m_free.x;
            for (const TreemapItem& item : row) {
                const double length = width * item.weight / sum;
                emit(item, {x, m_free.y, length, thickness});
                x += length;
            }
            m_free.y += thickness;
            m_free.height -= thickness;
        }
    }

private:
    void emit(const TreemapItem& item, const Rect& normal)
    {
        const Rect mapped{m_rect.x + normal.x / m_scale, m_rect.y + normal.y / m_scale,
                          normal.width / m_scale, normal.height / m_scale};
        const Rect tile = mapped.intersected(m_rect);
        if (!(tile.width > minPlacedSide) || !(tile.height > minPlacedSide)) {
            return;
        }
        TreemapLayout::Placed placed;
        placed.node = item.node;
        placed.rect = tile;
        placed.isAggregateTile = item.isAggregate;
        placed.aggregateCount = item.aggregateCount;
        placed.aggregateBytes = item.aggregateBytes;
        placed.aggregateCategory = item.aggregateCategory;
        placed.syntheticID = item.syntheticID;
        m_into.push_back(std::move(placed));
    }

    Rect m_rect;
    double m_scale;
    Rect m_free;
    std::vector<TreemapLayout::Placed>& m_into;
};

bool isPositiveAndFinite(double value)
{
    return value > 0 && std::isfinite(value);
}

} // namespace

void squarifyTreemap(std::span<const TreemapItem> items, const Rect& rect,
                     std::vector<TreemapLayout::Placed>& into)
{
    double sum = 0;
    for (const TreemapItem& item : items) {
        sum += item.weight;
    }
    if (!(sum > 0) || !isPositiveAndFinite(rect.width) || !isPositiveAndFinite(rect.height)) {
        return;
    }
    RowPacker packer(rect, std::sqrt(sum / (rect.width * rect.height)), into);
    Row row;
    std::size_t first = 0;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const Row grown = row.with(items[i].weight);
        const double side = packer.side();
        if (row.count == 0 || grown.worst(side) <= row.worst(side)) {
            row = grown;
        } else {
            packer.place(items.subspan(first, i - first), row.sum);
            first = i;
            row = Row().with(items[i].weight);
        }
    }
    packer.place(items.subspan(first), row.sum);
}

std::vector<double> TreemapLayout::enforceMinimum(std::vector<double> values, double minimum,
                                                  double total)
{
    double deficit = 0;
    double donorSum = 0;
    double sum = 0;
    bool hasDonor = false;
    for (const double value : values) {
        deficit += std::max(minimum - value, 0.0);
        sum += value;
        if (value > minimum) {
            donorSum += value;
            hasDonor = true;
        }
    }
    if (!(deficit > 0)) {
        return values;
    }
    for (double& value : values) {
        if (!hasDonor) {
            value *= total / std::max(sum, 1e-9);
        } else if (value > minimum) {
            value -= std::min(deficit * value / donorSum, value - minimum);
        } else {
            value = minimum;
        }
    }
    return values;
}

} // namespace quorvane
