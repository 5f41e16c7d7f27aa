// SPDX-License-Identifier: MIT
#include "DuplicatesList.h"

#include "DuplicatesAccessibility.h"
#include "ToolTip.h"

#include <QCursor>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace quorvane {
namespace {

using Kind = DuplicateRow::Kind;

bool isPressKey(const QKeyEvent& event)
{
    const bool isKey = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter ||
                       event.key() == Qt::Key_Space || event.key() == Qt::Key_Select;
    return isKey && !event.isAutoRepeat();
}

} // namespace

void DuplicatesList::setCurrent(const DuplicatePlace& place)
{
    m_current = place;
    const int top = m_rows.top(place.row);
    const int bottom = top + DuplicateRows::heightOf(place.row);
    QScrollBar& bar = *verticalScrollBar();
    if (top < bar.value()) {
        bar.setValue(top);
    } else if (bottom > bar.value() + viewport()->height()) {
        bar.setValue(bottom - viewport()->height());
    }
    viewport()->update();
    if (hasFocus()) {
        announceDuplicateFocus(*this);
    }
}

void DuplicatesList::moveTo(int index)
{
    const int last = m_rows.count() - 1;
    const std::optional<DuplicateRow> row = m_rows.at(std::clamp(index, 0, std::max(0, last)));
    if (!row) {
        return;
    }
    // From button to button of rows of one kind, else to the row.
    const bool isSameKind = m_current && m_current->row.kind == row->kind;
    setCurrent({*row, isSameKind ? m_current->part : 0});
}

void DuplicatesList::moveBy(int rows)
{
    moveTo(m_current ? m_rows.indexOf(m_current->row) + rows : 0);
}

bool DuplicatesList::moveAlongRow(int step)
{
    if (!m_current) {
        return false;
    }
    const int part = m_current->part + step;
    if (part < 0 || part >= partCount(m_current->row.kind)) {
        return false;
    }
    setCurrent({m_current->row, part});
    return true;
}

void DuplicatesList::moveRight()
{
    const DuplicateRow row = m_current->row;
    if (row.kind == Kind::group && m_current->part == 0 && !m_rows.isExpanded(row.group)) {
        toggle(row.group);
    } else {
        moveAlongRow(1);
    }
}

void DuplicatesList::moveLeft()
{
    const DuplicateRow row = m_current->row;
    if (moveAlongRow(-1)) {
        return;
    }
    if (row.kind == Kind::group && m_rows.isExpanded(row.group)) {
        toggle(row.group);
    } else if (row.kind == Kind::member || row.kind == Kind::moreMembers) {
        setCurrent({{Kind::group, row.group, 0}, 0});
    }
}

bool DuplicatesList::handleMoveKey(int key)
{
    const int page = std::max(1, viewport()->height() / DuplicateRows::groupHeight - 1);
    switch (key) {
    case Qt::Key_Up:
        moveBy(-1);
        return true;
    case Qt::Key_Down:
        moveBy(1);
        return true;
    case Qt::Key_PageUp:
        moveBy(-page);
        return true;
    case Qt::Key_PageDown:
        moveBy(page);
        return true;
    case Qt::Key_Home:
        moveTo(0);
        return true;
    case Qt::Key_End:
        moveTo(m_rows.count() - 1);
        return true;
    case Qt::Key_Right:
        moveRight();
        return true;
    case Qt::Key_Left:
        moveLeft();
        return true;
    default:
        return false;
    }
}

void DuplicatesList::keyPressEvent(QKeyEvent* event)
{
    const bool isPlain = !(event->modifiers() & ~Qt::KeypadModifier);
    if (!isPlain || m_rows.count() == 0) {
        QAbstractScrollArea::keyPressEvent(event);
        return;
    }
    m_showsFocus = true;
    if (!m_current) {
        moveTo(0);
        if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down) {
            return;
        }
    }
    if (handleMoveKey(event->key())) {
        return;
    }
    if (isPressKey(*event)) {
        activate(*m_current);
        return;
    }
    event->ignore();
}

bool DuplicatesList::focusNextPrevChild(bool next)
{
    m_showsFocus = true;
    return moveAlongRow(next ? 1 : -1) || QAbstractScrollArea::focusNextPrevChild(next);
}

void DuplicatesList::focusInEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusInEvent(event);
    const bool isTab = event->reason() == Qt::TabFocusReason;
    const bool isBacktab = event->reason() == Qt::BacktabFocusReason;
    if (isTab || isBacktab) {
        m_showsFocus = true;
        if (!m_current) {
            moveTo(0);
        }
        if (m_current) {
            setCurrent({m_current->row, isTab ? 0 : partCount(m_current->row.kind) - 1});
        }
    }
    viewport()->update();
}

void DuplicatesList::focusOutEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

std::optional<DuplicatePlace> DuplicatesList::placeAt(const QPoint& position) const
{
    if (!viewport()->rect().contains(position)) {
        return std::nullopt;
    }
    const std::optional<DuplicateRow> row =
        m_rows.rowAt(position.y() + verticalScrollBar()->value());
    // The rows of a group that is closing are still drawn, and gone for everything else.
    const bool isThere = row && m_rows.contains(*row);
    const int part = isThere ? m_painter.partAt(*row, rowRect(*row), position) : -1;
    return part < 0 ? std::nullopt : std::optional(DuplicatePlace{*row, part});
}

void DuplicatesList::setHovered(const std::optional<DuplicatePlace>& place)
{
    if (place != m_hovered) {
        m_hovered = place;
        viewport()->update();
    }
}

void DuplicatesList::updateHovered()
{
    setHovered(viewport()->underMouse() ? placeAt(viewport()->mapFromGlobal(QCursor::pos()))
                                        : std::nullopt);
}

void DuplicatesList::mouseMoveEvent(QMouseEvent* event)
{
    setHovered(placeAt(event->position().toPoint()));
}

void DuplicatesList::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        return;
    }
    m_pressed = placeAt(event->position().toPoint());
    m_showsFocus = false;
    setHovered(m_pressed);
    if (m_pressed) {
        // Not scrolled into sight: what is pressed stays under the pointer until it is let go.
        m_current = *m_pressed;
        viewport()->update();
        if (hasFocus()) {
            announceDuplicateFocus(*this);
        }
    }
}

void DuplicatesList::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        return;
    }
    const std::optional<DuplicatePlace> pressed = std::exchange(m_pressed, std::nullopt);
    viewport()->update();
    if (pressed && placeAt(event->position().toPoint()) == pressed) {
        activate(*pressed);
    }
}

QString DuplicatesList::toolTipAt(const QPoint& position) const
{
    const std::optional<DuplicatePlace> place = placeAt(position);
    if (!place) {
        return {};
    }
    if (const std::optional<DuplicateButton> shown = m_painter.button(*place)) {
        return shown->toolTip;
    }
    if (place->row.kind == Kind::group) {
        return m_painter.groupRow(place->row).toolTip();
    }
    return badgeRect(place->row).contains(position) ? DuplicateMemberRow::badgeToolTip()
                                                    : m_painter.memberRow(place->row).pathText();
}

bool DuplicatesList::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::Leave) {
        setHovered(std::nullopt);
    } else if (event->type() == QEvent::ToolTip) {
        const auto* const help = static_cast<QHelpEvent*>(event);
        showPlainToolTip(help->globalPos(), toolTipAt(help->pos()), viewport());
        return true;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

} // namespace quorvane
