// SPDX-License-Identifier: MIT
#include "NodeListView.h"

#include "AppState.h"
#include "NodeContextMenuModifier.h"
#include "NodeListModel.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QScopedValueRollback>

namespace quorvane {

NodeListView::NodeListView(AppState& state, NodeListModel& model, QWidget* parent)
    : QListView(parent)
    , m_state(state)
    , m_model(model)
{
    setModel(&model);
    setFrameShape(QFrame::NoFrame);
    // The card draws the ground, so that its round corners stay free.
    viewport()->setAutoFillBackground(false);
    setUniformItemSizes(true);
    setMouseTracking(true);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setEditTriggers(NoEditTriggers);
    connect(this, &QAbstractItemView::clicked, this,
            [this](const QModelIndex& index) { Q_EMIT rowActivated(m_model.node(index)); });
    connect(&m_model, &QAbstractItemModel::modelReset, this, [this] { showSelection(); });
    m_selectedChanged = m_state.selectedNode.addNotifier([this] { showSelection(); });
}

void NodeListView::showSelection()
{
    const QScopedValueRollback following(m_isFollowing, true);
    const int row = m_model.rowOf(m_state.selectedNode.value().get());
    if (row < 0) {
        selectionModel()->clearSelection();
    } else {
        setCurrentIndex(m_model.index(row));
    }
}

void NodeListView::selectionChanged(const QItemSelection& selected,
                                    const QItemSelection& deselected)
{
    QListView::selectionChanged(selected, deselected);
    if (!m_isFollowing && !selected.isEmpty()) {
        m_state.select(m_model.node(selected.indexes().front()));
    }
}

void NodeListView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (const NodePointer node = m_model.node(currentIndex())) {
            Q_EMIT rowActivated(node);
        }
        return;
    }
    QListView::keyPressEvent(event);
}

void NodeListView::contextMenuEvent(QContextMenuEvent* event)
{
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = isByKey ? currentIndex() : indexAt(event->pos());
    const QPoint place =
        isByKey ? viewport()->mapToGlobal(visualRect(index).center()) : event->globalPos();
    NodeContextMenuModifier{m_state, m_model.node(index)}.popUp(*this, place);
}

} // namespace quorvane
