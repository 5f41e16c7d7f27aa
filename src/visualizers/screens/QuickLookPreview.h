// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <optional>

namespace quorvane {

class FileNode;

/// What puts the file of the source in front of the person.
class QuickLookPanel
{
public:
    virtual ~QuickLookPanel() = default;

    virtual void bringToFront() = 0;
    virtual void closePanel() = 0;
    virtual bool isOnShow() const = 0;
};

/// What the preview panel shows, one for the whole program: the source of the panel's data. Main
/// thread.
class QuickLookPreview
{
public:
    static QuickLookPreview& shared();

    /// Stores the path and brings the panel to the front; without a panel it does nothing else.
    void show(const FileNode& node);
    void show(const FilePath& url);
    /// Brings this panel to the front instead of the program's own.
    void show(const FilePath& url, QuickLookPanel& panel);

    /// Closes the panel that shows this file already, else shows the file.
    void toggle(const FileNode& node);
    void toggle(const FilePath& url);
    /// Shows another path in a panel that is on show; else nothing.
    void follow(const FilePath& url);

    const std::optional<FilePath>& url() const { return m_url; }
    /// 1 with a stored path, else 0.
    int numberOfPreviewItems() const { return m_url ? 1 : 0; }
    /// The stored path, whatever the number: there is one at most.
    const std::optional<FilePath>& previewItemAt(int) const { return m_url; }

    /// The panel that follows the source from now on. It outlives that, or is forgotten.
    void setPanel(QuickLookPanel& panel) { m_panel = &panel; }
    /// A panel that follows the source no longer does; any other one stays.
    void forgetPanel(const QuickLookPanel& panel);

private:
    QuickLookPreview() = default;

    std::optional<FilePath> m_url;
    QuickLookPanel* m_panel = nullptr;
};

} // namespace quorvane
