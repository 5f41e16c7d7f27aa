// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"
#include "LastCopyGuard.h"
#include "Row.h"
#include "ToolFrame.h"

#include <QPointer>

#include <vector>

namespace quorvane {

class AppState;
class CautionPanel;
class Dialog;
class Refresher;
class RowModel;

/// The Trash queue on review, and the one way from it to the Trash: a button that asks first. Main
/// thread.
class CleanupView : public ToolFrame
{
    Q_OBJECT

public:
    explicit CleanupView(AppState& state, QWidget* parent = nullptr);

    /// Whether the confirmation is on show.
    bool confirmTrash() const { return m_confirmTrash; }
    /// Has no effect while nothing is staged and while a batch is on its way.
    void setConfirmTrash(bool confirm);

    /// "Move {n} staged item{s} to Trash?"
    static QString confirmationTitle(std::size_t count);
    /// What the row of a staged node shows.
    static Row rowOf(const FileNode& node);

    /// The button of a row.
    enum Action { unstage };

protected:
    /// What stands in the way of the queue is looked at while the screen is on show.
    void showEvent(QShowEvent* event) override;

private:
    void makeList();
    void openConfirmation();
    void refresh();
    void refreshQueue();
    void refreshCautions();
    void lookAgain();
    void unstageRow(int row);

    AppState& m_state;
    Button* m_move = nullptr;
    RowModel* m_rows = nullptr;
    Label* m_total = nullptr;
    QPointer<Dialog> m_dialog;
    std::vector<NodePointer> m_shown;
    /// The queue that the dialog asks about: nothing else is sent by it.
    std::vector<NodePointer> m_asked;
    QPointer<CautionPanel> m_cautions; ///< of the dialog
    QPointer<Button> m_yes;            ///< of the dialog
    AcceptedLosses m_accepted;         ///< what a yes to the dialog agrees to lose
    bool m_confirmTrash = false;
    Refresher* m_refresher;
    Refresher* m_queueRefresher;
    Refresher* m_cautionRefresher;
    Refresher* m_lookRefresher; ///< what counts as a last copy has changed
};

} // namespace quorvane
