// SPDX-License-Identifier: MIT
#include "VisualizerType.h"

#include <cstddef>

namespace quorvane {
namespace {

struct Row
{
    const char* title;
    const char* systemImage;
};

constexpr std::array<Row, allVisualizerTypes.size()> rows{{
    {"Folders", "folder"},
    {"Treemap", "square.grid.3x3"},
    {"List", "list.bullet.rectangle"},
    {"Top Sizes", "list.number"},
    {"Age Map", "calendar"},
    {"Sunburst", "circle.hexagongrid"},
    {"Flame", "flame"},
    {"Bubbles", "bubble.left.and.bubble.right"},
    {"Mind Map", "point.3.connected.trianglepath.dotted"},
}};

} // namespace

QString title(VisualizerType type)
{
    return QString::fromLatin1(rows[static_cast<std::size_t>(type)].title);
}

QString systemImage(VisualizerType type)
{
    return QString::fromLatin1(rows[static_cast<std::size_t>(type)].systemImage);
}

} // namespace quorvane
