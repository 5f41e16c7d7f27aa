// SPDX-License-Identifier: MIT
#pragma once

#include <QFocusFrame>
#include <QPointer>

class QApplication;

namespace quorvane {

/// Gives a widget's focus ring its corner radius. Below 0: no ring, the widget draws its own focus.
void setFocusRadius(QWidget& widget, int radius);

/// Lets the ring go around `owner`, an ancestor, while `widget` has the focus.
void setFocusRingOwner(QWidget& widget, QWidget& owner);

/// The ring around the control that has the keyboard focus, drawn outside its edge and above its
/// neighbours. follow() keeps one for the whole program.
class FocusRing : public QFocusFrame
{
    Q_OBJECT

public:
    explicit FocusRing(QWidget* parent = nullptr);

    /// The control whose ring stands for the focus of `focused`, or null when it draws its own.
    static QWidget* target(QWidget* focused);

    /// Lets one ring follow the focus of the program.
    static void follow(QApplication& application);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quorvane
