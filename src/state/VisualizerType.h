// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <array>

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

inline constexpr std::array allVisualizerTypes{
    VisualizerType::folders,  VisualizerType::treemap, VisualizerType::list,
    VisualizerType::topSizes, VisualizerType::ageMap,  VisualizerType::sunburst,
    VisualizerType::flame,    VisualizerType::bubbles, VisualizerType::mindMap};

QString title(VisualizerType type);
/// Name of the symbol that stands for it.
QString systemImage(VisualizerType type);

} // namespace quorvane
