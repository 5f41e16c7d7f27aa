// SPDX-License-Identifier: MIT
#include "Painting.h"

#include "Tokens.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace quorvane {
namespace {

class Saved
{
public:
    explicit Saved(QPainter& painter)
        : m_painter(painter)
    {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
    }
    ~Saved() { m_painter.restore(); }
    Saved(const Saved&) = delete;
    Saved& operator=(const Saved&) = delete;

private:
    QPainter& m_painter;
};

/// Strokes a line of the given width that lies wholly inside the rounded rectangle.
void strokeInside(QPainter& painter, const QRectF& rect, qreal radius, qreal width,
                  const QColor& color)
{
    const qreal half = width / 2;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, width));
    painter.drawRoundedRect(rect.adjusted(half, half, -half, -half), std::max(0.0, radius - half),
                            std::max(0.0, radius - half));
}

} // namespace

void paintWindowGround(QPainter& painter, const QRectF& window, const QColor& wash)
{
    painter.fillRect(window, themeColor(ThemeColor::window));
    // The line from corner to corner at 45 degrees, long enough for both corners to lie on its
    // ends.
    const qreal half = (window.width() + window.height()) / 4;
    const QPointF middle = window.center();
    QLinearGradient gradient(middle - QPointF(half, half), middle + QPointF(half, half));
    gradient.setColorAt(0, wash);
    gradient.setColorAt(1, withOpacity(wash, 0));
    painter.fillRect(window, gradient);
}

void paintPanel(QPainter& painter, const QRectF& rect, qreal radius, const QBrush& fill,
                const QColor& edge)
{
    const Saved saved(painter);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(rect, radius, radius);
    if (edge.alpha() > 0) {
        strokeInside(painter, rect, radius, 1, edge);
    }
}

void paintCard(QPainter& painter, const QRectF& rect)
{
    paintPanel(painter, rect, radius::surface, themeColor(ThemeColor::card),
               themeColor(ThemeColor::hairline));
    const QColor light = themeColor(ThemeColor::cardTop);
    if (light.alpha() == 0) {
        return;
    }
    // The inner top line follows the corners: the inside shape minus itself moved down by one.
    const Saved saved(painter);
    QPainterPath inside;
    inside.addRoundedRect(rect.adjusted(1, 1, -1, -1), radius::surface - 1, radius::surface - 1);
    painter.fillPath(inside.subtracted(inside.translated(0, 1)), light);
}

void paintPopover(QPainter& painter, const QRectF& rect, qreal radius)
{
    paintPanel(painter, rect, radius, themeColor(ThemeColor::popover),
               themeColor(ThemeColor::controlEdge));
}

void paintShadow(QPainter& painter, const QRectF& rect, qreal radius, qreal offsetY, qreal blur,
                 const QColor& color)
{
    const Saved saved(painter);
    const QRectF dropped = rect.translated(0, offsetY);
    QPainterPath all;
    all.addRect(dropped.united(rect).adjusted(-blur, -blur, blur, blur));
    QPainterPath inside;
    inside.addRoundedRect(rect, radius, radius);
    painter.setClipPath(all.subtracted(inside));
    painter.setPen(Qt::NoPen);

    // Nested rounded rectangles, each adding what the falloff of a Gaussian gains from one ring to
    // the next; `covered` is the opacity that the rings so far have summed up to.
    const int rings = static_cast<int>(blur);
    double covered = 0;
    for (int ring = 0; ring < rings; ++ring) {
        const double distance = blur / 2 - blur * (ring + 0.5) / rings;
        const double sigma = blur / 4;
        const double wanted = color.alphaF() * 0.5 * std::erfc(distance / (sigma * std::sqrt(2.0)));
        const double added = std::clamp((wanted - covered) / (1 - covered), 0.0, 1.0);
        covered = std::max(covered, wanted);
        const double corner = std::max(1.0, radius + distance);
        painter.setBrush(withOpacity(color, added));
        painter.drawRoundedRect(dropped.adjusted(-distance, -distance, distance, distance), corner,
                                corner);
    }
}

void paintRowGround(QPainter& painter, const QRectF& rect, qreal radius, QStyle::State state)
{
    const bool selected = state.testFlag(QStyle::State_Selected);
    if (selected || state.testFlag(QStyle::State_MouseOver)) {
        paintPanel(painter, rect, radius,
                   themeColor(selected ? ThemeColor::accentLow : ThemeColor::hover),
                   Qt::transparent);
    }
    if (state.testFlag(QStyle::State_HasFocus)) {
        paintFocusLine(painter, rect, radius);
    }
}

void paintFocusLine(QPainter& painter, const QRectF& rect, qreal radius)
{
    const Saved saved(painter);
    strokeInside(painter, rect, radius, measure::focusLine, themeColor(ThemeColor::accent));
}

void paintFocusRing(QPainter& painter, const QRectF& rect, qreal radius)
{
    const Saved saved(painter);
    const qreal width = measure::focusRing;
    strokeInside(painter, rect.adjusted(-width, -width, width, width), radius + width, width,
                 themeColor(ThemeColor::focusRing));
    strokeInside(painter, rect, radius, 1, themeColor(ThemeColor::accent));
}

void paintText(QPainter& painter, const QRectF& rect, int alignment, TextStyle style,
               const QColor& color, const QString& text, Qt::TextElideMode elide)
{
    painter.save();
    painter.setFont(font(style));
    painter.setPen(color);
    QString shown = text;
    if (elide != Qt::ElideNone) {
        shown = QFontMetricsF(painter.font()).elidedText(text, elide, rect.width() + 0.5);
    }
    painter.drawText(rect, alignment | Qt::TextSingleLine | Qt::TextDontClip, shown);
    painter.restore();
}

int textWidth(TextStyle style, const QString& text)
{
    return static_cast<int>(std::ceil(QFontMetricsF(font(style)).horizontalAdvance(text)));
}

} // namespace quorvane
