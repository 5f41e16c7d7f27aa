// SPDX-License-Identifier: MIT
#pragma once

#include "CanvasScene.h"
#include "Color.h"

#include <QColor>
#include <QFont>
#include <QPainterPath>
#include <QPen>
#include <QRectF>
#include <QString>

class QPainter;

namespace quorvane {

QColor toQColor(const Color& color);

/// A colour at some opacity, 0 to 1, over an opaque ground. Dimmed shapes are mixed with the ground
/// of the canvas, so that what they cover does not show through.
QColor mixed(const QColor& color, double opacity, const QColor& ground);

/// The pen around the item below the pointer.
QPen hoverPen();
/// The same for long outlines, mixed with the item's colour beforehand: an opaque line is drawn in
/// a third of the time of one that lets through what lies below it.
QPen hoverPenOver(const QColor& item);
/// Draws the accent line around a selected item over a dark line, so that it shows on any hue.
void strokeSelected(QPainter& painter, const QPainterPath& outline, const QColor& accent);

/// The labels' font at a size in points of the canvas.
QFont labelFont(const CanvasStyle& style, int size);

/// Draws the edge of a text without the text itself, so that its letters stand out from whatever
/// lies below. Flags are those of QPainter::drawText().
void drawSeam(QPainter& painter, const QRectF& rect, int flags, const QString& text,
              const QColor& color);

/// A name in white in the middle of a rectangle, seamed in black with a shadow below it, cut at the
/// shape. The painter's clipping is put back.
void drawShadedLabel(QPainter& painter, const QPainterPath& shape, const QRectF& rect,
                     const QString& text);

/// Copies one rectangle of a picture that covers the canvas.
void copyPicture(QPainter& painter, const QImage& picture, const QRect& points);

} // namespace quorvane
