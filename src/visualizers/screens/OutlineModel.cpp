// SPDX-License-Identifier: MIT
#include "OutlineModel.h"

#include "AppState.h"
#include "ListRow.h"
#include "Symbols.h"
#include "ToolTip.h"

#include <utility>

namespace quorvane {
namespace {

QString titleOf(OutlineModel::Field field)
{
    switch (field) {
    case OutlineModel::Field::name:
    case OutlineModel::Field::folderName:
        return QStringLiteral("Name");
    case OutlineModel::Field::size:
        return QStringLiteral("Size");
    case OutlineModel::Field::sizeOnDisk:
        return QStringLiteral("Size on disk");
    case OutlineModel::Field::modified:
        return QStringLiteral("Modified");
    case OutlineModel::Field::files:
        return QStringLiteral("Files");
    }
    return {};
}

QIcon iconOf(const FileNode& node, OutlineModel::Field field)
{
    if (field == OutlineModel::Field::folderName) {
        return node.isStagedForTrash()
                   ? symbolIcon(QStringLiteral("trash.fill"), ThemeColor::redText)
                   : symbolIcon(QStringLiteral("folder"), ThemeColor::accentText);
    }
    return symbolIcon(ListRow::iconName(node),
                      node.isDirectory() ? ThemeColor::accentText : ThemeColor::text2);
}

bool isNameField(OutlineModel::Field field)
{
    return field == OutlineModel::Field::name || field == OutlineModel::Field::folderName;
}

} // namespace

OutlineModel::OutlineModel(std::vector<Field> fields, QObject* parent)
    : QAbstractItemModel(parent)
    , m_fields(std::move(fields))
{}

void OutlineModel::setOutline(VisibleScanTree outline)
{
    beginResetModel();
    m_outline = std::move(outline);
    endResetModel();
}

FileNode* OutlineModel::node(const QModelIndex& index) const
{
    return static_cast<FileNode*>(index.internalPointer());
}

NodePointer OutlineModel::sharedNode(const QModelIndex& index) const
{
    return index.isValid() ? NodePointer(m_outline.node(), node(index)) : nullptr;
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
    return parent.isValid() ? node(parent) : m_outline.node().get();
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
    FileNode* const folder = index.isValid() ? node(index)->parent() : nullptr;
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

int OutlineModel::columnCount(const QModelIndex&) const
{
    return static_cast<int>(m_fields.size());
}

bool OutlineModel::hasChildren(const QModelIndex& parent) const
{
    const FileNode* const folder = folderOf(parent);
    return folder != nullptr && parent.column() <= 0 && m_outline.hasChildren(*folder);
}

QString OutlineModel::textOf(const FileNode& node, Field field) const
{
    switch (field) {
    case Field::name:
    case Field::folderName:
        return node.displayName();
    case Field::size:
        return node.formattedBytes();
    case Field::sizeOnDisk:
        return node.formattedBytesOnDisk();
    case Field::modified:
        return ListRow::dateAndTimeText(node.dateModified());
    case Field::files:
        return node.isDirectory() ? QString::number(node.fileCount()) : QString();
    }
    return {};
}

QVariant OutlineModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const Field field = m_fields[static_cast<std::size_t>(index.column())];
    const FileNode& row = *node(index);
    switch (role) {
    case Qt::DisplayRole:
        return textOf(row, field);
    case Qt::DecorationRole:
        return isNameField(field) ? QVariant(iconOf(row, field)) : QVariant();
    case Qt::TextAlignmentRole:
        return isNameField(field) ? QVariant() : QVariant(int(Qt::AlignRight | Qt::AlignVCenter));
    case Qt::ToolTipRole:
        return isNameField(field) ? QVariant(plainToolTip(AppState::displayPath(row.path())))
                                  : QVariant();
    default:
        return {};
    }
}

QVariant OutlineModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal) {
        return {};
    }
    const Field field = m_fields[static_cast<std::size_t>(section)];
    if (role == Qt::DisplayRole) {
        return titleOf(field);
    }
    if (role == Qt::TextAlignmentRole) {
        return int((isNameField(field) ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    }
    return {};
}

} // namespace quorvane
