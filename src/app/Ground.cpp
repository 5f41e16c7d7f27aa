// SPDX-License-Identifier: MIT
#include "Ground.h"

#include <QPainter>
#include <QRadialGradient>

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

void GlowView::paintEvent(QPaintEvent*)
{
    const QColor accent = themeColor(ThemeColor::accent);
    QRadialGradient gradient(0, 0, 1);
    gradient.setColorAt(0, withOpacity(accent, m_glow.opacity));
    gradient.setColorAt(1, withOpacity(accent, 0));
    QPainter painter(this);
    painter.translate(width() / 2.0, height() * m_glow.height);
    painter.scale(m_glow.radii.width(), m_glow.radii.height());
    painter.fillRect(QRectF(-1, -1, 2, 2), gradient);
}

} // namespace quorvane
