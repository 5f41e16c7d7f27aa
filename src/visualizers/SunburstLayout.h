// SPDX-License-Identifier: MIT
#pragma once

#include "SizeMode.h"

#include <cstdint>
#include <string>
#include <vector>

namespace quorvane {

class BloatKeys;
class FileNode;
class LockedFlag;

/// Turns a folder into rings about a centre, one ring for each level, in paint order: each slice is
/// followed by its whole subtree.
///
/// Below the first ring a folder's children fill a whole turn again, from the angle at which their
/// folder begins, and are measured by their logical bytes whatever the caller measures by: a deeper
/// ring is a full circle, and what comes later in the order lies above what came before.
///
/// Static functions without state, for any thread.
struct SunburstLayout
{
    static constexpr double twoPi = 6.283185307179586;
    /// Twelve o'clock. Angles are radians, 0 points right, and they grow clockwise on screen.
    static constexpr double defaultStartAngle = -twoPi / 4;
    /// Levels below the first ring that the screen shows.
    static constexpr int screenMaxDepth = 6;
    /// Width of a ring and of the hub, as a share of the canvas's shorter side.
    static constexpr double ringShare = 0.125;

    struct Slice
    {
        std::int64_t id = 0; ///< the node's
        FileNode* node = nullptr;
        double innerRadius = 0; ///< points
        double outerRadius = 0; ///< points
        double startAngle = 0;  ///< radians
        double endAngle = 0;    ///< radians, at most a turn after startAngle
        int depth = 0;          ///< always 0
    };

    struct Options
    {
        double innerRadius = 0; ///< points
        double ringWidth = 0;   ///< points
        int maxDepth = screenMaxDepth;
        double startAngle = defaultStartAngle;
        SizeMode sizeMode = SizeMode::disk;
    };

    /// Polls `stop`, if given, once a folder; a stopped layout is empty. A byte sum beyond 64 bits
    /// ends the program.
    static std::vector<Slice> layout(FileNode& root, const Options& options,
                                     const BloatKeys& excludedBloat,
                                     const LockedFlag* stop = nullptr);
    /// What the screen asks for on a canvas of that size, points.
    static Options screenOptions(double width, double height, SizeMode sizeMode);
    /// "{id}-{W}x{H}" with the id of the root, 0 without one, and the size truncated.
    static std::string key(const FileNode* root, double width, double height);
};

} // namespace quorvane
