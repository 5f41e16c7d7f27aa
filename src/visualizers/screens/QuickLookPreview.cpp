// SPDX-License-Identifier: MIT
#include "QuickLookPreview.h"

#include "FileNode.h"

namespace quorvane {

QuickLookPreview& QuickLookPreview::shared()
{
    static QuickLookPreview preview;
    return preview;
}

void QuickLookPreview::show(const FileNode& node)
{
    show(node.path());
}

void QuickLookPreview::show(const FilePath& url)
{
    m_url = url;
    if (m_panel != nullptr) {
        m_panel->bringToFront();
    }
}

void QuickLookPreview::show(const FilePath& url, QuickLookPanel& panel)
{
    m_url = url;
    panel.bringToFront();
}

void QuickLookPreview::toggle(const FileNode& node)
{
    toggle(node.path());
}

void QuickLookPreview::toggle(const FilePath& url)
{
    if (m_panel != nullptr && m_panel->isOnShow() && m_url == url) {
        m_panel->closePanel();
    } else {
        show(url);
    }
}

void QuickLookPreview::follow(const FilePath& url)
{
    if (m_panel != nullptr && m_panel->isOnShow() && m_url != url) {
        show(url);
    }
}

void QuickLookPreview::forgetPanel(const QuickLookPanel& panel)
{
    if (m_panel == &panel) {
        m_panel = nullptr;
    }
}

} // namespace quorvane
