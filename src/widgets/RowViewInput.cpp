// SPDX-License-Identifier: MIT
#include "Painting.h"
#include "RowAccessibility.h"
#include "RowView.h"
#include "ToolTip.h"

#include <QContextMenuEvent>
#include <QCursor>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>
#include <utility>

namespace quorvane {
namespace {

bool isPressKey(const QKeyEvent& event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter ||
           event.key() == Qt::Key_Space || event.key() == Qt::Key_Select;
}

bool isMoveKey(int key)
{
    return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp ||
           key == Qt::Key_PageDown || key == Qt::Key_Home || key == Qt::Key_End;
}

std::ptrdiff_t placeOf(const std::vector<RowPart>& parts, const std::optional<RowPart>& part)
{
    return part ? std::find(parts.begin(), parts.end(), *part) - parts.begin() : -1;
}

} // namespace

void RowView::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    // Not QTreeView's: it counts cells where assistive technology is told rows.
    QAbstractItemView::currentChanged(current, previous);
    if (m_part) {
        // From button to button of rows that have the same ones, else to the row.
        const std::vector<RowPart> now = partsOf(rowOf(current));
        const bool isThere = std::find(now.begin(), now.end(), *m_part) != now.end();
        if (!isThere || current.parent() != previous.parent()) {
            m_part.reset();
        }
    }
    viewport()->update();
    announceRowFocus(*this);
}

void RowView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected)
{
    QAbstractItemView::selectionChanged(selected, deselected);
    if (!m_isFollowing && !selected.isEmpty()) {
        Q_EMIT selectionMoved(selected.indexes().front());
    }
}

bool RowView::moveAlongRow(int step)
{
    if (!currentIndex().isValid()) {
        return false;
    }
    const std::vector<RowPart> parts = partsOf(rowOf(currentIndex()));
    const std::ptrdiff_t place = placeOf(parts, m_part) + step;
    if (place < -1 || place >= std::ssize(parts)) {
        return false;
    }
    m_part = place < 0 ? std::nullopt : std::optional(parts[static_cast<std::size_t>(place)]);
    viewport()->update();
    announceRowFocus(*this);
    return true;
}

void RowView::moveRight()
{
    const QModelIndex index = currentIndex();
    if (!m_part && model()->hasChildren(index) && !isExpanded(index)) {
        toggle(index);
    } else if (!moveAlongRow(1) && isExpanded(index)) {
        setCurrentIndex(model()->index(0, 0, index));
    }
}

void RowView::moveLeft()
{
    const QModelIndex index = currentIndex();
    if (moveAlongRow(-1)) {
        return;
    }
    if (isExpanded(index)) {
        toggle(index);
    } else if (index.parent().isValid()) {
        setCurrentIndex(index.parent());
    }
}

/// Whether the key pressed something.
bool RowView::pressKey(const QKeyEvent& event)
{
    const QModelIndex index = currentIndex();
    const bool isSpace = event.key() == Qt::Key_Space;
    const Row row = rowOf(index);
    std::optional<RowPart> part = m_part;
    if (!part && isSpace && (row.isChecked || row.isOn)) {
        part = RowPart{RowAction::toggled, 0};
    }
    const bool isRowPress = !part && row.kind == RowKind::item;
    // Space on a row that neither opens nor checks belongs to the screen around: a preview.
    if (isRowPress && isSpace && !(m_rowsToggle && model()->hasChildren(index))) {
        return false;
    }
    if (!event.isAutoRepeat()) {
        press(index, part);
    }
    return true;
}

void RowView::keyPressEvent(QKeyEvent* event)
{
    const bool isPlain = !(event->modifiers() & ~Qt::KeypadModifier);
    m_showsFocus = true;
    viewport()->update();
    if (!isPlain || model()->rowCount() == 0) {
        if (isMoveKey(event->key())) {
            QTreeView::keyPressEvent(event);
        } else {
            event->ignore();
        }
        return;
    }
    if (!currentIndex().isValid()) {
        // The first key shows where it stands, and goes and presses nothing.
        const QModelIndex first = moveCursor(MoveHome, Qt::NoModifier);
        setCurrentIndex(first);
        if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down || isPressKey(*event) ||
            !first.isValid()) {
            return;
        }
    }
    switch (event->key()) {
    case Qt::Key_Right:
        moveRight();
        return;
    case Qt::Key_Left:
        moveLeft();
        return;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        Q_EMIT removeRequested(currentIndex());
        return;
    default:
        break;
    }
    if (event->key() == Qt::Key_Asterisk) {
        event->ignore(); // it would open all levels of a tree of any size
    } else if (isPressKey(*event)) {
        event->setAccepted(pressKey(*event));
    } else {
        QTreeView::keyPressEvent(event);
    }
}

bool RowView::focusNextPrevChild(bool next)
{
    m_showsFocus = true;
    viewport()->update();
    return moveAlongRow(next ? 1 : -1) || QTreeView::focusNextPrevChild(next);
}

void RowView::focusInEvent(QFocusEvent* event)
{
    const bool isTab = event->reason() == Qt::TabFocusReason;
    const bool isBacktab = event->reason() == Qt::BacktabFocusReason;
    // Not QTreeView's: it makes a row current that nobody has gone to.
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
    if (!isTab && !isBacktab) {
        return;
    }
    m_showsFocus = true;
    if (!currentIndex().isValid()) {
        const QModelIndex first = moveCursor(MoveHome, Qt::NoModifier);
        selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
    }
    const std::vector<RowPart> parts = partsOf(rowOf(currentIndex()));
    m_part = isBacktab && !parts.empty() ? std::optional(parts.back()) : std::nullopt;
    viewport()->update();
    announceRowFocus(*this);
}

RowView::Place RowView::placeAt(const QPoint& position) const
{
    const QModelIndex index =
        viewport()->rect().contains(position) ? indexAt(position) : QModelIndex();
    if (!index.isValid()) {
        return {};
    }
    if (rowOf(index).kind == RowKind::more) {
        return partRect(index, {}).contains(position)
                   ? Place{index, RowPart{rowOf(index).actions[0].id, 0}}
                   : Place{};
    }
    return {index, partAt(index, position)};
}

void RowView::setHovered(const Place& place)
{
    if (!(place == m_hovered)) {
        m_hovered = place;
        viewport()->update();
    }
}

void RowView::updateHovered()
{
    setHovered(viewport()->underMouse() ? placeAt(viewport()->mapFromGlobal(QCursor::pos()))
                                        : Place{});
}

bool RowView::isOnChevron(const QModelIndex& index, const QPoint& position) const
{
    const QRect chevron = placesOf(index).chevron;
    return !chevron.isEmpty() && !m_rowsToggle &&
           chevron.adjusted(-m_metrics.chevronGap, 0, m_metrics.chevronGap / 2, 0)
               .contains(position);
}

void RowView::mouseMoveEvent(QMouseEvent* event)
{
    setHovered(placeAt(event->position().toPoint()));
    if (!m_pressed.part) {
        QTreeView::mouseMoveEvent(event);
    }
}

void RowView::mousePressEvent(QMouseEvent* event)
{
    const QPoint position = event->position().toPoint();
    const Place place = placeAt(position);
    m_showsFocus = false;
    setHovered(place);
    if (event->button() != Qt::LeftButton) {
        if (place.index.isValid()) {
            QTreeView::mousePressEvent(event);
        }
        return;
    }
    m_pressed = place;
    if (!place.index.isValid()) {
        return;
    }
    m_part = place.part;
    if (place.part || isOnChevron(place.index, position)) {
        // Not scrolled into sight: what is pressed stays under the pointer until it is let go.
        const bool scrolls = hasAutoScroll();
        setAutoScroll(false);
        selectionModel()->setCurrentIndex(place.index, QItemSelectionModel::NoUpdate);
        setAutoScroll(scrolls);
        m_part = place.part;
        viewport()->update();
    } else {
        QTreeView::mousePressEvent(event);
        m_part.reset();
    }
}

void RowView::mouseReleaseEvent(QMouseEvent* event)
{
    const Place pressed = std::exchange(m_pressed, {});
    const QPoint position = event->position().toPoint();
    const bool isDragging = state() == DraggingState;
    viewport()->update();
    if (!pressed.part) {
        QTreeView::mouseReleaseEvent(event);
    }
    if (event->button() != Qt::LeftButton || isDragging || !pressed.index.isValid() ||
        !(placeAt(position) == pressed)) {
        return;
    }
    if (!pressed.part && isOnChevron(pressed.index, position)) {
        toggle(pressed.index);
    } else if (pressed.part || !m_activatesOnDoubleClick) {
        press(pressed.index, pressed.part);
    }
}

void RowView::mouseDoubleClickEvent(QMouseEvent* event)
{
    const Place place = placeAt(event->position().toPoint());
    const bool isOpening = m_activatesOnDoubleClick && event->button() == Qt::LeftButton &&
                           place.index.isValid() && !place.part;
    // The second press of a double click is a press like any other.
    mousePressEvent(event);
    if (isOpening && !isOnChevron(place.index, event->position().toPoint())) {
        press(place.index, {});
    }
}

void RowView::contextMenuEvent(QContextMenuEvent* event)
{
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = isByKey ? currentIndex() : indexAt(event->pos());
    if (index.isValid()) {
        const QPoint place =
            isByKey ? viewport()->mapToGlobal(visualRect(index).center()) : event->globalPos();
        Q_EMIT contextMenuRequested(index, place);
    }
}

QString RowView::rowToolTip(const Row& row, const RowPlaces& places, const QPoint& position) const
{
    for (std::size_t i = 0; i < places.badges.size(); ++i) {
        if (places.badges[i].contains(position) && !row.badges[i].toolTip.isEmpty()) {
            return row.badges[i].toolTip;
        }
    }
    for (std::size_t i = 0; i < places.cells.size(); ++i) {
        const RowCell& cell = row.cells[i];
        if (!places.cells[i].contains(position)) {
            continue;
        }
        const bool isShortened = textWidth(cell.style, cell.text) > places.cells[i].width();
        if (!cell.toolTip.isEmpty() || isShortened) {
            return cell.toolTip.isEmpty() ? cell.text : cell.toolTip;
        }
    }
    if (!row.toolTip.isEmpty() || !row.path.isEmpty()) {
        return row.toolTip.isEmpty() ? row.path : row.toolTip;
    }
    const bool isShortened = textWidth(row.titleStyle, row.title) > places.title.width();
    return isShortened && row.kind == RowKind::item ? row.title : QString();
}

QString RowView::toolTipAt(const QPoint& position) const
{
    const QModelIndex index = indexAt(position);
    if (!index.isValid()) {
        return {};
    }
    const Row row = rowOf(index);
    const Place place = placeAt(position);
    if (place.part && place.part->id >= 0) {
        const RowAction& action = row.actions[static_cast<std::size_t>(place.part->place)];
        return action.toolTip.isEmpty() && action.isIcon() ? action.name : action.toolTip;
    }
    return place.part ? QString() : rowToolTip(row, placesOf(index), position);
}

bool RowView::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::Leave) {
        setHovered({});
    } else if (event->type() == QEvent::ToolTip) {
        const auto* const help = static_cast<QHelpEvent*>(event);
        showPlainToolTip(help->globalPos(), toolTipAt(help->pos()), viewport());
        return true;
    }
    return QTreeView::viewportEvent(event);
}

void RowView::scrollContentsBy(int dx, int dy)
{
    QTreeView::scrollContentsBy(dx, dy);
    updateHovered();
}

} // namespace quorvane
