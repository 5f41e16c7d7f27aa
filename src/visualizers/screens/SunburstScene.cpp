// SPDX-License-Identifier: MIT
#include "SunburstScene.h"

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

/// Between two colours, the first of which has that share.
Color mean(const Color& first, const Color& second, double share)
{
    const auto channel = [share](double one, double other) {
        return one * share + other * (1 - share);
    };
    return {channel(first.r, second.r), channel(first.g, second.g), channel(first.b, second.b)};
}

/// Draws the edges of a sector one after the other, in half the time of the whole outline. The pen
/// is opaque, so that the seam is invisible.
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
    return nodeText(*m_slices[item].node);
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

/// How much a slice darkens outwards. Not at all where its colour is read against a legend.
double SunburstScene::shading() const
{
    return request().growth ? 0 : edgeDarkening;
}

void SunburstScene::fillSlice(QPainter& painter, std::size_t item,
                              const QPainterPath& outline) const
{
    const RingSector sector = sectorOf(item);
    const Color base = request().colorOf(*m_slices[item].node);
    QRadialGradient gradient(sector.center, sector.outer);
    gradient.setColorAt(sector.inner / sector.outer, toQColor(base));
    gradient.setColorAt(1, toQColor(NodeColors::darkened(base, shading())));
    painter.fillPath(outline, gradient);
}

std::vector<SunburstScene::Piece> SunburstScene::piecesOf(const Ring& ring, double minAngle) const
{
    const QRectF canvas(QPointF(0, 0), QSizeF(request().size));
    std::vector<Piece> pieces;
    for (const std::size_t item : ring.items) {
        const SunburstLayout::Slice& slice = m_slices[item];
        if (slice.node->parent() != ring.lastFolder || !boundsOf(item).intersects(canvas)) {
            continue;
        }
        const Color color = request().colorOf(*slice.node);
        const bool joins = !pieces.empty() && pieces.back().end == slice.startAngle &&
                           pieces.back().angle() < minAngle &&
                           slice.endAngle - slice.startAngle < minAngle;
        if (!joins) {
            pieces.push_back({slice.startAngle, slice.endAngle, color, false});
            continue;
        }
        Piece& last = pieces.back();
        const double share = last.angle() / (slice.endAngle - last.start);
        last.color = mean(last.color, color, share);
        last.end = slice.endAngle;
        last.isJoined = true;
    }
    return pieces;
}

/// The line around a slice is drawn before the next slice, which covers half of it.
void SunburstScene::paintRing(QPainter& painter, const Ring& ring, double opacity,
                              const CanvasStyle& style) const
{
    const double pixel = 1 / (ring.outer * style.devicePixelRatio);
    const QColor boundary = toQColor(NodeColors::boundaryColor());
    const std::vector<Piece> pieces = piecesOf(ring, pixel);
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const Piece& piece = pieces[i];
        RingSector sector{center(), ring.inner, ring.outer, piece.start, piece.end};
        const QPainterPath outline = annulus(sector);
        // Smooth edges of two strips leave a gap where they share a pixel: the first goes on below
        // the second.
        if (piece.isJoined && i + 1 < pieces.size() && pieces[i + 1].isJoined) {
            sector.end = std::min(piece.end + pixel, pieces[i + 1].end);
        }
        painter.fillPath(sector.end > piece.end ? annulus(sector) : outline,
                         mixed(toQColor(piece.color), opacity, style.ground));
        const double width = std::min(boundaryWidth, ring.outer * piece.angle() * boundaryShare);
        painter.strokePath(outline, QPen(boundary, width));
    }
    shadeRing(painter, ring, opacity, style.ground);
}

/// Darkens a ring outwards. One gradient over a ring costs little; one for each slice would make Qt
/// wake its threads for each of them.
void SunburstScene::shadeRing(QPainter& painter, const Ring& ring, double opacity,
                              const QColor& ground) const
{
    QColor dark = mixed(Qt::black, opacity, ground);
    QRadialGradient shade(center(), ring.outer);
    dark.setAlphaF(0);
    shade.setColorAt(ring.inner / ring.outer, dark);
    dark.setAlphaF(static_cast<float>(shading()));
    shade.setColorAt(1, dark);
    QPainterPath whole;
    whole.addEllipse(center(), ring.outer, ring.outer);
    whole.addEllipse(center(), ring.inner, ring.inner);
    painter.fillPath(whole, shade);
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
    const double farthest = farthestRadius();
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const Ring& ring : m_rings) {
        if (ring.inner <= farthest) {
            paintRing(painter, ring, dimmed ? dimOpacity : 1, style);
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
        fillSlice(painter, item, outline);
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
        const QColor color = toQColor(request().colorOf(*m_slices[item].node));
        strokeEdges(painter, sectorOf(item), hoverPenOver(color));
    } else if (isOnTop(item)) {
        strokeSelected(painter, annulus(sectorOf(item)), accent);
    }
}

} // namespace quorvane
