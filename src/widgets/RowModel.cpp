// SPDX-License-Identifier: MIT
#include "RowModel.h"

#include <QHash>
#include <QMimeData>

#include <memory>
#include <utility>

namespace quorvane {

RowCell RowCell::number(const QString& text, int width)
{
    RowCell cell;
    cell.text = text;
    cell.width = width;
    cell.style = TextStyle::strong;
    cell.color = ThemeColor::text1;
    return cell;
}

RowCell RowCell::note(const QString& text, int width)
{
    RowCell cell;
    cell.text = text;
    cell.width = width;
    return cell;
}

RowAction RowAction::icon(int id, const QString& symbol, const QString& name)
{
    RowAction action;
    action.id = id;
    action.symbol = symbol;
    action.name = name;
    action.toolTip = name;
    return action;
}

Row Row::section(const QString& symbol, const QString& title, const QString& total)
{
    Row row;
    row.kind = RowKind::section;
    row.symbol = symbol;
    row.symbolColor = ThemeColor::text2;
    row.title = title;
    row.titleStyle = TextStyle::strong;
    row.cells = {RowCell::note(total, 0)};
    row.cells[0].style = TextStyle::body;
    return row;
}

Row Row::more(int id, const QString& text, ControlSize size)
{
    Row row;
    row.kind = RowKind::more;
    row.title = text;
    RowAction action;
    action.id = id;
    action.text = text;
    action.size = size;
    row.actions = {action};
    return row;
}

QString Row::describe() const
{
    if (!accessibleText.isEmpty()) {
        return accessibleText;
    }
    QStringList parts{number, title};
    for (const RowCell& cell : titleCells) {
        parts.push_back(cell.accessibleText.isEmpty() ? cell.text : cell.accessibleText);
    }
    for (const RowBadge& badge : badges) {
        parts.push_back(badge.text);
    }
    parts << detail << detailTail << path << command;
    for (const RowCell& cell : cells) {
        parts.push_back(cell.accessibleText.isEmpty() ? cell.text : cell.accessibleText);
        parts.push_back(cell.below);
    }
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

int RowSource::height(const QModelIndex&) const
{
    return 0;
}

RowKind RowSource::kind(const QModelIndex&) const
{
    return RowKind::item;
}

int RowSource::columnCount(const QModelIndex&) const
{
    return 1;
}

QVariant RowSource::data(const QModelIndex& index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    switch (role) {
    case rowrole::row:
        return QVariant::fromValue(row(index));
    case rowrole::height: {
        const int own = height(index);
        return own > 0 ? QVariant(own) : QVariant();
    }
    case Qt::DisplayRole:
        return row(index).title;
    case Qt::AccessibleTextRole:
        return row(index).describe();
    default:
        return {};
    }
}

Qt::ItemFlags RowSource::flags(const QModelIndex& index) const
{
    if (!index.isValid() || kind(index) == RowKind::section) {
        return Qt::NoItemFlags;
    }
    const Qt::ItemFlags usual = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    return m_drag ? usual | Qt::ItemIsDragEnabled : usual;
}

QMimeData* RowSource::mimeData(const QModelIndexList& indexes) const
{
    return m_drag ? m_drag(indexes) : nullptr;
}

void RowSource::refreshRows()
{
    const int count = rowCount();
    if (count > 0) {
        Q_EMIT dataChanged(index(0, 0), index(count - 1, 0));
    }
}

void RowModel::setRows(int count, Provide provide, Keys keys)
{
    const bool keepsPlace = !keys.empty() && !m_keys.empty();
    if (keepsPlace) {
        Q_EMIT layoutAboutToBeChanged();
        moveHeld(keys);
    } else {
        beginResetModel();
    }
    m_count = count;
    m_provide = std::move(provide);
    m_keys = std::move(keys);
    if (keepsPlace) {
        Q_EMIT layoutChanged();
    } else {
        endResetModel();
    }
}

/// Sends the indexes that somebody holds to where their rows are now.
void RowModel::moveHeld(const Keys& keys)
{
    const QModelIndexList held = persistentIndexList();
    QHash<quint64, int> place; // of now, by the key
    for (const QModelIndex& index : held) {
        place.insert(m_keys[static_cast<std::size_t>(index.row())], -1);
    }
    qsizetype missing = place.size();
    for (std::size_t row = 0; row < keys.size() && missing > 0; ++row) {
        const auto found = place.find(keys[row]);
        if (found != place.end()) {
            *found = static_cast<int>(row);
            --missing;
        }
    }
    QModelIndexList moved;
    for (const QModelIndex& index : held) {
        const int row = place.value(m_keys[static_cast<std::size_t>(index.row())], -1);
        moved.push_back(row < 0 ? QModelIndex() : createIndex(row, 0));
    }
    changePersistentIndexList(held, moved);
}

void RowModel::setRows(std::vector<Row> rows, Keys keys)
{
    const auto held = std::make_shared<const std::vector<Row>>(std::move(rows));
    m_kind = [held](int row) { return (*held)[static_cast<std::size_t>(row)].kind; };
    setRows(
        static_cast<int>(held->size()),
        [held](int row) { return (*held)[static_cast<std::size_t>(row)]; }, std::move(keys));
}

QModelIndex RowModel::index(int row, int column, const QModelIndex& parent) const
{
    return hasIndex(row, column, parent) ? createIndex(row, column) : QModelIndex();
}

QModelIndex RowModel::parent(const QModelIndex&) const
{
    return {};
}

int RowModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_count;
}

Row RowModel::row(const QModelIndex& index) const
{
    return m_provide(index.row());
}

int RowModel::height(const QModelIndex& index) const
{
    return m_height ? m_height(index.row()) : 0;
}

RowKind RowModel::kind(const QModelIndex& index) const
{
    return m_kind ? m_kind(index.row()) : RowSource::kind(index);
}

/// Spares a view the question for rows below each row.
Qt::ItemFlags RowModel::flags(const QModelIndex& index) const
{
    return RowSource::flags(index) | Qt::ItemNeverHasChildren;
}

} // namespace quorvane
