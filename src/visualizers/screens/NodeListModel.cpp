// SPDX-License-Identifier: MIT
#include "NodeListModel.h"

#include "AppState.h"
#include "ToolTip.h"

#include <algorithm>
#include <utility>

namespace quorvane {

void NodeListModel::setNodes(const NodePointer& owner, std::vector<FileNode*> nodes)
{
    beginResetModel();
    m_owner = owner;
    m_nodes = std::move(nodes);
    endResetModel();
}

NodePointer NodeListModel::node(const QModelIndex& index) const
{
    return index.isValid() ? NodePointer(m_owner, m_nodes[static_cast<std::size_t>(index.row())])
                           : nullptr;
}

int NodeListModel::rowOf(const FileNode* node) const
{
    const auto found = std::find(m_nodes.begin(), m_nodes.end(), node);
    return found == m_nodes.end() ? -1 : static_cast<int>(found - m_nodes.begin());
}

int NodeListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_nodes.size());
}

QVariant NodeListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const FileNode& node = *m_nodes[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return node.displayName();
    case Qt::AccessibleTextRole:
        return m_describe ? m_describe(node, index.row()) : node.displayName();
    case Qt::ToolTipRole:
        return plainToolTip(AppState::displayPath(node.path()));
    default:
        return {};
    }
}

} // namespace quorvane
