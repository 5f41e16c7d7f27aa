// SPDX-License-Identifier: MIT
#pragma once

#include "BloatFilter.h"
#include "FileNode.h"

#include <cstddef>
#include <unordered_map>
#include <vector>

namespace quorvane {

/// What an outline shows of a tree: a folder's rows are its visible children in stored order. Holds
/// nothing for a folder that was never asked for, and nothing at all while no family is hidden: a
/// folder's children lie side by side, so that a row is their number. One thread at a time.
class VisibleScanTree
{
public:
    /// An outline of nothing.
    VisibleScanTree() = default;
    VisibleScanTree(NodePointer node, BloatKeys hiding);

    /// The folder whose rows are the top level; absent for an outline of nothing.
    const NodePointer& node() const { return m_node; }

    /// Whether a node opens to anything. Builds no list.
    bool hasChildren(const FileNode& node) const;
    std::size_t childCount(const FileNode& folder) const;
    /// row is below childCount().
    FileNode& child(const FileNode& folder, std::size_t row) const;
    /// The row of a visible node in its folder.
    std::size_t rowOf(const FileNode& node) const;
    /// Whether a node has a row: it lies below node(), and nothing on the way is hidden.
    bool contains(const FileNode& node) const;

private:
    const std::vector<FileNode*>& listOf(const FileNode& folder) const;

    NodePointer m_node;
    BloatKeys m_hiding;
    /// Rows of the folders that were opened while something is hidden.
    mutable std::unordered_map<const FileNode*, std::vector<FileNode*>> m_lists;
};

} // namespace quorvane
