// SPDX-License-Identifier: MIT
#pragma once

#include "Geometry.h"
#include "SizeMode.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace quorvane {

class BloatKeys;
class FileNode;
class LockedFlag;

/// A circle in the packing's own coordinates, whose origin is the first circle of the packing.
struct Bubble
{
    std::int64_t id = 0; ///< the node's
    double radius = 0;
    Point center;
};

struct BubbleNode
{
    FileNode* node = nullptr;
    Bubble bubble;
    std::vector<BubbleNode> children; ///< in a packing of their own
};

/// One bubble of a flat list.
struct FlatBubble
{
    FileNode* node = nullptr;
    Bubble bubble;
    int level = 0; ///< 0 for a bubble, 1 for one nested in it
};

/// Packs a folder's children as touching circles, their areas by bytes, the largest near the
/// middle. Static functions without state, for any thread.
struct BubblesLayout
{
    /// Of the container's radius, what the circles' areas together may fill.
    static constexpr double fillShare = 0.9;
    /// Of a bubble's radius, what its content may fill.
    static constexpr double nestedShare = 0.7;
    /// Levels of nested bubbles that the screen shows.
    static constexpr int screenMaxDepth = 1;
    /// Between the cluster and the canvas's edges, points.
    static constexpr double screenMargin = 30;
    static constexpr double screenInset = 40; ///< on both sides together
    /// Containers of this radius or less are not packed.
    static constexpr double minContainerRadius = 20;

    /// The bubbles by id. A folder's only child shows what lies in it down to maxDepth levels; no
    /// other bubble does. Polls `stop`, if given, once a bubble; a stopped layout is empty. A byte
    /// sum beyond 64 bits ends the program.
    static std::vector<BubbleNode> layout(FileNode& root, double containerRadius, int maxDepth,
                                          SizeMode sizeMode, const BloatKeys& excludedBloat,
                                          const LockedFlag* stop = nullptr);
    /// The container for a canvas of that size; absent when it is too small for a layout.
    static std::optional<double> screenRadius(double width, double height);
    /// Every bubble of the tree, parents before their children, in the order of painting.
    static std::vector<FlatBubble> flatten(std::vector<BubbleNode> bubbles);
    /// The union of all circles' boxes; zero for none.
    static Rect bounds(std::span<const FlatBubble> bubbles);
    /// Points of the canvas for a unit of the packing; 0 when there is nothing to scale.
    static double screenScale(const Rect& bounds, double width, double height);
};

} // namespace quorvane
