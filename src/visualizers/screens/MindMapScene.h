// SPDX-License-Identifier: MIT
#pragma once

#include "CanvasScene.h"
#include "MindMapLayout.h"
#include "PolarShapes.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace quorvane {

/// The half-rings of one folder, to the right of a point on the canvas's middle line.
class MindMapScene final : public CanvasScene
{
public:
    /// Lays the requested folder out. Any thread; stop ends it early with an empty scene.
    static ScenePointer make(const SceneRequest& request, const LockedFlag& stop);

    MindMapScene(const SceneRequest& request, std::vector<MindMapLayout::Band> bands)
        : CanvasScene(request)
        , m_bands(std::move(bands))
    {}

    QPointF center() const;
    /// The line across a canvas of that size on which the fan's centre lies.
    static void paintAxis(QPainter& painter, const QSize& canvas, const QColor& ground);

    std::size_t itemCount() const override { return m_bands.size(); }
    std::int64_t idOf(std::size_t item) const override;
    FileNode* nodeOf(std::size_t item) const override { return m_bands[item].node; }
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
    RingSector sectorOf(std::size_t item) const;
    QColor colorOf(std::size_t item) const;
    void paintBand(QPainter& painter, std::size_t item, const QColor& color, double arcWidth) const;
    void paintLabel(QPainter& painter, std::size_t item, const QColor& ground) const;

    std::vector<MindMapLayout::Band> m_bands;
};

} // namespace quorvane
