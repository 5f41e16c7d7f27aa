// SPDX-License-Identifier: MIT
#pragma once

#include "VisibleScanTree.h"

#include <QAbstractItemModel>

#include <vector>

namespace quorvane {

/// The visible part of a tree as rows that are made when they are shown: the model holds no copy of
/// the tree, a row is a pointer into it. Main thread.
class OutlineModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    /// What a column shows.
    enum class Field { name, folderName, size, sizeOnDisk, modified, files };

    OutlineModel(std::vector<Field> fields, QObject* parent);

    void setOutline(VisibleScanTree outline);
    const VisibleScanTree& outline() const { return m_outline; }
    /// Absent for no row.
    FileNode* node(const QModelIndex& index) const;
    /// Shares ownership of the tree.
    NodePointer sharedNode(const QModelIndex& index) const;
    /// The first column of a node's row; invalid for a node without one.
    QModelIndex indexOf(const FileNode& node) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    bool hasChildren(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    FileNode* folderOf(const QModelIndex& parent) const;
    QString textOf(const FileNode& node, Field field) const;

    std::vector<Field> m_fields;
    VisibleScanTree m_outline;
};

} // namespace quorvane
