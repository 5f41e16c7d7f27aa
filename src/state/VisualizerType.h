// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <array>
#include <cstddef>
#include <iterator>

namespace quorvane {

/// The ways to see the tree. The raw value is the enumerator's number.
enum class VisualizerType {
    folders = 0,
    treemap = 1,
    list = 2,
    topSizes = 3,
    ageMap = 4,
    sunburst = 5,
    flame = 6,
    bubbles = 7,
    mindMap = 8
};

struct VisualizerRow
{
    VisualizerType type;
    const char* title;
    const char* systemImage; ///< name of the symbol that stands for it
};

/// In the order of the raw values, which count from 0.
inline constexpr VisualizerRow visualizerRows[]{
    {VisualizerType::folders, "Folders", "folder"},
    {VisualizerType::treemap, "Treemap", "square.grid.3x3"},
    {VisualizerType::list, "List", "list.bullet.rectangle"},
    {VisualizerType::topSizes, "Top Sizes", "list.number"},
    {VisualizerType::ageMap, "Age Map", "calendar"},
    {VisualizerType::sunburst, "Sunburst", "circle.hexagongrid"},
    {VisualizerType::flame, "Flame", "flame"},
    {VisualizerType::bubbles, "Bubbles", "bubble.left.and.bubble.right"},
    {VisualizerType::mindMap, "Mind Map", "point.3.connected.trianglepath.dotted"},
};

inline constexpr auto allVisualizerTypes = [] {
    std::array<VisualizerType, std::size(visualizerRows)> types{};
    for (std::size_t i = 0; i < types.size(); ++i) {
        types[i] = visualizerRows[i].type;
    }
    return types;
}();

inline QString title(VisualizerType type)
{
    return QString::fromLatin1(visualizerRows[static_cast<std::size_t>(type)].title);
}

inline QString systemImage(VisualizerType type)
{
    return QString::fromLatin1(visualizerRows[static_cast<std::size_t>(type)].systemImage);
}

} // namespace quorvane
