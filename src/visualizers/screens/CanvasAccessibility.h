// SPDX-License-Identifier: MIT
#pragma once

namespace quorvane {

class VisualizerCanvas;

/// Makes canvases tell assistive technology what they show: one element with a label and a value,
/// and below it every item with its name, size and place. Once is enough. Main thread.
void installCanvasAccessibility();

/// Tells assistive technology that a canvas shows other items than before.
void announceCanvasContent(VisualizerCanvas& canvas);

} // namespace quorvane
