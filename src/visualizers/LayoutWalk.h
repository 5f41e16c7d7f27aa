// SPDX-License-Identifier: MIT
#pragma once

#include "BloatFilter.h"
#include "FileNode.h"
#include "LockedFlag.h"
#include "SizeMode.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quorvane {

/// Whether a walk has been asked to end early. Any thread.
inline bool isStopped(const LockedFlag* stop)
{
    return stop != nullptr && stop->get();
}

/// A node and the bytes that a visualiser measures it by.
struct WeightedNode
{
    FileNode* node = nullptr;
    std::int64_t weight = 0;
};

/// The order of every ranked list: more bytes first, equal ones by name in byte order.
bool ranksBefore(const WeightedNode& a, const WeightedNode& b);

/// The visible children that hold at least one byte, ranked.
std::vector<WeightedNode> rankedChildren(const FileNode& folder, SizeMode mode,
                                         const BloatKeys& hidden);
/// Their bytes together. A sum beyond 64 bits ends the program.
std::int64_t totalWeight(const std::vector<WeightedNode>& nodes);
/// Whether a folder has a visible child of at least one byte.
bool hasWeightyChild(const FileNode& folder, SizeMode mode, const BloatKeys& hidden);

/// Keeps the first nodes of a ranking out of any number of them, in the room of those few. What is
/// equal in bytes and name stays in the order in which it came.
class TopRanked
{
public:
    explicit TopRanked(std::size_t limit)
        : m_limit(limit)
    {}

    void add(const WeightedNode& node);
    /// The ranking; empties this one.
    std::vector<WeightedNode> takeSorted();

private:
    struct Entry
    {
        WeightedNode ranked;
        std::uint64_t arrival = 0;
    };
    static bool isBefore(const Entry& a, const Entry& b);

    std::size_t m_limit;
    std::uint64_t m_arrivals = 0;
    std::vector<Entry> m_heap; ///< the last of the ranking on top
};

/// Visits a node and all that is visible below it, a stack's way: the last child first. Ends early
/// when it is stopped, which it looks for once a folder; returns whether it went to the end.
template<class Visit>
bool walkVisible(FileNode& root, const BloatKeys& hidden, const LockedFlag* stop, Visit visit)
{
    std::vector<FileNode*> stack{&root};
    while (!stack.empty()) {
        FileNode& node = *stack.back();
        stack.pop_back();
        visit(node);
        if (!node.isDirectory()) {
            continue;
        }
        if (isStopped(stop)) {
            return false;
        }
        for (FileNode& child : node.visibleChildren(hidden)) {
            stack.push_back(&child);
        }
    }
    return true;
}

} // namespace quorvane
