// SPDX-License-Identifier: MIT
#include "Ground.h"

#include "Dither.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
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
    for (int y = 0; y < image.height(); ++y) {
        auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const double away =
                std::hypot((x + 0.5) / radii.width() - 1, (y + 0.5) / radii.height() - 1);
            const auto alpha = static_cast<float>(m_glow.opacity * std::max(0.0, 1 - away));
            line[x] = Dither::rounded({255 * alpha * accent.redF(), 255 * alpha * accent.greenF(),
                                       255 * alpha * accent.blueF(), 255 * alpha},
                                      x, y);
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
