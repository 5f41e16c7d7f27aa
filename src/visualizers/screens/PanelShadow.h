// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace quorvane {

/// The shadow of a panel that lies over its window. Clicks go through it. Main thread.
class PanelShadow : public QWidget
{
    Q_OBJECT

public:
    /// Hidden at first.
    explicit PanelShadow(QWidget* window);

    /// Lies right below the panel, a widget of the same window, all around it.
    void place(QWidget* panel);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quorvane
