// SPDX-License-Identifier: MIT
#include "BubblesScene.h"

#include "HoverTooltip.h"
#include "NodeColors.h"
#include "ShapePainting.h"

#include <QPainter>
#include <QRadialGradient>

#include <cmath>
#include <utility>

namespace quorvane {
namespace {

constexpr double dimOpacity = 0.4;
constexpr double lightening = 0.16;
constexpr double darkening = 0.22;
/// The light comes from the upper left.
constexpr double lightOffset = 0.35;
constexpr double lightReach = 1.6;
constexpr double minLabelRadius = 18;
constexpr int labelSize = 10;

} // namespace

ScenePointer BubblesScene::make(const SceneRequest& request, const LockedFlag& stop)
{
    std::vector<BubbleNode> bubbles;
    if (const std::optional<double> radius =
            BubblesLayout::screenRadius(request.size.width(), request.size.height())) {
        bubbles = BubblesLayout::layout(*request.target, *radius, BubblesLayout::screenMaxDepth,
                                        request.sizeMode, request.hidden, &stop);
    }
    return std::make_shared<BubblesScene>(request, BubblesLayout::flatten(std::move(bubbles)));
}

BubblesScene::BubblesScene(const SceneRequest& request, std::vector<FlatBubble> bubbles)
    : CanvasScene(request)
    , m_bubbles(std::move(bubbles))
    , m_clusterBounds(BubblesLayout::bounds(m_bubbles))
    , m_scale(
          BubblesLayout::screenScale(m_clusterBounds, request.size.width(), request.size.height()))
{}

QPointF BubblesScene::centerOf(std::size_t item) const
{
    const Point& place = m_bubbles[item].bubble.center;
    const double x = place.x - m_clusterBounds.x - m_clusterBounds.width * 0.5;
    const double y = place.y - m_clusterBounds.y - m_clusterBounds.height * 0.5;
    return {x * m_scale + request().size.width() / 2.0,
            y * m_scale + request().size.height() / 2.0};
}

std::optional<std::size_t> BubblesScene::itemAt(const QPointF& point) const
{
    for (std::size_t i = itemCount(); i-- > 0;) {
        const QPointF offset = point - centerOf(i);
        if (std::hypot(offset.x(), offset.y()) <= radiusOf(i)) {
            return i;
        }
    }
    return std::nullopt;
}

QRectF BubblesScene::boundsOf(std::size_t item) const
{
    const QPointF center = centerOf(item);
    const double radius = radiusOf(item);
    return {center.x() - radius, center.y() - radius, 2 * radius, 2 * radius};
}

TooltipText BubblesScene::tooltipOf(std::size_t item) const
{
    return hoverTooltipText(*m_bubbles[item].node);
}

QString BubblesScene::labelOf(std::size_t item) const
{
    return itemLabel(tooltipOf(item));
}

std::optional<std::size_t> BubblesScene::itemOf(const FileNode& node) const
{
    for (std::size_t i = 0; i < itemCount(); ++i) {
        if (m_bubbles[i].node == &node) {
            return i;
        }
    }
    return std::nullopt;
}

QPainterPath BubblesScene::outlineOf(std::size_t item) const
{
    QPainterPath path;
    path.addEllipse(boundsOf(item));
    return path;
}

void BubblesScene::paintBubble(QPainter& painter, std::size_t item, double opacity,
                               const QColor& ground) const
{
    const QPointF center = centerOf(item);
    const double radius = radiusOf(item);
    const Color base = NodeColors::leafColor(*m_bubbles[item].node);
    const auto stop = [&](const Color& color) { return mixed(toQColor(color), opacity, ground); };
    const QPointF light = center - QPointF(lightOffset * radius, lightOffset * radius);
    QRadialGradient gradient(light, lightReach * radius);
    gradient.setColorAt(0, stop(NodeColors::lightened(base, lightening)));
    gradient.setColorAt(0.5, stop(base));
    gradient.setColorAt(1, stop(NodeColors::darkened(base, darkening)));
    painter.fillPath(outlineOf(item), gradient);
    if (radius > minLabelRadius) {
        // A name is not shortened: it may reach beyond its bubble.
        QPainterPath canvas;
        canvas.addRect(QRectF(QPointF(0, 0), QSizeF(request().size)));
        drawShadedLabel(painter, canvas, boundsOf(item), m_bubbles[item].node->displayName());
    }
}

void BubblesScene::paint(QImage& picture, const CanvasStyle& style, bool dimmed) const
{
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(labelFont(style, labelSize));
    for (std::size_t i = 0; i < itemCount(); ++i) {
        paintBubble(painter, i, dimmed ? dimOpacity : 1, style.ground);
    }
}

void BubblesScene::restoreItem(QPainter& painter, std::size_t item, const QImage& bright,
                               const QImage& dimmed) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipPath(outlineOf(item), Qt::IntersectClip);
    copyPicture(painter, bright, boundsOf(item).toAlignedRect());
    if (m_bubbles[item].level == 0 && item + 1 < m_bubbles.size() &&
        m_bubbles[item + 1].level == 1) {
        // What is nested in it is not below the pointer.
        QPainterPath nested;
        nested.setFillRule(Qt::WindingFill);
        for (std::size_t i = item + 1; i < m_bubbles.size() && m_bubbles[i].level > 0; ++i) {
            nested.addEllipse(boundsOf(i));
        }
        painter.setClipPath(nested, Qt::IntersectClip);
        copyPicture(painter, dimmed, boundsOf(item).toAlignedRect());
    }
    painter.restore();
}

void BubblesScene::paintHighlight(QPainter& painter, std::size_t item, Highlight highlight,
                                  const QColor& accent) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    if (highlight == Highlight::selected) {
        strokeSelected(painter, outlineOf(item), accent);
    } else {
        painter.strokePath(outlineOf(item), hoverPen());
    }
}

} // namespace quorvane
