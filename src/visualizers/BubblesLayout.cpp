// SPDX-License-Identifier: MIT
#include "BubblesLayout.h"

#include "BubblePacking.h"
#include "LayoutWalk.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quorvane {
namespace {

std::vector<BubbleNode> nestedIn(FileNode& folder, double radius, int maxDepth, SizeMode mode,
                                 const BloatKeys& hidden, const LockedFlag* stop)
{
    if (!folder.isDirectory() || maxDepth < 1) {
        return {};
    }
    return BubblesLayout::layout(folder, radius * BubblesLayout::nestedShare, maxDepth - 1, mode,
                                 hidden, stop);
}

std::vector<double> radiiOf(const std::vector<WeightedNode>& nodes, double containerRadius)
{
    const auto total = static_cast<double>(std::max<std::int64_t>(totalWeight(nodes), 1));
    std::vector<double> radii;
    radii.reserve(nodes.size());
    for (const WeightedNode& node : nodes) {
        radii.push_back(std::sqrt(static_cast<double>(node.weight) / total) * containerRadius *
                        BubblesLayout::fillShare);
    }
    return radii;
}

} // namespace

std::vector<BubbleNode> BubblesLayout::layout(FileNode& root, double containerRadius, int maxDepth,
                                              SizeMode sizeMode, const BloatKeys& excludedBloat,
                                              const LockedFlag* stop)
{
    const std::vector<WeightedNode> nodes = rankedChildren(root, sizeMode, excludedBloat);
    std::vector<BubbleNode> bubbles;
    if (isStopped(stop)) {
        return bubbles;
    }
    if (nodes.size() == 1) {
        FileNode& only = *nodes.front().node;
        const double radius = containerRadius * fillShare;
        bubbles.push_back({&only,
                           {only.id(), radius, {}},
                           nestedIn(only, radius, maxDepth, sizeMode, excludedBloat, stop)});
        return bubbles;
    }
    const std::vector<double> radii = radiiOf(nodes, containerRadius);
    const std::vector<Point> centers = packCircles(radii, stop);
    for (std::size_t i = 0; i < centers.size(); ++i) {
        bubbles.push_back({nodes[i].node, {nodes[i].node->id(), radii[i], centers[i]}, {}});
    }
    std::sort(bubbles.begin(), bubbles.end(),
              [](const BubbleNode& a, const BubbleNode& b) { return a.bubble.id < b.bubble.id; });
    return bubbles;
}

std::optional<double> BubblesLayout::screenRadius(double width, double height)
{
    const double radius = std::min(width, height) * 0.5 - screenMargin;
    return radius > minContainerRadius ? std::optional(radius) : std::nullopt;
}

std::vector<FlatBubble> BubblesLayout::flatten(std::vector<BubbleNode> bubbles)
{
    struct Pending
    {
        BubbleNode bubble;
        int level;
    };
    std::vector<Pending> stack;
    for (BubbleNode& bubble : bubbles) {
        stack.push_back({std::move(bubble), 0});
    }
    std::vector<FlatBubble> all;
    while (!stack.empty()) {
        Pending top = std::move(stack.back());
        stack.pop_back();
        all.push_back({top.bubble.node, top.bubble.bubble, top.level});
        for (BubbleNode& child : top.bubble.children) {
            stack.push_back({std::move(child), top.level + 1});
        }
    }
    return all;
}

Rect BubblesLayout::bounds(std::span<const FlatBubble> bubbles)
{
    if (bubbles.empty()) {
        return {};
    }
    const auto boxOf = [](const Bubble& bubble) {
        return Rect{bubble.center.x - bubble.radius, bubble.center.y - bubble.radius,
                    2 * bubble.radius, 2 * bubble.radius};
    };
    const Rect first = boxOf(bubbles.front().bubble);
    double left = first.x;
    double top = first.y;
    double right = first.maxX();
    double bottom = first.maxY();
    for (const FlatBubble& bubble : bubbles.subspan(1)) {
        const Rect box = boxOf(bubble.bubble);
        left = std::min(left, box.x);
        top = std::min(top, box.y);
        right = std::max(right, box.maxX());
        bottom = std::max(bottom, box.maxY());
    }
    return {left, top, right - left, bottom - top};
}

double BubblesLayout::screenScale(const Rect& bounds, double width, double height)
{
    const double scale = std::min((width - screenInset) / std::max(bounds.width, 1.0),
                                  (height - screenInset) / std::max(bounds.height, 1.0));
    return std::isfinite(scale) && scale > 0 ? scale : 0;
}

} // namespace quorvane
