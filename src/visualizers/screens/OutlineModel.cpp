// SPDX-License-Identifier: MIT
#include "OutlineModel.h"

#include <utility>

namespace quorvane {
namespace {

FileNode* nodeAt(const QModelIndex& index)
{
    return static_cast<FileNode*>(index.internalPointer());
}

} // namespace

OutlineModel::OutlineModel(Describe describe, QObject* parent)
    : NodeRowSource(parent)
    , m_describe(std::move(describe))
{}

VisibleScanTree OutlineModel::setOutline(VisibleScanTree outline)
{
    beginResetModel();
    VisibleScanTree old = std::exchange(m_outline, std::move(outline));
    endResetModel();
    return old;
}

NodePointer OutlineModel::node(const QModelIndex& index) const
{
    return index.isValid() ? NodePointer(m_outline.node(), nodeAt(index)) : nullptr;
}

QModelIndex OutlineModel::indexOf(const FileNode& wanted) const
{
    if (!m_outline.contains(wanted)) {
        return {};
    }
    const std::size_t row = m_outline.rowOf(wanted);
    FileNode& own = m_outline.child(*wanted.parent(), row);
    return createIndex(static_cast<int>(row), 0, &own);
}

FileNode* OutlineModel::folderOf(const QModelIndex& parent) const
{
    return parent.isValid() ? nodeAt(parent) : m_outline.node().get();
}

QModelIndex OutlineModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent)) {
        return {};
    }
    return createIndex(row, column,
                       &m_outline.child(*folderOf(parent), static_cast<std::size_t>(row)));
}

QModelIndex OutlineModel::parent(const QModelIndex& index) const
{
    FileNode* const folder = index.isValid() ? nodeAt(index)->parent() : nullptr;
    if (folder == nullptr || folder == m_outline.node().get()) {
        return {};
    }
    return createIndex(static_cast<int>(m_outline.rowOf(*folder)), 0, folder);
}

int OutlineModel::rowCount(const QModelIndex& parent) const
{
    const FileNode* const folder = folderOf(parent);
    return folder == nullptr || parent.column() > 0
               ? 0
               : static_cast<int>(m_outline.childCount(*folder));
}

bool OutlineModel::hasChildren(const QModelIndex& parent) const
{
    const FileNode* const folder = folderOf(parent);
    return folder != nullptr && parent.column() <= 0 && m_outline.hasChildren(*folder);
}

Row OutlineModel::row(const QModelIndex& index) const
{
    const FileNode& node = *nodeAt(index);
    return marked(m_describe(node), node);
}

} // namespace quorvane
