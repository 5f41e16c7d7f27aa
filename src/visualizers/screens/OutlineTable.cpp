// SPDX-License-Identifier: MIT
#include "OutlineTable.h"

#include "AppState.h"
#include "NodeContextMenuModifier.h"
#include "OutlineModel.h"
#include "Painting.h"
#include "Tokens.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>

namespace quorvane {

OutlineTable::OutlineTable(AppState& state, OutlineModel& model, QWidget* parent)
    : TableView(parent)
    , m_state(state)
    , m_outline(model)
{
    setModel(&model);
    setFrameShape(QFrame::NoFrame);
    setCornerRadius(radius::surface - 1); // the card's, inside its edge
    setMouseTracking(true);
    // While rows slide open or shut the view ignores clicks.
    setAnimated(false);
    connect(this, &QAbstractItemView::clicked, this,
            [this](const QModelIndex& index) { Q_EMIT rowActivated(m_outline.sharedNode(index)); });
    m_selectedChanged = m_state.selectedNode.addNotifier([this] { showSelection(); });
    m_stagedChanged = m_state.stagedNodes.addNotifier([this] { viewport()->update(); });
}

void OutlineTable::showSelection()
{
    if (!isVisible()) {
        return;
    }
    const QScopedValueRollback following(m_isFollowing, true);
    const NodePointer selected = m_state.selectedNode.value();
    const QModelIndex index = selected ? m_outline.indexOf(*selected) : QModelIndex();
    if (!index.isValid()) {
        selectionModel()->clearSelection();
    } else if (!selectionModel()->isRowSelected(index.row(), index.parent())) {
        // Scrolling to a row opens the folders on the way.
        setCurrentIndex(index);
        scrollTo(index);
    }
}

void OutlineTable::selectionChanged(const QItemSelection& selected,
                                    const QItemSelection& deselected)
{
    TableView::selectionChanged(selected, deselected);
    if (!m_isFollowing && !selected.isEmpty()) {
        m_state.select(m_outline.sharedNode(selected.indexes().front()));
    }
}

void OutlineTable::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (const NodePointer node = m_outline.sharedNode(currentIndex())) {
            Q_EMIT rowActivated(node);
        }
        return;
    }
    TableView::keyPressEvent(event);
}

void OutlineTable::contextMenuEvent(QContextMenuEvent* event)
{
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = isByKey ? currentIndex() : indexAt(event->pos());
    const QPoint place =
        isByKey ? viewport()->mapToGlobal(visualRect(index).center()) : event->globalPos();
    NodeContextMenuModifier{m_state, m_outline.sharedNode(index)}.popUp(*this, place);
}

void OutlineTable::paintEvent(QPaintEvent* event)
{
    TableView::paintEvent(event);
    if (m_outline.rowCount() == 0) {
        QPainter painter(viewport());
        paintText(painter, viewport()->rect(), Qt::AlignCenter, TextStyle::body,
                  themeColor(ThemeColor::text2),
                  m_state.shownNode() ? QStringLiteral("Nothing to display")
                                      : QStringLiteral("No scan yet"));
    }
}

} // namespace quorvane
