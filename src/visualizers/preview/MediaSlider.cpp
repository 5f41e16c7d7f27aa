// SPDX-License-Identifier: MIT
#include "MediaSlider.h"

#include "Painting.h"
#include "Tokens.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace quorvane {
namespace {

constexpr int sliderHeight = 20;
constexpr int minWidth = 64;
constexpr int knob = 12;
constexpr double knobEdge = 2;

} // namespace

MediaSlider::MediaSlider(const QString& name, QWidget* parent)
    : QSlider(Qt::Horizontal, parent)
{
    setAccessibleName(name);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize MediaSlider::sizeHint() const
{
    return {minWidth, sliderHeight};
}

QSize MediaSlider::minimumSizeHint() const
{
    return sizeHint();
}

void MediaSlider::moveTo(qreal x)
{
    const qreal share = std::clamp((x - knob / 2.0) / std::max(1, width() - knob), 0.0, 1.0);
    const int value = minimum() + static_cast<int>(std::lround(share * (maximum() - minimum())));
    setSliderPosition(value);
}

void MediaSlider::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        setSliderDown(true);
        moveTo(event->position().x());
    }
}

void MediaSlider::mouseMoveEvent(QMouseEvent* event)
{
    if (isSliderDown()) {
        moveTo(event->position().x());
    }
}

void MediaSlider::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        setSliderDown(false);
    }
}

void MediaSlider::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const int range = maximum() - minimum();
    const double share = range > 0 ? double(sliderPosition() - minimum()) / range : 0;
    const double center = knob / 2.0 + share * (width() - knob);
    const QRectF rail(0, (height() - measure::rail) / 2.0, width(), measure::rail);
    constexpr double round = measure::rail / 2.0;
    painter.setBrush(themeColor(ThemeColor::controlEdge));
    painter.drawRoundedRect(rail, round, round);
    if (!isEnabled()) {
        return;
    }
    painter.setBrush(themeColor(ThemeColor::accent));
    painter.drawRoundedRect(QRectF(rail.topLeft(), QSizeF(center, rail.height())), round, round);
    const QRectF disc(center - knob / 2.0, (height() - knob) / 2.0, knob, knob);
    painter.setBrush(themeColor(ThemeColor::knobShadow));
    painter.drawEllipse(disc.translated(0, 1));
    // White on white it would be lost in the light theme.
    constexpr double half = knobEdge / 2;
    painter.setPen(QPen(themeColor(ThemeColor::accent), knobEdge));
    painter.setBrush(themeColor(ThemeColor::knob));
    painter.drawEllipse(disc.adjusted(half, half, -half, -half));
    if (hasFocus()) {
        paintFocusRing(painter, disc, knob / 2.0);
    }
}

} // namespace quorvane
