// SPDX-License-Identifier: MIT
#include "Chip.h"

#include "FocusRing.h"
#include "Painting.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionButton>

#include <array>

namespace quorvane {
namespace {

constexpr int chipPadding = 10;
constexpr int chipGap = 6;
constexpr int crossSide = 12;
constexpr int checkSide = 11;
constexpr int arrowSide = 8;
constexpr int arrowRoom = 5;
constexpr int badgePadding = 7;
constexpr int keyPadding = 6;
constexpr int keyMinimumWidth = 20;
constexpr double crossOpacity = 0.75;

struct TintEntry
{
    ThemeColor text;
    ThemeColor ground;
};

constexpr std::array tints{
    TintEntry{ThemeColor::text2, ThemeColor::raised},
    TintEntry{ThemeColor::accentText, ThemeColor::accentLow},
    TintEntry{ThemeColor::redText, ThemeColor::redLow},
    TintEntry{ThemeColor::greenText, ThemeColor::greenLow},
    TintEntry{ThemeColor::orangeText, ThemeColor::orangeLow},
    TintEntry{ThemeColor::purpleText, ThemeColor::purpleLow},
    TintEntry{ThemeColor::cyanText, ThemeColor::cyanLow},
};

} // namespace

ThemeColor tintText(Tint tint)
{
    return tints[static_cast<std::size_t>(tint)].text;
}

ThemeColor tintGround(Tint tint)
{
    return tints[static_cast<std::size_t>(tint)].ground;
}

Chip::Chip(const QString& text, Kind kind, Tint tint, QWidget* parent)
    : QPushButton(text, parent)
    , m_kind(kind)
    , m_tint(tint)
{
    setAutoDefault(false);
    setAttribute(Qt::WA_Hover);
    setFocusRadius(*this, measure::chip / 2);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFocusPolicy(kind == Kind::fixed ? Qt::NoFocus : Qt::TabFocus);
    if (kind == Kind::fixed) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }
}

void Chip::setTint(Tint tint)
{
    m_tint = tint;
    update();
}

void Chip::setActive(bool active)
{
    if (m_active != active) {
        m_active = active;
        updateGeometry();
        update();
    }
}

QSize Chip::sizeHint() const
{
    int width = 2 * chipPadding + textWidth(TextStyle::captionMedium, text());
    if (m_kind == Kind::removable) {
        width += chipGap + crossSide;
    } else if (m_kind == Kind::choice && m_active) {
        width += chipGap + checkSide;
    }
    return {width, measure::chip};
}

QSize Chip::minimumSizeHint() const
{
    return sizeHint();
}

void Chip::paintEvent(QPaintEvent*)
{
    QStyleOptionButton option;
    initStyleOption(&option);
    const bool hovered = option.state & QStyle::State_MouseOver && m_kind != Kind::fixed;
    const bool pressed = option.state & QStyle::State_Sunken;
    const Tint tint = m_active ? Tint::accent : m_tint;

    QPainter painter(this);
    const QRectF area = QRectF(0, 0, width(), measure::chip);
    const qreal radius = measure::chip / 2.0;
    paintPanel(painter, area, radius, themeColor(tintGround(tint)),
               tint == Tint::neutral ? themeColor(ThemeColor::hairline) : QColor(Qt::transparent));
    if (hovered || pressed) {
        paintPanel(painter, area, radius,
                   themeColor(pressed ? ThemeColor::press : ThemeColor::hover), Qt::transparent);
    }
    const QColor color = themeColor(!isEnabled()                       ? ThemeColor::textDisabled
                                    : hovered && tint == Tint::neutral ? ThemeColor::text1
                                                                       : tintText(tint));
    QRectF content = area.adjusted(chipPadding, 0, -chipPadding, 0);
    if (m_kind == Kind::removable) {
        const QRectF cross(content.right() - crossSide, 0, crossSide, area.height());
        paintSymbol(painter, QStringLiteral("xmark.circle.fill"), cross, crossSide,
                    hovered ? color : withOpacity(color, crossOpacity));
        content.setRight(cross.left() - chipGap);
    } else if (m_kind == Kind::choice && m_active) {
        const QRectF check(content.left(), 0, checkSide, area.height());
        paintSymbol(painter, QStringLiteral("checkmark"), check, checkSide, color);
        content.setLeft(check.right() + chipGap);
    } else if (m_kind == Kind::choice && hovered) {
        // The arrow takes its room from the padding: a chip must not push its neighbours away.
        content.adjust(-arrowRoom, 0, arrowRoom, 0);
        const QRectF arrow(content.right() - arrowSide, 0, arrowSide, area.height());
        paintSymbol(painter, QStringLiteral("arrow.up.right"), arrow, arrowSide, color);
        content.setRight(arrow.left());
    }
    const bool centred = m_kind == Kind::fixed || (m_kind == Kind::choice && !m_active && !hovered);
    paintText(painter, content, (centred ? Qt::AlignHCenter : Qt::AlignLeft) | Qt::AlignVCenter,
              TextStyle::captionMedium, color, text(), Qt::ElideRight);
}

void Chip::keyPressEvent(QKeyEvent* event)
{
    const bool presses = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool removes = m_kind == Kind::removable &&
                         (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace);
    if ((presses || removes) && !event->isAutoRepeat() && event->modifiers() == Qt::NoModifier) {
        click();
    } else {
        QPushButton::keyPressEvent(event);
    }
}

Badge::Badge(const QString& text, Tint tint, QWidget* parent)
    : QLabel(text, parent)
    , m_tint(tint)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Badge::setTint(Tint tint)
{
    m_tint = tint;
    update();
}

QSize Badge::sizeHint() const
{
    return {std::max(measure::badge, 2 * badgePadding + textWidth(TextStyle::label, text())),
            measure::badge};
}

QSize Badge::minimumSizeHint() const
{
    return sizeHint();
}

void Badge::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintPanel(painter, rect(), measure::badge / 2.0, themeColor(tintGround(m_tint)),
               Qt::transparent);
    paintText(painter, rect(), Qt::AlignCenter, TextStyle::label, themeColor(tintText(m_tint)),
              text(), Qt::ElideNone);
}

KeyCap::KeyCap(const QString& key, QWidget* parent)
    : QLabel(key, parent)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize KeyCap::sizeHint() const
{
    return {std::max(keyMinimumWidth, 2 * keyPadding + textWidth(TextStyle::path, text())),
            measure::keyCap};
}

QSize KeyCap::minimumSizeHint() const
{
    return sizeHint();
}

void KeyCap::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintPanel(painter, rect(), radius::small, themeColor(ThemeColor::raised),
               themeColor(ThemeColor::controlEdge));
    paintText(painter, rect(), Qt::AlignCenter, TextStyle::path, themeColor(ThemeColor::text2),
              text(), Qt::ElideNone);
}

} // namespace quorvane
