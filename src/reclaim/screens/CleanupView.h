// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"
#include "LastCopyGuard.h"

#include <QPointer>
#include <QWidget>

#include <vector>

class QShortcut;

namespace quorvane {

class AppState;
class Button;
class CautionPanel;
class Dialog;
class EmptyState;
class Label;
class ProgressBar;
class Refresher;
class ScreenHeader;
class StagedList;

/// The Trash queue on review, and the one way from it to the Trash: a button that asks first. Main
/// thread.
class CleanupView : public QWidget
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

protected:
    /// What stands in the way of the queue is looked at while the screen is on show.
    void showEvent(QShowEvent* event) override;

private:
    ScreenHeader* makeHeader();
    QWidget* makeProgress();
    QWidget* makeQueue();
    void openConfirmation();
    void refresh();
    void refreshQueue();
    void refreshCautions();

    AppState& m_state;
    Button* m_move = nullptr;
    QWidget* m_progress = nullptr;
    ProgressBar* m_bar = nullptr;
    Label* m_status = nullptr;
    EmptyState* m_empty = nullptr;
    QWidget* m_queue = nullptr;
    StagedList* m_list = nullptr;
    Label* m_total = nullptr;
    QPointer<Dialog> m_dialog;
    /// The queue that the dialog asks about: nothing else is sent by it.
    std::vector<NodePointer> m_asked;
    QPointer<CautionPanel> m_cautions; ///< of the dialog
    AcceptedLosses m_accepted;         ///< what a yes to the dialog agrees to lose
    bool m_confirmTrash = false;
    Refresher* m_refresher;
    Refresher* m_queueRefresher;
    Refresher* m_cautionRefresher;
};

} // namespace quorvane
