// SPDX-License-Identifier: MIT
#pragma once

#include "AppPalette.h"
#include "CanvasScene.h"
#include "JobSlot.h"

#include <QPoint>
#include <QPointF>
#include <QProperty>
#include <QString>
#include <QWidget>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace quorvane {

class AppState;
class FacetHost;
class HoverTooltip;
class LayoutSpinner;
class NavigationState;
class Refresher;
class ScanState;
class SettingsState;
class SnapshotsState;

/// What sets one drawn visualiser apart from the others.
struct CanvasTraits
{
    /// Makes a scene from values alone; called on a pool thread.
    using MakeScene = ScenePointer (*)(const SceneRequest& request, const LockedFlag& stop);

    MakeScene makeScene;
    const char* objectName;
    // The texts are translated where they are shown.
    const char* label;             ///< for assistive technology: %1 the folder's name, %2 its size
    const char* value;             ///< the same: %1 the number of items
    const char* caption = nullptr; ///< written in the bottom left corner, if at all
    /// Painted below the empty text, if at all.
    void (*paintEmptyGround)(QPainter& painter, const QSize& size, const QColor& ground) = nullptr;
    int emptyTextShift = 0;             ///< of the empty text from the middle to the right, points
    bool tooltipFollowsPointer = false; ///< otherwise it stands in the top left corner
    bool zoomsByWheel = false;
    bool showsGrowth = false; ///< its items can be coloured by growth
};

/// What all drawn visualisers share: when a layout is due, asking for it off the main thread,
/// keeping its pictures, hover, click, wheel, keys, context menu, tooltip and accessibility. A
/// visualiser adds its traits.
///
/// A layout is asked for whenever its key changes: the folder on show, the size mode, the canvas's
/// size in whole points, or the hidden families. The old picture stays until the new one arrives,
/// and an older answer never replaces a newer one. A canvas that is not on show does no work.
class VisualizerCanvas : public QWidget
{
    Q_OBJECT

public:
    /// The traits outlive the canvas.
    VisualizerCanvas(AppState& state, const CanvasTraits& traits, QWidget* parent = nullptr);

    /// The scene on show; absent before the first.
    const ScenePointer& scene() const { return m_rendering.scene; }
    bool isComputingLayout() const { return m_layoutSlot.isRunning(); }
    std::optional<std::size_t> hoveredItem() const { return m_hoveredItem; }
    /// What assistive technology reads for the canvas as a whole.
    QString accessibleLabel() const;
    QString accessibleValue() const;
    /// Shown when there is nothing to draw.
    QString emptyText() const;
    /// Empty for a visualiser without one.
    QString caption() const;
    /// Acts as a click on an item, or on none.
    void activate(std::optional<std::size_t> item);

protected:
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
    /// What a layout depends on beside its tree.
    struct LayoutKey
    {
        std::int64_t target = 0; ///< id of the folder on show
        bool isScanRoot = false;
        QSize size; ///< of the canvas, points
        SizeMode sizeMode = SizeMode::disk;
        BloatKeys hidden;
        AppPalette palette = initialPalette;
        std::shared_ptr<const SnapshotGrowth> growth; ///< that colours the items; null for none
        CanvasStyle style;

        friend bool operator==(const LayoutKey&, const LayoutKey&) = default;
    };

    /// What lies behind every item, by the palette.
    static QColor groundColor();
    void observe();
    /// Asks for a layout at the next turn of the event loop, once for any number of changes.
    void scheduleLayout();
    void refreshLayout();
    LayoutKey layoutKey() const;
    void startLayout(const NodePointer& target, const LayoutKey& key);
    void publish(CanvasRendering rendering);
    void clearRendering();
    void setHovered(std::optional<std::size_t> item, const QPointF& location);
    void updateTooltip();
    void refreshSelection();
    void moveKeyboardItem(int key);
    NodePointer nodeOf(std::optional<std::size_t> item) const;
    void paintContent(QPainter& painter) const;
    void paintEmpty(QPainter& painter) const;
    void paintCaption(QPainter& painter) const;

    AppState& m_state;
    ScanState& m_scan;
    NavigationState& m_navigation;
    SettingsState& m_settings;
    SnapshotsState& m_snapshots;
    FacetHost& m_host;
    const CanvasTraits& m_traits;
    Refresher* m_layoutRefresher;
    QPropertyNotifier m_selectionChanged;
    std::optional<LayoutKey> m_key; ///< of the layout on show or on its way
    std::weak_ptr<FileNode> m_target;
    JobSlot m_layoutSlot;
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
