// SPDX-License-Identifier: MIT
#pragma once

#include "Color.h"
#include "SnapshotGrowth.h"

#include <QString>

#include <array>
#include <cstddef>

namespace quorvane {

/// The diverging scale of growth, one colour a step, the same in every theme and palette. Blue and
/// orange stay apart for every kind of colour blindness, and both arms get brighter outwards, so
/// that the amount can be read without the hue.
inline constexpr std::array<Color, growthSteps> growthScale{
    {{0x4A / 255.0, 0x9D / 255.0, 1},
     {0x2F / 255.0, 0x74 / 255.0, 0xC9 / 255.0},
     {0x2B / 255.0, 0x52 / 255.0, 0x7F / 255.0},
     {0x3A / 255.0, 0x3F / 255.0, 0x48 / 255.0},
     {0x7D / 255.0, 0x52 / 255.0, 0x16 / 255.0},
     {0xB8 / 255.0, 0x6F / 255.0, 0x0C / 255.0},
     {1, 0x9F / 255.0, 0x0A / 255.0}}};

constexpr Color growthColor(GrowthStep step)
{
    return growthScale[static_cast<std::size_t>(step)];
}

/// "since Aug 3: +1.2 GB"
QString sinceText(const SnapshotGrowth& growth, const FileNode& node);

} // namespace quorvane
