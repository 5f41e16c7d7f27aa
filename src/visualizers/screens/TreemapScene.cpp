// SPDX-License-Identifier: MIT
#include "TreemapScene.h"

#include "ByteFormatter.h"
#include "TreemapPainter.h"

#include <QPainter>
#include <QPen>

#include <algorithm>
#include <cmath>
#include <utility>

namespace quorvane {
namespace {

using Slice = TreemapLayout::Slice;

constexpr double aggregateInset = 0.5;
constexpr double aggregateRadius = 1.5;
constexpr float highlightOpacity = 0.95F;
constexpr double highlightWidth = 2;
constexpr double selectionGroundWidth = 4;

QRectF toRectF(const Rect& rect)
{
    return {rect.x, rect.y, rect.width, rect.height};
}

} // namespace

ScenePointer TreemapScene::make(const SceneRequest& request, const LockedFlag& stop)
{
    const Rect canvas{0, 0, static_cast<double>(request.size.width()),
                      static_cast<double>(request.size.height())};
    return std::make_shared<TreemapScene>(
        request,
        TreemapLayout::layoutSlate(*request.target, canvas, request.sizeMode == SizeMode::disk,
                                   request.isScanRoot, request.hidden, &stop));
}

TreemapScene::TreemapScene(const SceneRequest& request, std::vector<Slice> slices)
    : CanvasScene(request)
    , m_slices(std::move(slices))
{}

Rect TreemapScene::body(const Slice& slice)
{
    const Rect& rect = slice.rect;
    if (slice.isAggregateTile) {
        return {rect.x + aggregateInset, rect.y + aggregateInset, rect.width - 2 * aggregateInset,
                rect.height - 2 * aggregateInset};
    }
    const auto inset = [](double side) { return std::min(std::max(side * 0.5 - 0.5, 0.0), 1.0); };
    const double insetX = inset(rect.width);
    const double insetY = inset(rect.height);
    return {rect.x + insetX, rect.y + insetY, rect.width - 2 * insetX, rect.height - 2 * insetY};
}

double TreemapScene::cornerRadius(const Slice& slice, const Rect& body)
{
    if (slice.isAggregateTile) {
        return std::clamp(aggregateRadius, 0.0,
                          std::max(std::min(body.width, body.height) / 2, 0.0));
    }
    return std::max(std::min(std::min(body.width, body.height) * 0.25, 2.5), 0.0);
}

std::optional<std::size_t> TreemapScene::itemAt(const QPointF& point) const
{
    for (std::size_t i = m_slices.size(); i-- > 0;) {
        if (m_slices[i].rect.contains(point.x(), point.y())) {
            return i;
        }
    }
    return std::nullopt;
}

QRectF TreemapScene::boundsOf(std::size_t item) const
{
    return toRectF(m_slices[item].rect);
}

TooltipText TreemapScene::tooltipOf(std::size_t item) const
{
    const Slice& slice = m_slices[item];
    if (slice.isAggregateTile) {
        return {slice.node->displayName(),
                QString::number(slice.aggregateCount) + QStringLiteral(" micro files totaling ") +
                    ByteFormatter::string(slice.aggregateBytes, 1) +
                    QStringLiteral(", click to zoom into ") + slice.node->displayName()};
    }
    return nodeText(*slice.node);
}

QString TreemapScene::labelOf(std::size_t item) const
{
    return itemLabel(tooltipOf(item));
}

std::optional<std::size_t> TreemapScene::itemOf(const FileNode& node) const
{
    for (std::size_t i = m_slices.size(); i-- > 0;) {
        if (m_slices[i].node == &node && !m_slices[i].isAggregateTile) {
            return i;
        }
    }
    return std::nullopt;
}

void TreemapScene::paint(QImage& picture, const CanvasStyle& style, bool dimmed) const
{
    TreemapPainter painter(picture, style, request());
    painter.paint(m_slices, dimmed);
}

void TreemapScene::restoreItem(QPainter& painter, std::size_t item, const QImage& bright,
                               const QImage& dimmed) const
{
    const auto copy = [&painter](const QImage& picture, const QRect& points) {
        const qreal ratio = picture.devicePixelRatio();
        painter.drawImage(QRectF(points), picture,
                          QRectF(QPointF(points.topLeft()) * ratio, QSizeF(points.size()) * ratio));
    };
    // The slice's own area is what its children leave; they stay dimmed.
    copy(bright, boundsOf(item).toAlignedRect());
    for (std::size_t i = item + 1; i < m_slices.size(); ++i) {
        if (m_slices[i].parent == item) {
            copy(dimmed, toRectF(body(m_slices[i])).toAlignedRect());
        }
    }
}

void TreemapScene::paintHighlight(QPainter& painter, std::size_t item, Highlight highlight,
                                  const QColor& accent) const
{
    const Slice& slice = m_slices[item];
    const Rect tile = body(slice);
    const double radius = cornerRadius(slice, tile);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    if (highlight == Highlight::selected) {
        // A dark line below keeps the accent readable on any hue.
        painter.setPen(QPen(QColor(0, 0, 0, 150), selectionGroundWidth));
        painter.drawRoundedRect(toRectF(tile), radius, radius);
        painter.setPen(QPen(accent, highlightWidth));
    } else {
        painter.setPen(QPen(QColor::fromRgbF(1, 1, 1, highlightOpacity), highlightWidth));
    }
    painter.drawRoundedRect(toRectF(tile), radius, radius);
}

} // namespace quorvane
