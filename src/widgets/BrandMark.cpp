// SPDX-License-Identifier: MIT
#include "BrandMark.h"

#include <QPainter>
#include <QPainterPath>

namespace quorvane {
namespace {

// Geometry on a plate of 84 x 84.
constexpr qreal plateSide = 84;
constexpr qreal plateRadius = 20;
constexpr qreal edgeWidth = 1.5;
constexpr qreal discRadius = 26;
constexpr QPointF discCentre{41, 41};
constexpr QRectF tail{54, 54, 15, 15};
constexpr qreal tailRadius = 3.5;
constexpr qreal tailGap = 2.5;

struct DiscTile
{
    QRectF rect;
    double opacity;
};

constexpr DiscTile discTiles[] = {
    {{15, 15, 29, 33.5}, 1},
    {{47, 15, 21, 22}, 0.78},
    {{15, 51.5, 29, 17}, 0.56},
    {{47, 40, 21, 28}, 0.38},
};

QColor plateColor()
{
    return {0x1D, 0x2A, 0x40};
}

QColor tileColor(double opacity)
{
    return withOpacity(QColor(0x4B, 0xA0, 0xFF), opacity);
}

} // namespace

BrandMark::BrandMark(int side, QWidget* parent)
    : QWidget(parent)
    , m_side(side)
{
    setFixedSize(side, side);
    setAccessibleName(QStringLiteral("Quorvane"));
}

void BrandMark::paint(QPainter& painter, const QRectF& square)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(square.topLeft());
    painter.scale(square.width() / plateSide, square.height() / plateSide);

    painter.setPen(Qt::NoPen);
    painter.setBrush(plateColor());
    painter.drawRoundedRect(QRectF(0, 0, plateSide, plateSide), plateRadius, plateRadius);
    const qreal half = edgeWidth / 2;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(tileColor(0.22), edgeWidth));
    painter.drawRoundedRect(QRectF(half, half, plateSide - edgeWidth, plateSide - edgeWidth),
                            plateRadius - half, plateRadius - half);

    // Shapes are cut, not covered, so that all edges stay smooth at any size.
    QPainterPath disc;
    disc.addEllipse(discCentre, discRadius, discRadius);
    QPainterPath gap;
    gap.addRoundedRect(tail.adjusted(-tailGap, -tailGap, tailGap, tailGap), tailRadius + tailGap,
                       tailRadius + tailGap);
    for (const DiscTile& tile : discTiles) {
        QPainterPath part;
        part.addRect(tile.rect);
        painter.fillPath(part.intersected(disc).subtracted(gap), tileColor(tile.opacity));
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(tileColor(1));
    painter.drawRoundedRect(tail, tailRadius, tailRadius);
    painter.restore();
}

QImage BrandMark::image(int size)
{
    if (size <= 0) {
        return {};
    }
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paint(painter, QRectF(0, 0, size, size));
    return image;
}

QSize BrandMark::sizeHint() const
{
    return {m_side, m_side};
}

void BrandMark::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paint(painter, QRectF(rect()));
}

Wordmark::Wordmark(TextStyle style, QWidget* parent)
    : Label(QStringLiteral("Quorvane"), style, ThemeColor::text1, parent)
{}

} // namespace quorvane
