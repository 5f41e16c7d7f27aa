// SPDX-License-Identifier: MIT
#include "NodeRows.h"

#include "AppState.h"
#include "NodeContextMenuModifier.h"
#include "TagDots.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace quorvane {

namespace {

/// The tags of a matched file stand behind its name.
void addTags(Row& row, const std::vector<TagDot>& dots)
{
    for (const TagDot& dot : dots) {
        RowCell cell = RowCell::note(dot.name, 0);
        cell.alignment = Qt::AlignLeft;
        cell.dot = dot.color;
        row.titleCells.push_back(std::move(cell));
        if (!row.accessibleText.isEmpty()) {
            row.accessibleText += QCoreApplication::translate("NodeRows", ", tag %1").arg(dot.name);
        }
    }
}

} // namespace

NodeListModel::NodeListModel(Describe describe, QObject* parent)
    : NodeRowSource(parent)
    , m_describe(std::move(describe))
{}

NodePointer NodeListModel::setNodes(const NodePointer& owner, std::vector<FileNode*> nodes)
{
    beginResetModel();
    NodePointer old = std::exchange(m_owner, owner);
    m_nodes = std::move(nodes);
    endResetModel();
    return old;
}

NodePointer NodeListModel::node(const QModelIndex& index) const
{
    return index.isValid() ? NodePointer(m_owner, m_nodes[static_cast<std::size_t>(index.row())])
                           : nullptr;
}

QModelIndex NodeListModel::indexOf(const FileNode& node) const
{
    const auto found = std::find(m_nodes.begin(), m_nodes.end(), &node);
    return found == m_nodes.end() ? QModelIndex()
                                  : createIndex(static_cast<int>(found - m_nodes.begin()), 0);
}

QModelIndex NodeListModel::index(int row, int column, const QModelIndex& parent) const
{
    return hasIndex(row, column, parent) ? createIndex(row, column) : QModelIndex();
}

QModelIndex NodeListModel::parent(const QModelIndex&) const
{
    return {};
}

int NodeListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_nodes.size());
}

Row NodeListModel::row(const QModelIndex& index) const
{
    FileNode& node = *m_nodes[static_cast<std::size_t>(index.row())];
    return marked(m_describe(node, index.row()), node);
}

NodeRowView::NodeRowView(AppState& state, NodeRowSource& model, const RowMetrics& metrics,
                         Activation activation, QWidget* parent)
    : RowView(model, metrics, parent)
    , m_state(state)
    , m_nodes(model)
{
    connect(this, &RowView::rowActivated, this, [this, activation](const QModelIndex& index) {
        const NodePointer node = currentNode(index);
        if (!node) {
            return;
        }
        m_state.select(node);
        if (activation == Activation::openFolders && node->isDirectory()) {
            m_state.focus(node);
        }
    });
    connect(this, &RowView::selectionMoved, this, [this](const QModelIndex& index) {
        if (const NodePointer node = currentNode(index)) {
            m_state.select(node);
        }
    });
    connect(this, &RowView::contextMenuRequested, this,
            [this](const QModelIndex& index, const QPoint& place) {
                NodeContextMenuModifier{m_state, currentNode(index)}.popUp(*this, place);
            });
    connect(&model, &QAbstractItemModel::modelReset, this, [this] { showSelection(); });
    // The view's selection model may drop what has just been selected as it takes over the reset.
    connect(
        &model, &QAbstractItemModel::modelReset, this, [this] { showSelection(); },
        Qt::QueuedConnection);
    m_observers.push_back(m_state.selectedNode.addNotifier([this] { showSelection(); }));
    m_observers.push_back(m_state.stagedNodes.addNotifier([this] { m_nodes.refreshRows(); }));
    model.setMark(
        [&state](Row& row, const FileNode& node) { addTags(row, tagDots(state.tagsOf(node))); });
    m_observers.push_back(m_state.tagResults.addNotifier([this] { m_nodes.refreshRows(); }));
}

NodePointer NodeRowView::currentNode(const QModelIndex& index) const
{
    const NodePointer node = m_nodes.node(index);
    const NodePointer root = m_state.rootNode.value();
    const bool isOfTree = node && root && !node.owner_before(root) && !root.owner_before(node);
    return isOfTree ? node : nullptr;
}

void NodeRowView::showSelection()
{
    if (isVisible()) {
        const NodePointer selected = m_state.selectedNode.value();
        select(selected ? m_nodes.indexOf(*selected) : QModelIndex());
    }
}

void NodeRowView::showEvent(QShowEvent* event)
{
    RowView::showEvent(event);
    showSelection();
}

QString spokenNode(const FileNode& node, const QString& size)
{
    const auto tr = [](const char* text) { return QCoreApplication::translate("NodeRows", text); };
    return node.isDirectory()
               ? tr("%1, folder, %2, %3 files").arg(node.displayName(), size).arg(node.fileCount())
               : tr("%1, %2").arg(node.displayName(), size);
}

} // namespace quorvane
