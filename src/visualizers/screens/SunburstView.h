// SPDX-License-Identifier: MIT
#pragma once

#include "VisualizerCanvas.h"

namespace quorvane {

/// The rings of a folder on screen.
class SunburstView final : public VisualizerCanvas
{
    Q_OBJECT

public:
    explicit SunburstView(AppState& state, QWidget* parent = nullptr);
};

} // namespace quorvane
