// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"
#include "RowModel.h"
#include "RowView.h"

#include <QProperty>

#include <functional>
#include <utility>
#include <vector>

namespace quorvane {

class AppState;

/// Rows that stand for nodes of one tree, which the model keeps alive. Main thread.
class NodeRowSource : public RowSource
{
    Q_OBJECT

public:
    using RowSource::RowSource;

    /// Shares ownership of the tree; absent for no row.
    virtual NodePointer node(const QModelIndex& index) const = 0;
    /// Invalid for a node without a row.
    virtual QModelIndex indexOf(const FileNode& node) const = 0;

    /// Adds to each row what its node is marked with, for example tags.
    using Mark = std::function<void(Row& row, const FileNode& node)>;
    void setMark(Mark mark) { m_mark = std::move(mark); }

protected:
    Row marked(Row row, const FileNode& node) const
    {
        if (m_mark) {
            m_mark(row, node);
        }
        return row;
    }

private:
    Mark m_mark;
};

/// A flat list of nodes.
class NodeListModel final : public NodeRowSource
{
    Q_OBJECT

public:
    /// Rows count from 0.
    using Describe = std::function<Row(FileNode& node, int row)>;

    NodeListModel(Describe describe, QObject* parent);

    /// owner shares ownership of the nodes' tree. Returns the owner of the nodes before, to be let
    /// go where that may take its time.
    NodePointer setNodes(const NodePointer& owner, std::vector<FileNode*> nodes);

    NodePointer node(const QModelIndex& index) const override;
    QModelIndex indexOf(const FileNode& node) const override;
    QModelIndex index(int row, int column = 0, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    Row row(const QModelIndex& index) const override;

private:
    Describe m_describe;
    NodePointer m_owner;
    std::vector<FileNode*> m_nodes;
};

/// A list of nodes in step with the selection of the model, with the node menu. Main thread.
class NodeRowView final : public RowView
{
    Q_OBJECT

public:
    /// What a click and Return do beside selecting.
    enum class Activation { select, openFolders };

    NodeRowView(AppState& state, NodeRowSource& model, const RowMetrics& metrics,
                Activation activation, QWidget* parent);

    /// Shows the selected node's row, opening the folders on the way to it. Nothing while hidden:
    /// it is done when the list comes on show.
    void showSelection();

protected:
    void showEvent(QShowEvent* event) override;

private:
    /// The node of a row; absent where the tree is no longer the one on show.
    NodePointer currentNode(const QModelIndex& index) const;

    AppState& m_state;
    NodeRowSource& m_nodes;
    std::vector<QPropertyNotifier> m_observers;
};

/// What the rows of nodes say to assistive technology: "box, folder, 1.2 MB, 34 files".
QString spokenNode(const FileNode& node, const QString& size);

} // namespace quorvane
