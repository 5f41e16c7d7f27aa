// SPDX-License-Identifier: MIT
#include "TreemapView.h"

#include "TreemapScene.h"

namespace quorvane {

TreemapView::TreemapView(AppState& state, QWidget* parent)
    : VisualizerCanvas(state, &TreemapScene::make, parent)
{
    setObjectName(QStringLiteral("treemapView"));
}

QString TreemapView::accessibleLabel() const
{
    const NodePointer shown = state().shownNode();
    return QStringLiteral("Treemap of ") + (shown ? shown->displayName() : QString()) +
           QStringLiteral(", ") + (shown ? shown->formattedBytes() : QStringLiteral("0 bytes"));
}

QString TreemapView::accessibleValue() const
{
    return QString::number(scene() ? scene()->itemCount() : 0) +
           QStringLiteral(" regions, grow by clicking a folder");
}

} // namespace quorvane
