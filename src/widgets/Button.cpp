// SPDX-License-Identifier: MIT
#include "Button.h"

#include "Painting.h"
#include "QuorvaneStyle.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QKeyEvent>
#include <QStyleOptionToolButton>
#include <QStylePainter>

namespace quorvane {
namespace {

/// Return and Enter press a button as Space does.
bool pressesButton(const QKeyEvent& event)
{
    return (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) &&
           !event.isAutoRepeat() && !(event.modifiers() & ~Qt::KeypadModifier);
}

constexpr int toolWordsPadding = 10;
constexpr int toolWordsGap = 7;

} // namespace

Button::Button(const QString& text, ButtonRole role, ControlSize size, QWidget* parent)
    : Button(QString(), text, role, size, parent)
{}

Button::Button(const QString& symbol, const QString& text, ButtonRole role, ControlSize size,
               QWidget* parent)
    : QPushButton(text, parent)
    , m_role(role)
    , m_size(size)
    , m_symbol(symbol)
{
    setFocusPolicy(Qt::TabFocus);
    setAutoDefault(false);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    applySize();
    connect(&ThemeNotifier::instance(), &ThemeNotifier::themeChanged, this, &Button::applySize);
}

void Button::setRole(ButtonRole role)
{
    if (m_role != role) {
        m_role = role;
        update();
    }
}

void Button::setControlSize(ControlSize size)
{
    m_size = size;
    applySize();
}

void Button::applySize()
{
    setFont(
        quorvane::font(m_size == ControlSize::small ? TextStyle::captionMedium : TextStyle::row));
    updateGeometry();
    update();
}

void Button::setSymbol(const QString& symbol)
{
    m_symbol = symbol;
    updateGeometry();
    update();
}

void Button::keyPressEvent(QKeyEvent* event)
{
    if (pressesButton(*event)) {
        click();
    } else {
        QPushButton::keyPressEvent(event);
    }
}

ToolButton::ToolButton(const QString& symbol, const QString& name, QWidget* parent)
    : QToolButton(parent)
    , m_symbol(symbol)
    , m_symbolSide(measure::iconRow)
    , m_side(measure::toolButton)
{
    setText(name);
    setToolTip(name);
    setAccessibleName(name);
    setFocusPolicy(Qt::TabFocus);
    setAutoRaise(true);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void ToolButton::setSymbol(const QString& symbol)
{
    m_symbol = symbol;
    update();
}

void ToolButton::setSymbolSide(int side)
{
    m_symbolSide = side;
    updateGeometry();
    update();
}

void ToolButton::setSide(int side)
{
    m_side = side;
    updateGeometry();
}

void ToolButton::setWordsVisible(bool visible)
{
    if (m_wordsVisible != visible) {
        m_wordsVisible = visible;
        updateGeometry();
        update();
    }
}

void ToolButton::setSymbolColor(ThemeColor color)
{
    m_color = color;
    update();
}

QSize ToolButton::sizeHint() const
{
    if (!m_wordsVisible) {
        return {m_side, m_side};
    }
    const int words = textWidth(TextStyle::captionMedium, text());
    return {2 * toolWordsPadding + m_symbolSide + toolWordsGap + words, m_side};
}

QSize ToolButton::minimumSizeHint() const
{
    return sizeHint();
}

void ToolButton::initStyleOption(QStyleOptionToolButton* option) const
{
    QToolButton::initStyleOption(option);
    // Text and symbol are this class's; the style draws the ground.
    option->text.clear();
    option->icon = {};
    option->features &= ~QStyleOptionToolButton::HasMenu;
}

void ToolButton::paintEvent(QPaintEvent*)
{
    QStylePainter painter(this);
    QStyleOptionToolButton option;
    initStyleOption(&option);
    painter.drawPrimitive(QStyle::PE_PanelButtonTool, option);

    ThemeColor color = m_color;
    if (!(option.state & QStyle::State_Enabled)) {
        color = ThemeColor::textDisabled;
    } else if (option.state & QStyle::State_On) {
        color = ThemeColor::accentText;
    } else if (option.state & (QStyle::State_MouseOver | QStyle::State_Sunken)) {
        color = ThemeColor::text1;
    }
    const QRectF area = option.rect;
    if (!m_wordsVisible) {
        paintSymbol(painter, m_symbol, area, m_symbolSide, themeColor(color));
        return;
    }
    const QRectF symbolArea(area.left() + toolWordsPadding, area.top(), m_symbolSide,
                            area.height());
    paintSymbol(painter, m_symbol, symbolArea, m_symbolSide, themeColor(color));
    const QRectF words(symbolArea.right() + toolWordsGap, area.top(),
                       area.right() - symbolArea.right() - toolWordsGap, area.height());
    paintText(painter, words, Qt::AlignLeft | Qt::AlignVCenter, TextStyle::captionMedium,
              themeColor(color), text(), Qt::ElideNone);
}

void ToolButton::keyPressEvent(QKeyEvent* event)
{
    if (pressesButton(*event)) {
        click();
    } else {
        QToolButton::keyPressEvent(event);
    }
}

void setControlSize(QComboBox& box, ControlSize size)
{
    box.setProperty(QuorvaneStyle::controlSizeProperty, static_cast<int>(size));
    box.updateGeometry();
}

} // namespace quorvane
