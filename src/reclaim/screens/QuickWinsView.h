// SPDX-License-Identifier: MIT
#pragma once

#include "QuickWins.h"
#include "ToolFrame.h"

#include <QPointer>

#include <set>
#include <string>
#include <vector>

class QModelIndex;

namespace quorvane {

class AppState;
class Button;
class Dialog;
class EmptyState;
class QuickWinsState;
class Refresher;
class RowModel;
class RowView;
class StagingState;
struct Row;

/// Big folders that may go, with what speaks for each. Main thread.
class QuickWinsView : public ToolFrame
{
    Q_OBJECT

public:
    explicit QuickWinsView(AppState& state, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    enum Action { revealAction, stageAction };

    Row rowOf(const QuickWin& win, bool isStaged) const;
    void refresh();
    void act(const QModelIndex& index, int action);
    /// Asks first where there is a caution, once for each row.
    void stage(const QuickWin& win);
    void ask(const QuickWin& win);

    QuickWinsState& m_quickWins;
    StagingState& m_staging;
    std::vector<QuickWin> m_wins;
    std::vector<bool> m_staged;    ///< for each of them
    std::set<std::string> m_asked; ///< ids of wins whose caution the user has agreed to
    Button* m_refresh = nullptr;
    EmptyState* m_hidden = nullptr;
    RowModel* m_model = nullptr;
    RowView* m_view = nullptr;
    QPointer<Dialog> m_dialog;
    Refresher* m_refresher;
};

} // namespace quorvane
