// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"

#include <QAbstractListModel>

#include <vector>

namespace quorvane {

/// A flat list of nodes of one tree, which it keeps alive. Main thread.
class NodeListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    /// owner shares ownership of the nodes' tree.
    void setNodes(const NodePointer& owner, std::vector<FileNode*> nodes);
    NodePointer node(const QModelIndex& index) const;
    /// The row of a node; -1 when it has none.
    int rowOf(const FileNode* node) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    /// The name alone: what is drawn beside it is the delegate's.
    QVariant data(const QModelIndex& index, int role) const override;

private:
    NodePointer m_owner;
    std::vector<FileNode*> m_nodes;
};

} // namespace quorvane
