// SPDX-License-Identifier: MIT
#include "GrowthLegend.h"

#include "CanvasViews.h"
#include "GrowthColors.h"
#include "NavigationState.h"
#include "Painting.h"
#include "Refresher.h"
#include "ShapePainting.h"
#include "SnapshotsState.h"
#include "Switch.h"
#include "Theme.h"
#include "Tokens.h"

#include <QLocale>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

namespace quorvane {
namespace {

constexpr int stepWidth = 24;
constexpr int stepHeight = 12;
constexpr int stepGap = 1;
constexpr int scaleWidth = static_cast<int>(growthSteps) * (stepWidth + stepGap) - stepGap;
constexpr qreal endRadius = 3;

QString switchText()
{
    return GrowthLegend::tr("Changes");
}

QString leastText()
{
    return GrowthLegend::tr("−50 %");
}

QString mostText()
{
    return GrowthLegend::tr("+50 % or new");
}

} // namespace

GrowthLegend::GrowthLegend(AppState& state, QWidget* parent)
    : QWidget(parent)
    , m_navigation(NavigationState::of(state))
    , m_snapshots(SnapshotsState::of(state))
    , m_switch(new Switch(switchText(), this, ControlSize::small))
{
    setObjectName(QStringLiteral("growthLegend"));
    m_switch->setObjectName(QStringLiteral("changesSwitch"));
    connect(m_switch, &QAbstractButton::toggled, this,
            [this](bool isOn) { m_snapshots.showsChanges = isOn; });
    auto* const refresher = new Refresher(this, [this] { refresh(); });
    refresher->watch(m_snapshots.growth, m_snapshots.showsChanges, m_navigation.visualizer);
    refresh();
}

bool GrowthLegend::isWanted() const
{
    return m_snapshots.growth.value() != nullptr && showsGrowth(m_navigation.visualizer.value());
}

QString GrowthLegend::dateText() const
{
    const auto growth = m_snapshots.growth.value();
    return growth ? tr("since %1").arg(growth->base().formattedDateOnly(QLocale())) : QString();
}

int GrowthLegend::widthWith(bool withDate) const
{
    int width = m_switch->sizeHint().width() + spacing::s +
                textWidth(TextStyle::captionStrong, switchText());
    if (withDate) {
        width += spacing::s + textWidth(TextStyle::caption, dateText());
    }
    if (m_snapshots.showsChanges) {
        width += spacing::xl + textWidth(TextStyle::caption, leastText()) + spacing::s +
                 scaleWidth + spacing::s + textWidth(TextStyle::caption, mostText());
    }
    return width;
}

int GrowthLegend::wholeWidth() const
{
    return widthWith(true);
}

int GrowthLegend::shortWidth() const
{
    return widthWith(false);
}

void GrowthLegend::refresh()
{
    const bool isOn = m_snapshots.showsChanges;
    m_switch->setChecked(isOn);
    m_switch->setAccessibleName(tr("Changes %1").arg(dateText()));
    setAccessibleName(
        isOn ? tr("Legend: blue for less, orange for more, gray for no change; the brighter, the "
                  "more, up to %1 and %2")
                   .arg(leastText(), mostText())
             : QString());
    update();
    Q_EMIT contentChanged();
}

void GrowthLegend::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_switch->move(0, (height() - m_switch->height()) / 2);
}

void GrowthLegend::mouseReleaseEvent(QMouseEvent* event)
{
    const int words = m_switch->geometry().right() + spacing::s +
                      textWidth(TextStyle::captionStrong, switchText());
    if (event->button() == Qt::LeftButton && event->position().x() <= words) {
        m_switch->toggle();
    }
}

void GrowthLegend::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    int left = m_switch->width() + spacing::s;
    const auto write = [&](TextStyle style, ThemeColor color, const QString& text) {
        const int words = textWidth(style, text);
        paintText(painter, QRect(left, 0, words + 1, height()), Qt::AlignLeft | Qt::AlignVCenter,
                  style, themeColor(color), text);
        left += words;
    };
    write(TextStyle::captionStrong, ThemeColor::text1, switchText());
    if (width() >= wholeWidth()) {
        left += spacing::s;
        write(TextStyle::caption, ThemeColor::text2, dateText());
    }
    if (!m_snapshots.showsChanges) {
        return;
    }
    left += spacing::xl;
    write(TextStyle::caption, ThemeColor::text2, leastText());
    left += spacing::s;
    QPainterPath ends;
    ends.addRoundedRect(QRectF(left, (height() - stepHeight) / 2.0, scaleWidth, stepHeight),
                        endRadius, endRadius);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipPath(ends);
    for (const Color& step : growthScale) {
        painter.fillRect(QRect(left, (height() - stepHeight) / 2, stepWidth, stepHeight),
                         toQColor(step));
        left += stepWidth + stepGap;
    }
    painter.setClipping(false);
    left += spacing::s - stepGap;
    write(TextStyle::caption, ThemeColor::text2, mostText());
}

} // namespace quorvane
