// SPDX-License-Identifier: MIT
#include "TreemapView.h"

#include "TreemapScene.h"

namespace quorvane {

TreemapView::TreemapView(AppState& state, QWidget* parent)
    : VisualizerCanvas(state, &TreemapScene::make,
                       {QStringLiteral("treemapView"), QStringLiteral("Treemap of "),
                        QStringLiteral(" regions, grow by clicking a folder"), true, true},
                       parent)
{}

} // namespace quorvane
