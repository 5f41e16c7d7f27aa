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
    if (m_bringToFront) {
        m_bringToFront();
    }
}

} // namespace quorvane
