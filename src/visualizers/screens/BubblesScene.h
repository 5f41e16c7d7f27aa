// SPDX-License-Identifier: MIT
#pragma once

#include "BubblesLayout.h"
#include "CanvasScene.h"

#include <QPainterPath>

#include <cstddef>
#include <optional>
#include <vector>

namespace quorvane {

/// The packed bubbles of one folder, scaled and centred on the canvas.
class BubblesScene final : public CanvasScene
{
public:
    /// Lays the requested folder out; a canvas that is too small gives an empty scene. Any thread;
    /// stop ends it early with an empty scene.
    static ScenePointer make(const SceneRequest& request, const LockedFlag& stop);

    BubblesScene(const SceneRequest& request, std::vector<FlatBubble> bubbles);

    /// Where a bubble stands on the canvas, points.
    QPointF centerOf(std::size_t item) const;
    double radiusOf(std::size_t item) const { return m_bubbles[item].bubble.radius * m_scale; }

    std::size_t itemCount() const override { return m_scale > 0 ? m_bubbles.size() : 0; }
    std::int64_t idOf(std::size_t item) const override { return m_bubbles[item].bubble.id; }
    FileNode* nodeOf(std::size_t item) const override { return m_bubbles[item].node; }
    std::optional<std::size_t> itemAt(const QPointF& point) const override;
    QRectF boundsOf(std::size_t item) const override;
    TooltipText tooltipOf(std::size_t item) const override;
    QString labelOf(std::size_t item) const override;
    std::optional<std::size_t> itemOf(const FileNode& node) const override;
    void paint(QImage& picture, const CanvasStyle& style, bool dimmed) const override;
    void restoreItem(QPainter& painter, std::size_t item, const QImage& bright,
                     const QImage& dimmed) const override;
    void paintHighlight(QPainter& painter, std::size_t item, Highlight highlight,
                        const QColor& accent) const override;

private:
    QPainterPath outlineOf(std::size_t item) const;
    void paintBubble(QPainter& painter, std::size_t item, double opacity,
                     const QColor& ground) const;

    std::vector<FlatBubble> m_bubbles;
    Rect m_clusterBounds;
    double m_scale;
};

} // namespace quorvane
