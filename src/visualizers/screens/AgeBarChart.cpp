// SPDX-License-Identifier: MIT
#include "AgeBarChart.h"

#include "ByteFormatter.h"
#include "CanvasScene.h"
#include "Color.h"
#include "Painting.h"
#include "ShapePainting.h"
#include "Tokens.h"
#include "ToolTip.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <utility>

namespace quorvane {
namespace {

constexpr double barGap = 3;
constexpr double tallestShare = 0.9;
constexpr double leastHeight = 1;
constexpr double cornerRadius = 1;
constexpr double barHue = 0.55;
constexpr double barSaturation = 0.45;
/// A line on every bar, so that a month of few bytes can be seen.
constexpr double capHeight = 2;
constexpr double capBrightness = 0.85;
constexpr std::size_t monthsPerLabel = 6;
constexpr double labelRise = 14;
constexpr int labelSize = 8;
constexpr double plateOpacity = 0.78;
constexpr double platePadding = 4;
constexpr double plateHeight = 14;

QString textOf(const AgeBucket& bucket)
{
    return bucket.key + QStringLiteral(": ") + ByteFormatter::string(bucket.bytes);
}

} // namespace

AgeBarChart::AgeBarChart(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("ageBarChart"));
    setAccessibleName(QStringLiteral("Bytes by last modified"));
}

void AgeBarChart::setBuckets(std::vector<AgeBucket> buckets)
{
    m_buckets = std::move(buckets);
    m_maxBytes = 0;
    QStringList months;
    for (const AgeBucket& bucket : m_buckets) {
        m_maxBytes = std::max(m_maxBytes, bucket.bytes);
        months.push_back(textOf(bucket));
    }
    setAccessibleDescription(months.join(QStringLiteral(", ")));
    update();
}

double AgeBarChart::shareOf(std::size_t bucket) const
{
    return m_maxBytes > 0
               ? static_cast<double>(m_buckets[bucket].bytes) / static_cast<double>(m_maxBytes)
               : 0;
}

QRectF AgeBarChart::barOf(std::size_t bucket) const
{
    const double barWidth = std::max(width() / static_cast<double>(m_buckets.size()) - barGap, 0.0);
    const double barHeight = std::max(shareOf(bucket) * height() * tallestShare, leastHeight);
    return {(barWidth + barGap) * static_cast<double>(bucket), height() - barHeight, barWidth,
            barHeight};
}

void AgeBarChart::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintBars(painter);
    paintMonths(painter);
}

void AgeBarChart::paintBars(QPainter& painter) const
{
    painter.setPen(Qt::NoPen);
    const QColor cap = toQColor(Color::hsb(barHue, barSaturation, capBrightness));
    for (std::size_t i = 0; i < m_buckets.size(); ++i) {
        const QRectF bar = barOf(i);
        const double brightness = std::clamp(shareOf(i), 0.0, 1.0);
        painter.setBrush(toQColor(Color::hsb(barHue, barSaturation, brightness)));
        painter.drawRoundedRect(bar, cornerRadius, cornerRadius);
        painter.fillRect(QRectF(bar.left(), bar.top(), bar.width(), capHeight), cap);
    }
}

void AgeBarChart::paintMonths(QPainter& painter) const
{
    QFont small = quorvane::font(TextStyle::path);
    small.setPixelSize(labelSize);
    painter.setFont(small);
    const QFontMetricsF metrics(small);
    for (std::size_t i = 0; i < m_buckets.size(); i += monthsPerLabel) {
        const QString& month = m_buckets[i].key;
        const QRectF plate(barOf(i).left(), height() - labelRise - plateHeight / 2,
                           metrics.horizontalAdvance(month) + 2 * platePadding, plateHeight);
        painter.setPen(Qt::NoPen);
        painter.setBrush(withOpacity(themeColor(ThemeColor::card), plateOpacity));
        painter.drawRoundedRect(plate, radius::small / 2.0, radius::small / 2.0);
        painter.setPen(themeColor(ThemeColor::text2));
        painter.drawText(plate, Qt::AlignCenter | Qt::TextSingleLine, month);
    }
}

bool AgeBarChart::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip) {
        return QWidget::event(event);
    }
    const auto* const help = static_cast<QHelpEvent*>(event);
    for (std::size_t i = 0; i < m_buckets.size(); ++i) {
        const QRectF bar = barOf(i);
        if (help->pos().x() >= bar.left() && help->pos().x() < bar.right() + barGap) {
            showPlainToolTip(help->globalPos(), textOf(m_buckets[i]), this);
            return true;
        }
    }
    QToolTip::hideText();
    return true;
}

} // namespace quorvane
