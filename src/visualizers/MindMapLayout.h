// SPDX-License-Identifier: MIT
#pragma once

#include "SizeMode.h"

#include <vector>

namespace quorvane {

class BloatKeys;
class FileNode;
class LockedFlag;

/// Fans a folder out to the right of a point: half-rings of bands, at most three levels, a child
/// within its folder's span. Static functions without state, for any thread.
struct MindMapLayout
{
    static constexpr int maxDepth = 3;
    static constexpr double firstRadius = 8.0; ///< points
    static constexpr double ringWidth = 70;    ///< points
    /// Of the fan on both sides of the axis, radians.
    static constexpr double halfTurn = 1.5707963267948966;

    struct Band
    {
        FileNode* node = nullptr;
        double inner = 0;  ///< radius, points
        double outer = 0;  ///< radius, points
        double start = 0;  ///< radians, 0 points right, growing clockwise on screen
        double end = 0;    ///< radians
        double weight = 0; ///< share of its siblings, 0 to 1
        /// A folder with at least one visible child of a byte or more.
        bool hasChildren = false;

        double arcLength() const { return end - start; }
        double mid() const { return (start + end) * 0.5; }
    };

    /// In paint order: children in their stored order, what lies in the last folder before what
    /// lies in the ones ahead of it. Polls `stop`, if given, once a folder; a stopped layout is
    /// empty. A byte sum beyond 64 bits ends the program.
    static std::vector<Band> layout(FileNode& root, SizeMode sizeMode,
                                    const BloatKeys& excludedBloat,
                                    const LockedFlag* stop = nullptr);
};

} // namespace quorvane
