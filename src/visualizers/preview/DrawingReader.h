// SPDX-License-Identifier: MIT
#pragma once

#include "PictureReader.h"

#include <QByteArray>

namespace quorvane {

/// Most bytes of an SVG drawing, unpacked.
constexpr qint64 maxDrawingBytes = 16 * 1024 * 1024;
/// Most pixels of all pictures together that stand in one drawing.
constexpr qint64 maxHeldPixels = 64'000'000;

/// Draws an SVG file, packed with gzip or not, as large as the room allows. The device stands at
/// its beginning. Shapes, texts and pictures that stand in the file itself are drawn; what it
/// refers to outside is not opened. An empty result for what is no drawing, for a broken one and
/// for one beyond the bounds. Waits for the disk: any thread but the main one.
Picture readDrawing(QIODevice& device, const QSize& room);

/// The drawing with nothing in it that leads to another file: without style sheets and document
/// types, and of the pictures only those that stand in it. Empty when it is broken or beyond the
/// bounds.
QByteArray selfContained(const QByteArray& drawing);

} // namespace quorvane
