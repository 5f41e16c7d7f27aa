// SPDX-License-Identifier: MIT
#include "MindMapLayout.h"

#include "LayoutWalk.h"

namespace quorvane {
namespace {

struct OpenFolder
{
    FileNode* node;
    int depth;
    double start;
    double end;
    double inner;
};

std::vector<WeightedNode> weightyChildren(const FileNode& folder, SizeMode mode,
                                          const BloatKeys& hidden)
{
    std::vector<WeightedNode> children;
    for (FileNode& child : folder.visibleChildren(hidden)) {
        const std::int64_t weight = weightBasis(child, mode);
        if (weight >= 1) {
            children.push_back({&child, weight});
        }
    }
    return children;
}

} // namespace

std::vector<MindMapLayout::Band> MindMapLayout::layout(FileNode& root, SizeMode sizeMode,
                                                       const BloatKeys& excludedBloat,
                                                       const LockedFlag* stop)
{
    std::vector<Band> bands;
    std::vector<OpenFolder> stack{{&root, 1, -halfTurn, halfTurn, firstRadius}};
    while (!stack.empty()) {
        if (isStopped(stop)) {
            return {};
        }
        const OpenFolder folder = stack.back();
        stack.pop_back();
        const std::vector<WeightedNode> children =
            weightyChildren(*folder.node, sizeMode, excludedBloat);
        const auto total = static_cast<double>(totalWeight(children));
        const double outer = folder.inner + ringWidth;
        const double span = folder.end - folder.start;
        double a = folder.start;
        for (const WeightedNode& child : children) {
            const auto weight = static_cast<double>(child.weight);
            const double b = a + span * weight / total;
            const bool hasChildren =
                child.node->isDirectory() && hasWeightyChild(*child.node, sizeMode, excludedBloat);
            bands.push_back({child.node, folder.inner, outer, a, b, weight / total, hasChildren});
            if (folder.depth < maxDepth && hasChildren) {
                stack.push_back({child.node, folder.depth + 1, a, b, outer});
            }
            a = b;
        }
    }
    return bands;
}

} // namespace quorvane
