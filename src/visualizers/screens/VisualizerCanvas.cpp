// SPDX-License-Identifier: MIT
#include "VisualizerCanvas.h"

#include "CanvasAccessibility.h"
#include "FacetHost.h"
#include "HoverTooltip.h"
#include "LayoutSpinner.h"
#include "NavigationState.h"
#include "NodeColors.h"
#include "Painting.h"
#include "Refresher.h"
#include "ScanState.h"
#include "SettingsState.h"
#include "SnapshotsState.h"
#include "Theme.h"
#include "Tokens.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>

#include <optional>
#include <utility>

namespace quorvane {

QColor VisualizerCanvas::groundColor()
{
    if (const std::optional<Color> wash = NodeColors::canvasWash()) {
        return QColor::fromRgbF(static_cast<float>(wash->r), static_cast<float>(wash->g),
                                static_cast<float>(wash->b));
    }
    return QApplication::palette().color(QPalette::Base);
}

VisualizerCanvas::VisualizerCanvas(AppState& state, const CanvasTraits& traits, QWidget* parent)
    : QWidget(parent)
    , m_state(state)
    , m_scan(ScanState::of(state))
    , m_navigation(NavigationState::of(state))
    , m_settings(SettingsState::of(state))
    , m_snapshots(SnapshotsState::of(state))
    , m_host(FacetHost::of(state))
    , m_traits(traits)
    , m_layoutRefresher(new Refresher(this, [this] { refreshLayout(); }))
    , m_layoutSlot(m_host.jobs())
    , m_tooltip(new HoverTooltip(this))
    , m_spinner(new LayoutSpinner(this))
{
    setObjectName(QLatin1String(m_traits.objectName));
    installCanvasAccessibility();
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    m_tooltip->hide();
    observe();
}

void VisualizerCanvas::observe()
{
    m_layoutRefresher->watch(m_scan.rootNode, m_navigation.focusNode, m_settings.storageSizeMode,
                             m_settings.storageBloatFilters, m_settings.storagePalette);
    if (m_traits.showsGrowth) {
        m_layoutRefresher->watch(m_snapshots.growth, m_snapshots.showsChanges);
    }
    m_selectionChanged = m_navigation.selectedNode.addNotifier([this] { refreshSelection(); });
    connect(&ThemeNotifier::instance(), &ThemeNotifier::themeChanged, this,
            [this] { scheduleLayout(); });
}

VisualizerCanvas::LayoutKey VisualizerCanvas::layoutKey() const
{
    const NodePointer target = m_navigation.shownNode();
    return {target->id(),
            target == m_scan.rootNode.value(),
            size(),
            m_settings.sizeMode(),
            m_settings.disabledBloat(),
            m_settings.palette(),
            m_traits.showsGrowth ? m_snapshots.shownGrowth() : nullptr,
            {quorvane::font(TextStyle::caption), groundColor(), devicePixelRatioF()}};
}

void VisualizerCanvas::scheduleLayout()
{
    update();
    m_layoutRefresher->schedule();
}

void VisualizerCanvas::refreshLayout()
{
    update();
    const NodePointer target = m_navigation.shownNode();
    if (!target) {
        clearRendering();
        return;
    }
    if (!isVisible() || width() < 1 || height() < 1) {
        return;
    }
    const bool isOtherTree = m_target.owner_before(target) || target.owner_before(m_target);
    const LayoutKey key = layoutKey();
    if (isOtherTree || key != m_key) {
        startLayout(target, key);
    }
}

void VisualizerCanvas::startLayout(const NodePointer& target, const LayoutKey& key)
{
    m_host.jobs().release(std::exchange(m_key, key));
    m_target = target;
    const SceneRequest request{target,       key.isScanRoot, key.size,
                               key.sizeMode, key.hidden,     key.growth};
    m_layoutSlot.restart(
        JobPriority::userInitiated,
        [request, style = key.style, makeScene = m_traits.makeScene](const JobRun& run) {
            const LockedFlag& stop = run.discardFlag();
            return renderScene(makeScene(request, stop), style, stop);
        },
        [this](CanvasRendering rendering) { publish(std::move(rendering)); });
    m_spinner->start(m_rendering.scene != nullptr);
}

void VisualizerCanvas::publish(CanvasRendering rendering)
{
    m_spinner->stop();
    m_host.jobs().release(std::exchange(m_rendering, std::move(rendering)));
    announceCanvasContent(*this);
    refreshSelection();
    // The pointer rests on whatever lies below it now.
    m_pressedItem = std::nullopt;
    m_isPressed = false;
    if (m_hoverActive) {
        setHovered(scene()->itemAt(m_hoverLocation), m_hoverLocation);
    } else {
        setHovered(std::nullopt, {});
    }
    update();
}

void VisualizerCanvas::clearRendering()
{
    m_layoutSlot.discard();
    m_host.jobs().release(std::exchange(m_key, std::nullopt));
    m_spinner->stop();
    setHovered(std::nullopt, {});
    if (m_rendering.scene) {
        m_host.jobs().release(std::exchange(m_rendering, {}));
        announceCanvasContent(*this);
        refreshSelection();
    }
    update();
}

QString VisualizerCanvas::accessibleLabel() const
{
    const NodePointer shown = m_navigation.shownNode();
    return tr(m_traits.label)
        .arg(shown ? shown->displayName() : QString(),
             shown ? shown->formattedBytes() : tr("0 bytes"));
}

QString VisualizerCanvas::accessibleValue() const
{
    return tr(m_traits.value).arg(scene() ? scene()->itemCount() : 0);
}

void VisualizerCanvas::refreshSelection()
{
    const NodePointer selected = m_navigation.selectedNode.value();
    m_selectedItem = scene() && selected ? scene()->itemOf(*selected) : std::nullopt;
    update();
}

QString VisualizerCanvas::emptyText() const
{
    return m_navigation.shownNode() ? tr("Nothing to display") : tr("No scan yet");
}

QString VisualizerCanvas::caption() const
{
    return m_traits.caption == nullptr ? QString() : tr(m_traits.caption);
}

void VisualizerCanvas::paintEvent(QPaintEvent* event)
{
    static_cast<void>(event);
    QPainter painter(this);
    QPainterPath frame;
    frame.addRoundedRect(QRectF(rect()), radius::surface, radius::surface);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(frame, groundColor());
    const bool hasItems = scene() && scene()->itemCount() > 0 && !m_rendering.bright.isNull();
    if (hasItems) {
        painter.setClipPath(frame);
        paintContent(painter);
        painter.setClipping(false);
    } else if (!isComputingLayout() && !m_layoutRefresher->isScheduled()) {
        paintEmpty(painter);
    }
    if (hasFocus() && m_focusIsVisible) {
        paintFocusLine(painter, QRectF(rect()), radius::surface);
    }
    if (m_traits.caption != nullptr) {
        paintCaption(painter);
    }
}

void VisualizerCanvas::paintEmpty(QPainter& painter) const
{
    const QRectF area = QRectF(rect()).translated(m_traits.emptyTextShift, 0);
    if (m_traits.paintEmptyGround != nullptr) {
        m_traits.paintEmptyGround(painter, size(), groundColor());
        // What is painted there stops at the words.
        QRectF words(0, 0, textWidth(TextStyle::body, emptyText()) + 2 * spacing::s, 20);
        words.moveCenter(area.center());
        painter.fillRect(words, groundColor());
    }
    paintText(painter, area, Qt::AlignCenter, TextStyle::body, inkOn(groundColor()).secondary,
              emptyText());
}

void VisualizerCanvas::paintCaption(QPainter& painter) const
{
    constexpr int lineHeight = 16;
    const QRectF line(spacing::m, height() - lineHeight - spacing::xs, width() - 2 * spacing::m,
                      lineHeight);
    paintText(painter, line, Qt::AlignLeft | Qt::AlignVCenter, TextStyle::path,
              inkOn(groundColor()).tertiary, caption());
}

void VisualizerCanvas::paintContent(QPainter& painter) const
{
    const bool isDimmed = m_hoveredItem && !m_rendering.dimmed.isNull();
    painter.drawImage(QPointF(0, 0), isDimmed ? m_rendering.dimmed : m_rendering.bright);
    if (isDimmed) {
        scene()->restoreItem(painter, *m_hoveredItem, m_rendering.bright, m_rendering.dimmed);
    }
    if (m_selectedItem && m_selectedItem != m_hoveredItem) {
        scene()->paintHighlight(painter, *m_selectedItem, CanvasScene::Highlight::selected,
                                themeColor(ThemeColor::accent));
    }
    if (m_hoveredItem) {
        scene()->paintHighlight(painter, *m_hoveredItem, CanvasScene::Highlight::hovered,
                                themeColor(ThemeColor::accent));
    }
}

} // namespace quorvane
