// SPDX-License-Identifier: MIT
#include "TreemapPainter.h"

#include "GrowthColors.h"
#include "NodeColors.h"
#include "Text.h"
#include "TreemapColors.h"
#include "TreemapLabels.h"
#include "TreemapScene.h"

#include <algorithm>
#include <cmath>

namespace quorvane {
namespace {

/// Bytes of a label that can matter on the widest screen.
constexpr std::size_t maxLabelLength = 65536;

constexpr float dimOpacity = 0.5F;
constexpr float dimTextOpacity = 0.72F;
constexpr double boundaryWidth = 1;
constexpr double labelContrast = 5.2;
constexpr double scrimHeight = 30;
constexpr float sizeTextOpacity = 0.85F;

QColor toQColor(const Color& color)
{
    return QColor::fromRgbF(static_cast<float>(color.r), static_cast<float>(color.g),
                            static_cast<float>(color.b), static_cast<float>(color.a));
}

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double whiteContrast(const QColor& fill, double black)
{
    const double keep = 1 - black;
    const double luminance = 0.2126 * linear(fill.redF() * keep) +
                             0.7152 * linear(fill.greenF() * keep) +
                             0.0722 * linear(fill.blueF() * keep);
    return 1.05 / (luminance + 0.05);
}

} // namespace

double labelScrimOpacity(const QColor& fill)
{
    if (whiteContrast(fill, 0) >= labelContrast) {
        return 0;
    }
    double low = 0;
    double high = 1;
    constexpr int halvings = 12;
    for (int i = 0; i < halvings; ++i) {
        const double middle = (low + high) / 2;
        (whiteContrast(fill, middle) >= labelContrast ? high : low) = middle;
    }
    return high;
}

TreemapPainter::TreemapPainter(QImage& picture, const CanvasStyle& style,
                               const SceneRequest& request)
    : m_picture(picture)
    , m_tiles(picture)
    , m_style(style)
    , m_request(request)
    , m_boundary(NodeColors::boundaryColor())
    , m_texts(&picture)
{}

/// A dimmed tile is half its colour and half the canvas's ground, whatever lies below it: tiles are
/// nested, and the text and hue of what they cover must not show through.
QColor TreemapPainter::fillColor(const Color& fill, bool dimmed) const
{
    const QColor color = toQColor(fill);
    if (!dimmed) {
        return color;
    }
    const auto half = [](float part, float ground) {
        return part * dimOpacity + ground * (1 - dimOpacity);
    };
    return QColor::fromRgbF(half(color.redF(), m_style.ground.redF()),
                            half(color.greenF(), m_style.ground.greenF()),
                            half(color.blueF(), m_style.ground.blueF()));
}

void TreemapPainter::paint(const std::vector<Slice>& slices, bool dimmed)
{
    m_texts.setOpacity(dimmed ? dimTextOpacity : 1);
    std::vector<bool> hasTilesInside(slices.size());
    for (const Slice& slice : slices) {
        if (slice.parent) {
            hasTilesInside[*slice.parent] = true;
        }
    }
    for (std::size_t i = 0; i < slices.size(); ++i) {
        if (slices[i].isAggregateTile) {
            paintAggregate(slices[i], dimmed);
        } else if (slices[i].node != nullptr) {
            paintTile(slices[i], hasTilesInside[i], dimmed);
        }
    }
}

Color TreemapPainter::fillOf(const Slice& slice, bool hasTilesInside) const
{
    if (m_request.growth) {
        // Between tiles the ground stays out of the scale: only what fills an item tells of it.
        return hasTilesInside ? TreemapColors::folderBodyColor : m_request.colorOf(*slice.node);
    }
    if (!slice.isFolder) {
        return m_request.colorOf(*slice.node);
    }
    return slice.folderBodyCategory ? NodeColors::legendColor(*slice.folderBodyCategory)
                                    : TreemapColors::folderBodyColor;
}

void TreemapPainter::paintAggregate(const Slice& slice, bool dimmed)
{
    TilePainter::Tile tile;
    tile.rect = TreemapScene::body(slice);
    tile.topRadius = tile.bottomRadius = TreemapScene::cornerRadius(slice, tile.rect);
    // Of many small files none has a step of its own.
    tile.fill = fillColor(m_request.growth ? growthColor(GrowthStep::unchanged)
                                           : NodeColors::genericFileColor,
                          dimmed);
    tile.stroke = toQColor(m_boundary);
    tile.strokeWidth = boundaryWidth;
    m_tiles.draw(tile);
    if (tile.rect.width > 64 && tile.rect.height > 16) {
        const LabelFont& font = labelFont(9, false);
        const QString label =
            TreemapLabels::fit(TreemapLabels::aggregate(slice.aggregateBytes), tile.rect.width - 8);
        drawText(label, font, tile.rect.x + (tile.rect.width - font.width(label)) / 2,
                 tile.rect.y + tile.rect.height / 2, Qt::white);
    }
}

void TreemapPainter::paintTile(const Slice& slice, bool hasTilesInside, bool dimmed)
{
    const double header = slice.isFolder ? TreemapLayout::headerHeightFor(slice.rect) : 0;
    TilePainter::Tile tile;
    tile.rect = TreemapScene::body(slice);
    tile.topRadius = tile.bottomRadius = TreemapScene::cornerRadius(slice, tile.rect);
    tile.fill = fillColor(fillOf(slice, hasTilesInside), dimmed);
    const bool hasText = tile.rect.width > 40 && tile.rect.height > 18;
    if (hasText && header <= 0) {
        tile.scrimOpacity = labelScrimOpacity(*tile.fill);
        tile.scrimHeight = std::min(tile.rect.height, scrimHeight);
    }
    tile.strokeWidth = boundaryWidth;
    if (header > 0) {
        // The strip lies between the fill and the edge.
        m_tiles.draw(tile);
        paintHeader(tile.rect, header, tile.topRadius, dimmed);
        tile.fill.reset();
    }
    tile.stroke = toQColor(m_boundary);
    m_tiles.draw(tile);
    if (hasText && header > 0) {
        // Dimmed on a pale ground the strip turns grey, where only white can be read.
        const QColor strip = fillColor(TreemapColors::folderHeaderColor, dimmed);
        const bool isPale = labelScrimOpacity(strip) > 0;
        drawHeaderTexts(slice, tile.rect, header,
                        isPale ? QColor(Qt::white) : toQColor(TreemapColors::folderSizeColor));
    } else if (hasText) {
        drawTileTexts(slice, tile.rect);
    }
}

void TreemapPainter::paintHeader(const Rect& body, double header, double radius, bool dimmed)
{
    TilePainter::Tile strip;
    strip.rect = {body.x, body.y, body.width, std::min(header, body.height)};
    strip.topRadius = std::min(radius, header * 0.5);
    strip.fill = fillColor(TreemapColors::folderHeaderColor, dimmed);
    strip.scrimOpacity = labelScrimOpacity(*strip.fill);
    strip.scrimHeight = 2 * header; // even over the whole strip
    m_tiles.draw(strip);
}

void TreemapPainter::drawHeaderTexts(const Slice& slice, const Rect& body, double header,
                                     const QColor& sizeColor)
{
    const int size = TreemapLabels::fontSize(std::max(body.width, 18.0));
    const LabelFont& nameFont = labelFont(size - 1, true);
    const LabelFont& sizeFont = labelFont(std::max(size - 2, 9), false);
    const QString bytes = sizeText(*slice.node);
    const double bytesWidth = sizeFont.width(bytes);
    const QString name = slice.labelOverride
                             ? displayText(utf8Prefix(*slice.labelOverride, maxLabelLength))
                             : slice.node->displayName();
    const double middle = body.y + header / 2;
    const double nameWidth = std::max(body.width - 8 - bytesWidth - 6, 10.0);
    drawText(TreemapLabels::truncateFit(name, nameWidth, nameFont), nameFont, body.x + 4, middle,
             Qt::white);
    const double sizeWidth = std::max(body.width * 0.5, 10.0);
    const QString shownBytes = TreemapLabels::truncateFit(bytes, sizeWidth, sizeFont);
    const double shownWidth = shownBytes == bytes ? bytesWidth : sizeFont.width(shownBytes);
    drawText(shownBytes, sizeFont, body.maxX() - 4 - shownWidth, middle, sizeColor);
}

void TreemapPainter::drawTileTexts(const Slice& slice, const Rect& body)
{
    const int size = TreemapLabels::fontSize(std::max(body.width, 18.0));
    const LabelFont& nameFont = labelFont(size, false);
    const LabelFont& sizeFont = labelFont(size - 1, false);
    const QString bytes = sizeText(*slice.node);
    const double bytesWidth = sizeFont.width(bytes);
    const bool showsSize = body.width - bytesWidth >= 40;
    const double nameWidth = std::max(body.width - 6 - (showsSize ? bytesWidth + 8 : 0), 6.0);
    const double middle = body.y + std::min(body.height * 0.5, 7.0);
    drawText(TreemapLabels::truncateFit(slice.node->displayName(), nameWidth, nameFont), nameFont,
             body.x + 3, middle, Qt::white);
    if (showsSize) {
        drawText(bytes, sizeFont, body.maxX() - 3 - bytesWidth, middle,
                 QColor::fromRgbF(1, 1, 1, sizeTextOpacity));
    }
}

void TreemapPainter::drawText(const QString& text, const LabelFont& font, double left,
                              double middle, const QColor& color)
{
    m_texts.setFont(font.font());
    m_texts.setPen(color);
    // Whole points keep the glyphs on the pixels that they were made for.
    m_texts.drawText(QPointF(left, std::round(middle + font.baselineBelowMiddle())), text);
}

const LabelFont& TreemapPainter::labelFont(int size, bool bold)
{
    std::optional<LabelFont>& place = m_fonts[static_cast<std::size_t>(size)][bold ? 1 : 0];
    if (!place) {
        place.emplace(m_style.font, size, bold, &m_picture);
    }
    return *place;
}

QString TreemapPainter::sizeText(const FileNode& node) const
{
    return basisLabel(node, m_request.sizeMode);
}

} // namespace quorvane
