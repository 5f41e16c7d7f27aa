// SPDX-License-Identifier: MIT
#include "TopSizes.h"

#include "LayoutWalk.h"

namespace quorvane {

std::vector<FileNode*> TopSizes::flattenAndRank(FileNode& root, SizeMode sizeMode,
                                                const BloatKeys& excludedBloat, std::size_t limit,
                                                const LockedFlag* stop)
{
    TopRanked top(limit);
    const bool isComplete = walkVisible(root, excludedBloat, stop, [&](FileNode& node) {
        const std::int64_t weight = weightBasis(node, sizeMode);
        if (weight >= 1) {
            top.add({&node, weight});
        }
    });
    std::vector<FileNode*> ranked;
    if (isComplete) {
        for (const WeightedNode& entry : top.takeSorted()) {
            ranked.push_back(entry.node);
        }
    }
    return ranked;
}

} // namespace quorvane
