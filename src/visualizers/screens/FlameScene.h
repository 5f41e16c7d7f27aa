// SPDX-License-Identifier: MIT
#pragma once

#include "CanvasScene.h"
#include "FlameLayout.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace quorvane {

/// The rows of one folder.
class FlameScene final : public CanvasScene
{
public:
    /// Lays the requested folder out. Any thread; stop ends it early with an empty scene.
    static ScenePointer make(const SceneRequest& request, const LockedFlag& stop);

    FlameScene(const SceneRequest& request, std::vector<FlameLayout::RectSlice> rects)
        : CanvasScene(request)
        , m_rects(std::move(rects))
    {}

    std::size_t itemCount() const override { return m_rects.size(); }
    std::int64_t idOf(std::size_t item) const override;
    FileNode* nodeOf(std::size_t item) const override { return m_rects[item].node; }
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
    std::vector<FlameLayout::RectSlice> m_rects;
};

} // namespace quorvane
