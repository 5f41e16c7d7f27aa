// SPDX-License-Identifier: MIT
#pragma once

#include "BloatFilter.h"
#include "Color.h"
#include "FileNode.h"
#include "SizeMode.h"
#include "SnapshotGrowth.h"

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPointF>
#include <QRectF>
#include <QSize>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

class QPainter;

namespace quorvane {

class LockedFlag;

/// What a picture of a scene depends on beside the scene. Taken on the main thread.
struct CanvasStyle
{
    QFont font;                 ///< family of the labels; sizes are set by the scene
    QColor ground;              ///< opaque
    qreal devicePixelRatio = 1; ///< pixels for each point

    friend bool operator==(const CanvasStyle&, const CanvasStyle&) = default;
};

/// Colours of what is written on a ground that the palette chooses, dark or light.
struct CanvasInk
{
    QColor primary;
    QColor secondary;
    QColor tertiary;
};

CanvasInk inkOn(const QColor& ground);

/// Everything that a layout needs, by value.
struct SceneRequest
{
    NodePointer target; ///< the folder on show
    bool isScanRoot = false;
    QSize size; ///< of the canvas, points
    SizeMode sizeMode = SizeMode::disk;
    BloatKeys hidden;
    /// What the items are coloured by; absent for the colours of NodeColors.
    std::shared_ptr<const SnapshotGrowth> growth = {};

    /// The fill of the item that stands for a node of the target's tree.
    Color colorOf(const FileNode& node) const;
};

struct TooltipText
{
    QString title;
    QString detail;
    QString note = {}; ///< a third line
    QColor mark = {};  ///< valid: of a square before it
};

/// The same in one line, for assistive technology.
QString itemLabel(const TooltipText& text);

/// One finished layout: a plain array of items that can be painted, hit and named. Made by a job
/// and never changed after it, so that any thread may read it. Keeps the tree alive that its items
/// point into. Items are numbered in paint order; coordinates are points of the canvas.
class CanvasScene
{
public:
    /// What an item is to the user when it is drawn out.
    enum class Highlight { hovered, selected };

    explicit CanvasScene(SceneRequest request)
        : m_request(std::move(request))
    {}
    CanvasScene(const CanvasScene&) = delete;
    CanvasScene& operator=(const CanvasScene&) = delete;
    virtual ~CanvasScene() = default;

    const SceneRequest& request() const { return m_request; }

    virtual std::size_t itemCount() const = 0;
    /// Identity that outlives a new layout.
    virtual std::int64_t idOf(std::size_t item) const = 0;
    virtual FileNode* nodeOf(std::size_t item) const = 0;
    /// The topmost item below a point.
    virtual std::optional<std::size_t> itemAt(const QPointF& point) const = 0;
    virtual QRectF boundsOf(std::size_t item) const = 0;
    virtual TooltipText tooltipOf(std::size_t item) const = 0;
    /// What assistive technology calls the item.
    virtual QString labelOf(std::size_t item) const = 0;
    /// The item that shows a node; absent when none does.
    virtual std::optional<std::size_t> itemOf(const FileNode& node) const = 0;

    /// Draws every item on a picture that holds the ground: as they are, or all of them dimmed.
    virtual void paint(QImage& picture, const CanvasStyle& style, bool dimmed) const = 0;
    /// Puts back what belongs to one item alone from the bright picture, where the dimmed one lies.
    /// Both pictures cover the canvas.
    virtual void restoreItem(QPainter& painter, std::size_t item, const QImage& bright,
                             const QImage& dimmed) const = 0;
    virtual void paintHighlight(QPainter& painter, std::size_t item, Highlight highlight,
                                const QColor& accent) const = 0;

protected:
    /// Name and size of a node, and below them what it has grown by where that colours it.
    TooltipText nodeText(const FileNode& node) const;

private:
    SceneRequest m_request;
};

using ScenePointer = std::shared_ptr<const CanvasScene>;

/// A scene and its two pictures: a hover only composes them. Items that are coloured by growth have
/// no dimmed picture, as their colours are read against the legend.
struct CanvasRendering
{
    ScenePointer scene;
    CanvasStyle style;
    QImage bright;
    QImage dimmed;
};

/// Renders both pictures of a scene. Any thread; polls stop between them.
CanvasRendering renderScene(ScenePointer scene, const CanvasStyle& style, const LockedFlag& stop);

} // namespace quorvane
