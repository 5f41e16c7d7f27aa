// SPDX-License-Identifier: MIT
#include "ReferenceTreemap.h"

#include "FileNode.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <optional>

namespace quorvane::test::reference {
namespace {

using Placed = TreemapLayout::Placed;
using Slice = TreemapLayout::Slice;

struct Item
{
    FileNode* node;
    double weight;
    std::int64_t bytes;
    std::optional<Placed> aggregate;
};

double sumOf(const std::vector<Item>& items)
{
    double sum = 0;
    for (const Item& item : items) {
        sum = sum + item.weight;
    }
    return sum;
}

std::vector<FileNode*> childrenOf(const FileNode& node, const std::set<std::string>& excluded)
{
    std::vector<FileNode*> result;
    for (FileNode& child : node.children()) {
        const auto family = child.bloatCategory();
        if (!family || excluded.count(std::string(*family)) == 0) {
            result.push_back(&child);
        }
    }
    return result;
}

double worst(const std::vector<Item>& row, double side)
{
    if (row.empty() || side <= 0) {
        return std::numeric_limits<double>::infinity();
    }
    double big = row[0].weight;
    double small = row[0].weight;
    for (const Item& item : row) {
        big = item.weight > big ? item.weight : big;
        small = item.weight < small ? item.weight : small;
    }
    const double s = sumOf(row);
    const double first = side * side * big / (s * s);
    const double second = s * s / (side * side * small);
    return first > second ? first : second;
}

void emitTile(const Item& item, Rect normal, double scale, Rect rect, std::vector<Placed>& out)
{
    const double left = normal.x / scale + rect.x;
    const double top = normal.y / scale + rect.y;
    const double right = std::min(left + normal.width / scale, rect.x + rect.width);
    const double bottom = std::min(top + normal.height / scale, rect.y + rect.height);
    const double x = std::max(left, rect.x);
    const double y = std::max(top, rect.y);
    if (right - x > 0.5 && bottom - y > 0.5) {
        Placed placed = item.aggregate.value_or(Placed());
        placed.node = item.node;
        placed.rect = {x, y, right - x, bottom - y};
        out.push_back(placed);
    }
}

void squarify(const std::vector<Item>& items, Rect rect, std::vector<Placed>& out)
{
    if (items.empty() || !(rect.width > 0) || !(rect.height > 0) || std::isinf(rect.width) ||
        std::isinf(rect.height) || !(sumOf(items) > 0)) {
        return;
    }
    const double scale = std::sqrt(sumOf(items) / (rect.width * rect.height));
    Rect open{0, 0, rect.width * scale, rect.height * scale};
    const auto place = [&](const std::vector<Item>& row) {
        const double s = sumOf(row);
        const double w = open.width;
        const double h = open.height;
        if (!(s > 0) || !(w > 0) || !(h > 0)) {
            return;
        }
        double along = h <= w ? open.y : open.x;
        for (const Item& item : row) {
            if (h <= w) {
                const double length = h * item.weight / s;
                emitTile(item, {open.x, along, s / h, length}, scale, rect, out);
                along += length;
            } else {
                const double length = w * item.weight / s;
                emitTile(item, {along, open.y, length, s / w}, scale, rect, out);
                along += length;
            }
        }
        if (h <= w) {
            open = {open.x + s / h, open.y, open.width - s / h, open.height};
        } else {
            open = {open.x, open.y + s / w, open.width, open.height - s / w};
        }
    };
    std::vector<Item> row;
    for (const Item& item : items) {
        std::vector<Item> longer = row;
        longer.push_back(item);
        const double side = std::min(open.width, open.height);
        if (row.empty() || worst(longer, side) <= worst(row, side)) {
            row = longer;
        } else {
            place(row);
            row = {item};
        }
    }
    place(row);
}

std::vector<Placed> foldMicro(const std::vector<Item>& items, const std::set<std::size_t>& micro,
                              FileNode& parent, Rect rect)
{
    std::map<FileTypeCategory, std::int64_t> table;
    std::vector<Item> kept;
    std::int64_t keptBytes = 0;
    Placed group;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (micro.count(i) == 1) {
            group.aggregateBytes += items[i].bytes;
            group.aggregateCount += 1;
            table[fileTypeCategoryForName(items[i].node->name())] += items[i].bytes;
        } else {
            kept.push_back(items[i]);
            keptBytes += items[i].bytes;
        }
    }
    group.node = &parent;
    group.rect = rect;
    group.isAggregateTile = true;
    group.aggregateCategory = largest(table);
    group.syntheticID = -(parent.id() + 1000003);
    if (kept.empty()) {
        return {group};
    }
    const auto total = static_cast<double>(keptBytes + group.aggregateBytes);
    for (Item& item : kept) {
        item.weight = static_cast<double>(item.bytes) / total;
    }
    kept.push_back({&parent, static_cast<double>(group.aggregateBytes) / total, 0, group});
    std::vector<Placed> out;
    squarify(kept, rect, out);
    return out;
}

std::int64_t threshold(std::int64_t total, Rect rect)
{
    const double area = rect.width * rect.height;
    if (!(area > 0)) {
        return 0;
    }
    const double bytes = 64.0 * static_cast<double>(std::max<std::int64_t>(total, 1)) * 3.0 / area;
    return std::max<std::int64_t>(static_cast<std::int64_t>(std::trunc(bytes)), 1);
}

bool allMicro(const std::vector<FileNode*>& children, Rect rect, bool disk)
{
    if (children.size() < 2) {
        return false;
    }
    std::vector<FileNode*> sample = children;
    sample.resize(std::min<std::size_t>(sample.size(), 600));
    std::int64_t total = 0;
    for (const FileNode* child : sample) {
        total += weightOf(*child, disk);
    }
    return std::all_of(sample.begin(), sample.end(), [&](const FileNode* child) {
        return weightOf(*child, disk) < threshold(total, rect);
    });
}

class Layout
{
public:
    bool disk;
    bool sizeFold;
    std::set<std::string> excluded;
    std::vector<Slice> out;

    Slice sliceOf(const Placed& tile, int depth, int rootIndex) const
    {
        Slice slice;
        slice.id = tile.isAggregateTile ? tile.syntheticID : tile.node->id();
        slice.nodeID = tile.node->id();
        slice.node = tile.node;
        slice.rect = tile.rect;
        slice.depth = depth;
        slice.isFolder = tile.node->isDirectory();
        slice.folderBodyCategory = tile.folderBodyCategory;
        slice.isAggregateTile = tile.isAggregateTile;
        slice.aggregateCount = tile.aggregateCount;
        slice.aggregateBytes = tile.aggregateBytes;
        slice.aggregateCategory = tile.aggregateCategory;
        slice.rootIndex = rootIndex;
        return slice;
    }

    void descend(FileNode& node, Rect r, int depth, std::int64_t& budget, std::string chain)
    {
        if (out.size() >= 12000 || budget < 1 || !node.isDirectory()) {
            return;
        }
        if (r.width <= 2.0 || r.height <= 2.0) {
            return;
        }
        const std::vector<FileNode*> children = childrenOf(node, excluded);
        if (children.empty() || r.width * r.height < 400.0) {
            return;
        }
        if (children.size() == 1 && children[0]->isDirectory()) {
            const std::string name(children[0]->name());
            descend(*children[0], r, depth, budget, chain.empty() ? name : chain + "/" + name);
            return;
        }
        if (r.width * 0.5 < 6.0 || r.height * 0.5 < 5.0) {
            return;
        }
        const double header =
            r.height >= 26.0 && r.width >= 40.0 ? std::min(r.height * 0.3, 16.0) : 0;
        const Rect body{r.x + 1, r.y + header + 1, r.width - 2, r.height - header - 2};
        if (body.height < 8.0 || body.width < 6.0) {
            return;
        }
        if (!chain.empty()) {
            Placed tile;
            tile.node = &node;
            tile.rect = r;
            tile.folderBodyCategory = folderCategory(node, disk);
            out.push_back(sliceOf(tile, depth, 0));
            out.back().labelOverride = chain;
            --budget;
        }
        if (sizeFold && allMicro(children, body, disk)) {
            return;
        }
        for (const Placed& tile : partition(children, node, body, disk, 0, true, sizeFold)) {
            if (tile.rect.width <= 0.75 || tile.rect.height <= 0.75) {
                continue;
            }
            if (out.size() >= 12000 || budget < 1) {
                return;
            }
            out.push_back(sliceOf(tile, depth, 0));
            --budget;
            if (tile.isAggregateTile) {
                continue;
            }
            if (tile.node->isDirectory() && depth + 1 <= 3) {
                descend(*tile.node, tile.rect, depth + 1, budget, "");
                if (budget < 1) {
                    break;
                }
            }
        }
    }
};

} // namespace

std::vector<double> enforceMinimum(const std::vector<double>& values, double minimum, double total)
{
    double deficit = 0;
    double donorSum = 0;
    double sum = 0;
    for (const double v : values) {
        deficit += minimum - v > 0 ? minimum - v : 0;
        donorSum += v > minimum ? v : 0;
        sum += v;
    }
    if (deficit <= 0) {
        return values;
    }
    const bool noDonor =
        std::none_of(values.begin(), values.end(), [&](double v) { return v > minimum; });
    std::vector<double> result;
    for (const double v : values) {
        if (noDonor) {
            result.push_back(v * (total / std::max(sum, 1e-9)));
        } else if (v <= minimum) {
            result.push_back(minimum);
        } else {
            result.push_back(v - std::min(deficit * v / donorSum, v - minimum));
        }
    }
    return result;
}

std::vector<Placed> partition(std::vector<FileNode*> children, FileNode& parent, Rect rect,
                              bool disk, double minItemFrac, bool aggregateMicro, bool foldBySize)
{
    std::stable_sort(children.begin(), children.end(),
                     [disk](const FileNode* a, const FileNode* b) {
                         const std::int64_t first = weightOf(*a, disk);
                         const std::int64_t second = weightOf(*b, disk);
                         return first != second ? first > second : a->name() < b->name();
                     });
    children.resize(std::min<std::size_t>(children.size(), 600));
    std::int64_t total = 0;
    for (const FileNode* child : children) {
        total += weightOf(*child, disk);
    }
    std::vector<double> weights;
    for (const FileNode* child : children) {
        weights.push_back(static_cast<double>(weightOf(*child, disk)) / static_cast<double>(total));
    }
    if (minItemFrac > 0 && weights.size() >= 2) {
        weights = enforceMinimum(weights, minItemFrac, 1.0);
    }
    std::vector<Item> items;
    for (std::size_t i = 0; i < children.size(); ++i) {
        items.push_back({children[i], weights[i], weightOf(*children[i], disk), std::nullopt});
    }
    std::set<std::size_t> micro;
    if (aggregateMicro && items.size() >= 2 && rect.width > 0 && rect.height > 0) {
        for (std::size_t i = 0; i < items.size(); ++i) {
            const double area = rect.width * rect.height * items[i].weight / sumOf(items);
            if ((foldBySize && items[i].bytes < threshold(total, rect)) || area < 64) {
                micro.insert(i);
            }
        }
    }
    std::vector<Placed> out;
    if (micro.empty()) {
        squarify(items, rect, out);
    } else {
        out = foldMicro(items, micro, parent, rect);
    }
    for (Placed& tile : out) {
        if (!tile.isAggregateTile && tile.node->isDirectory()) {
            tile.folderBodyCategory = folderCategory(*tile.node, disk);
        }
    }
    return out;
}

std::vector<Slice> layoutSlate(FileNode& root, Rect rect, bool disk, bool applySizeFold,
                               const std::set<std::string>& excludedBloat)
{
    Layout layout{disk, applySizeFold, excludedBloat, {}};
    const std::vector<FileNode*> children = childrenOf(root, excludedBloat);
    if (children.empty() || rect.width <= 4.0 || rect.height <= 4.0) {
        return {};
    }
    std::vector<FileNode*> top;
    std::vector<FileNode*> bottom;
    std::int64_t topBytes = 0;
    std::int64_t bottomBytes = 0;
    for (FileNode* child : children) {
        if (child->name() == "Library" || child->name() == "Documents") {
            bottom.push_back(child);
            bottomBytes += weightOf(*child, disk);
        } else {
            top.push_back(child);
            topBytes += weightOf(*child, disk);
        }
    }
    double f = static_cast<double>(topBytes) / static_cast<double>(topBytes + bottomBytes);
    f = std::max(0.33, std::min(f, 1 - 0.33));
    f = top.empty() ? 0 : bottom.empty() ? 1 : f;
    const double height = rect.height;
    const Rect upper{rect.x, rect.y, rect.width, std::max(f * height - 2, 0.0)};
    const Rect lower{rect.x, rect.y + f * height + 2, rect.width,
                     std::max((1 - f) * height - 2, 0.0)};
    std::vector<Placed> placed;
    if (!top.empty()) {
        placed = partition(top, root, upper, disk, 0, false, true);
    }
    if (!bottom.empty()) {
        for (const Placed& tile : partition(bottom, root, lower, disk, 0.18, false, true)) {
            placed.push_back(tile);
        }
    }
    for (std::size_t i = 0; i < placed.size(); ++i) {
        if (placed[i].rect.width > 0.75 && placed[i].rect.height > 0.75) {
            layout.out.push_back(layout.sliceOf(placed[i], 0, static_cast<int>(i)));
        }
    }
    for (const Placed& tile : placed) {
        if (layout.out.size() >= 12000) {
            break;
        }
        auto budget = static_cast<std::int64_t>((12000 - layout.out.size()) / placed.size());
        budget = std::max<std::int64_t>(budget, 1);
        layout.descend(*tile.node, tile.rect, 1, budget, "");
    }
    return layout.out;
}

} // namespace quorvane::test::reference
