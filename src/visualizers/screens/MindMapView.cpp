// SPDX-License-Identifier: MIT
#include "MindMapView.h"

#include "MindMapScene.h"

namespace quorvane {

MindMapView::MindMapView(AppState& state, QWidget* parent)
    : VisualizerCanvas(state, &MindMapScene::make,
                       {QStringLiteral("mindMapView"), QStringLiteral("Mind map of "),
                        QStringLiteral(" bands radiating from a center axis")},
                       parent)
{}

} // namespace quorvane
