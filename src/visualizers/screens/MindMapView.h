// SPDX-License-Identifier: MIT
#pragma once

#include "VisualizerCanvas.h"

namespace quorvane {

/// The mind map of a folder on screen.
class MindMapView final : public VisualizerCanvas
{
    Q_OBJECT

public:
    explicit MindMapView(AppState& state, QWidget* parent = nullptr);

protected:
    /// The axis, and the text to the right of the middle.
    void paintEmpty(QPainter& painter) const override;
};

} // namespace quorvane
