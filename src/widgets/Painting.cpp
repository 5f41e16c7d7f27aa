// SPDX-License-Identifier: MIT
#include "Painting.h"

#include "Tokens.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

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

/// Coverage of a blurred edge-to-edge line at each device pixel: a box of the given length under a
/// Gaussian, from `blur` before its start to `blur` behind its end.
std::vector<double> shadowProfile(qreal length, qreal blur, qreal ratio)
{
    const double spread = blur / 2 * std::sqrt(2.0);
    const auto pixels = static_cast<std::size_t>(std::ceil((length + 2 * blur) * ratio));
    std::vector<double> profile(pixels);
    for (std::size_t pixel = 0; pixel < pixels; ++pixel) {
        const double place = (static_cast<double>(pixel) + 0.5) / ratio - blur;
        profile[pixel] = (std::erf(place / spread) - std::erf((place - length) / spread)) / 2;
    }
    return profile;
}

/// The shadow of a rectangle, with `blur` around it. The corners of the radii in use vanish in it.
QImage shadowImage(const QSizeF& size, qreal blur, const QColor& color, qreal ratio)
{
    const std::vector<double> across = shadowProfile(size.width(), blur, ratio);
    const std::vector<double> down = shadowProfile(size.height(), blur, ratio);
    QImage image(static_cast<int>(across.size()), static_cast<int>(down.size()),
                 QImage::Format_ARGB32_Premultiplied);
    std::array<QRgb, 256> tints{};
    for (std::size_t alpha = 0; alpha < tints.size(); ++alpha) {
        tints[alpha] =
            qPremultiply(qRgba(color.red(), color.green(), color.blue(), static_cast<int>(alpha)));
    }
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        const double row = down[static_cast<std::size_t>(y)] * color.alphaF() * 255;
        for (std::size_t x = 0; x < across.size(); ++x) {
            line[x] = tints[static_cast<std::size_t>(row * across[x] + 0.5)];
        }
    }
    image.setDevicePixelRatio(ratio);
    return image;
}

/// A text that no screen has room for, without what is elided anyway: a path may be longer than a
/// book, and its letters are measured one by one.
QString withoutFarMiddle(const QString& text, Qt::TextElideMode elide)
{
    constexpr qsizetype end = 1024;
    if (text.size() <= 2 * end) {
        return text;
    }
    switch (elide) {
    case Qt::ElideRight:
        return text.left(2 * end);
    case Qt::ElideLeft:
        return text.right(2 * end);
    case Qt::ElideMiddle:
        return text.left(end) + text.right(end);
    case Qt::ElideNone:
        break;
    }
    return text;
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
    const QRectF area = dropped.adjusted(-blur, -blur, blur, blur);
    QPainterPath all;
    all.addRect(area.united(rect));
    QPainterPath inside;
    inside.addRoundedRect(rect, radius, radius);
    painter.setClipPath(all.subtracted(inside));
    painter.drawImage(area.topLeft(), shadowImage(dropped.size(), blur, color,
                                                  painter.device()->devicePixelRatioF()));
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

void clipToCard(QPainter& painter, const QRectF& inside)
{
    constexpr qreal innerRadius = radius::surface - 1;
    QPainterPath path;
    path.addRoundedRect(inside, innerRadius, innerRadius);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipPath(path, Qt::IntersectClip);
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
        shown = QFontMetricsF(painter.font())
                    .elidedText(withoutFarMiddle(text, elide), elide, rect.width() + 0.5);
    }
    painter.drawText(rect, alignment | Qt::TextSingleLine | Qt::TextDontClip, shown);
    painter.restore();
}

int textWidth(TextStyle style, const QString& text)
{
    return static_cast<int>(std::ceil(QFontMetricsF(font(style)).horizontalAdvance(text)));
}

} // namespace quorvane
