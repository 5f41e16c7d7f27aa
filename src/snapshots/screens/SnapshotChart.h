// SPDX-License-Identifier: MIT
#pragma once

#include "SnapshotStore.h"

#include <QUuid>
#include <QWidget>

#include <cstdint>
#include <optional>
#include <vector>

namespace quorvane {

class TooltipCard;

/// Round values from at most `low` to at least `high`, four to seven of them with equal steps, in
/// the byte unit of `high`. Never a value below 0.
std::vector<std::int64_t> chartTicks(std::int64_t low, std::int64_t high);

/// The bytes of one root over time as a line: a point for each snapshot, a tooltip on it, and one
/// of them chosen. Keys: left and right choose. Main thread.
class SnapshotChart : public QWidget
{
    Q_OBJECT

public:
    explicit SnapshotChart(QWidget* parent = nullptr);

    /// Any order.
    void setSnapshots(std::vector<StoredSnapshot> snapshots);
    void setChosen(const std::optional<QUuid>& id);

    /// Where the point of a snapshot lies; absent for one that is not on the chart.
    std::optional<QPointF> pointOf(const QUuid& id) const;
    QSize sizeHint() const override;

Q_SIGNALS:
    void chosen(const QUuid& id);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QRectF plot() const;
    QPointF place(const StoredSnapshot& snapshot) const;
    int nearestTo(const QPointF& position) const;
    void hover(int index);
    void paintAxes(QPainter& painter) const;
    void paintLine(QPainter& painter) const;
    void paintPoints(QPainter& painter) const;

    std::vector<StoredSnapshot> m_snapshots; ///< oldest first
    std::vector<std::int64_t> m_ticks;
    std::optional<QUuid> m_chosen;
    int m_hovered = -1;
    TooltipCard* m_tooltip;
};

} // namespace quorvane
