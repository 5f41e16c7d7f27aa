// SPDX-License-Identifier: MIT
#include "FlameScene.h"

#include "NodeColors.h"
#include "ShapePainting.h"

#include <QLinearGradient>
#include <QPainter>

namespace quorvane {
namespace {

constexpr double dimOpacity = 0.5;
constexpr double cornerRadius = 2;
constexpr float glossOpacity = 0.2F;
constexpr double minLabelWidth = 34;
constexpr int labelSize = 9;

QPainterPath outlineOf(const QRectF& rect)
{
    QPainterPath path;
    path.addRoundedRect(rect, cornerRadius, cornerRadius);
    return path;
}

} // namespace

ScenePointer FlameScene::make(const SceneRequest& request, const LockedFlag& stop)
{
    return std::make_shared<FlameScene>(
        request, FlameLayout::layout(*request.target, request.size.width(), request.size.height(),
                                     request.sizeMode, request.hidden, &stop));
}

std::int64_t FlameScene::idOf(std::size_t item) const
{
    return m_rects[item].node->id();
}

std::optional<std::size_t> FlameScene::itemAt(const QPointF& point) const
{
    for (std::size_t i = m_rects.size(); i-- > 0;) {
        if (m_rects[i].rect.contains(point.x(), point.y())) {
            return i;
        }
    }
    return std::nullopt;
}

QRectF FlameScene::boundsOf(std::size_t item) const
{
    const Rect& rect = m_rects[item].rect;
    return {rect.x, rect.y, rect.width, rect.height};
}

TooltipText FlameScene::tooltipOf(std::size_t item) const
{
    return nodeText(*m_rects[item].node);
}

QString FlameScene::labelOf(std::size_t item) const
{
    return itemLabel(tooltipOf(item));
}

std::optional<std::size_t> FlameScene::itemOf(const FileNode& node) const
{
    for (std::size_t i = 0; i < m_rects.size(); ++i) {
        if (m_rects[i].node == &node) {
            return i;
        }
    }
    return std::nullopt;
}

void FlameScene::paint(QImage& picture, const CanvasStyle& style, bool dimmed) const
{
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(labelFont(style, labelSize));
    for (std::size_t i = 0; i < m_rects.size(); ++i) {
        const QRectF rect = boundsOf(i);
        const QPainterPath outline = outlineOf(rect);
        const QColor fill = toQColor(request().colorOf(*m_rects[i].node));
        painter.fillPath(outline, dimmed ? mixed(fill, dimOpacity, style.ground) : fill);
        if (!request().growth) {
            // Not where the colour is read against a legend.
            QLinearGradient gloss(rect.topLeft(), rect.bottomLeft());
            gloss.setColorAt(0, QColor::fromRgbF(1, 1, 1, glossOpacity));
            gloss.setColorAt(1, QColor::fromRgbF(1, 1, 1, 0));
            painter.fillPath(outline, gloss);
        }
        if (rect.width() > minLabelWidth) {
            drawShadedLabel(painter, outline, rect, m_rects[i].node->displayName());
        }
    }
}

void FlameScene::restoreItem(QPainter& painter, std::size_t item, const QImage& bright,
                             const QImage& dimmed) const
{
    static_cast<void>(dimmed);
    copyPicture(painter, bright, boundsOf(item).toAlignedRect());
}

void FlameScene::paintHighlight(QPainter& painter, std::size_t item, Highlight highlight,
                                const QColor& accent) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    const QPainterPath outline = outlineOf(boundsOf(item));
    if (highlight == Highlight::selected) {
        strokeSelected(painter, outline, accent);
    } else {
        painter.strokePath(outline, hoverPen());
    }
}

} // namespace quorvane
