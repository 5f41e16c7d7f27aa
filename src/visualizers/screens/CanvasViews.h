// SPDX-License-Identifier: MIT
#pragma once

#include "VisualizerCanvas.h"
#include "VisualizerType.h"

namespace quorvane {

/// What sets a drawn visualiser apart. The type is one that is drawn on a canvas.
const CanvasTraits& canvasTraits(VisualizerType type);

/// A drawn visualiser on screen.
template<VisualizerType type>
class CanvasView final : public VisualizerCanvas
{
public:
    explicit CanvasView(AppState& state, QWidget* parent = nullptr)
        : VisualizerCanvas(state, canvasTraits(type), parent)
    {}
};

using TreemapView = CanvasView<VisualizerType::treemap>;
using SunburstView = CanvasView<VisualizerType::sunburst>;
using FlameView = CanvasView<VisualizerType::flame>;
using BubblesView = CanvasView<VisualizerType::bubbles>;
using MindMapView = CanvasView<VisualizerType::mindMap>;

} // namespace quorvane
