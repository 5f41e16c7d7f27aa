// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"

#include <QAbstractListModel>

#include <functional>
#include <utility>
#include <vector>

namespace quorvane {

/// A flat list of nodes of one tree, which it keeps alive. Main thread.
class NodeListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    /// A row in words, for assistive technology. Rows count from 0.
    using Describe = std::function<QString(const FileNode& node, int row)>;

    using QAbstractListModel::QAbstractListModel;

    /// The name alone unless set.
    void setDescribe(Describe describe) { m_describe = std::move(describe); }

    /// owner shares ownership of the nodes' tree.
    void setNodes(const NodePointer& owner, std::vector<FileNode*> nodes);
    NodePointer node(const QModelIndex& index) const;
    /// The row of a node; -1 when it has none.
    int rowOf(const FileNode* node) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    /// The name, and all that the row tells as its accessible text: how it is drawn is the
    /// delegate's.
    QVariant data(const QModelIndex& index, int role) const override;

private:
    Describe m_describe;
    NodePointer m_owner;
    std::vector<FileNode*> m_nodes;
};

} // namespace quorvane
