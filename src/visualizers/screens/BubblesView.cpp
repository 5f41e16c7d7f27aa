// SPDX-License-Identifier: MIT
#include "BubblesView.h"

#include "BubblesScene.h"

namespace quorvane {

BubblesView::BubblesView(AppState& state, QWidget* parent)
    : VisualizerCanvas(state, &BubblesScene::make,
                       {QStringLiteral("bubblesView"), QStringLiteral("Bubble map of "),
                        QStringLiteral(" bubbles, click a bubble to drill down")},
                       parent)
{}

} // namespace quorvane
