// SPDX-License-Identifier: MIT
#pragma once

#include "CanvasScene.h"
#include "TreemapLayout.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace quorvane {

/// The treemap of one folder.
class TreemapScene final : public CanvasScene
{
public:
    /// Lays the requested folder out. Any thread; stop ends it early with an empty scene.
    static ScenePointer make(const SceneRequest& request, const LockedFlag& stop);

    TreemapScene(const SceneRequest& request, std::vector<TreemapLayout::Slice> slices);

    const std::vector<TreemapLayout::Slice>& slices() const { return m_slices; }

    std::size_t itemCount() const override { return m_slices.size(); }
    std::int64_t idOf(std::size_t item) const override { return m_slices[item].id; }
    FileNode* nodeOf(std::size_t item) const override { return m_slices[item].node; }
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

    /// The rectangle that is filled: the slice's, inset so that neighbours stay apart.
    static Rect body(const TreemapLayout::Slice& slice);
    /// Corner radius of a body, points.
    static double cornerRadius(const TreemapLayout::Slice& slice, const Rect& body);

private:
    std::vector<TreemapLayout::Slice> m_slices;
};

} // namespace quorvane
