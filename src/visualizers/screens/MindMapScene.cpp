// SPDX-License-Identifier: MIT
#include "MindMapScene.h"

#include "HoverTooltip.h"
#include "NodeColors.h"
#include "ShapePainting.h"
#include "Theme.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quorvane {
namespace {

constexpr double centerX = 40;
constexpr double dimOpacity = 0.4;
constexpr double axisOpacity = 0.15;
constexpr double axisWidth = 1;
/// A file's spoke is as thick as this share of its ring's circle times its weight.
constexpr double spokeShare = 0.9;
constexpr double minSpokeWidth = 1;
constexpr double arcWidth = 3;
constexpr double selectedArcWidth = 4;
constexpr double hoveredArcWidth = 5;
constexpr double haloWidth = 7;
constexpr float haloOpacity = 0.55F;
constexpr double minLabelArc = 14;
constexpr int labelSize = 9;
constexpr double labelOpacity = 0.85;

QPen flatPen(const QColor& color, double width)
{
    return {color, width, Qt::SolidLine, Qt::FlatCap};
}

double spokeWidth(const MindMapLayout::Band& band)
{
    return std::max(band.outer * band.weight * spokeShare, minSpokeWidth);
}

} // namespace

ScenePointer MindMapScene::make(const SceneRequest& request, const LockedFlag& stop)
{
    return std::make_shared<MindMapScene>(
        request, MindMapLayout::layout(*request.target, request.sizeMode, request.hidden, &stop));
}

QPointF MindMapScene::center() const
{
    return {centerX, request().size.height() * 0.5};
}

RingSector MindMapScene::sectorOf(std::size_t item) const
{
    const MindMapLayout::Band& band = m_bands[item];
    return {center(), band.inner, band.outer, band.start, band.end};
}

std::int64_t MindMapScene::idOf(std::size_t item) const
{
    return m_bands[item].node->id();
}

std::optional<std::size_t> MindMapScene::itemAt(const QPointF& point) const
{
    const QPointF offset = point - center();
    if (offset.x() <= 0) {
        return std::nullopt;
    }
    const double radius = std::hypot(offset.x(), offset.y());
    const double angle = std::atan2(offset.y(), offset.x());
    for (std::size_t i = m_bands.size(); i-- > 0;) {
        const MindMapLayout::Band& band = m_bands[i];
        if (band.inner <= radius && radius <= band.outer && band.start <= angle &&
            angle <= band.end) {
            return i;
        }
    }
    return std::nullopt;
}

QRectF MindMapScene::boundsOf(std::size_t item) const
{
    return quorvane::boundsOf(sectorOf(item));
}

TooltipText MindMapScene::tooltipOf(std::size_t item) const
{
    return hoverTooltipText(*m_bands[item].node);
}

QString MindMapScene::labelOf(std::size_t item) const
{
    return itemLabel(tooltipOf(item));
}

std::optional<std::size_t> MindMapScene::itemOf(const FileNode& node) const
{
    for (std::size_t i = 0; i < m_bands.size(); ++i) {
        if (m_bands[i].node == &node) {
            return i;
        }
    }
    return std::nullopt;
}

QColor MindMapScene::colorOf(std::size_t item) const
{
    return toQColor(NodeColors::leafColor(*m_bands[item].node));
}

void MindMapScene::paintBand(QPainter& painter, std::size_t item, const QColor& color,
                             double width) const
{
    const MindMapLayout::Band& band = m_bands[item];
    if (band.hasChildren) {
        painter.strokePath(outerArc(sectorOf(item)), flatPen(color, width));
        return;
    }
    painter.setPen(flatPen(color, spokeWidth(band)));
    painter.drawLine(polarPoint(center(), band.inner, band.mid()),
                     polarPoint(center(), band.outer, band.mid()));
}

void MindMapScene::paintLabel(QPainter& painter, std::size_t item, const QColor& ground) const
{
    const MindMapLayout::Band& band = m_bands[item];
    if (band.arcLength() * band.outer <= minLabelArc) {
        return;
    }
    painter.save();
    painter.translate(polarPoint(center(), (band.inner + band.outer) * 0.5, band.mid()));
    painter.rotate(band.mid() * 180 / std::numbers::pi + 90);
    constexpr double halfLine = 10;
    const QRectF line(-halfLine, -halfLine, 2 * halfLine, 2 * halfLine);
    constexpr int flags = Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip;
    const QString name = band.node->displayName();
    // A seam of the ground sets the letters off from bands of any colour.
    drawSeam(painter, line, flags, name, ground);
    painter.setPen(withOpacity(inkOn(ground).primary, labelOpacity));
    painter.drawText(line, flags, name);
    painter.restore();
}

void MindMapScene::paintAxis(QPainter& painter, const QSize& canvas, const QColor& ground)
{
    const double y = canvas.height() * 0.5;
    painter.setPen(QPen(mixed(inkOn(ground).primary, axisOpacity, ground), axisWidth));
    painter.drawLine(QPointF(0, y), QPointF(canvas.width(), y));
}

void MindMapScene::paint(QImage& picture, const CanvasStyle& style, bool dimmed) const
{
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(labelFont(style, labelSize));
    paintAxis(painter, request().size, style.ground);
    const QRectF canvas(QPointF(0, 0), QSizeF(request().size));
    for (std::size_t i = 0; i < m_bands.size(); ++i) {
        if (!boundsOf(i).intersects(canvas)) {
            continue;
        }
        const QColor color = colorOf(i);
        paintBand(painter, i, dimmed ? mixed(color, dimOpacity, style.ground) : color, arcWidth);
        paintLabel(painter, i, style.ground);
    }
}

void MindMapScene::restoreItem(QPainter& painter, std::size_t item, const QImage& bright,
                               const QImage& dimmed) const
{
    static_cast<void>(dimmed);
    const MindMapLayout::Band& band = m_bands[item];
    painter.setRenderHint(QPainter::Antialiasing);
    if (band.hasChildren) {
        painter.strokePath(outerArc(sectorOf(item)),
                           flatPen(QColor::fromRgbF(1, 1, 1, haloOpacity), haloWidth));
        paintBand(painter, item, colorOf(item), hoveredArcWidth);
        return;
    }
    QPainterPath line(polarPoint(center(), band.inner, band.mid()));
    line.lineTo(polarPoint(center(), band.outer, band.mid()));
    QPainterPathStroker spoke(flatPen(Qt::black, spokeWidth(band)));
    const QPainterPath outline = spoke.createStroke(line);
    painter.save();
    painter.setClipPath(outline, Qt::IntersectClip);
    copyPicture(painter, bright,
                outline.boundingRect().toAlignedRect().intersected(QRect({}, request().size)));
    painter.restore();
}

void MindMapScene::paintHighlight(QPainter& painter, std::size_t item, Highlight highlight,
                                  const QColor& accent) const
{
    static_cast<void>(accent);
    if (highlight == Highlight::selected && m_bands[item].hasChildren) {
        painter.setRenderHint(QPainter::Antialiasing);
        paintBand(painter, item, colorOf(item), selectedArcWidth);
    }
}

} // namespace quorvane
