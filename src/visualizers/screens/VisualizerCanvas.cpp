// SPDX-License-Identifier: MIT
#include "VisualizerCanvas.h"

#include "CanvasAccessibility.h"
#include "HoverTooltip.h"
#include "LayoutSpinner.h"
#include "NodeColors.h"
#include "Painting.h"
#include "Theme.h"
#include "Tokens.h"

#include <QApplication>
#include <QMetaObject>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>

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

VisualizerCanvas::VisualizerCanvas(AppState& state, MakeScene makeScene, CanvasTraits traits,
                                   QWidget* parent)
    : QWidget(parent)
    , m_state(state)
    , m_makeScene(makeScene)
    , m_traits(std::move(traits))
    , m_tooltip(new HoverTooltip(this))
    , m_spinner(new LayoutSpinner(this))
{
    setObjectName(m_traits.objectName);
    installCanvasAccessibility();
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    m_tooltip->hide();
    observe();
}

VisualizerCanvas::~VisualizerCanvas()
{
    if (m_layoutTask) {
        m_layoutTask->cancel();
    }
}

void VisualizerCanvas::observe()
{
    const auto relayout = [this] { scheduleLayout(); };
    m_observers.push_back(m_state.rootNode.addNotifier(relayout));
    m_observers.push_back(m_state.focusNode.addNotifier(relayout));
    m_observers.push_back(m_state.storageSizeMode.addNotifier(relayout));
    m_observers.push_back(m_state.storageBloatFilters.addNotifier(relayout));
    m_observers.push_back(m_state.storagePalette.addNotifier(relayout));
    m_observers.push_back(m_state.selectedNode.addNotifier([this] { refreshSelection(); }));
    connect(&ThemeNotifier::instance(), &ThemeNotifier::themeChanged, this, relayout);
}

QString VisualizerCanvas::layoutKey() const
{
    const NodePointer target = m_state.shownNode();
    const SizeMode mode = m_state.sizeMode();
    const std::string_view rawMode = rawValue(mode);
    return QString::number(target ? target->id() : 0) + QLatin1Char('-') +
           QString::fromUtf8(rawMode.data(), static_cast<qsizetype>(rawMode.size())) +
           QLatin1Char('-') + QString::number(width()) + QLatin1Char('x') +
           QString::number(height()) + QLatin1Char('-') + m_state.disabledBloatKey();
}

CanvasStyle VisualizerCanvas::canvasStyle() const
{
    return {quorvane::font(TextStyle::caption), groundColor(), devicePixelRatioF()};
}

void VisualizerCanvas::scheduleLayout()
{
    update();
    if (m_isLayoutScheduled) {
        return;
    }
    m_isLayoutScheduled = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isLayoutScheduled = false;
            refreshLayout();
        },
        Qt::QueuedConnection);
}

void VisualizerCanvas::refreshLayout()
{
    const NodePointer target = m_state.shownNode();
    if (!target) {
        clearRendering();
        return;
    }
    if (!isVisible() || width() < 1 || height() < 1) {
        return;
    }
    const bool isOtherTree = m_target.owner_before(target) || target.owner_before(m_target);
    const QString key = layoutKey();
    const CanvasStyle style = canvasStyle();
    const bool isCurrent = key == m_key && style == m_style && !isOtherTree;
    if (isCurrent && m_paletteOnShow == m_state.palette()) {
        return;
    }
    startLayout(key, style);
}

void VisualizerCanvas::startLayout(const QString& key, const CanvasStyle& style)
{
    if (m_layoutTask) {
        m_layoutTask->cancel();
    }
    m_key = key;
    m_style = style;
    m_paletteOnShow = m_state.palette();
    m_target = m_state.shownNode();
    SceneRequest request;
    request.target = m_state.shownNode();
    request.isScanRoot = request.target == m_state.rootNode.value();
    request.size = size();
    request.sizeMode = m_state.sizeMode();
    request.hidden = m_state.disabledBloat();
    m_layoutTask = m_state.jobs().start(
        JobPriority::userInitiated,
        [request, style, makeScene = m_makeScene](const Job& job) {
            return renderScene(makeScene(request, job.cancelFlag()), style, job.cancelFlag());
        },
        [canvas = QPointer<VisualizerCanvas>(this)](CanvasRendering rendering) {
            if (canvas) {
                canvas->publish(std::move(rendering));
            }
        });
    m_spinner->start(m_rendering.scene != nullptr);
}

void VisualizerCanvas::publish(CanvasRendering rendering)
{
    m_layoutTask = nullptr;
    m_spinner->stop();
    m_state.jobs().release(std::exchange(m_rendering, std::move(rendering)));
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
    if (m_layoutTask) {
        m_layoutTask->cancel();
        m_layoutTask = nullptr;
    }
    m_key.clear();
    m_spinner->stop();
    setHovered(std::nullopt, {});
    if (m_rendering.scene) {
        m_state.jobs().release(std::exchange(m_rendering, {}));
        announceCanvasContent(*this);
        refreshSelection();
    }
    update();
}

QString VisualizerCanvas::accessibleLabel() const
{
    const NodePointer shown = m_state.shownNode();
    return m_traits.labelStart + (shown ? shown->displayName() : QString()) + QStringLiteral(", ") +
           (shown ? shown->formattedBytes() : QStringLiteral("0 bytes"));
}

QString VisualizerCanvas::accessibleValue() const
{
    return QString::number(scene() ? scene()->itemCount() : 0) + m_traits.valueEnd;
}

void VisualizerCanvas::refreshSelection()
{
    const NodePointer selected = m_state.selectedNode.value();
    m_selectedItem = scene() && selected ? scene()->itemOf(*selected) : std::nullopt;
    update();
}

CanvasInk VisualizerCanvas::ink() const
{
    return inkOn(groundColor());
}

QString VisualizerCanvas::emptyText() const
{
    return m_state.shownNode() ? QStringLiteral("Nothing to display")
                               : QStringLiteral("No scan yet");
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
    } else if (!isComputingLayout() && !m_isLayoutScheduled) {
        paintEmpty(painter);
    }
    if (hasFocus() && m_focusIsVisible) {
        paintFocusLine(painter, QRectF(rect()), radius::surface);
    }
}

void VisualizerCanvas::paintEmpty(QPainter& painter) const
{
    paintEmptyText(painter, QRectF(rect()));
}

void VisualizerCanvas::paintEmptyText(QPainter& painter, const QRectF& area) const
{
    paintText(painter, area, Qt::AlignCenter, TextStyle::body, ink().secondary, emptyText());
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
