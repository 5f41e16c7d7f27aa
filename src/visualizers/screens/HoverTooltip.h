// SPDX-License-Identifier: MIT
#pragma once

#include "CanvasScene.h"
#include "Popover.h"

namespace quorvane {

class FileNode;

/// Name and size of a node for its tooltip. Always the logical bytes, whatever the size mode: the
/// item itself shows the mode's size. A folder also tells its files.
TooltipText hoverTooltipText(const FileNode& node);

/// The small card that follows the pointer over a canvas.
class HoverTooltip : public TooltipCard
{
    Q_OBJECT

public:
    explicit HoverTooltip(QWidget* canvas);

    void setText(const TooltipText& text);
};

} // namespace quorvane
