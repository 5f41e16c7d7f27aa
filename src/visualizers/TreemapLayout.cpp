// SPDX-License-Identifier: MIT
#include "TreemapLayout.h"

#include "BloatFilter.h"
#include "CheckedMath.h"
#include "FileNode.h"
#include "LockedFlag.h"
#include "TreemapFolderCategory.h"
#include "TreemapPartition.h"

#include <algorithm>
#include <array>
#include <utility>

namespace quorvane {
namespace {

using Placed = TreemapLayout::Placed;
using Slice = TreemapLayout::Slice;

constexpr std::array<std::string_view, 2> bottomZoneNames{"Library", "Documents"};

constexpr double minCanvasSide = 4.0;
/// Each zone ends this far from the line between them.
constexpr double halfGutter = 2.0;
constexpr double minOpenedSide = 2.0;
constexpr double minHalfWidth = 6.0;
constexpr double minHalfHeight = 5.0;
constexpr double minBodyWidth = 6.0;
constexpr double minBodyHeight = 8.0;
constexpr double headerMinHeight = 26.0;
constexpr double headerMinWidth = 40.0;
constexpr double headerShare = 0.3;

bool isLargeEnough(const Rect& rect, double side)
{
    return rect.width > side && rect.height > side;
}

/// The room for the children in a folder's tile, below its header; nothing when there is too
/// little.
std::optional<Rect> bodyOf(const Rect& tile)
{
    if (!isLargeEnough(tile, minOpenedSide) ||
        tile.width * tile.height < TreemapLayout::minimumRecurseArea ||
        tile.width * 0.5 < minHalfWidth || tile.height * 0.5 < minHalfHeight) {
        return std::nullopt;
    }
    constexpr double padding = TreemapLayout::nestedPadding;
    const double header = TreemapLayout::headerHeightFor(tile);
    const Rect body{tile.x + padding, tile.y + header + padding, tile.width - 2 * padding,
                    tile.height - header - 2 * padding};
    if (body.height < minBodyHeight || body.width < minBodyWidth) {
        return std::nullopt;
    }
    return body;
}

/// At least one name is given.
std::string joined(std::span<const std::string_view> names)
{
    std::string text(names.front());
    for (const std::string_view name : names.subspan(1)) {
        text.append(1, '/').append(name);
    }
    return text;
}

std::vector<FileNode*> visibleChildren(const FileNode& node, const BloatKeys& excludedBloat)
{
    std::vector<FileNode*> visible;
    visible.reserve(node.children().size());
    for (FileNode& child : node.visibleChildren(excludedBloat)) {
        visible.push_back(&child);
    }
    return visible;
}

/// One run over a tree: what every level needs, and the slices so far.
class SliceWriter
{
public:
    SliceWriter(bool disk, bool applySizeFold, const BloatKeys& excludedBloat,
                const LockedFlag* stop, std::vector<Slice>& into)
        : m_disk(disk)
        , m_applySizeFold(applySizeFold)
        , m_excludedBloat(excludedBloat)
        , m_stop(stop)
        , m_into(into)
    {}

    bool isFull() const { return m_into.size() >= TreemapLayout::maxSlices; }
    bool isStopped() const { return m_stop != nullptr && m_stop->get(); }

    /// A folder on the way down.
    struct Folder
    {
        FileNode* node;
        bool isInDocuments;               ///< its path goes through a documents folder
        std::optional<std::size_t> slice; ///< place of its own slice, if it has one

        Folder child(FileNode& node_, std::optional<std::size_t> slice_ = {}) const
        {
            return {&node_, isInDocuments || treemapIsDocumentsName(node_.name()), slice_};
        }
    };

    /// Place of the slice that was appended last.
    std::size_t last() const { return m_into.size() - 1; }

    void append(const Placed& tile, const Folder& parent, int depth, int rootIndex)
    {
        Slice slice;
        slice.id = tile.isAggregateTile ? tile.syntheticID : tile.node->id();
        slice.nodeID = tile.node->id();
        slice.node = tile.node;
        slice.rect = tile.rect;
        slice.depth = depth;
        slice.isFolder = tile.node->isDirectory();
        slice.labelOverride = tile.labelOverride;
        if (slice.isFolder && !tile.isAggregateTile) {
            slice.folderBodyCategory = categoryOf(parent.child(*tile.node));
        }
        slice.isAggregateTile = tile.isAggregateTile;
        slice.aggregateCount = tile.aggregateCount;
        slice.aggregateBytes = tile.aggregateBytes;
        slice.aggregateCategory = tile.aggregateCategory;
        slice.rootIndex = rootIndex;
        slice.parent = parent.slice;
        m_into.push_back(std::move(slice));
    }

    void subdivide(Folder folder, const Rect& tile, int depth, std::int64_t& budget,
                   std::vector<std::string_view> chainNames)
    {
        if (isFull() || budget < 1 || !folder.node->isDirectory() || isStopped()) {
            return;
        }
        const std::optional<Rect> body = bodyOf(tile);
        if (!body) {
            return;
        }
        std::vector<FileNode*> visible = visibleChildren(*folder.node, m_excludedBloat);
        while (visible.size() == 1 && visible.front()->isDirectory()) {
            folder = folder.child(*visible.front(), folder.slice);
            chainNames.push_back(folder.node->name());
            visible = visibleChildren(*folder.node, m_excludedBloat);
        }
        if (visible.empty()) {
            return;
        }
        if (!chainNames.empty()) {
            appendChain(folder, tile, depth, joined(chainNames));
            folder.slice = last();
            --budget;
        }
        if (m_applySizeFold &&
            areAllMicro(visible, *body, m_disk, TreemapLayout::childrenPerNode)) {
            return;
        }
        fill(folder, visible, *body, depth, budget);
    }

private:
    FileTypeCategory categoryOf(const Folder& folder) const
    {
        return treemapFolderCategory(*folder.node, m_disk, folder.isInDocuments);
    }

    void appendChain(const Folder& folder, const Rect& tile, int depth, std::string label)
    {
        Slice slice;
        slice.id = folder.node->id();
        slice.nodeID = folder.node->id();
        slice.node = folder.node;
        slice.rect = tile;
        slice.depth = depth;
        slice.isFolder = true;
        slice.labelOverride = std::move(label);
        slice.folderBodyCategory = categoryOf(folder);
        slice.parent = folder.slice;
        m_into.push_back(std::move(slice));
    }

    void fill(const Folder& folder, std::span<FileNode* const> visible, const Rect& body, int depth,
              std::int64_t& budget)
    {
        const std::vector<Placed> placed = partitionTreemap(
            visible, *folder.node, body,
            {.disk = m_disk, .aggregateMicro = true, .foldBySize = m_applySizeFold});
        for (const Placed& tile : placed) {
            if (!isLargeEnough(tile.rect, TreemapLayout::minSliceDimension)) {
                continue;
            }
            if (isFull() || budget < 1) {
                return;
            }
            append(tile, folder, depth, 0);
            --budget;
            if (!tile.isAggregateTile && depth + 1 <= TreemapLayout::maxContainerDepth) {
                subdivide(folder.child(*tile.node, last()), tile.rect, depth + 1, budget, {});
            }
        }
    }

    bool m_disk;
    bool m_applySizeFold;
    const BloatKeys& m_excludedBloat;
    const LockedFlag* m_stop;
    std::vector<Slice>& m_into;
};

std::int64_t zoneBytes(std::span<FileNode* const> zone, bool disk)
{
    std::int64_t bytes = 0;
    for (const FileNode* node : zone) {
        bytes =
            checkedAdd(bytes, TreemapLayout::byteWeight(*node, disk), "TreemapLayout::layoutSlate");
    }
    return bytes;
}

/// The top zone's share of the height.
double topFraction(std::span<FileNode* const> top, std::span<FileNode* const> bottom, bool disk)
{
    if (top.empty()) {
        return 0;
    }
    if (bottom.empty()) {
        return 1;
    }
    const std::int64_t topBytes = zoneBytes(top, disk);
    const std::int64_t bytes =
        checkedAdd(topBytes, zoneBytes(bottom, disk), "TreemapLayout::layoutSlate");
    const double fraction = static_cast<double>(topBytes) / static_cast<double>(bytes);
    constexpr double floor = TreemapLayout::topZoneFloorFrac;
    return std::clamp(fraction, floor, 1 - floor);
}

/// The tiles of the top level: those of the top zone, then those of the bottom band.
std::vector<Placed> placeZones(FileNode& root, std::span<FileNode* const> children,
                               const Rect& rect, bool disk)
{
    std::vector<FileNode*> top;
    std::vector<FileNode*> bottom;
    for (FileNode* child : children) {
        (TreemapLayout::rootZone(child->name()) == 1 ? bottom : top).push_back(child);
    }
    const double share = topFraction(top, bottom, disk);
    const Rect topRect{rect.x, rect.y, rect.width, std::max(share * rect.height - halfGutter, 0.0)};
    const Rect bottomRect{rect.x, rect.y + share * rect.height + halfGutter, rect.width,
                          std::max((1 - share) * rect.height - halfGutter, 0.0)};
    std::vector<Placed> placed =
        partitionTreemap(top, root, topRect, {.disk = disk, .foldBySize = true});
    std::vector<Placed> band = partitionTreemap(
        bottom, root, bottomRect,
        {.disk = disk, .minItemFrac = TreemapLayout::bandMinorFloorFrac, .foldBySize = true});
    std::move(band.begin(), band.end(), std::back_inserter(placed));
    return placed;
}

/// The plain variant's descent: parents before children, no more than maxDepth levels.
void subdividePlainly(const SliceWriter::Folder& folder, const Rect& body, int depth, bool disk,
                      SliceWriter& writer)
{
    if (depth >= TreemapLayout::maxDepth ||
        body.width * body.height < TreemapLayout::minimumRecurseArea) {
        return;
    }
    const std::vector<FileNode*> children = visibleChildren(*folder.node, {});
    const std::vector<Placed> placed =
        partitionTreemap(children, *folder.node, body, {.disk = disk});
    for (std::size_t i = 0; i < placed.size() && !writer.isFull(); ++i) {
        const Placed& tile = placed[i];
        if (!isLargeEnough(tile.rect, TreemapLayout::minSliceDimension)) {
            continue;
        }
        writer.append(tile, folder, depth, depth == 0 ? static_cast<int>(i) : 0);
        const std::optional<Rect> inner = bodyOf(tile.rect);
        if (tile.node->isDirectory() && inner) {
            subdividePlainly(folder.child(*tile.node, writer.last()), *inner, depth + 1, disk,
                             writer);
        }
    }
}

} // namespace

std::vector<Slice> TreemapLayout::layoutSlate(FileNode& root, const Rect& rect, bool disk,
                                              bool applySizeFold, const BloatKeys& excludedBloat,
                                              const LockedFlag* stop)
{
    const std::vector<FileNode*> children = visibleChildren(root, excludedBloat);
    if (children.empty() || !isLargeEnough(rect, minCanvasSide)) {
        return {};
    }
    const std::vector<Placed> placed = placeZones(root, children, rect, disk);
    std::vector<Slice> slices;
    SliceWriter writer(disk, applySizeFold, excludedBloat, stop, slices);
    const SliceWriter::Folder top{&root, treemapIsInDocuments(root), {}};
    std::vector<std::optional<std::size_t>> topSlices(placed.size());
    for (std::size_t i = 0; i < placed.size() && !writer.isFull(); ++i) {
        if (isLargeEnough(placed[i].rect, minSliceDimension)) {
            writer.append(placed[i], top, 0, static_cast<int>(i));
            topSlices[i] = writer.last();
        }
    }
    for (std::size_t i = 0; i < placed.size() && !writer.isFull(); ++i) {
        const auto left = static_cast<std::int64_t>((maxSlices - slices.size()) / placed.size());
        std::int64_t budget = std::max<std::int64_t>(left, 1);
        writer.subdivide(top.child(*placed[i].node, topSlices[i]), placed[i].rect, 1, budget, {});
    }
    return writer.isStopped() ? std::vector<Slice>() : slices;
}

void TreemapLayout::subdivideSquarify(FileNode& node, const Rect& rect, int depth, bool disk,
                                      std::int64_t& budget,
                                      std::vector<std::string_view> chainNames, bool applySizeFold,
                                      const BloatKeys& excludedBloat, std::vector<Slice>& into)
{
    SliceWriter(disk, applySizeFold, excludedBloat, nullptr, into)
        .subdivide({&node, treemapIsInDocuments(node), {}}, rect, depth, budget,
                   std::move(chainNames));
}

std::vector<Slice> TreemapLayout::layout(FileNode& root, const Rect& rect, bool disk)
{
    std::vector<Slice> slices;
    const BloatKeys nothingHidden;
    SliceWriter writer(disk, false, nothingHidden, nullptr, slices);
    subdividePlainly({&root, treemapIsInDocuments(root), {}}, rect, 0, disk, writer);
    return slices;
}

int TreemapLayout::rootZone(std::string_view name)
{
    return std::find(bottomZoneNames.begin(), bottomZoneNames.end(), name) != bottomZoneNames.end()
               ? 1
               : 0;
}

double TreemapLayout::headerHeightFor(const Rect& rect)
{
    if (rect.height >= headerMinHeight && rect.width >= headerMinWidth) {
        return std::min(rect.height * headerShare, headerHeight);
    }
    return 0;
}

} // namespace quorvane
