// SPDX-License-Identifier: MIT
#include "Ground.h"

#include "Dither.h"

#include <QImage>
#include <QPainter>

#include <cmath>

namespace quorvane {

Ground::Ground(ThemeColor color, Edge edge, QWidget* parent)
    : QWidget(parent)
    , m_color(color)
    , m_edge(edge)
{}

void Ground::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), themeColor(m_color));
    const QColor line = themeColor(ThemeColor::hairline);
    if (m_edge == Edge::right) {
        painter.fillRect(QRect(width() - 1, 0, 1, height()), line);
    } else if (m_edge == Edge::bottom) {
        painter.fillRect(QRect(0, height() - 1, width(), 1), line);
    }
}

GlowView::GlowView(const Glow& glow, QWidget* parent)
    : QWidget(parent)
    , m_glow(glow)
{}

/// Dithered, since a glow this faint has few levels.
const QPixmap& GlowView::picture()
{
    const qreal ratio = devicePixelRatioF();
    const QColor accent = themeColor(ThemeColor::accent);
    if (!m_picture.isNull() && m_pictureColor == accent.rgb() &&
        m_picture.devicePixelRatioF() == ratio) {
        return m_picture;
    }
    const QSizeF radii = m_glow.radii * ratio;
    QImage image((2 * radii).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const float opacity = static_cast<float>(m_glow.opacity) * 255;
    const int lastRow = image.height() - 1;
    const int lastColumn = image.width() - 1;
    // One quarter is computed; the others mirror it.
    for (int y = 0; 2 * y <= lastRow; ++y) {
        auto* const upper = reinterpret_cast<QRgb*>(image.scanLine(y));
        auto* const lower = reinterpret_cast<QRgb*>(image.scanLine(lastRow - y));
        const float up = (static_cast<float>(y) + 0.5F) / static_cast<float>(radii.height()) - 1;
        for (int x = 0; 2 * x <= lastColumn; ++x) {
            const float across =
                (static_cast<float>(x) + 0.5F) / static_cast<float>(radii.width()) - 1;
            const float away = std::sqrt(across * across + up * up);
            if (away >= 1) {
                continue;
            }
            const float alpha = opacity * (1 - away);
            const QRgb pixel = Dither::rounded(
                {alpha * accent.redF(), alpha * accent.greenF(), alpha * accent.blueF(), alpha}, x,
                y);
            upper[x] = upper[lastColumn - x] = lower[x] = lower[lastColumn - x] = pixel;
        }
    }
    m_picture = QPixmap::fromImage(image);
    m_picture.setDevicePixelRatio(ratio);
    m_pictureColor = accent.rgb();
    return m_picture;
}

void GlowView::paintEvent(QPaintEvent*)
{
    const QPoint center(width() / 2, qRound(height() * m_glow.height));
    const QPoint corner(qRound(m_glow.radii.width()), qRound(m_glow.radii.height()));
    QPainter(this).drawPixmap(center - corner, picture());
}

} // namespace quorvane
