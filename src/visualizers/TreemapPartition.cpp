// SPDX-License-Identifier: MIT
#include "TreemapPartition.h"

#include "BloatFilter.h"
#include "CheckedMath.h"
#include "FileNode.h"
#include "TreemapFolderCategory.h"
#include "TreemapSquarify.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <utility>

namespace quorvane {
namespace {

using Placed = TreemapLayout::Placed;

constexpr double microArea = TreemapLayout::microPixel * TreemapLayout::microPixel;

/// A child with its weight beside it, so that sorting seldom looks at the node.
struct Candidate
{
    std::int64_t bytes;
    FileNode* node;
    std::size_t index;
};

bool isHeavier(const Candidate& a, const Candidate& b)
{
    if (a.bytes != b.bytes) {
        return a.bytes > b.bytes;
    }
    const int order = a.node->name().compare(b.node->name());
    return order != 0 ? order < 0 : a.index < b.index;
}

/// The heaviest children, in order, at most childrenPerNode.
std::vector<Candidate> heaviest(std::span<FileNode* const> children, bool disk)
{
    std::vector<Candidate> all;
    all.reserve(children.size());
    for (FileNode* child : children) {
        all.push_back({TreemapLayout::byteWeight(*child, disk), child, all.size()});
    }
    // Most folders come in order already: the tree is sorted by logical bytes.
    if (!std::is_sorted(all.begin(), all.end(), isHeavier)) {
        const std::size_t kept = std::min(all.size(), TreemapLayout::childrenPerNode);
        std::partial_sort(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(kept), all.end(),
                          isHeavier);
    }
    if (all.size() > TreemapLayout::childrenPerNode) {
        all.erase(all.begin() + static_cast<std::ptrdiff_t>(TreemapLayout::childrenPerNode),
                  all.end());
    }
    return all;
}

std::vector<TreemapItem> itemsOf(std::span<const Candidate> kept, std::int64_t total)
{
    std::vector<TreemapItem> items;
    items.reserve(kept.size() + 1);
    for (const Candidate& candidate : kept) {
        TreemapItem item;
        item.node = candidate.node;
        item.bytes = candidate.bytes;
        item.weight = static_cast<double>(candidate.bytes) / static_cast<double>(total);
        items.push_back(item);
    }
    return items;
}

void raiseToMinimum(std::vector<TreemapItem>& items, double minimum)
{
    std::vector<double> weights;
    weights.reserve(items.size());
    for (const TreemapItem& item : items) {
        weights.push_back(item.weight);
    }
    weights = TreemapLayout::enforceMinimum(std::move(weights), minimum, 1.0);
    for (std::size_t i = 0; i < items.size(); ++i) {
        items[i].weight = weights[i];
    }
}

/// Which items are too small for a tile of their own. Nothing when none is.
std::vector<bool> microItems(std::span<const TreemapItem> items, const Rect& rect,
                             std::int64_t threshold)
{
    double weightSum = 0;
    for (const TreemapItem& item : items) {
        weightSum += item.weight;
    }
    std::vector<bool> isMicro(items.size(), false);
    bool any = false;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const double area = rect.width * rect.height * items[i].weight / weightSum;
        isMicro[i] = items[i].bytes < threshold || area < microArea;
        any = any || isMicro[i];
    }
    return any ? isMicro : std::vector<bool>();
}

/// What the items folded into one tile amount to.
struct MicroSum
{
    std::int64_t bytes = 0;
    std::int64_t count = 0;
    std::array<std::int64_t, allFileTypeCategories.size()> bytesByCategory{};

    void add(const TreemapItem& item)
    {
        constexpr const char* place = "TreemapLayout::aggregateMicroTiles";
        bytes = checkedAdd(bytes, item.bytes, place);
        ++count;
        const FileTypeCategory category = fileTypeCategoryForName(item.node->name());
        auto& ofCategory = bytesByCategory[static_cast<std::size_t>(category)];
        ofCategory = checkedAdd(ofCategory, item.bytes, place);
    }

    FileTypeCategory dominant() const
    {
        const auto most = std::max_element(bytesByCategory.begin(), bytesByCategory.end());
        return *most > 0
                   ? allFileTypeCategories[static_cast<std::size_t>(most - bytesByCategory.begin())]
                   : FileTypeCategory::other;
    }
};

TreemapItem aggregateItem(const MicroSum& micro, FileNode& parent)
{
    TreemapItem item;
    item.node = &parent;
    item.isAggregate = true;
    item.aggregateCount = micro.count;
    item.aggregateBytes = micro.bytes;
    item.aggregateCategory = micro.dominant();
    item.syntheticID = TreemapLayout::syntheticAggregateID(parent.id());
    return item;
}

Placed fillingTile(const TreemapItem& aggregate, const Rect& rect)
{
    Placed placed;
    placed.node = aggregate.node;
    placed.rect = rect;
    placed.isAggregateTile = true;
    placed.aggregateCount = aggregate.aggregateCount;
    placed.aggregateBytes = aggregate.aggregateBytes;
    placed.aggregateCategory = aggregate.aggregateCategory;
    placed.syntheticID = aggregate.syntheticID;
    return placed;
}

/// Folds the micro items into one tile, placed last whatever its size.
std::vector<Placed> aggregateMicroTiles(std::span<const TreemapItem> items,
                                        const std::vector<bool>& isMicro, FileNode& parent,
                                        const Rect& rect)
{
    MicroSum micro;
    std::vector<TreemapItem> kept;
    kept.reserve(items.size());
    std::int64_t total = 0;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (isMicro[i]) {
            micro.add(items[i]);
        } else {
            kept.push_back(items[i]);
        }
        total = checkedAdd(total, items[i].bytes, "TreemapLayout::aggregateMicroTiles");
    }
    TreemapItem aggregate = aggregateItem(micro, parent);
    if (kept.empty()) {
        return {fillingTile(aggregate, rect)};
    }
    const auto whole = static_cast<double>(std::max<std::int64_t>(total, 1));
    for (TreemapItem& item : kept) {
        item.weight = static_cast<double>(item.bytes) / whole;
    }
    aggregate.weight = static_cast<double>(micro.bytes) / whole;
    kept.push_back(aggregate);
    std::vector<Placed> placed;
    squarifyTreemap(kept, rect, placed);
    return placed;
}

} // namespace

std::vector<Placed> partitionTreemap(std::span<FileNode* const> children, FileNode& parent,
                                     const Rect& rect,
                                     const TreemapLayout::PartitionOptions& options)
{
    const std::vector<Candidate> kept = heaviest(children, options.disk);
    std::int64_t total = 0;
    for (const Candidate& candidate : kept) {
        total = checkedAdd(total, candidate.bytes, "TreemapLayout::partition");
    }
    if (total < 1) {
        return {};
    }
    std::vector<TreemapItem> items = itemsOf(kept, total);
    if (options.minItemFrac > 0 && items.size() >= 2) {
        raiseToMinimum(items, options.minItemFrac);
    }
    const bool mayFold = options.aggregateMicro &&
                         items.size() >= TreemapLayout::microGroupMinChildren && rect.width > 0 &&
                         rect.height > 0;
    if (mayFold) {
        const std::int64_t threshold =
            options.foldBySize ? TreemapLayout::microThreshold(total, rect) : 0;
        const std::vector<bool> isMicro = microItems(items, rect, threshold);
        if (!isMicro.empty()) {
            return aggregateMicroTiles(items, isMicro, parent, rect);
        }
    }
    std::vector<Placed> placed;
    placed.reserve(items.size());
    squarifyTreemap(items, rect, placed);
    return placed;
}

bool areAllMicro(std::span<FileNode* const> visible, const Rect& rect, bool disk, std::size_t cap)
{
    if (visible.size() < 2) {
        return false;
    }
    const auto sample = visible.first(std::min(visible.size(), cap));
    std::int64_t total = 0;
    std::int64_t heaviestBytes = 0;
    for (const FileNode* child : sample) {
        const std::int64_t bytes = TreemapLayout::byteWeight(*child, disk);
        total = checkedAdd(total, bytes, "TreemapLayout::allChildrenMicro");
        heaviestBytes = std::max(heaviestBytes, bytes);
    }
    return heaviestBytes < TreemapLayout::microThreshold(total, rect);
}

std::vector<Placed> TreemapLayout::partition(std::span<FileNode* const> children, FileNode& parent,
                                             const Rect& rect, const PartitionOptions& options)
{
    std::vector<Placed> placed = partitionTreemap(children, parent, rect, options);
    for (Placed& tile : placed) {
        if (!tile.isAggregateTile && tile.node->isDirectory()) {
            tile.folderBodyCategory = folderCategory(*tile.node, options.disk);
        }
    }
    return placed;
}

std::int64_t TreemapLayout::byteWeight(const FileNode& node, bool disk)
{
    return std::max<std::int64_t>(disk ? node.scannedBytesOnDisk() : node.scannedBytes(), 1);
}

std::int64_t TreemapLayout::microThreshold(std::int64_t totalBytes, const Rect& rect)
{
    const double area = rect.width * rect.height;
    if (!(area > 0)) {
        return 0;
    }
    const auto bytes = static_cast<double>(std::max<std::int64_t>(totalBytes, 1));
    const double threshold = microArea * bytes * microSizeMultiplier / area;
    if (threshold >= 9223372036854775808.0) {
        return std::numeric_limits<std::int64_t>::max();
    }
    return std::max<std::int64_t>(static_cast<std::int64_t>(threshold), 1);
}

bool TreemapLayout::allChildrenMicro(const FileNode& node, const Rect& rect, bool disk,
                                     std::size_t cap, const BloatKeys& excludedBloat)
{
    if (!node.isDirectory()) {
        return false;
    }
    std::vector<FileNode*> visible;
    for (FileNode& child : node.visibleChildren(excludedBloat)) {
        visible.push_back(&child);
    }
    return areAllMicro(visible, rect, disk, cap);
}

std::int64_t TreemapLayout::syntheticAggregateID(std::int64_t parentID)
{
    constexpr std::int64_t offset = 1000003;
    return -(parentID + offset);
}

} // namespace quorvane
