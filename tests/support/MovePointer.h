// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QMouseEvent>
#include <QPoint>
#include <QWidget>

namespace quorvane {

/// The pointer comes to a point of a widget, with no button held. Unlike QTest::mouseMove() it
/// tells the widget in any case: also when the pointer has last been there, and when the screen is
/// smaller than the window.
inline void movePointer(QWidget& widget, const QPoint& point)
{
    QMouseEvent event(QEvent::MouseMove, QPointF(point), widget.mapToGlobal(QPointF(point)),
                      Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

} // namespace quorvane
