// SPDX-License-Identifier: MIT
#pragma once

#include "VisualizerCanvas.h"

namespace quorvane {

/// The bubbles of a folder on screen.
class BubblesView final : public VisualizerCanvas
{
    Q_OBJECT

public:
    explicit BubblesView(AppState& state, QWidget* parent = nullptr);
};

} // namespace quorvane
