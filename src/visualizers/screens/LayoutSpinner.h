// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>
#include <QWidget>

namespace quorvane {

/// What stands over a visualiser while its layout is computed. Over content it appears only when
/// the layout takes long enough to be noticed, so that quick ones do not flicker. Main thread.
class LayoutSpinner : public QWidget
{
    Q_OBJECT

public:
    /// How long an old picture stands alone, milliseconds.
    static constexpr int delayOverContent = 150;

    /// Hidden at first.
    explicit LayoutSpinner(QWidget* screen);

    /// To be called whenever the screen's size changes, points of the screen.
    void centerIn(const QRect& area);
    void start(bool isOverContent);
    void stop();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void appear();

    QTimer m_delay;
};

} // namespace quorvane
