// SPDX-License-Identifier: MIT
#pragma once

#include "QuickLookPreview.h"

#include <QObject>
#include <QPointer>

class QWidget;

namespace quorvane {

class AppState;
class PreviewPanel;

/// Shows QuickLookPreview over a window, in a panel that is made when it is first needed. Main
/// thread.
class WindowPreview : public QObject, public QuickLookPanel
{
    Q_OBJECT

public:
    /// A child of the window. The state outlives it.
    WindowPreview(AppState& state, QWidget* window);
    ~WindowPreview() override;

    void bringToFront() override;
    void closePanel() override;
    bool isOnShow() const override;

private:
    AppState& m_state;
    QWidget* m_window;
    QPointer<PreviewPanel> m_panel;
};

} // namespace quorvane
