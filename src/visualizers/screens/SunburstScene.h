// SPDX-License-Identifier: MIT
#pragma once

#include "CanvasScene.h"
#include "Color.h"
#include "PolarShapes.h"
#include "SunburstLayout.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace quorvane {

/// The rings of one folder.
///
/// Below the first ring every folder's children fill a whole circle, so that of each such ring only
/// the circle of the last folder can be seen, while the pointer finds the first. What cannot be
/// seen, or lies outside the canvas, is not painted.
class SunburstScene final : public CanvasScene
{
public:
    /// Lays the requested folder out. Any thread; stop ends it early with an empty scene.
    static ScenePointer make(const SceneRequest& request, const LockedFlag& stop);

    SunburstScene(const SceneRequest& request, std::vector<SunburstLayout::Slice> slices);

    const std::vector<SunburstLayout::Slice>& slices() const { return m_slices; }
    QPointF center() const;
    /// Whether no later circle of the same ring lies above the slice.
    bool isOnTop(std::size_t item) const;

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

private:
    /// Slices at one distance from the centre, in their order.
    struct Ring
    {
        double inner = 0;
        double outer = 0;
        std::vector<std::size_t> items;
        std::vector<double> starts; ///< of the items, from 0 to a turn; none where no pointer gets
        std::vector<double> ends;
        const FileNode* lastFolder = nullptr; ///< whose children lie on top
    };

    /// A slice as it is painted, or several that are each narrower than a pixel, in the mean of
    /// their colours.
    struct Piece
    {
        double start = 0;
        double end = 0;
        Color color;
        bool isJoined = false;

        double angle() const { return end - start; }
    };

    /// How far the canvas's corners lie from the centre, points.
    double farthestRadius() const;
    RingSector sectorOf(std::size_t item) const;
    std::optional<std::size_t> firstHit(const Ring& ring, double angle) const;
    double shading() const;
    void fillSlice(QPainter& painter, std::size_t item, const QPainterPath& outline) const;
    /// What can be seen of a ring. Neighbours below the least angle are joined until they reach it.
    std::vector<Piece> piecesOf(const Ring& ring, double minAngle) const;
    void paintRing(QPainter& painter, const Ring& ring, double opacity,
                   const CanvasStyle& style) const;
    void shadeRing(QPainter& painter, const Ring& ring, double opacity, const QColor& ground) const;
    void paintHub(QPainter& painter, const CanvasStyle& style) const;

    std::vector<SunburstLayout::Slice> m_slices;
    std::vector<Ring> m_rings; ///< from the inside out
};

} // namespace quorvane
