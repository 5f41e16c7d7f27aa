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

    QString accessibleLabel() const override;
    QString accessibleValue() const override;
};

} // namespace quorvane
