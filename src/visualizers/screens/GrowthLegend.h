// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QWidget>

namespace quorvane {

class AppState;
class NavigationState;
class SnapshotsState;
class Switch;

/// The switch that colours the canvases by growth, and what the colours mean: the seven steps with
/// words at both ends. Its owner lays it out in what room there is, and anew whenever it says so.
/// Main thread.
class GrowthLegend : public QWidget
{
    Q_OBJECT

public:
    explicit GrowthLegend(AppState& state, QWidget* parent = nullptr);

    /// Whether there is anything to switch: a comparison, and a visualiser that can show it.
    bool isWanted() const;
    /// Points that it takes with the date, and without it where room is short.
    int wholeWidth() const;
    int shortWidth() const;

Q_SIGNALS:
    void contentChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QString dateText() const;
    int widthWith(bool withDate) const;
    void refresh();

    NavigationState& m_navigation;
    SnapshotsState& m_snapshots;
    Switch* m_switch;
};

} // namespace quorvane
