// SPDX-License-Identifier: MIT
#pragma once

#include "Theme.h"

#include <QRectF>
#include <QString>
#include <QStyle>

class QPainter;

namespace quorvane {

/// Ground of a whole window: window colour, and the wash from the top left to the bottom right.
/// Draw side or veil over it where they belong.
void paintWindowGround(QPainter& painter, const QRectF& window, const QColor& wash);

/// A rounded rectangle filled, with an edge one point wide that lies inside `rect`.
void paintPanel(QPainter& painter, const QRectF& rect, qreal radius, const QBrush& fill,
                const QColor& edge);

/// Card ground: card colour, hairline edge, inner top line, radius 10.
void paintCard(QPainter& painter, const QRectF& rect);

/// Popover ground: popover colour with a control edge.
void paintPopover(QPainter& painter, const QRectF& rect, qreal radius);

/// A soft shadow of a rounded rectangle; the inside of `rect` stays untouched.
void paintShadow(QPainter& painter, const QRectF& rect, qreal radius, qreal offsetY, qreal blur,
                 const QColor& color);

/// Ground of a row of a list by its state: hover, selected, and selected or not with the focus line
/// inside. Reads State_MouseOver, State_Selected and State_HasFocus.
void paintRowGround(QPainter& painter, const QRectF& rect, qreal radius, QStyle::State state);

/// Keeps what is painted from now on clear of a card's round corners. inside: the card without its
/// edge.
void clipToCard(QPainter& painter, const QRectF& inside);

/// Two points of accent inside the edge: the focus of rows, list tiles and canvases.
void paintFocusLine(QPainter& painter, const QRectF& rect, qreal radius);

/// Three points of ring outside the edge, and the edge in the accent colour: the focus of controls.
void paintFocusRing(QPainter& painter, const QRectF& rect, qreal radius);

/// One line of text in a style, elided when it does not fit.
void paintText(QPainter& painter, const QRectF& rect, int alignment, TextStyle style,
               const QColor& color, const QString& text, Qt::TextElideMode elide = Qt::ElideRight);

/// Width of one line of text in a style, rounded up to whole points.
int textWidth(TextStyle style, const QString& text);

} // namespace quorvane
