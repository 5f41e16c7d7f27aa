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

    /// share is a coverage from 0 to 256.
    void lay(QRgb& pixel, int share) const
    {
        const int part = (share * opacity) >> 8;
        if (part >= 256) {
            pixel = qRgb(r, g, b);
        } else if (part > 0) {
            const int r0 = qRed(pixel);
            const int g0 = qGreen(pixel);
            const int b0 = qBlue(pixel);
            pixel = qRgb(r0 + (((r - r0) * part) >> 8), g0 + (((g - g0) * part) >> 8),
                         b0 + (((b - b0) * part) >> 8));
        }
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
    float left;
    float top;
    float right;
    float bottom;
    float topRadius;
    float bottomRadius;
};

/// One tile on its way to the pixels.
class Brush
{
public:
    Brush(const Outline& outline, const Ink& fill, const Ink& stroke, float halfStroke)
        : m_outline(outline)
        , m_fill(fill)
        , m_stroke(stroke)
        , m_halfStroke(halfStroke)
    {}

    /// Pixels beyond the edge that the tile can touch.
    float reach() const { return m_halfStroke + 0.5F; }
    const Ink& fill() const { return m_fill; }

    /// One row of pixels, whose fill is given: it may be darker than the tile's own.
    void drawRow(QRgb* line, int width, int y, const Ink& fill) const
    {
        const float middle = static_cast<float>(y) + 0.5F;
        const bool isUpper = middle < (m_outline.top + m_outline.bottom) / 2;
        const float radius = isUpper ? m_outline.topRadius : m_outline.bottomRadius;
        const float inRow =
            isUpper ? m_outline.top - middle : middle - m_outline.bottom; // negative inside
        // Columns between the two ends have the row's own distance; the ends are the corners'
        // width, or what an edge covers where that is more.
        const float end = std::max(radius, reach());
        const int first = std::max(static_cast<int>(std::floor(m_outline.left - reach())), 0);
        const int last = std::min(static_cast<int>(std::ceil(m_outline.right + reach())), width);
        const int evenFrom = std::clamp(static_cast<int>(std::ceil(m_outline.left + end - 0.5F)),
                                        first, std::max(last, first));
        const int evenTo = std::clamp(static_cast<int>(std::floor(m_outline.right - end + 0.5F)),
                                      evenFrom, std::max(last, evenFrom));
        drawEnd(line, first, evenFrom, inRow, radius, fill);
        drawRun(line + evenFrom, line + evenTo, inRow, fill);
        drawEnd(line, evenTo, last, inRow, radius, fill);
    }

private:
    /// How much of a pixel at that distance from the edge is inside, 0 to 256.
    static int insideShare(float distance)
    {
        return static_cast<int>(std::clamp(0.5F - distance, 0.0F, 1.0F) * 256);
    }
    /// How much of it the stroke covers, 0 to 256.
    int strokeShare(float distance) const
    {
        const float cover = std::clamp(reach() - std::abs(distance), 0.0F, 1.0F);
        return static_cast<int>(std::min(cover, 2 * m_halfStroke) * 256);
    }

    void drawEnd(QRgb* line, int from, int to, float inRow, float radius, const Ink& fill) const
    {
        const float qy = inRow + radius;
        for (int x = from; x < to; ++x) {
            const float middle = static_cast<float>(x) + 0.5F;
            const float inColumn = std::max(m_outline.left - middle, middle - m_outline.right);
            const float qx = inColumn + radius;
            // Distance to a rounded box (I. Quilez).
            const float distance = qx > 0 && qy > 0 ? std::sqrt(qx * qx + qy * qy) - radius
                                                    : std::max(inColumn, inRow);
            fill.lay(line[x], insideShare(distance));
            m_stroke.lay(line[x], strokeShare(distance));
        }
    }

    void drawRun(QRgb* from, QRgb* to, float distance, const Ink& fill) const
    {
        const int inside = insideShare(distance);
        const int edge = strokeShare(distance);
        if (inside == 256 && fill.opacity == 256) {
            std::fill(from, to, qRgb(fill.r, fill.g, fill.b));
        } else if (inside > 0 && fill.opacity > 0) {
            std::for_each(from, to, [&](QRgb& pixel) { fill.lay(pixel, inside); });
        }
        if (edge > 0 && m_stroke.opacity > 0) {
            std::for_each(from, to, [&](QRgb& pixel) { m_stroke.lay(pixel, edge); });
        }
    }

    Outline m_outline;
    Ink m_fill;
    Ink m_stroke;
    float m_halfStroke;
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

} // namespace

TilePainter::TilePainter(QImage& picture)
    : m_bits(picture.bits())
    , m_bytesPerLine(picture.bytesPerLine())
    , m_width(picture.width())
    , m_height(picture.height())
    , m_scale(picture.devicePixelRatio())
{}

void TilePainter::draw(const Tile& tile)
{
    const Rect& rect = tile.rect;
    if (rect.width <= 0 || rect.height <= 0) {
        return;
    }
    const auto pixels = [this](double points) { return static_cast<float>(points * m_scale); };
    const Outline outline{pixels(rect.x),      pixels(rect.y),         pixels(rect.maxX()),
                          pixels(rect.maxY()), pixels(tile.topRadius), pixels(tile.bottomRadius)};
    const Brush brush(outline, inkOf(tile.fill), inkOf(tile.stroke),
                      tile.stroke ? pixels(tile.strokeWidth) / 2 : 0);
    const int first = std::max(static_cast<int>(std::floor(outline.top - brush.reach())), 0);
    const int last =
        std::min(static_cast<int>(std::ceil(outline.bottom + brush.reach())), m_height);
    for (int y = first; y < last; ++y) {
        const double scrim = scrimOpacityAt(tile, (y + 0.5) / m_scale - rect.y);
        auto* const line = reinterpret_cast<QRgb*>(m_bits + y * m_bytesPerLine);
        brush.drawRow(line, m_width, y,
                      scrim > 0 ? darkenedInk(brush.fill(), scrim) : brush.fill());
    }
}

} // namespace quorvane
