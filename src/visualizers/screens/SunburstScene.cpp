// SPDX-License-Identifier: MIT
#include "SunburstScene.h"

#include "HoverTooltip.h"
#include "NodeColors.h"
#include "ShapePainting.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QRadialGradient>

#include <algorithm>
#include <cmath>
#include <utility>

namespace quorvane {
namespace {

constexpr double dimOpacity = 0.45;
constexpr double edgeDarkening = 0.3;
/// The line between slices, and the most of a slice's own width that it may take.
constexpr double boundaryWidth = 1;
constexpr double boundaryShare = 0.2;
constexpr double hubPadding = 12;
constexpr int hubNameSize = 15;
constexpr int hubDetailSize = 12;
constexpr double hubNameLine = 20;
constexpr double hubDetailLine = 16;

/// An angle brought to the range from 0 to a turn.
double normalized(double angle)
{
    const double rest = std::fmod(angle, SunburstLayout::twoPi);
    return rest < 0 ? rest + SunburstLayout::twoPi : rest;
}

bool holdsAngle(double start, double end, double angle)
{
    return start <= end ? start <= angle && angle <= end : angle >= start || angle < end;
}

/// Draws the edges of a sector one after the other, in half the time of the whole outline. The pen
/// is opaque, so that nobody sees where they meet.
void strokeEdges(QPainter& painter, const RingSector& sector, QPen pen)
{
    pen.setCapStyle(Qt::SquareCap);
    RingSector hole = sector;
    hole.outer = sector.inner;
    painter.strokePath(outerArc(sector), pen);
    painter.strokePath(outerArc(hole), pen);
    painter.setPen(pen);
    for (const double angle : {sector.start, sector.end}) {
        painter.drawLine(polarPoint(sector.center, sector.inner, angle),
                         polarPoint(sector.center, sector.outer, angle));
    }
}

} // namespace

ScenePointer SunburstScene::make(const SceneRequest& request, const LockedFlag& stop)
{
    return std::make_shared<SunburstScene>(
        request,
        SunburstLayout::layout(*request.target,
                               SunburstLayout::screenOptions(
                                   request.size.width(), request.size.height(), request.sizeMode),
                               request.hidden, &stop));
}

SunburstScene::SunburstScene(const SceneRequest& request, std::vector<SunburstLayout::Slice> slices)
    : CanvasScene(request)
    , m_slices(std::move(slices))
{
    const double farthest = farthestRadius();
    for (std::size_t i = 0; i < m_slices.size(); ++i) {
        const SunburstLayout::Slice& slice = m_slices[i];
        auto ring = std::find_if(m_rings.begin(), m_rings.end(), [&](const Ring& known) {
            return known.inner == slice.innerRadius;
        });
        if (ring == m_rings.end()) {
            m_rings.push_back({slice.innerRadius, slice.outerRadius, {}, {}, {}, nullptr});
            ring = std::prev(m_rings.end());
        }
        ring->items.push_back(i);
        if (slice.innerRadius <= farthest) {
            ring->starts.push_back(normalized(slice.startAngle));
            ring->ends.push_back(normalized(slice.endAngle));
        }
        ring->lastFolder = slice.node->parent();
    }
}

QPointF SunburstScene::center() const
{
    return {request().size.width() / 2.0, request().size.height() / 2.0};
}

double SunburstScene::farthestRadius() const
{
    return std::hypot(request().size.width(), request().size.height()) / 2;
}

RingSector SunburstScene::sectorOf(std::size_t item) const
{
    const SunburstLayout::Slice& slice = m_slices[item];
    return {center(), slice.innerRadius, slice.outerRadius, slice.startAngle, slice.endAngle};
}

bool SunburstScene::isOnTop(std::size_t item) const
{
    return std::any_of(m_rings.begin(), m_rings.end(), [&](const Ring& ring) {
        return ring.inner == m_slices[item].innerRadius &&
               ring.lastFolder == m_slices[item].node->parent();
    });
}

std::optional<std::size_t> SunburstScene::firstHit(const Ring& ring, double angle) const
{
    for (std::size_t i = 0; i < ring.starts.size(); ++i) {
        if (holdsAngle(ring.starts[i], ring.ends[i], angle)) {
            return ring.items[i];
        }
    }
    return std::nullopt;
}

std::optional<std::size_t> SunburstScene::itemAt(const QPointF& point) const
{
    const QPointF offset = point - center();
    const double radius = std::hypot(offset.x(), offset.y());
    double angle = std::atan2(offset.y(), offset.x());
    if (angle < 0) {
        angle += SunburstLayout::twoPi;
    }
    // On the line between two rings both count, and the earlier slice wins.
    std::optional<std::size_t> found;
    for (const Ring& ring : m_rings) {
        if (ring.inner <= radius && radius <= ring.outer) {
            const std::optional<std::size_t> hit = firstHit(ring, angle);
            if (hit && (!found || *hit < *found)) {
                found = hit;
            }
        }
    }
    return found;
}

QRectF SunburstScene::boundsOf(std::size_t item) const
{
    return quorvane::boundsOf(sectorOf(item));
}

TooltipText SunburstScene::tooltipOf(std::size_t item) const
{
    return hoverTooltipText(*m_slices[item].node);
}

QString SunburstScene::labelOf(std::size_t item) const
{
    return itemLabel(tooltipOf(item));
}

std::optional<std::size_t> SunburstScene::itemOf(const FileNode& node) const
{
    for (std::size_t i = 0; i < m_slices.size(); ++i) {
        if (m_slices[i].node == &node) {
            return i;
        }
    }
    return std::nullopt;
}

void SunburstScene::fillSlice(QPainter& painter, std::size_t item, const QPainterPath& outline,
                              double opacity, const QColor& ground) const
{
    const RingSector sector = sectorOf(item);
    const Color base = NodeColors::leafColor(*m_slices[item].node);
    QRadialGradient gradient(sector.center, sector.outer);
    gradient.setColorAt(sector.inner / sector.outer, mixed(toQColor(base), opacity, ground));
    gradient.setColorAt(
        1, mixed(toQColor(NodeColors::darkened(base, edgeDarkening)), opacity, ground));
    painter.fillPath(outline, gradient);
}

void SunburstScene::paintSlice(QPainter& painter, std::size_t item, double opacity,
                               const QColor& ground) const
{
    const RingSector sector = sectorOf(item);
    const QPainterPath outline = annulus(sector);
    fillSlice(painter, item, outline, opacity, ground);
    const double arc = sector.outer * (sector.end - sector.start);
    const double width = std::min(boundaryWidth, arc * boundaryShare);
    painter.strokePath(outline, QPen(toQColor(NodeColors::boundaryColor()), width));
}

void SunburstScene::paintHub(QPainter& painter, const CanvasStyle& style) const
{
    const double width = 2 * (m_rings.front().inner - hubPadding);
    const double left = center().x() - width / 2;
    const double top = center().y() - (hubNameLine + hubDetailLine) / 2;
    if (width < hubNameLine) {
        return;
    }
    QFont name = labelFont(style, hubNameSize);
    name.setWeight(QFont::DemiBold);
    painter.setFont(name);
    painter.setPen(inkOn(style.ground).primary);
    painter.drawText(
        QRectF(left, top, width, hubNameLine), Qt::AlignCenter | Qt::TextSingleLine,
        QFontMetricsF(name).elidedText(request().target->displayName(), Qt::ElideMiddle, width));
    const QFont detail = labelFont(style, hubDetailSize);
    painter.setFont(detail);
    painter.setPen(inkOn(style.ground).secondary);
    painter.drawText(QRectF(left, top + hubNameLine, width, hubDetailLine),
                     Qt::AlignCenter | Qt::TextSingleLine,
                     basisLabel(*request().target, request().sizeMode));
}

void SunburstScene::paint(QImage& picture, const CanvasStyle& style, bool dimmed) const
{
    if (m_slices.empty()) {
        return;
    }
    const QRectF canvas(QPointF(0, 0), QSizeF(request().size));
    const double farthest = farthestRadius();
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const Ring& ring : m_rings) {
        if (ring.inner > farthest) {
            continue;
        }
        for (const std::size_t item : ring.items) {
            if (m_slices[item].node->parent() == ring.lastFolder &&
                boundsOf(item).intersects(canvas)) {
                paintSlice(painter, item, dimmed ? dimOpacity : 1, style.ground);
            }
        }
    }
    paintHub(painter, style);
}

void SunburstScene::restoreItem(QPainter& painter, std::size_t item, const QImage& bright,
                                const QImage& dimmed) const
{
    static_cast<void>(dimmed);
    // Smooth edges would take five times as long, and the frame covers them.
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QPainterPath outline = annulus(sectorOf(item));
    if (!isOnTop(item)) {
        fillSlice(painter, item, outline, 1, Qt::black);
        return;
    }
    painter.save();
    painter.setClipPath(outline, Qt::IntersectClip);
    copyPicture(painter, bright,
                boundsOf(item).toAlignedRect().intersected(QRect({}, request().size)));
    painter.restore();
}

void SunburstScene::paintHighlight(QPainter& painter, std::size_t item, Highlight highlight,
                                   const QColor& accent) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    if (highlight == Highlight::hovered) {
        const QColor color = toQColor(NodeColors::leafColor(*m_slices[item].node));
        strokeEdges(painter, sectorOf(item), hoverPenOver(color));
    } else if (isOnTop(item)) {
        strokeSelected(painter, annulus(sectorOf(item)), accent);
    }
}

} // namespace quorvane
