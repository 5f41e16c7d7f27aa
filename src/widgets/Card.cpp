// SPDX-License-Identifier: MIT
#include "Card.h"

#include "Painting.h"
#include "Theme.h"
#include "Tokens.h"

#include <QPaintEvent>
#include <QPainter>

namespace quorvane {

Card::Card(QWidget* parent)
    : QWidget(parent)
{}

void Card::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    // Figures that change each second lie inside: for them neither corners nor edges are drawn.
    const QRect inside = rect().adjusted(radius::surface, 2, -radius::surface, -2);
    if (!inside.contains(event->rect())) {
        paintCard(painter, rect());
        return;
    }
    for (const QRect& part : event->region()) {
        painter.fillRect(part, themeColor(ThemeColor::card));
    }
}

} // namespace quorvane
