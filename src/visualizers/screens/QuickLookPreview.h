// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <functional>
#include <optional>
#include <utility>

namespace quorvane {

class FileNode;

/// What the preview panel shows, one for the whole program: the source of the panel's data. Main
/// thread.
class QuickLookPreview
{
public:
    static QuickLookPreview& shared();

    /// Stores the path and brings the panel to the front; without a panel it does nothing else.
    void show(const FileNode& node);
    void show(const FilePath& url);

    const std::optional<FilePath>& url() const { return m_url; }
    /// 1 with a stored path, else 0.
    int numberOfPreviewItems() const { return m_url ? 1 : 0; }
    /// The stored path, whatever the number: there is one at most.
    const std::optional<FilePath>& previewItemAt(int) const { return m_url; }

    /// The panel that follows the source; an empty function when it goes.
    void setPanel(std::function<void()> bringToFront) { m_bringToFront = std::move(bringToFront); }

private:
    QuickLookPreview() = default;

    std::optional<FilePath> m_url;
    std::function<void()> m_bringToFront;
};

} // namespace quorvane
