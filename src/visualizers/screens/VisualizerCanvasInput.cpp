// SPDX-License-Identifier: MIT
#include "VisualizerCanvas.h"

#include "HoverTooltip.h"
#include "LayoutSpinner.h"
#include "NavigationState.h"
#include "NodeContextMenuModifier.h"
#include "Tokens.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <cmath>
#include <limits>

namespace quorvane {
namespace {

/// Vertical scrolling that counts as a zoom: points of a touch pad, degrees of a wheel.
constexpr double zoomDelta = 2.0;
constexpr double wheelUnitsPerDegree = 8.0;

double verticalDelta(const QWheelEvent& event)
{
    return event.hasPixelDelta() ? event.pixelDelta().y()
                                 : event.angleDelta().y() / wheelUnitsPerDegree;
}

/// How far a point lies in the direction of an arrow key, sideways steps counting double; infinite
/// when it does not lie that way.
double distanceTowards(int key, const QPointF& from, const QPointF& to)
{
    const QPointF step = to - from;
    const bool isHorizontal = key == Qt::Key_Left || key == Qt::Key_Right;
    const double sign = key == Qt::Key_Left || key == Qt::Key_Up ? -1 : 1;
    const double ahead = sign * (isHorizontal ? step.x() : step.y());
    const double aside = std::abs(isHorizontal ? step.y() : step.x());
    if (ahead <= 0.5) {
        return std::numeric_limits<double>::infinity();
    }
    return ahead + 2 * aside;
}

} // namespace

bool VisualizerCanvas::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::PaletteChange:
    case QEvent::FontChange:
    case QEvent::ScreenChangeInternal:
        scheduleLayout();
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

void VisualizerCanvas::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_spinner->centerIn(rect());
    scheduleLayout();
}

void VisualizerCanvas::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    scheduleLayout();
}

NodePointer VisualizerCanvas::nodeOf(std::optional<std::size_t> item) const
{
    if (!item || !scene()) {
        return nullptr;
    }
    return {scene()->request().target, scene()->nodeOf(*item)};
}

void VisualizerCanvas::setHovered(std::optional<std::size_t> item, const QPointF& location)
{
    m_hoverLocation = location;
    if (item != m_hoveredItem) {
        m_hoveredItem = item;
        update();
        if (item) {
            QAccessibleEvent focused(this, QAccessible::Focus);
            focused.setChild(static_cast<int>(*item));
            QAccessible::updateAccessibility(&focused);
        }
    }
    updateTooltip();
}

void VisualizerCanvas::updateTooltip()
{
    if (!m_hoveredItem || !scene()) {
        m_tooltip->hide();
        return;
    }
    m_tooltip->setText(scene()->tooltipOf(*m_hoveredItem));
    if (m_traits.tooltipFollowsPointer) {
        m_tooltip->showAt(m_hoverLocation.toPoint());
    } else {
        m_tooltip->showFixed({spacing::s, spacing::s});
    }
}

void VisualizerCanvas::mouseMoveEvent(QMouseEvent* event)
{
    m_hoverActive = true;
    if (scene()) {
        setHovered(scene()->itemAt(event->position()), event->position());
    } else {
        m_hoverLocation = event->position();
    }
}

void VisualizerCanvas::mousePressEvent(QMouseEvent* event)
{
    m_focusIsVisible = false;
    if (event->button() != Qt::LeftButton || !scene()) {
        QWidget::mousePressEvent(event);
        return;
    }
    m_pressedItem = scene()->itemAt(event->position());
    m_isPressed = true;
}

void VisualizerCanvas::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !m_isPressed || !scene()) {
        return;
    }
    m_isPressed = false;
    const std::optional<std::size_t> item = scene()->itemAt(event->position());
    if (rect().contains(event->position().toPoint()) && item == m_pressedItem) {
        activate(item);
    }
}

void VisualizerCanvas::activate(std::optional<std::size_t> item)
{
    const NodePointer node = nodeOf(item);
    m_navigation.select(node);
    if (node && node->isDirectory()) {
        m_navigation.focus(node);
    }
}

void VisualizerCanvas::leaveEvent(QEvent* event)
{
    QWidget::leaveEvent(event);
    m_hoverActive = false;
    setHovered(std::nullopt, m_hoverLocation);
}

void VisualizerCanvas::wheelEvent(QWheelEvent* event)
{
    // The event goes on to whoever scrolls outside.
    event->ignore();
    if (!m_hoverActive || !m_traits.zoomsByWheel) {
        return;
    }
    const double delta = verticalDelta(*event);
    if (delta < -zoomDelta) {
        const NodePointer node = nodeOf(m_hoveredItem);
        if (node && node->isDirectory()) {
            m_navigation.focus(node);
        }
    } else if (delta > zoomDelta) {
        m_navigation.focusUp();
    }
}

void VisualizerCanvas::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        m_focusIsVisible = true;
        moveKeyboardItem(event->key());
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        activate(m_hoveredItem);
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void VisualizerCanvas::moveKeyboardItem(int key)
{
    if (!scene() || scene()->itemCount() == 0) {
        return;
    }
    if (!m_hoveredItem) {
        setHovered(0, scene()->boundsOf(0).center());
        return;
    }
    const QRectF canvas(rect());
    const QRectF current = scene()->boundsOf(*m_hoveredItem);
    std::optional<std::size_t> best;
    double bestDistance = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < scene()->itemCount(); ++i) {
        const QRectF bounds = scene()->boundsOf(i);
        // What lies beyond the canvas could not be seen when the keys reached it.
        if (i == *m_hoveredItem || bounds.contains(current) || !bounds.intersects(canvas)) {
            continue;
        }
        const double distance = distanceTowards(key, current.center(), bounds.center());
        if (distance < bestDistance) {
            bestDistance = distance;
            best = i;
        }
    }
    if (best) {
        setHovered(best, scene()->boundsOf(*best).center());
    }
}

void VisualizerCanvas::focusInEvent(QFocusEvent* event)
{
    // Focus that moves to the canvas because another widget is hidden was not asked for.
    const Qt::FocusReason reason = event->reason();
    m_focusIsVisible = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
                       reason == Qt::ShortcutFocusReason;
    QWidget::focusInEvent(event);
    update();
}

void VisualizerCanvas::focusOutEvent(QFocusEvent* event)
{
    QWidget::focusOutEvent(event);
    update();
}

void VisualizerCanvas::contextMenuEvent(QContextMenuEvent* event)
{
    if (!scene()) {
        return;
    }
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const std::optional<std::size_t> item =
        isByKey ? m_hoveredItem : scene()->itemAt(QPointF(event->pos()));
    const QPoint place = isByKey && item ? mapToGlobal(scene()->boundsOf(*item).center().toPoint())
                                         : event->globalPos();
    m_tooltip->hide(); // it would lie beside the menu, about the same item
    NodeContextMenuModifier{m_state, nodeOf(item)}.popUp(*this, place);
}

} // namespace quorvane
