// SPDX-License-Identifier: MIT
#include "Progress.h"

#include "DesktopSettings.h"
#include "Painting.h"
#include "Tokens.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace quorvane {
namespace {

constexpr int barSteps = 10'000;
constexpr double highlightShare = 0.4; ///< of the rail's width
constexpr int spinnerSide = 16;
constexpr int spinnerGap = 8;
constexpr int spinnerTurn = 900; ///< milliseconds
constexpr double restingAngle = 0;

void runForEver(QVariantAnimation& animation, int milliseconds, double end)
{
    animation.setStartValue(0.0);
    animation.setEndValue(end);
    animation.setDuration(milliseconds);
    animation.setLoopCount(-1);
}

} // namespace

ProgressBar::ProgressBar(const QString& name, QWidget* parent)
    : QProgressBar(parent)
{
    setAccessibleName(name);
    setRange(0, barSteps);
    setValue(0);
    setTextVisible(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ProgressBar::setFraction(double fraction)
{
    const double held = std::isnan(fraction) ? 0 : std::clamp(fraction, 0.0, 1.0);
    setValue(static_cast<int>(std::lround(held * barSteps)));
    update();
}

double ProgressBar::fraction() const
{
    return static_cast<double>(value()) / barSteps;
}

void ProgressBar::setColor(ThemeColor color)
{
    m_color = color;
    update();
}

QSize ProgressBar::sizeHint() const
{
    return {120, measure::bar};
}

QSize ProgressBar::minimumSizeHint() const
{
    return {measure::bar, measure::bar};
}

void ProgressBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal radius = measure::bar / 2.0;
    const int top = (height() - measure::bar) / 2;
    const QRectF track(0, top, width(), measure::bar);
    QPainterPath shape;
    shape.addRoundedRect(track, radius, radius);
    painter.fillPath(shape, themeColor(ThemeColor::raised));
    if (value() > 0) {
        painter.setClipPath(shape);
        QRectF filled = track;
        filled.setWidth(std::max(track.width() * fraction(), 2 * radius));
        painter.setPen(Qt::NoPen);
        painter.setBrush(themeColor(m_color));
        painter.drawRoundedRect(filled, radius, radius);
    }
}

SweepRail::SweepRail(const QString& name, QWidget* parent)
    : QProgressBar(parent)
{
    setAccessibleName(name);
    setRange(0, 0);
    setTextVisible(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    runForEver(m_sweep, duration::sweep, 1);
    connect(&m_sweep, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        m_phase = value.toReal();
        update();
    });
    connect(&DesktopSettings::instance(), &DesktopSettings::reducedMotionChanged, this,
            &SweepRail::restart);
}

QRectF SweepRail::highlight(qreal width, qreal phase)
{
    const qreal length = width * highlightShare;
    return {phase * (width + length) - length, 0, length, measure::rail};
}

void SweepRail::restart()
{
    m_sweep.stop();
    m_phase = 0.5;
    if (isVisible() && !reducedMotion()) {
        m_sweep.start();
    }
    update();
}

QSize SweepRail::sizeHint() const
{
    return {120, measure::rail};
}

QSize SweepRail::minimumSizeHint() const
{
    return {measure::rail, measure::rail};
}

void SweepRail::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const int top = (height() - measure::rail) / 2;
    const QRectF track(0, top, width(), measure::rail);
    QPainterPath shape;
    shape.addRoundedRect(track, track.height() / 2, track.height() / 2);
    painter.fillPath(shape, themeColor(ThemeColor::raised));

    const QRectF light = highlight(width(), m_phase).translated(track.topLeft());
    QLinearGradient gradient(light.topLeft(), light.topRight());
    gradient.setColorAt(0, withOpacity(themeColor(ThemeColor::accent), 0));
    gradient.setColorAt(0.5, themeColor(ThemeColor::accent));
    gradient.setColorAt(1, withOpacity(themeColor(ThemeColor::accent), 0));
    painter.setClipPath(shape);
    painter.fillRect(light, gradient);
}

void SweepRail::showEvent(QShowEvent* event)
{
    QProgressBar::showEvent(event);
    restart();
}

void SweepRail::hideEvent(QHideEvent* event)
{
    QProgressBar::hideEvent(event);
    m_sweep.stop();
}

Spinner::Spinner(const QString& text, QWidget* parent)
    : QProgressBar(parent)
{
    setRange(0, 0);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setText(text);
    runForEver(m_turn, spinnerTurn, 360);
    connect(&m_turn, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        m_angle = value.toReal();
        update();
    });
}

void Spinner::setText(const QString& text)
{
    m_text = text;
    setAccessibleName(text);
    updateGeometry();
    update();
}

void Spinner::setWordsVisible(bool visible)
{
    m_wordsVisible = visible;
    updateGeometry();
    update();
}

QSize Spinner::sizeHint() const
{
    const int words = m_wordsVisible && !m_text.isEmpty()
                          ? spinnerGap + textWidth(TextStyle::caption, m_text)
                          : 0;
    return {spinnerSide + words, spinnerSide};
}

QSize Spinner::minimumSizeHint() const
{
    return sizeHint();
}

void Spinner::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF circle(1.5, (height() - spinnerSide) / 2.0 + 1.5, spinnerSide - 3,
                        spinnerSide - 3);
    painter.setPen(QPen(withOpacity(themeColor(ThemeColor::text2), 0.18), 2));
    painter.drawEllipse(circle);
    painter.setPen(QPen(themeColor(ThemeColor::accent), 2, Qt::SolidLine, Qt::RoundCap));
    const auto start = static_cast<int>(std::lround((90 - m_angle) * 16));
    painter.drawArc(circle, start, -90 * 16);
    if (m_wordsVisible) {
        const QRectF words(spinnerSide + spinnerGap, 0, width() - spinnerSide - spinnerGap,
                           height());
        paintText(painter, words, Qt::AlignLeft | Qt::AlignVCenter, TextStyle::caption,
                  themeColor(ThemeColor::text2), m_text);
    }
}

void Spinner::showEvent(QShowEvent* event)
{
    QProgressBar::showEvent(event);
    m_angle = restingAngle;
    if (!reducedMotion()) {
        m_turn.start();
    }
}

void Spinner::hideEvent(QHideEvent* event)
{
    QProgressBar::hideEvent(event);
    m_turn.stop();
}

} // namespace quorvane
