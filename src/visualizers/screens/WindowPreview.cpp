// SPDX-License-Identifier: MIT
#include "WindowPreview.h"

#include "PreviewPanel.h"

namespace quorvane {

WindowPreview::WindowPreview(AppState& state, QWidget* window)
    : QObject(window)
    , m_state(state)
    , m_window(window)
{
    QuickLookPreview::shared().setPanel(*this);
}

WindowPreview::~WindowPreview()
{
    QuickLookPreview::shared().forgetPanel(*this);
}

void WindowPreview::bringToFront()
{
    if (!m_panel) {
        m_panel = new PreviewPanel(m_state, m_window);
    }
    m_panel->bringToFront();
}

void WindowPreview::closePanel()
{
    if (m_panel) {
        m_panel->closePanel();
    }
}

bool WindowPreview::isOnShow() const
{
    return m_panel && m_panel->isOnShow();
}

} // namespace quorvane
