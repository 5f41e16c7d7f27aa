// SPDX-License-Identifier: MIT
#include "FlameView.h"

#include "FlameScene.h"
#include "Painting.h"
#include "Tokens.h"

#include <QPainter>

namespace quorvane {

FlameView::FlameView(AppState& state, QWidget* parent)
    : VisualizerCanvas(state, &FlameScene::make,
                       {QStringLiteral("flameView"), QStringLiteral("Flame graph of "),
                        QStringLiteral(" rectangles; width is proportional to size")},
                       parent)
{}

QString FlameView::caption()
{
    return QStringLiteral("Depth increases downward · width is proportional to size");
}

void FlameView::paintEvent(QPaintEvent* event)
{
    VisualizerCanvas::paintEvent(event);
    constexpr int lineHeight = 16;
    QPainter painter(this);
    const QRectF line(spacing::m, height() - lineHeight - spacing::xs, width() - 2 * spacing::m,
                      lineHeight);
    paintText(painter, line, Qt::AlignLeft | Qt::AlignVCenter, TextStyle::path, ink().tertiary,
              caption());
}

} // namespace quorvane
