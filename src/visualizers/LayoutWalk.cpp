// SPDX-License-Identifier: MIT
#include "LayoutWalk.h"

#include "CheckedMath.h"

#include <algorithm>

namespace quorvane {

bool ranksBefore(const WeightedNode& a, const WeightedNode& b)
{
    return a.weight != b.weight ? a.weight > b.weight : a.node->name() < b.node->name();
}

std::vector<WeightedNode> rankedChildren(const FileNode& folder, SizeMode mode,
                                         const BloatKeys& hidden)
{
    std::vector<WeightedNode> ranked;
    for (FileNode& child : folder.visibleChildren(hidden)) {
        const std::int64_t weight = weightBasis(child, mode);
        if (weight >= 1) {
            ranked.push_back({&child, weight});
        }
    }
    // Children are stored by logical bytes: in that mode there is nothing to do.
    if (!std::is_sorted(ranked.begin(), ranked.end(), ranksBefore)) {
        std::stable_sort(ranked.begin(), ranked.end(), ranksBefore);
    }
    return ranked;
}

std::int64_t totalWeight(const std::vector<WeightedNode>& nodes)
{
    std::int64_t total = 0;
    for (const WeightedNode& node : nodes) {
        total = checkedAdd(total, node.weight, "totalWeight");
    }
    return total;
}

bool hasWeightyChild(const FileNode& folder, SizeMode mode, const BloatKeys& hidden)
{
    const VisibleChildren children = folder.visibleChildren(hidden);
    return std::any_of(children.begin(), children.end(),
                       [mode](const FileNode& child) { return weightBasis(child, mode) >= 1; });
}

bool TopRanked::isBefore(const Entry& a, const Entry& b)
{
    if (a.ranked.weight != b.ranked.weight) {
        return a.ranked.weight > b.ranked.weight;
    }
    const int names = a.ranked.node->name().compare(b.ranked.node->name());
    return names != 0 ? names < 0 : a.arrival < b.arrival;
}

void TopRanked::add(const WeightedNode& node)
{
    const Entry entry{node, m_arrivals++};
    if (m_heap.size() < m_limit) {
        m_heap.push_back(entry);
        std::push_heap(m_heap.begin(), m_heap.end(), isBefore);
    } else if (m_limit > 0 && isBefore(entry, m_heap.front())) {
        std::pop_heap(m_heap.begin(), m_heap.end(), isBefore);
        m_heap.back() = entry;
        std::push_heap(m_heap.begin(), m_heap.end(), isBefore);
    }
}

std::vector<WeightedNode> TopRanked::takeSorted()
{
    std::sort_heap(m_heap.begin(), m_heap.end(), isBefore);
    std::vector<WeightedNode> sorted;
    sorted.reserve(m_heap.size());
    for (const Entry& entry : m_heap) {
        sorted.push_back(entry.ranked);
    }
    m_heap.clear();
    return sorted;
}

} // namespace quorvane
