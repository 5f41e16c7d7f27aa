// SPDX-License-Identifier: MIT
#pragma once

#include "Theme.h"

#include <QIcon>
#include <QPixmap>
#include <QStringList>

class QPainter;

namespace quorvane {

/// All names of the symbol table, sorted.
QStringList symbolNames();
bool hasSymbol(const QString& name);

/// An icon of one colour of the theme; follows theme changes by itself. Disabled it takes the
/// colour of disabled text, on a selected menu row the colour of accent labels. An unknown name
/// gives a null icon.
QIcon symbolIcon(const QString& name, ThemeColor color = ThemeColor::text2);

/// The symbol fitted into a square, crisp at the given device pixel ratio.
QPixmap symbolPixmap(const QString& name, int side, const QColor& color, qreal devicePixelRatio);

/// Draws the symbol centred in `area`, as a square of `side` points.
void paintSymbol(QPainter& painter, const QString& name, const QRectF& area, int side,
                 const QColor& color);

} // namespace quorvane
