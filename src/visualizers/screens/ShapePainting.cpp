// SPDX-License-Identifier: MIT
#include "ShapePainting.h"

#include <QImage>
#include <QPainter>

#include <array>

namespace quorvane {
namespace {

constexpr float hoverOpacity = 0.95F;
constexpr double highlightWidth = 2;
constexpr double selectionGroundWidth = 4;
constexpr QColor selectionGround(0, 0, 0, 150);
constexpr float labelShadow = 0.6F;
constexpr float seamOpacity = 0.4F;
constexpr std::array seamSteps{QPointF(-1, 0), QPointF(1, 0),  QPointF(0, -1),  QPointF(0, 1),
                               QPointF(-1, 1), QPointF(1, -1), QPointF(-1, -1), QPointF(1, 1)};

} // namespace

QColor toQColor(const Color& color)
{
    return QColor::fromRgbF(static_cast<float>(color.r), static_cast<float>(color.g),
                            static_cast<float>(color.b), static_cast<float>(color.a));
}

QColor mixed(const QColor& color, double opacity, const QColor& ground)
{
    const auto share = static_cast<float>(opacity);
    const auto channel = [share](float top, float below) {
        return top * share + below * (1 - share);
    };
    return QColor::fromRgbF(channel(color.redF(), ground.redF()),
                            channel(color.greenF(), ground.greenF()),
                            channel(color.blueF(), ground.blueF()));
}

QPen hoverPen()
{
    return {QColor::fromRgbF(1, 1, 1, hoverOpacity), highlightWidth};
}

QPen hoverPenOver(const QColor& item)
{
    return {mixed(Qt::white, hoverOpacity, item), highlightWidth};
}

void strokeSelected(QPainter& painter, const QPainterPath& outline, const QColor& accent)
{
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(selectionGround, selectionGroundWidth));
    painter.drawPath(outline);
    painter.setPen(QPen(accent, highlightWidth));
    painter.drawPath(outline);
}

QFont labelFont(const CanvasStyle& style, int size)
{
    QFont font = style.font;
    font.setPixelSize(size);
    font.setWeight(QFont::Normal);
    return font;
}

void drawSeam(QPainter& painter, const QRectF& rect, int flags, const QString& text,
              const QColor& color)
{
    painter.setPen(QColor::fromRgbF(color.redF(), color.greenF(), color.blueF(), seamOpacity));
    for (const QPointF& step : seamSteps) {
        painter.drawText(rect.translated(step), flags, text);
    }
}

void drawShadedLabel(QPainter& painter, const QPainterPath& shape, const QRectF& rect,
                     const QString& text)
{
    constexpr int flags = Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip;
    painter.save();
    painter.setClipPath(shape, Qt::IntersectClip);
    drawSeam(painter, rect, flags, text, Qt::black);
    painter.setPen(QColor::fromRgbF(0, 0, 0, labelShadow));
    painter.drawText(rect.translated(0, 1), flags, text);
    painter.setPen(Qt::white);
    painter.drawText(rect, flags, text);
    painter.restore();
}

void copyPicture(QPainter& painter, const QImage& picture, const QRect& points)
{
    const qreal ratio = picture.devicePixelRatio();
    painter.drawImage(QRectF(points), picture,
                      QRectF(QPointF(points.topLeft()) * ratio, QSizeF(points.size()) * ratio));
}

} // namespace quorvane
