// SPDX-License-Identifier: MIT
#pragma once

#include <QPainterPath>
#include <QPointF>
#include <QRectF>

namespace quorvane {

/// A piece of a ring about a centre. Angles are radians, 0 points right, growing clockwise on
/// screen.
struct RingSector
{
    QPointF center;
    double inner = 0; ///< radius, points
    double outer = 0; ///< radius, points
    double start = 0;
    double end = 0; ///< at most a turn after start
};

/// The closed outline: the outer arc and back along the inner one.
QPainterPath annulus(const RingSector& sector);
/// The outer arc alone, open.
QPainterPath outerArc(const RingSector& sector);
/// The smallest upright box around the sector.
QRectF boundsOf(const RingSector& sector);
QPointF polarPoint(const QPointF& center, double radius, double angle);

} // namespace quorvane
