// SPDX-License-Identifier: MIT
#include "CanvasViews.h"

#include "BubblesScene.h"
#include "FlameScene.h"
#include "MindMapScene.h"
#include "SunburstScene.h"
#include "TreemapScene.h"

#include <QCoreApplication>

#include <algorithm>

namespace quorvane {
namespace {

struct Row
{
    VisualizerType type;
    CanvasTraits traits;
};

const Row rows[] = {
    {VisualizerType::treemap,
     {.makeScene = &TreemapScene::make,
      .objectName = "treemapView",
      .label = QT_TRANSLATE_NOOP("VisualizerCanvas", "Treemap of %1, %2"),
      .value = QT_TRANSLATE_NOOP("VisualizerCanvas", "%1 regions, grow by clicking a folder"),
      .tooltipFollowsPointer = true,
      .zoomsByWheel = true}},
    {VisualizerType::sunburst,
     {.makeScene = &SunburstScene::make,
      .objectName = "sunburstView",
      .label = QT_TRANSLATE_NOOP("VisualizerCanvas", "Sunburst of %1, %2"),
      .value = QT_TRANSLATE_NOOP("VisualizerCanvas", "%1 rings, click a slice to drill down")}},
    {VisualizerType::flame,
     {.makeScene = &FlameScene::make,
      .objectName = "flameView",
      .label = QT_TRANSLATE_NOOP("VisualizerCanvas", "Flame graph of %1, %2"),
      .value =
          QT_TRANSLATE_NOOP("VisualizerCanvas", "%1 rectangles; width is proportional to size"),
      .caption = QT_TRANSLATE_NOOP("VisualizerCanvas",
                                   "Depth increases downward · width is proportional to size")}},
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

} // namespace

const CanvasTraits& canvasTraits(VisualizerType type)
{
    return std::find_if(std::begin(rows), std::end(rows),
                        [type](const Row& row) { return row.type == type; })
        ->traits;
}

} // namespace quorvane
