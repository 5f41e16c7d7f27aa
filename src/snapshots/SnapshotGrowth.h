// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"
#include "ScanSnapshot.h"
#include "SnapshotDiff.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace quorvane {

/// How much something changed, as a share of what it was.
enum class GrowthStep : unsigned char {
    halfGone,      ///< −50 % and less
    tenthGone,     ///< to −10 %
    hundredthGone, ///< to −1 %
    unchanged,
    hundredthMore, ///< from +1 %
    tenthMore,     ///< from +10 %
    halfMore       ///< +50 % and more, or new
};

inline constexpr std::size_t growthSteps = 7;

/// The step of a change by so many bytes from so many, which are not negative.
GrowthStep growthStep(std::int64_t delta, std::int64_t past);

/// What a tree has won and lost since a snapshot: the rows of the comparison, and the same changes
/// summed up for each node and all folders above it. Holds the tree. Read from any thread.
class SnapshotGrowth
{
public:
    struct Change
    {
        std::int64_t delta = 0; ///< bytes
        /// What the node was then. Of a folder: what the snapshot has of it, and what is in it now
        /// but in neither snapshot, which counts as unchanged.
        std::int64_t past = 0;
    };

    /// Walks the tree: for a job in the background.
    SnapshotGrowth(SnapshotHeading base, std::vector<ScanSnapshot::Entry> baseItems,
                   const NodePointer& root);

    const SnapshotHeading& base() const { return m_base; }
    const std::vector<SnapshotDiff>& diffs() const { return m_diffs; }
    std::int64_t net() const { return m_net; }

    /// The node that a row leads to: its file, or for a file that is gone, or no longer large
    /// enough for a snapshot, the file or the deepest folder that is left of its path.
    NodePointer nodeOfRow(std::size_t row) const;
    bool hasFileOfRow(std::size_t row) const;

    /// Any node of the tree; one that no row tells of has not changed.
    Change changeOf(const FileNode& node) const;
    GrowthStep stepOf(const FileNode& node) const
    {
        const Change change = changeOf(node);
        return growthStep(change.delta, change.past);
    }

private:
    struct Sums
    {
        std::int64_t past = 0;
        std::int64_t present = 0;
    };

    void findNodes(const std::vector<FileNode*>& present, FileNode& root);
    void findGone(const std::vector<std::size_t>& rows, FileNode& root);
    void sumUp();

    SnapshotHeading m_base;
    NodePointer m_root;
    std::vector<SnapshotDiff> m_diffs;
    std::vector<FileNode*> m_nodes; ///< of each row
    std::int64_t m_net = 0;
    std::unordered_map<const FileNode*, Sums> m_sums;
};

} // namespace quorvane
