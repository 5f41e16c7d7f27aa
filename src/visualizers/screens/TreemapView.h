// SPDX-License-Identifier: MIT
#pragma once

#include "VisualizerCanvas.h"

namespace quorvane {

/// The treemap on screen.
class TreemapView final : public VisualizerCanvas
{
    Q_OBJECT

public:
    explicit TreemapView(AppState& state, QWidget* parent = nullptr);
};

} // namespace quorvane
