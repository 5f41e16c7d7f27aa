// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"
#include "ItemViews.h"

#include <QProperty>

namespace quorvane {

class AppState;
class OutlineModel;

/// The rows of an outline: levels that open and close, selection in step with the model, arrow
/// keys, type-to-find, the node menu. Main thread.
class OutlineTable : public TableView
{
    Q_OBJECT

public:
    OutlineTable(AppState& state, OutlineModel& model, QWidget* parent);

    /// Shows the selected node's row, opening the folders on the way to it.
    void showSelection();

Q_SIGNALS:
    /// A click or the Return key on a row.
    void rowActivated(const NodePointer& node);

protected:
    void selectionChanged(const QItemSelection& selected,
                          const QItemSelection& deselected) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    AppState& m_state;
    OutlineModel& m_outline;
    bool m_isFollowing = false; ///< the selection comes from the model
    QPropertyNotifier m_selectedChanged;
    QPropertyNotifier m_stagedChanged;
};

} // namespace quorvane
