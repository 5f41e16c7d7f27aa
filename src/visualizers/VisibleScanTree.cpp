// SPDX-License-Identifier: MIT
#include "VisibleScanTree.h"

#include <algorithm>
#include <utility>

namespace quorvane {

VisibleScanTree::VisibleScanTree(NodePointer node, BloatKeys hiding)
    : m_node(std::move(node))
    , m_hiding(std::move(hiding))
{}

bool VisibleScanTree::hasChildren(const FileNode& node) const
{
    return node.isDirectory() && !node.visibleChildren(m_hiding).empty();
}

const std::vector<FileNode*>& VisibleScanTree::listOf(const FileNode& folder) const
{
    const auto [list, isNew] = m_lists.try_emplace(&folder);
    if (isNew) {
        for (FileNode& child : folder.visibleChildren(m_hiding)) {
            list->second.push_back(&child);
        }
    }
    return list->second;
}

std::size_t VisibleScanTree::childCount(const FileNode& folder) const
{
    return m_hiding.empty() ? folder.children().size() : listOf(folder).size();
}

FileNode& VisibleScanTree::child(const FileNode& folder, std::size_t row) const
{
    return m_hiding.empty() ? folder.children()[row] : *listOf(folder)[row];
}

std::size_t VisibleScanTree::rowOf(const FileNode& node) const
{
    const FileNode& folder = *node.parent();
    if (m_hiding.empty()) {
        return static_cast<std::size_t>(&node - folder.children().data());
    }
    // Order kept: the pointers ascend.
    const std::vector<FileNode*>& list = listOf(folder);
    return static_cast<std::size_t>(std::lower_bound(list.begin(), list.end(), &node) -
                                    list.begin());
}

bool VisibleScanTree::contains(const FileNode& node) const
{
    const FileNode* each = &node;
    while (each != nullptr && each != m_node.get() && !each->isBloatHidden(m_hiding)) {
        each = each->parent();
    }
    return m_node && each == m_node.get() && &node != each;
}

} // namespace quorvane
