// SPDX-License-Identifier: MIT
#include "TilePainter.h"

#include <algorithm>
#include <cmath>

namespace quorvane {
namespace {

/// Share of the scrim's height over which it keeps its full opacity.
constexpr double scrimPlateau = 0.55;

/// A colour with an opacity, in the integers that pixels are made of.
struct Ink
{
    int r = 0;
    int g = 0;
    int b = 0;
    int opacity = 0; ///< 0 to 256

    void lay(QRgb& pixel, double coverage) const
    {
        lay(pixel, static_cast<int>(coverage * opacity + 0.5));
    }
    void lay(QRgb& pixel, int share) const
    {
        const int r0 = qRed(pixel);
        const int g0 = qGreen(pixel);
        const int b0 = qBlue(pixel);
        pixel = qRgb(r0 + (((r - r0) * share) >> 8), g0 + (((g - g0) * share) >> 8),
                     b0 + (((b - b0) * share) >> 8));
    }
};

Ink inkOf(const std::optional<QColor>& color)
{
    if (!color) {
        return {};
    }
    return {color->red(), color->green(), color->blue(),
            static_cast<int>(std::lround(color->alphaF() * 256))};
}

Ink darkenedInk(const Ink& ink, double opacity)
{
    const auto channel = [opacity](int value) {
        return static_cast<int>(std::lround(value * (1 - opacity)));
    };
    return {channel(ink.r), channel(ink.g), channel(ink.b), ink.opacity};
}

/// A rounded rectangle in pixels.
struct Outline
{
    double left;
    double top;
    double right;
    double bottom;
    double topRadius;
    double bottomRadius;

    /// Distance of a point to the edge, negative inside (I. Quilez, distance to a rounded box).
    double distance(double x, double y) const
    {
        const double middleX = (left + right) / 2;
        const double middleY = (top + bottom) / 2;
        const double radius = y < middleY ? topRadius : bottomRadius;
        const double qx = std::abs(x - middleX) - (right - left) / 2 + radius;
        const double qy = std::abs(y - middleY) - (bottom - top) / 2 + radius;
        const double outsideX = std::max(qx, 0.0);
        const double outsideY = std::max(qy, 0.0);
        return std::sqrt(outsideX * outsideX + outsideY * outsideY) +
               std::min(std::max(qx, qy), 0.0) - radius;
    }
};

/// One tile on its way to the pixels.
struct Stroke
{
    Outline outline;
    Ink fill;
    Ink stroke;
    double halfStroke;

    void lay(QRgb& pixel, double distance, const Ink& rowFill) const
    {
        const double inside = std::clamp(0.5 - distance, 0.0, 1.0);
        if (inside > 0 && rowFill.opacity > 0) {
            rowFill.lay(pixel, inside);
        }
        const double onEdge = std::clamp(0.5 + halfStroke - std::abs(distance), 0.0, 1.0);
        if (onEdge > 0 && stroke.opacity > 0) {
            stroke.lay(pixel, onEdge);
        }
    }
};

double scrimOpacityAt(const TilePainter::Tile& tile, double depth)
{
    if (tile.scrimOpacity <= 0 || depth >= tile.scrimHeight) {
        return 0;
    }
    const double plateau = tile.scrimHeight * scrimPlateau;
    return depth <= plateau
               ? tile.scrimOpacity
               : tile.scrimOpacity * (tile.scrimHeight - depth) / (tile.scrimHeight - plateau);
}

void drawRow(QRgb* line, int width, int y, const Stroke& shape, const Ink& rowFill)
{
    const Outline& outline = shape.outline;
    const double reach = shape.halfStroke + 1;
    const double radius = std::max(outline.topRadius, outline.bottomRadius);
    const int first = std::max(static_cast<int>(std::floor(outline.left - reach)), 0);
    const int last = std::min(static_cast<int>(std::ceil(outline.right + reach)), width);
    // Between the rounded ends the distance depends on the row alone.
    const int evenFrom =
        std::clamp(static_cast<int>(std::ceil(outline.left + radius + reach)), first, last);
    const int evenTo =
        std::clamp(static_cast<int>(std::floor(outline.right - radius - reach)), evenFrom, last);
    const double middle = y + 0.5;
    for (int x = first; x < evenFrom; ++x) {
        shape.lay(line[x], outline.distance(x + 0.5, middle), rowFill);
    }
    const double even = std::max(outline.top - middle, middle - outline.bottom);
    if (even < -(shape.halfStroke + 0.5) && rowFill.opacity == 256) {
        std::fill(line + evenFrom, line + evenTo, qRgb(rowFill.r, rowFill.g, rowFill.b));
    } else {
        for (int x = evenFrom; x < evenTo; ++x) {
            shape.lay(line[x], even, rowFill);
        }
    }
    for (int x = evenTo; x < last; ++x) {
        shape.lay(line[x], outline.distance(x + 0.5, middle), rowFill);
    }
}

} // namespace

TilePainter::TilePainter(QImage& picture)
    : m_picture(picture)
    , m_scale(picture.devicePixelRatio())
{}

void TilePainter::draw(const Tile& tile)
{
    const Rect& rect = tile.rect;
    if (rect.width <= 0 || rect.height <= 0) {
        return;
    }
    const Stroke shape{{rect.x * m_scale, rect.y * m_scale, rect.maxX() * m_scale,
                        rect.maxY() * m_scale, tile.topRadius * m_scale,
                        tile.bottomRadius * m_scale},
                       inkOf(tile.fill),
                       inkOf(tile.stroke),
                       tile.stroke ? tile.strokeWidth * m_scale / 2 : 0};
    const double reach = shape.halfStroke + 1;
    const int first = std::max(static_cast<int>(std::floor(shape.outline.top - reach)), 0);
    const int last =
        std::min(static_cast<int>(std::ceil(shape.outline.bottom + reach)), m_picture.height());
    for (int y = first; y < last; ++y) {
        const double scrim = scrimOpacityAt(tile, (y + 0.5) / m_scale - rect.y);
        drawRow(reinterpret_cast<QRgb*>(m_picture.scanLine(y)), m_picture.width(), y, shape,
                scrim > 0 ? darkenedInk(shape.fill, scrim) : shape.fill);
    }
}

} // namespace quorvane
