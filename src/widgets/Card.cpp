// SPDX-License-Identifier: MIT
#include "Card.h"

#include "Painting.h"

#include <QPainter>

namespace quorvane {

Card::Card(QWidget* parent)
    : QWidget(parent)
{}

void Card::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintCard(painter, rect());
}

} // namespace quorvane
