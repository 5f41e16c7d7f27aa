// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPolygonF>
#include <QString>
#include <QWidget>

#include <cstdint>
#include <functional>
#include <vector>

namespace quorvane {

/// A line chart without axes of the last moments of a few figures; the pointer tells the values of
/// a moment. Main thread.
class Sparkline : public QWidget
{
    Q_OBJECT

public:
    struct Line
    {
        QString name; ///< for the tooltip
        QColor color;
    };
    using Series = std::vector<std::vector<double>>;

    /// minScaleFloor: what the top of the scale never goes below; 0 for none. name: accessible.
    Sparkline(const QString& name, std::vector<Line> lines, double minScaleFloor, bool showBaseline,
              std::function<QString(double)> textOf, QWidget* parent = nullptr);

    /// As many series as there are lines, oldest value first.
    void setSeries(Series series);

    /// Points of one series in a drawing of that size, y downwards: evenly spaced over the width,
    /// 3 points free at the top. None for fewer than two values. All lie on the bottom where the
    /// top of the scale is not above 0.
    static QPolygonF points(const std::vector<double>& values, const QSizeF& size, double top);
    /// The largest value over all series, but at least the floor where that is above 0.
    static double scaleTop(const Series& series, double minScaleFloor);
    /// What the pointer at x tells: each line with its value at that moment; empty for no moment.
    QString textAt(double x) const;

    QSize sizeHint() const override { return {200, 60}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    /// Index of the value below x; -1 for none.
    int momentAt(double x) const;

    std::vector<Line> m_lines;
    double m_minScaleFloor;
    bool m_showsBaseline;
    std::function<QString(double)> m_textOf;
    Series m_series;
    double m_pointer = -1; ///< x; negative while the pointer is elsewhere
};

/// The stacked bar of memory: applications, wired, cached, free. Main thread.
class MemorySegments : public QWidget
{
    Q_OBJECT

public:
    struct Segment
    {
        double left = 0;
        double width = 0;
    };

    explicit MemorySegments(QWidget* parent = nullptr);

    void setBytes(std::uint64_t app, std::uint64_t wired, std::uint64_t cached, std::uint64_t free);
    /// Widths in proportion to the shares, 2 points apart; nothing for a total of 0.
    static std::vector<Segment> segments(const std::vector<std::uint64_t>& bytes, double width);
    /// In the order of the parts.
    static std::vector<QColor> colors();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<std::uint64_t> m_bytes;
};

/// The two colours of charts.
QColor firstSeriesColor();
QColor secondSeriesColor();

} // namespace quorvane
