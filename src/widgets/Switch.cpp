// SPDX-License-Identifier: MIT
#include "Switch.h"

#include "DesktopSettings.h"
#include "FocusRing.h"
#include "Painting.h"
#include "Tokens.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionButton>

namespace quorvane {
namespace {

constexpr qreal knobInset = 2;
constexpr double disabledOpacity = 0.45;
constexpr QSize smallTrack(28, 16);

} // namespace

Switch::Switch(const QString& name, QWidget* parent, ControlSize size)
    : QCheckBox(parent)
    , m_track(size == ControlSize::small ? smallTrack
                                         : QSize(measure::switchWidth, measure::switchHeight))
{
    setAccessibleName(name);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setFocusRadius(*this, m_track.height() / 2);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_slide.setEasingCurve(QEasingCurve::InOutQuad);
    connect(&m_slide, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        m_position = value.toReal();
        update();
    });
    connect(this, &QCheckBox::toggled, this, &Switch::slide);
}

void Switch::slide(bool on)
{
    m_slide.stop();
    const int time = isVisible() ? animationDuration(duration::toggle) : 0;
    if (time == 0) {
        m_position = on ? 1 : 0;
        update();
        return;
    }
    m_slide.setDuration(time);
    m_slide.setStartValue(m_position);
    m_slide.setEndValue(on ? 1.0 : 0.0);
    m_slide.start();
}

QSize Switch::sizeHint() const
{
    return m_track;
}

QSize Switch::minimumSizeHint() const
{
    return sizeHint();
}

bool Switch::hitButton(const QPoint& position) const
{
    return rect().contains(position);
}

void Switch::paintEvent(QPaintEvent*)
{
    QStyleOptionButton option;
    initStyleOption(&option);
    QPainter painter(this);
    paintSwitch(painter, QRectF(QPointF(0, (height() - m_track.height()) / 2.0), QSizeF(m_track)),
                m_position, option.state);
}

void paintSwitch(QPainter& painter, const QRectF& track, qreal position, QStyle::State state)
{
    const bool isEnabled = state & QStyle::State_Enabled;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled) {
        painter.setOpacity(painter.opacity() * disabledOpacity);
    }
    const qreal radius = track.height() / 2;
    const qreal side = track.height() - 2 * knobInset;
    const QRectF knob(track.left() + knobInset + position * (track.width() - track.height()),
                      track.top() + knobInset, side, side);
    painter.save();
    if (!isEnabled) {
        // Faded as one: the track must not show through the knob.
        QPainterPath all;
        all.addRect(track);
        QPainterPath hole;
        hole.addEllipse(knob);
        painter.setClipPath(all.subtracted(hole), Qt::IntersectClip);
    }
    paintPanel(painter, track, radius, themeColor(ThemeColor::controlEdge), Qt::transparent);
    if (position > 0) {
        paintPanel(painter, track, radius,
                   withOpacity(themeColor(ThemeColor::accentFill), position), Qt::transparent);
    }
    if (state & (QStyle::State_MouseOver | QStyle::State_Sunken)) {
        paintPanel(painter, track, radius,
                   themeColor(state & QStyle::State_Sunken ? ThemeColor::press : ThemeColor::hover),
                   Qt::transparent);
    }
    painter.restore();
    painter.setPen(Qt::NoPen);
    if (isEnabled) {
        painter.setBrush(themeColor(ThemeColor::knobShadow));
        painter.drawEllipse(knob.translated(0, 1));
    }
    painter.setBrush(themeColor(ThemeColor::knob));
    painter.drawEllipse(knob);
    painter.restore();
}

} // namespace quorvane
