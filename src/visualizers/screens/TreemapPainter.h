// SPDX-License-Identifier: MIT
#pragma once

#include "CanvasScene.h"
#include "Color.h"
#include "TilePainter.h"
#include "TreemapLabels.h"
#include "TreemapLayout.h"

#include <QImage>
#include <QPainter>

#include <array>
#include <optional>
#include <vector>

namespace quorvane {

/// Paints slices in their order into a picture. Any thread; one object a picture.
class TreemapPainter
{
public:
    /// The request outlives the painter.
    TreemapPainter(QImage& picture, const CanvasStyle& style, const SceneRequest& request);

    void paint(const std::vector<TreemapLayout::Slice>& slices, bool dimmed);

private:
    using Slice = TreemapLayout::Slice;

    QColor fillColor(const Color& fill, bool dimmed) const;
    void paintAggregate(const Slice& slice, bool dimmed);
    void paintTile(const Slice& slice, bool hasTilesInside, bool dimmed);
    Color fillOf(const Slice& slice, bool hasTilesInside) const;
    void paintHeader(const Rect& body, double header, double radius, bool dimmed);
    void drawHeaderTexts(const Slice& slice, const Rect& body, double header,
                         const QColor& sizeColor);
    void drawTileTexts(const Slice& slice, const Rect& body);
    /// One line whose middle stands at the given height; left is where it begins.
    void drawText(const QString& text, const LabelFont& font, double left, double middle,
                  const QColor& color);
    const LabelFont& labelFont(int size, bool bold);
    QString sizeText(const FileNode& node) const;

    QImage& m_picture;
    TilePainter m_tiles;
    CanvasStyle m_style;
    const SceneRequest& m_request;
    Color m_boundary;
    std::array<std::array<std::optional<LabelFont>, 2>, 16> m_fonts; ///< by size and weight
    /// Texts and tiles are drawn in turn: a later tile may cover the text of an earlier one.
    QPainter m_texts;
};

/// Opacity of black over a fill that lets white text on it reach a contrast of 5.2 to 1 (WCAG 2
/// relative luminance); 0 where it does without.
double labelScrimOpacity(const QColor& fill);

} // namespace quorvane
