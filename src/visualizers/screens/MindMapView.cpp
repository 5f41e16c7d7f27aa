// SPDX-License-Identifier: MIT
#include "MindMapView.h"

#include "MindMapScene.h"
#include "Painting.h"
#include "Tokens.h"

#include <QPainter>

namespace quorvane {

MindMapView::MindMapView(AppState& state, QWidget* parent)
    : VisualizerCanvas(state, &MindMapScene::make,
                       {QStringLiteral("mindMapView"), QStringLiteral("Mind map of "),
                        QStringLiteral(" bands radiating from a center axis")},
                       parent)
{}

void MindMapView::paintEmpty(QPainter& painter) const
{
    MindMapScene::paintAxis(painter, size(), groundColor());
    constexpr double shift = 60;
    const QRectF area = QRectF(rect()).translated(shift, 0);
    // The axis stops at the words.
    QRectF words(0, 0, textWidth(TextStyle::body, emptyText()) + 2 * spacing::s, 20);
    words.moveCenter(area.center());
    painter.fillRect(words, groundColor());
    paintEmptyText(painter, area);
}

} // namespace quorvane
