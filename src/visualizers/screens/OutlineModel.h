// SPDX-License-Identifier: MIT
#pragma once

#include "NodeRows.h"
#include "VisibleScanTree.h"

#include <functional>

namespace quorvane {

/// The visible part of a tree as rows that are made when they are shown: the model holds no copy of
/// the tree, a row is a pointer into it. Main thread.
class OutlineModel final : public NodeRowSource
{
    Q_OBJECT

public:
    using Describe = std::function<Row(const FileNode& node)>;

    OutlineModel(Describe describe, QObject* parent);

    /// Returns the outline before, whose tree may take its time to go.
    VisibleScanTree setOutline(VisibleScanTree outline);
    const VisibleScanTree& outline() const { return m_outline; }

    NodePointer node(const QModelIndex& index) const override;
    QModelIndex indexOf(const FileNode& node) const override;
    QModelIndex index(int row, int column = 0, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    bool hasChildren(const QModelIndex& parent = {}) const override;
    Row row(const QModelIndex& index) const override;

private:
    FileNode* folderOf(const QModelIndex& parent) const;

    Describe m_describe;
    VisibleScanTree m_outline;
};

} // namespace quorvane
