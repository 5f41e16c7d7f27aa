// SPDX-License-Identifier: MIT
#include "MonitorCharts.h"

#include "Theme.h"
#include "Tokens.h"
#include "ToolTip.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <utility>

namespace quorvane {
namespace {

constexpr double freeTop = 3;
constexpr double lineWidth = 1.5;
constexpr double fillOpacity = 0.1;
constexpr double baselineOpacity = 0.08;
constexpr double segmentGap = 2;
constexpr int segmentHeight = 20;

} // namespace

QColor firstSeriesColor()
{
    return {0x3d, 0x9b, 0xff};
}

QColor secondSeriesColor()
{
    return {0x40, 0xc8, 0xe0};
}

Sparkline::Sparkline(const QString& name, std::vector<Line> lines, double minScaleFloor,
                     bool showBaseline, std::function<QString(double)> textOf, QWidget* parent)
    : QWidget(parent)
    , m_lines(std::move(lines))
    , m_minScaleFloor(minScaleFloor)
    , m_showsBaseline(showBaseline)
    , m_textOf(std::move(textOf))
    , m_series(m_lines.size())
{
    setAccessibleName(name);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void Sparkline::setSeries(Series series)
{
    m_series = std::move(series);
    if (!m_series.empty() && !m_series.front().empty()) {
        QStringList values;
        for (std::size_t i = 0; i < m_lines.size(); ++i) {
            values.append(m_lines[i].name + QLatin1Char(' ') + m_textOf(m_series[i].back()));
        }
        setAccessibleDescription(values.join(QLatin1String(", ")));
    }
    update();
}

double Sparkline::scaleTop(const Series& series, double minScaleFloor)
{
    double top = 0;
    for (const std::vector<double>& values : series) {
        for (const double value : values) {
            top = std::max(top, value);
        }
    }
    return minScaleFloor > 0 ? std::max(top, minScaleFloor) : top;
}

QPolygonF Sparkline::points(const std::vector<double>& values, const QSizeF& size, double top)
{
    QPolygonF points;
    if (values.size() < 2) {
        return points;
    }
    const double factor = top > 0 ? (size.height() - freeTop) / top : 0;
    const double step = size.width() / static_cast<double>(values.size() - 1);
    for (std::size_t i = 0; i < values.size(); ++i) {
        points.append({static_cast<double>(i) * step, size.height() - values[i] * factor});
    }
    return points;
}

int Sparkline::momentAt(double x) const
{
    if (m_series.empty() || m_series.front().size() < 2 || x < 0 || x > width()) {
        return -1;
    }
    const auto last = static_cast<double>(m_series.front().size() - 1);
    return static_cast<int>(std::lround(x / width() * last));
}

QString Sparkline::textAt(double x) const
{
    const int moment = momentAt(x);
    QStringList texts;
    for (std::size_t i = 0; moment >= 0 && i < m_lines.size(); ++i) {
        texts.append(m_lines[i].name + QLatin1Char(' ') +
                     m_textOf(m_series[i][static_cast<std::size_t>(moment)]));
    }
    return texts.join(QLatin1Char('\n'));
}

void Sparkline::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QSizeF area = size();
    if (m_showsBaseline) {
        painter.fillRect(QRectF(0, std::floor(area.height() / 2), area.width(), 1),
                         withOpacity(themeColor(ThemeColor::text1), baselineOpacity));
    }
    const double top = scaleTop(m_series, m_minScaleFloor);
    for (std::size_t i = 0; i < m_series.size(); ++i) {
        const QPolygonF line = points(m_series[i], area, top);
        if (line.isEmpty()) {
            continue;
        }
        QPolygonF below = line;
        below.append({area.width(), area.height()});
        below.append({0, area.height()});
        // The line covers the edge of the fill: smoothing it would only cost time.
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setPen(Qt::NoPen);
        painter.setBrush(withOpacity(m_lines[i].color, fillOpacity));
        painter.drawPolygon(below);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(
            QPen(m_lines[i].color, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
        painter.drawPolyline(line);
    }
    const int moment = momentAt(m_pointer);
    if (moment >= 0) {
        const double x = area.width() * moment / static_cast<double>(m_series.front().size() - 1);
        painter.fillRect(QRectF(std::clamp(x, 0.0, area.width() - 1), 0, 1, area.height()),
                         themeColor(ThemeColor::controlEdge));
    }
}

void Sparkline::mouseMoveEvent(QMouseEvent* event)
{
    m_pointer = event->position().x();
    showPlainToolTip(event->globalPosition().toPoint(), textAt(m_pointer), this);
    update();
}

void Sparkline::leaveEvent(QEvent* event)
{
    m_pointer = -1;
    update();
    QWidget::leaveEvent(event);
}

MemorySegments::MemorySegments(QWidget* parent)
    : QWidget(parent)
{
    setFixedHeight(segmentHeight);
    setAccessibleName(tr("Shares of memory"));
}

void MemorySegments::setBytes(std::uint64_t app, std::uint64_t wired, std::uint64_t cached,
                              std::uint64_t free)
{
    m_bytes = {app, wired, cached, free};
    update();
}

std::vector<MemorySegments::Segment>
MemorySegments::segments(const std::vector<std::uint64_t>& bytes, double width)
{
    double total = 0;
    std::size_t gaps = 0;
    for (const std::uint64_t part : bytes) {
        total += static_cast<double>(part);
        gaps += part > 0 ? 1 : 0;
    }
    std::vector<Segment> result;
    if (total <= 0) {
        return result;
    }
    const double room = std::max(width - segmentGap * static_cast<double>(gaps - 1), 0.0);
    double left = 0;
    for (const std::uint64_t part : bytes) {
        const double partWidth = static_cast<double>(part) / total * room;
        result.push_back({left, partWidth});
        left += part > 0 ? partWidth + segmentGap : 0;
    }
    return result;
}

std::vector<QColor> MemorySegments::colors()
{
    return {firstSeriesColor(), QColor(0x7f, 0x6d, 0xf2), secondSeriesColor(),
            themeColor(ThemeColor::controlEdge)};
}

void MemorySegments::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath shape;
    shape.addRoundedRect(QRectF(rect()), 4, 4);
    painter.setClipPath(shape);
    const std::vector<QColor> fills = colors();
    const std::vector<Segment> parts = segments(m_bytes, width());
    for (std::size_t i = 0; i < parts.size(); ++i) {
        painter.fillRect(QRectF(parts[i].left, 0, parts[i].width, height()), fills[i]);
    }
}

} // namespace quorvane
