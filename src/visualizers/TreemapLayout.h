// SPDX-License-Identifier: MIT
#pragma once

#include "FileTypeCategory.h"
#include "Geometry.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

class BloatKeys;
class FileNode;
class LockedFlag;

/// Turns one folder of a finished tree into a flat array of rectangles in paint order: squarified
/// rows, with a band of its own for the home folder's two big names, chains of single folders
/// collapsed into one body, tiles too small to see folded into one, and a budget for each top tile.
///
/// Static functions without state, for any thread; they read the tree as it stands. Nothing fails:
/// bad geometry gives an empty result or drops a tile. A byte sum beyond 64 bits ends the program.
/// Node sizes are scannedBytesOnDisk where `disk` is true, else scannedBytes.
struct TreemapLayout
{
    /// A folder shows at most so many of its heaviest children; the rest are not placed.
    static constexpr std::size_t childrenPerNode = 600;
    /// Deepest level that the plain layout() opens no more.
    static constexpr int maxDepth = 14;
    /// Hard cap of the output.
    static constexpr std::size_t maxSlices = 12000;
    /// Square points; smaller rectangles are not subdivided.
    static constexpr double minimumRecurseArea = 400.0;
    /// Width and height that a placed rectangle must exceed to become a slice, in points.
    static constexpr double minSliceDimension = 0.75;
    /// Most height of a folder's header strip, in points.
    static constexpr double headerHeight = 16.0;
    /// Deepest depth at which a folder is opened.
    static constexpr int maxContainerDepth = 3;
    /// Inset of a folder's body on each side, in points.
    static constexpr double nestedPadding = 1.0;
    /// Side of the smallest tile worth drawing, in points.
    static constexpr double microPixel = 8.0;
    /// How many such tiles an item must fill to escape folding by size.
    static constexpr double microSizeMultiplier = 3.0;
    /// Fewer children than this never fold.
    static constexpr std::size_t microGroupMinChildren = 2;
    /// Bounds of the top zone's share of the height: this and 1 minus this.
    static constexpr double topZoneFloorFrac = 0.33;
    /// Least share of each tile in the bottom band.
    static constexpr double bandMinorFloorFrac = 0.18;

    /// One tile as the view paints it. Points into the tree.
    struct Slice
    {
        /// Identity for hovering and lookup: the node's id, or a negative one for an aggregate.
        std::int64_t id = 0;
        std::int64_t nodeID = 0;
        /// For an aggregate the folder that holds what is folded in.
        FileNode* node = nullptr;
        Rect rect;
        /// 0 for the tiles of the top level.
        int depth = 0;
        bool isFolder = false;
        /// Only on a collapsed chain: the bytes of its names, joined with "/".
        std::optional<std::string> labelOverride;
        /// Colour family of a folder's body; absent for files and aggregates.
        std::optional<FileTypeCategory> folderBodyCategory;
        bool isAggregateTile = false;
        std::int64_t aggregateCount = 0;
        std::int64_t aggregateBytes = 0;
        FileTypeCategory aggregateCategory = FileTypeCategory::other;
        /// On tiles of the top level the place in the list of placed tiles; 0 below.
        int rootIndex = 0;
        /// Place of the slice that this one lies in; absent on the top level.
        std::optional<std::size_t> parent;
    };

    /// A tile before it becomes a slice.
    struct Placed
    {
        FileNode* node = nullptr;
        Rect rect;
        std::optional<std::string> labelOverride;
        std::optional<FileTypeCategory> folderBodyCategory;
        bool isAggregateTile = false;
        std::int64_t aggregateCount = 0;
        std::int64_t aggregateBytes = 0;
        FileTypeCategory aggregateCategory = FileTypeCategory::other;
        std::int64_t syntheticID = 0; ///< 0 for none
    };

    struct PartitionOptions
    {
        bool disk = false;
        double minItemFrac = 0; ///< least share of each item; 0 for none
        bool aggregateMicro = false;
        bool foldBySize = false;
    };

    /// The whole layout of a folder. applySizeFold is true when the folder is the scan's root:
    /// small items then fold by their bytes and not only by their area. The hidden families take no
    /// part. Polls `stop`, if given, once a folder; a stopped layout is empty.
    static std::vector<Slice> layoutSlate(FileNode& root, const Rect& rect, bool disk,
                                          bool applySizeFold, const BloatKeys& excludedBloat,
                                          const LockedFlag* stop = nullptr);

    /// One list of siblings laid into one rectangle, heaviest first.
    static std::vector<Placed> partition(std::span<FileNode* const> children, FileNode& parent,
                                         const Rect& rect, const PartitionOptions& options);

    /// Opens a folder whose whole tile is rect: appends slices until the budget, which it lowers,
    /// is spent. chainNames are the names of the folders that were collapsed on the way.
    static void subdivideSquarify(FileNode& node, const Rect& rect, int depth, bool disk,
                                  std::int64_t& budget, std::vector<std::string_view> chainNames,
                                  bool applySizeFold, const BloatKeys& excludedBloat,
                                  std::vector<Slice>& into);

    /// The plain variant: every level down to maxDepth, without bands, chains, folding and budgets.
    static std::vector<Slice> layout(FileNode& root, const Rect& rect, bool disk);

    /// The node's size, at least 1.
    static std::int64_t byteWeight(const FileNode& node, bool disk);
    /// Bytes that would cover three of the smallest tiles of this rectangle; 0 for an empty one.
    static std::int64_t microThreshold(std::int64_t totalBytes, const Rect& rect);
    /// Whether each of the first `cap` visible children lies below the threshold. False for fewer
    /// than two.
    static bool allChildrenMicro(const FileNode& node, const Rect& rect, bool disk, std::size_t cap,
                                 const BloatKeys& excludedBloat);
    /// The values with none below minimum, what that costs taken from those above in proportion.
    static std::vector<double> enforceMinimum(std::vector<double> values, double minimum,
                                              double total);
    /// The category of most bytes among the first nodeBudget entries of a walk at most maxWalkDepth
    /// folders deep; `other` when it meets no file. Of equals the first in the order of the cases.
    static FileTypeCategory dominantCategory(const FileNode& node, bool disk, int maxWalkDepth,
                                             int nodeBudget = 512);
    /// The colour family of a folder's body: from its name, its path, or what it holds.
    static FileTypeCategory folderCategory(const FileNode& node, bool disk);
    /// Identity of the aggregate tile of a folder, from the folder's id. Negative.
    static std::int64_t syntheticAggregateID(std::int64_t parentID);
    /// 1 for the names of the bottom band, "Library" and "Documents", else 0.
    static int rootZone(std::string_view name);
    /// Height of the header strip of a folder's tile; 0 for a tile too small for one.
    static double headerHeightFor(const Rect& rect);
};

} // namespace quorvane
