// SPDX-License-Identifier: MIT
#include "PanelShadow.h"

#include "Painting.h"
#include "Tokens.h"

#include <QPainter>

namespace quorvane {
namespace {

constexpr int drop = 8;
constexpr int blur = 24;
constexpr int room = blur + drop;

} // namespace

PanelShadow::PanelShadow(QWidget* window)
    : QWidget(window)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void PanelShadow::place(QWidget* panel)
{
    setGeometry(panel->geometry().marginsAdded(QMargins(room, room, room, room)));
    stackUnder(panel);
}

void PanelShadow::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintShadow(painter, rect().adjusted(room, room, -room, -room), radius::surface, drop, blur,
                themeColor(ThemeColor::shadow));
}

} // namespace quorvane
