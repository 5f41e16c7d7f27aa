// SPDX-License-Identifier: MIT
#include "WindowGround.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace quorvane {
namespace {

float mixed(float below, float above, float opacity)
{
    return 255 * (below + (above - below) * opacity);
}

FineColor mixed(const QColor& below, const QColor& above, float opacity)
{
    return {mixed(below.redF(), above.redF(), opacity),
            mixed(below.greenF(), above.greenF(), opacity),
            mixed(below.blueF(), above.blueF(), opacity), 255};
}

QRect pixelsOf(const QRect& points, qreal ratio)
{
    return QRectF(points.x() * ratio, points.y() * ratio, points.width() * ratio,
                  points.height() * ratio)
        .toAlignedRect();
}

} // namespace

void WindowGround::prepare(const Key& key, const QColor& ground, const QColor& wash)
{
    if (key == m_key) {
        return;
    }
    m_key = key;
    const auto length = static_cast<std::size_t>(key.length);
    for (int row = 0; row < Dither::side; ++row) {
        std::vector<QRgb>& colors = m_rows[static_cast<std::size_t>(row)];
        colors.resize(length);
        for (int sum = 0; sum < key.length; ++sum) {
            const float way = static_cast<float>(sum) / static_cast<float>(key.length);
            const FineColor color = mixed(ground, wash, wash.alphaF() * (1 - way));
            colors[static_cast<std::size_t>(sum)] = Dither::rounded(color, sum - row, row);
        }
    }
}

void WindowGround::paint(QPainter& painter, const QSize& window, const QRect& exposed,
                         const QColor& ground, const QColor& wash)
{
    const qreal ratio = painter.device()->devicePixelRatioF();
    const QRect whole = pixelsOf(QRect({}, window), ratio);
    const QRect part = pixelsOf(exposed, ratio).intersected(whole);
    if (part.isEmpty()) {
        return;
    }
    prepare({whole.width() + whole.height(), ground.rgba(), wash.rgba()}, ground, wash);
    QImage picture(part.size(), QImage::Format_RGB32);
    for (int y = part.top(); y <= part.bottom(); ++y) {
        const auto phase = static_cast<std::size_t>(y & (Dither::side - 1));
        const QRgb* const colors = m_rows[phase].data() + part.left() + y;
        std::copy_n(colors, part.width(),
                    reinterpret_cast<QRgb*>(picture.scanLine(y - part.top())));
    }
    painter.save();
    painter.scale(1 / ratio, 1 / ratio);
    painter.drawImage(part.topLeft(), picture);
    painter.restore();
}

} // namespace quorvane
