// SPDX-License-Identifier: MIT
#pragma once

#include "BubblesScene.h"
#include "FlameScene.h"
#include "MindMapScene.h"
#include "SunburstScene.h"
#include "TreemapScene.h"
#include "VisualizerCanvas.h"
#include "VisualizerType.h"

#include <QCoreApplication>

namespace quorvane {

struct CanvasRow
{
    VisualizerType type;
    CanvasTraits traits;
};

/// The visualisers that are drawn on a canvas.
inline constexpr CanvasRow canvasRows[]{
    {VisualizerType::treemap,
     {.makeScene = &TreemapScene::make,
      .objectName = "treemapView",
      .label = QT_TRANSLATE_NOOP("VisualizerCanvas", "Treemap of %1, %2"),
      .value = QT_TRANSLATE_NOOP("VisualizerCanvas", "%1 regions, grow by clicking a folder"),
      .tooltipFollowsPointer = true,
      .zoomsByWheel = true,
      .showsGrowth = true}},
    {VisualizerType::sunburst,
     {.makeScene = &SunburstScene::make,
      .objectName = "sunburstView",
      .label = QT_TRANSLATE_NOOP("VisualizerCanvas", "Sunburst of %1, %2"),
      .value = QT_TRANSLATE_NOOP("VisualizerCanvas", "%1 rings, click a slice to drill down"),
      .showsGrowth = true}},
    {VisualizerType::flame,
     {.makeScene = &FlameScene::make,
      .objectName = "flameView",
      .label = QT_TRANSLATE_NOOP("VisualizerCanvas", "Flame graph of %1, %2"),
      .value =
          QT_TRANSLATE_NOOP("VisualizerCanvas", "%1 rectangles; width is proportional to size"),
      .caption = QT_TRANSLATE_NOOP("VisualizerCanvas",
                                   "Depth increases downward · width is proportional to size"),
      .showsGrowth = true}},
    {VisualizerType::bubbles,
     {.makeScene = &BubblesScene::make,
      .objectName = "bubblesView",
      .label = QT_TRANSLATE_NOOP("VisualizerCanvas", "Bubble map of %1, %2"),
      .value = QT_TRANSLATE_NOOP("VisualizerCanvas", "%1 bubbles, click a bubble to drill down")}},
    {VisualizerType::mindMap,
     {.makeScene = &MindMapScene::make,
      .objectName = "mindMapView",
      .label = QT_TRANSLATE_NOOP("VisualizerCanvas", "Mind map of %1, %2"),
      .value = QT_TRANSLATE_NOOP("VisualizerCanvas", "%1 bands radiating from a center axis"),
      .paintEmptyGround = &MindMapScene::paintAxis,
      .emptyTextShift = 60}},
};

/// The type is one of the table.
constexpr const CanvasTraits& canvasTraits(VisualizerType type)
{
    const CanvasRow* row = canvasRows;
    while (row->type != type) {
        ++row;
    }
    return row->traits;
}

/// Whether a visualiser can be coloured by growth. Any type.
constexpr bool showsGrowth(VisualizerType type)
{
    for (const CanvasRow& row : canvasRows) {
        if (row.type == type) {
            return row.traits.showsGrowth;
        }
    }
    return false;
}

/// A visualiser of the table on screen.
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
