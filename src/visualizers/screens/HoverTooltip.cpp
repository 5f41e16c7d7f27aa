// SPDX-License-Identifier: MIT
#include "HoverTooltip.h"

#include "FileNode.h"

namespace quorvane {

TooltipText hoverTooltipText(const FileNode& node)
{
    QString detail = node.formattedBytes();
    if (node.isDirectory()) {
        detail +=
            QStringLiteral(" · ") + QString::number(node.fileCount()) + QStringLiteral(" files");
    }
    return {node.displayName(), detail};
}

HoverTooltip::HoverTooltip(QWidget* canvas)
    : TooltipCard(canvas)
{
    setObjectName(QStringLiteral("hoverTooltip"));
}

void HoverTooltip::setText(const TooltipText& text)
{
    setContent(text.title, text.detail, text.note, text.mark);
}

} // namespace quorvane
