// SPDX-License-Identifier: MIT
#pragma once

#include "ToolFrame.h"
#include "UninstallableApp.h"

#include <QPointer>

#include <vector>

class QModelIndex;

namespace quorvane {

class AppState;
class Button;
class Dialog;
class Refresher;
class RowModel;
class RowView;
class UninstallState;
struct Row;

/// Installed applications with what each leaves behind, and the queue of those to be removed. Main
/// thread.
class UninstallerView : public ToolFrame
{
    Q_OBJECT

public:
    explicit UninstallerView(AppState& state, QWidget* parent = nullptr);

    /// Asks before the queue is worked off; nothing for an empty one and during a run.
    void setConfirmTrash(bool confirm);

protected:
    void showEvent(QShowEvent* event) override;

private:
    enum Action { revealAction, uninstallAction };

    Row rowOf(const UninstallableApp& app) const;
    void openConfirmation();
    void act(const QModelIndex& index, int action);
    void refresh();
    void refreshRun();

    UninstallState& m_uninstall;
    std::vector<UninstallableApp> m_apps;
    std::vector<UninstallableApp> m_asked; ///< the queue that the dialog asks about
    Button* m_refresh = nullptr;
    Button* m_scan = nullptr;
    RowModel* m_model = nullptr;
    RowView* m_view = nullptr;
    Button* m_clear = nullptr;
    Button* m_run = nullptr;
    QPointer<Dialog> m_dialog;
    Refresher* m_refresher;
    Refresher* m_runRefresher;
};

} // namespace quorvane
