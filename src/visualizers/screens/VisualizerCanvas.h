// SPDX-License-Identifier: MIT
#pragma once

#include "AppState.h"
#include "CanvasScene.h"

#include <QPoint>
#include <QPointF>
#include <QProperty>
#include <QString>
#include <QWidget>

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace quorvane {

class HoverTooltip;
class LayoutSpinner;

/// What sets one drawn visualiser apart from the others beside its scene.
struct CanvasTraits
{
    QString objectName;
    QString labelStart;                 ///< of what assistive technology reads, before the name
    QString valueEnd;                   ///< the same, after the number of items
    bool tooltipFollowsPointer = false; ///< otherwise it stands in the top left corner
    bool zoomsByWheel = false;
};

/// What all drawn visualisers share: when a layout is due, asking for it off the main thread,
/// keeping its pictures, hover, click, wheel, keys, context menu, tooltip and accessibility. A
/// visualiser adds the function that makes its scene, and its traits.
///
/// A layout is asked for whenever its key changes: the folder on show, the size mode, the canvas's
/// size in whole points, or the hidden families. The old picture stays until the new one arrives,
/// and an older answer never replaces a newer one. A canvas that is not on show does no work.
class VisualizerCanvas : public QWidget
{
    Q_OBJECT

public:
    /// Makes a scene from values alone; called on a pool thread.
    using MakeScene = ScenePointer (*)(const SceneRequest& request, const LockedFlag& stop);

    VisualizerCanvas(AppState& state, MakeScene makeScene, CanvasTraits traits,
                     QWidget* parent = nullptr);
    ~VisualizerCanvas() override;

    /// The scene on show; absent before the first.
    const ScenePointer& scene() const { return m_rendering.scene; }
    bool isComputingLayout() const { return m_layoutTask != nullptr; }
    std::optional<std::size_t> hoveredItem() const { return m_hoveredItem; }
    /// What assistive technology reads for the canvas as a whole.
    QString accessibleLabel() const;
    QString accessibleValue() const;
    /// Shown when there is nothing to draw.
    QString emptyText() const;
    /// Acts as a click on an item, or on none.
    void activate(std::optional<std::size_t> item);

protected:
    /// For what a visualiser writes over its picture.
    CanvasInk ink() const;
    /// What lies behind every item, by the palette.
    static QColor groundColor();
    /// Writes emptyText() on the empty ground, in the middle unless a visualiser has another place.
    virtual void paintEmpty(QPainter& painter) const;
    void paintEmptyText(QPainter& painter, const QRectF& area) const;

    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void observe();
    /// Asks for a layout at the next turn of the event loop, once for any number of changes.
    void scheduleLayout();
    void refreshLayout();
    QString layoutKey() const;
    CanvasStyle canvasStyle() const;
    void startLayout(const QString& key, const CanvasStyle& style);
    void publish(CanvasRendering rendering);
    void clearRendering();
    void setHovered(std::optional<std::size_t> item, const QPointF& location);
    void updateTooltip();
    void refreshSelection();
    void moveKeyboardItem(int key);
    NodePointer nodeOf(std::optional<std::size_t> item) const;
    void paintContent(QPainter& painter) const;

    AppState& m_state;
    MakeScene m_makeScene;
    CanvasTraits m_traits;
    std::vector<QPropertyNotifier> m_observers;
    bool m_isLayoutScheduled = false;
    QString m_key; ///< of the layout on show or on its way
    std::weak_ptr<FileNode> m_target;
    CanvasStyle m_style;
    AppPalette m_paletteOnShow = initialPalette;
    JobHandle m_layoutTask;
    CanvasRendering m_rendering;
    std::optional<std::size_t> m_hoveredItem;
    std::optional<std::size_t> m_selectedItem;
    std::optional<std::size_t> m_pressedItem;
    bool m_isPressed = false;
    bool m_hoverActive = false; ///< the pointer is over the canvas
    bool m_focusIsVisible = false;
    QPointF m_hoverLocation;
    HoverTooltip* m_tooltip;
    LayoutSpinner* m_spinner;
};

} // namespace quorvane
