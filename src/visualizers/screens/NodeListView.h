// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"

#include <QListView>
#include <QProperty>

namespace quorvane {

class AppState;
class NodeListModel;

/// A flat list of nodes on a card: selection in step with the model, arrow keys, type-to-find, the
/// node menu. Main thread.
class NodeListView : public QListView
{
    Q_OBJECT

public:
    NodeListView(AppState& state, NodeListModel& model, QWidget* parent);

Q_SIGNALS:
    /// A click or the Return key on a row.
    void rowActivated(const NodePointer& node);

protected:
    void selectionChanged(const QItemSelection& selected,
                          const QItemSelection& deselected) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void showSelection();

    AppState& m_state;
    NodeListModel& m_model;
    bool m_isFollowing = false; ///< the selection comes from the model
    QPropertyNotifier m_selectedChanged;
};

} // namespace quorvane
