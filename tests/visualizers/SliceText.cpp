// SPDX-License-Identifier: MIT
#include "SliceText.h"

#include "FileNode.h"

#include <array>
#include <cstdio>

namespace quorvane::test {
namespace {

std::string number(double value)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.17g", value);
    return text.data();
}

/// With one digit behind the point unless that is 0.
std::string tenths(double value)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f", value);
    const std::string all = text.data();
    return all.ends_with(".0") ? all.substr(0, all.size() - 2) : all;
}

std::string exactText(const Rect& rect)
{
    return "(" + number(rect.x) + ", " + number(rect.y) + ", " + number(rect.width) + ", " +
           number(rect.height) + ")";
}

std::string categoryText(const std::optional<FileTypeCategory>& category)
{
    return category ? std::string(rawValue(*category)) : "-";
}

/// The fields that a slice and a placed tile share.
template<typename Tile>
std::string commonText(const Tile& tile)
{
    return std::string(tile.node->name()) + " " + exactText(tile.rect) + " label " +
           tile.labelOverride.value_or("-") + " body " + categoryText(tile.folderBodyCategory) +
           (tile.isAggregateTile ? " aggregate " : " single ") +
           std::to_string(tile.aggregateCount) + " " + std::to_string(tile.aggregateBytes) + " " +
           categoryText(tile.aggregateCategory);
}

} // namespace

std::string exactText(const TreemapLayout::Slice& slice)
{
    return commonText(slice) + " id " + std::to_string(slice.id) + " node " +
           std::to_string(slice.nodeID) + (slice.isFolder ? " folder" : " file") + " depth " +
           std::to_string(slice.depth) + " root " + std::to_string(slice.rootIndex);
}

std::string exactText(const TreemapLayout::Placed& placed)
{
    return commonText(placed) + " synthetic " + std::to_string(placed.syntheticID);
}

std::string layoutText(const std::vector<TreemapLayout::Slice>& slices)
{
    std::string text;
    for (const auto& slice : slices) {
        text.append(static_cast<std::size_t>(slice.depth) * 2, ' ');
        text += slice.isAggregateTile
                    ? "[" + std::to_string(slice.aggregateCount) + " in " +
                          std::string(slice.node->name()) + "]"
                    : slice.labelOverride.value_or(std::string(slice.node->name()));
        for (const double side :
             {slice.rect.x, slice.rect.y, slice.rect.width, slice.rect.height}) {
            text += " " + tenths(side);
        }
        if (slice.folderBodyCategory) {
            text += " " + categoryText(slice.folderBodyCategory);
        }
        text += "\n";
    }
    return text;
}

} // namespace quorvane::test
