// SPDX-License-Identifier: MIT
#include "SunburstView.h"

#include "SunburstScene.h"

namespace quorvane {

SunburstView::SunburstView(AppState& state, QWidget* parent)
    : VisualizerCanvas(state, &SunburstScene::make,
                       {QStringLiteral("sunburstView"), QStringLiteral("Sunburst of "),
                        QStringLiteral(" rings, click a slice to drill down")},
                       parent)
{}

} // namespace quorvane
