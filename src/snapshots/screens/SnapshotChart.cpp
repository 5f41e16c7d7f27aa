// SPDX-License-Identifier: MIT
#include "SnapshotChart.h"

#include "ByteFormatter.h"
#include "Painting.h"
#include "Popover.h"
#include "Theme.h"
#include "Tokens.h"

#include <QKeyEvent>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace quorvane {
namespace {

constexpr int chartHeight = 156;
constexpr int leftAxis = 64;
constexpr int rightMargin = 24;
constexpr int topMargin = 10;
constexpr int bottomAxis = 28;
constexpr qreal lineWidth = 1.5;
constexpr qreal fillOpacity = 0.1;
constexpr qreal pointRadius = 3.5;
constexpr qreal chosenRadius = 4.5;
constexpr qreal haloRadius = 8;
constexpr qreal hitDistance = 16;
constexpr int dateGap = 12;
constexpr int wantedSteps = 4;

} // namespace

std::vector<std::int64_t> chartTicks(std::int64_t low, std::int64_t high)
{
    low = std::max<std::int64_t>(low, 0);
    high = std::max(high, low);
    double unit = 1;
    while (static_cast<double>(high) / unit >= 1024 && unit < 1e15) {
        unit *= 1024;
    }
    const double bottom = static_cast<double>(low) / unit;
    const double top = static_cast<double>(high) / unit;
    const double spread = std::max({(top - bottom) / wantedSteps, top * 0.01, 1 / unit});
    const double power = std::pow(10, std::floor(std::log10(spread)));
    double step = power;
    for (const double factor : {1.0, 2.0, 2.5, 5.0, 10.0}) {
        step = factor * power;
        if (step >= spread) {
            break;
        }
    }
    std::vector<std::int64_t> ticks;
    // Far below any sum that a double could not turn back into bytes.
    constexpr double limit = 9.2e18;
    for (double value = std::floor(bottom / step) * step;; value += step) {
        ticks.push_back(static_cast<std::int64_t>(std::min(std::round(value * unit), limit)));
        if ((value >= top && ticks.size() > 1) || value * unit >= limit) {
            return ticks;
        }
    }
}

SnapshotChart::SnapshotChart(QWidget* parent)
    : QWidget(parent)
    , m_tooltip(new TooltipCard(this))
{
    setObjectName(QStringLiteral("snapshotChart"));
    setAccessibleName(tr("Bytes over time"));
    setFixedHeight(chartHeight);
    setMouseTracking(true);
    // By Tab alone: the frame of the focus would stand in the way of the pointer.
    setFocusPolicy(Qt::TabFocus);
    m_tooltip->hide();
    connect(&ThemeNotifier::instance(), &ThemeNotifier::themeChanged, this,
            qOverload<>(&QWidget::update));
}

void SnapshotChart::setSnapshots(std::vector<StoredSnapshot> snapshots)
{
    std::stable_sort(
        snapshots.begin(), snapshots.end(),
        [](const StoredSnapshot& a, const StoredSnapshot& b) { return a.date < b.date; });
    m_snapshots = std::move(snapshots);
    m_ticks.clear();
    if (!m_snapshots.empty()) {
        const auto [low, high] = std::minmax_element(
            m_snapshots.begin(), m_snapshots.end(),
            [](const auto& a, const auto& b) { return a.rootBytes < b.rootBytes; });
        m_ticks = chartTicks(low->rootBytes, high->rootBytes);
    }
    QStringList points;
    for (const StoredSnapshot& snapshot : m_snapshots) {
        points.append(snapshot.formattedDate(QLocale()) + QStringLiteral(": ") +
                      ByteFormatter::string(snapshot.rootBytes));
    }
    setAccessibleDescription(points.join(QStringLiteral("; ")));
    hover(-1);
    update();
}

void SnapshotChart::setChosen(const std::optional<QUuid>& id)
{
    m_chosen = id;
    update();
}

QSize SnapshotChart::sizeHint() const
{
    return {480, chartHeight};
}

QRectF SnapshotChart::plot() const
{
    return QRectF(rect()).adjusted(leftAxis, topMargin, -rightMargin, -bottomAxis);
}

QPointF SnapshotChart::place(const StoredSnapshot& snapshot) const
{
    const QRectF area = plot();
    const double first = m_snapshots.front().date;
    const double span = m_snapshots.back().date / 2 - first / 2;
    const double along = span > 0 ? (snapshot.date / 2 - first / 2) / span : 0.5;
    const auto low = static_cast<double>(m_ticks.front());
    const double height = static_cast<double>(m_ticks.back()) - low;
    const double up = height > 0 ? (static_cast<double>(snapshot.rootBytes) - low) / height : 0.5;
    return {area.left() + along * area.width(), area.bottom() - up * area.height()};
}

std::optional<QPointF> SnapshotChart::pointOf(const QUuid& id) const
{
    const auto found = std::find_if(m_snapshots.begin(), m_snapshots.end(),
                                    [&](const StoredSnapshot& each) { return each.id == id; });
    return found == m_snapshots.end() ? std::nullopt : std::optional(place(*found));
}

int SnapshotChart::nearestTo(const QPointF& position) const
{
    int nearest = -1;
    qreal least = hitDistance;
    for (std::size_t i = 0; i < m_snapshots.size(); ++i) {
        const QPointF away = place(m_snapshots[i]) - position;
        const qreal distance = std::hypot(away.x(), away.y());
        if (distance <= least) {
            least = distance;
            nearest = static_cast<int>(i);
        }
    }
    return nearest;
}

void SnapshotChart::hover(int index)
{
    if (m_hovered == index) {
        return;
    }
    m_hovered = index;
    if (index < 0) {
        m_tooltip->hide();
    } else {
        const StoredSnapshot& snapshot = m_snapshots[static_cast<std::size_t>(index)];
        m_tooltip->setContent(ByteFormatter::string(snapshot.rootBytes),
                              snapshot.formattedDate(QLocale()));
        m_tooltip->showAt(place(snapshot).toPoint());
    }
    update();
}

void SnapshotChart::mouseMoveEvent(QMouseEvent* event)
{
    hover(nearestTo(event->position()));
}

void SnapshotChart::mousePressEvent(QMouseEvent* event)
{
    const int index = nearestTo(event->position());
    if (index >= 0) {
        Q_EMIT chosen(m_snapshots[static_cast<std::size_t>(index)].id);
    }
}

void SnapshotChart::leaveEvent(QEvent* event)
{
    QWidget::leaveEvent(event);
    hover(-1);
}

void SnapshotChart::keyPressEvent(QKeyEvent* event)
{
    const bool isLeft = event->key() == Qt::Key_Left;
    if ((!isLeft && event->key() != Qt::Key_Right) || m_snapshots.empty()) {
        QWidget::keyPressEvent(event);
        return;
    }
    const auto current = std::find_if(m_snapshots.begin(), m_snapshots.end(),
                                      [&](const auto& each) { return each.id == m_chosen; });
    const auto last = static_cast<std::ptrdiff_t>(m_snapshots.size()) - 1;
    std::ptrdiff_t next = last;
    if (current != m_snapshots.end()) {
        next =
            std::clamp<std::ptrdiff_t>(current - m_snapshots.begin() + (isLeft ? -1 : 1), 0, last);
    }
    Q_EMIT chosen(m_snapshots[static_cast<std::size_t>(next)].id);
}

void SnapshotChart::paintAxes(QPainter& painter) const
{
    const QRectF area = plot();
    const double low = static_cast<double>(m_ticks.front());
    const double spread = std::max(static_cast<double>(m_ticks.back()) - low, 1.0);
    for (const std::int64_t tick : m_ticks) {
        const qreal y = area.bottom() - (static_cast<double>(tick) - low) / spread * area.height();
        painter.fillRect(
            QRectF(area.left() - spacing::s, std::round(y), area.width() + spacing::s, 1),
            themeColor(ThemeColor::hairline));
        const bool isWhole = !ByteFormatter::string(tick).contains(QLatin1Char('.')) ||
                             ByteFormatter::string(tick).contains(QLatin1String(".0 "));
        paintText(painter, QRect(0, static_cast<int>(y) - 8, leftAxis - spacing::l, 16),
                  Qt::AlignRight | Qt::AlignVCenter, TextStyle::path, themeColor(ThemeColor::text3),
                  ByteFormatter::string(tick, isWhole ? 0 : 1));
    }
    // Dates from the right, the newest first, each only where it does not touch the one before; the
    // chosen one always.
    int freeUntil = width() + dateGap;
    const int y = this->height() - bottomAxis + spacing::s;
    for (auto snapshot = m_snapshots.rbegin(); snapshot != m_snapshots.rend(); ++snapshot) {
        const bool isChosen = snapshot->id == m_chosen;
        const QString text = snapshot->formattedDay(QLocale());
        const TextStyle style = isChosen ? TextStyle::captionMedium : TextStyle::path;
        const int words = textWidth(style, text);
        const int middle = static_cast<int>(place(*snapshot).x());
        const int left = std::clamp(middle - words / 2, 0, std::max(width() - words, 0));
        if (left + words + dateGap > freeUntil && !isChosen) {
            continue;
        }
        paintText(painter, QRect(left, y, words + 1, 16), Qt::AlignLeft | Qt::AlignVCenter, style,
                  themeColor(isChosen ? ThemeColor::text1 : ThemeColor::text3), text);
        freeUntil = left;
    }
}

void SnapshotChart::paintLine(QPainter& painter) const
{
    QPainterPath line(place(m_snapshots.front()));
    for (const StoredSnapshot& snapshot : m_snapshots) {
        line.lineTo(place(snapshot));
    }
    QPainterPath area = line;
    area.lineTo(place(m_snapshots.back()).x(), plot().bottom());
    area.lineTo(place(m_snapshots.front()).x(), plot().bottom());
    area.closeSubpath();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(area, withOpacity(themeColor(ThemeColor::accent), fillOpacity));
    painter.strokePath(line, QPen(themeColor(ThemeColor::accent), lineWidth));
}

void SnapshotChart::paintPoints(QPainter& painter) const
{
    const QColor accent = themeColor(ThemeColor::accent);
    for (std::size_t i = 0; i < m_snapshots.size(); ++i) {
        const QPointF point = place(m_snapshots[i]);
        const bool isChosen = m_snapshots[i].id == m_chosen;
        if (isChosen) {
            painter.setPen(QPen(themeColor(ThemeColor::text3), 1, Qt::DotLine));
            painter.drawLine(QPointF(point.x(), plot().top()), QPointF(point.x(), plot().bottom()));
        }
        painter.setPen(Qt::NoPen);
        if (isChosen || static_cast<int>(i) == m_hovered) {
            painter.setBrush(withOpacity(accent, 0.35));
            painter.drawEllipse(point, haloRadius, haloRadius);
        }
        painter.setPen(QPen(accent, lineWidth));
        painter.setBrush(isChosen ? accent : themeColor(ThemeColor::card));
        const qreal radius = isChosen ? chosenRadius : pointRadius;
        painter.drawEllipse(point, radius, radius);
    }
}

void SnapshotChart::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (m_snapshots.empty()) {
        return;
    }
    paintAxes(painter);
    paintLine(painter);
    paintPoints(painter);
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(themeColor(ThemeColor::accent), 2));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius::control,
                                radius::control);
    }
}

} // namespace quorvane
