// SPDX-License-Identifier: MIT
#include "Button.h"
#include "Painting.h"
#include "QuorvaneStyle.h"
#include "StylePainting.h"
#include "Symbols.h"
#include "TextField.h"
#include "Tokens.h"

#include <QPainter>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QStyleOptionToolButton>

namespace quorvane {
namespace {

constexpr int contentGap = 7;
constexpr int comboStart = 11;
constexpr int comboGap = 11; ///< between the text and the chevron
constexpr int comboEnd = 9;
constexpr int fieldPadding = 7; ///< with the two points that a line edit itself keeps free
constexpr double disabledOpacity = 0.45;

struct ButtonLook
{
    ButtonRole role = ButtonRole::bordered;
    ControlSize size = ControlSize::regular;
    QString symbol;
};

ButtonLook lookOf(const QStyleOptionButton& option, const QWidget* widget)
{
    if (const auto* button = qobject_cast<const Button*>(widget)) {
        return {button->role(), button->controlSize(), button->symbol()};
    }
    ButtonLook look;
    if (option.features & QStyleOptionButton::Flat) {
        look.role = ButtonRole::plain;
    } else if (option.features & QStyleOptionButton::DefaultButton) {
        look.role = ButtonRole::prominent;
    }
    return look;
}

int buttonHeight(ControlSize size)
{
    return size == ControlSize::large   ? measure::buttonLarge
           : size == ControlSize::small ? measure::buttonSmall
                                        : measure::button;
}

/// From the outer edge to the content.
int buttonPadding(ControlSize size)
{
    return size == ControlSize::large ? 19 : size == ControlSize::small ? 11 : 13;
}

int symbolSide(ControlSize size)
{
    return size == ControlSize::large   ? measure::iconButtonLarge
           : size == ControlSize::small ? measure::iconButtonSmall
                                        : measure::iconButton;
}

/// Colours of the two states that the pointer brings, and the two ends of the resting gradient.
struct Fill
{
    ThemeColor top;
    ThemeColor bottom;
    ThemeColor hover;
    ThemeColor press;
};

Fill fillOf(ButtonRole role)
{
    switch (role) {
    case ButtonRole::prominent:
        return {ThemeColor::accentFill, ThemeColor::accentFill2, ThemeColor::accentHover,
                ThemeColor::accentPress};
    case ButtonRole::destructive:
        return {ThemeColor::destructive, ThemeColor::destructive2, ThemeColor::destructiveHover,
                ThemeColor::destructivePress};
    case ButtonRole::kept:
        return {ThemeColor::greenLow, ThemeColor::greenLow, ThemeColor::keptHover,
                ThemeColor::keptPress};
    case ButtonRole::queued:
        return {ThemeColor::redLow, ThemeColor::redLow, ThemeColor::queuedHover,
                ThemeColor::queuedPress};
    case ButtonRole::bordered:
    case ButtonRole::revoke:
    case ButtonRole::plain:
        break;
    }
    return {ThemeColor::button, ThemeColor::button2, ThemeColor::buttonHover,
            ThemeColor::buttonPress};
}

void paintGround(QPainter& painter, const QStyleOption& option, const QRectF& rect, ButtonRole role)
{
    const bool pressed =
        isPressed(option) || (isEnabled(option) && option.state & QStyle::State_On);
    if (role == ButtonRole::plain) {
        if (pressed || isHovered(option)) {
            paintPanel(painter, rect, radius::control,
                       themeColor(pressed ? ThemeColor::press : ThemeColor::hover),
                       Qt::transparent);
        }
        return;
    }
    const bool bordered = role == ButtonRole::bordered || role == ButtonRole::revoke;
    const bool edged = bordered || role == ButtonRole::kept || role == ButtonRole::queued;
    if (!isEnabled(option)) {
        paintPanel(painter, rect, radius::control,
                   bordered ? QColor(Qt::transparent) : themeColor(ThemeColor::raised),
                   bordered ? themeColor(ThemeColor::hairline) : QColor(Qt::transparent));
        return;
    }
    const Fill fill = fillOf(role);
    const QBrush brush = pressed             ? QBrush(themeColor(fill.press))
                         : isHovered(option) ? QBrush(themeColor(fill.hover))
                                             : verticalGradient(rect, fill.top, fill.bottom);
    paintPanel(painter, rect, radius::control, brush,
               edged ? themeColor(ThemeColor::controlEdge) : QColor(Qt::transparent));
}

QColor labelColor(const QStyleOption& option, ButtonRole role)
{
    if (!isEnabled(option)) {
        return themeColor(ThemeColor::textDisabled);
    }
    switch (role) {
    case ButtonRole::prominent:
        return themeColor(ThemeColor::accentLabel);
    case ButtonRole::destructive:
        return themeColor(ThemeColor::destructiveLabel);
    case ButtonRole::kept:
        return themeColor(ThemeColor::greenText);
    case ButtonRole::queued:
    case ButtonRole::revoke:
        return themeColor(ThemeColor::redText);
    case ButtonRole::plain:
        return themeColor(ThemeColor::accentText);
    case ButtonRole::bordered:
        break;
    }
    return themeColor(ThemeColor::text1);
}

TextStyle textStyle(ControlSize size)
{
    return size == ControlSize::small ? TextStyle::captionMedium : TextStyle::row;
}

QSize pushButtonSize(const QStyleOptionButton& button, const ButtonLook& look)
{
    const bool hasSymbol = !look.symbol.isEmpty() || !button.icon.isNull();
    const int words = button.fontMetrics.size(Qt::TextShowMnemonic, button.text).width();
    const int symbol = hasSymbol ? symbolSide(look.size) + (words > 0 ? contentGap : 0) : 0;
    return {words + symbol + 2 * buttonPadding(look.size), buttonHeight(look.size)};
}

ControlSize comboSize(const QWidget* widget)
{
    const QVariant size =
        widget ? widget->property(QuorvaneStyle::controlSizeProperty) : QVariant();
    return size.isValid() ? static_cast<ControlSize>(size.toInt()) : ControlSize::small;
}

/// isOurs: in the fonts of the design, whatever the painter's font.
void paintPushButton(QPainter& painter, const QStyleOptionButton& button, const ButtonLook& look,
                     bool isOurs)
{
    const QRectF rect = button.rect;
    paintGround(painter, button, rect, look.role);

    const bool hasSymbol = !look.symbol.isEmpty() || !button.icon.isNull();
    const int side = symbolSide(look.size);
    const int words = button.fontMetrics.size(Qt::TextShowMnemonic, button.text).width();
    const int gap = hasSymbol && !button.text.isEmpty() ? contentGap : 0;
    const qreal wanted = words + gap + (hasSymbol ? side : 0);
    const qreal content = std::min(wanted, rect.width() - 8);
    const QColor color = labelColor(button, look.role);
    qreal left = rect.left() + (rect.width() - content) / 2;
    if (!look.symbol.isEmpty()) {
        paintSymbol(painter, look.symbol, QRectF(left, rect.top(), side, rect.height()), side,
                    color);
    } else if (hasSymbol) {
        button.icon.paint(
            &painter,
            QRectF(left, rect.top() + (rect.height() - side) / 2, side, side).toAlignedRect(),
            Qt::AlignCenter, isEnabled(button) ? QIcon::Normal : QIcon::Disabled);
    }
    left += hasSymbol ? side + gap : 0;
    painter.save();
    if (isOurs && (look.role == ButtonRole::prominent || look.role == ButtonRole::destructive)) {
        const bool light = look.role == ButtonRole::destructive || isAccentLabelLight();
        painter.setFont(font(textStyle(look.size), light));
    }
    painter.setPen(color);
    const QRectF area(left, rect.top(), rect.left() + (rect.width() + content) / 2 - left,
                      rect.height());
    const QString text = button.fontMetrics.elidedText(
        button.text, Qt::ElideRight, static_cast<int>(area.width()) + 1, Qt::TextShowMnemonic);
    painter.drawText(area,
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextHideMnemonic | Qt::TextDontClip |
                         Qt::TextSingleLine,
                     text);
    painter.restore();
}

QStyleOptionButton optionOf(const ButtonFace& face, const QRect& rect, QStyle::State state)
{
    QStyleOptionButton option;
    option.rect = rect;
    option.state = state;
    option.text = face.text;
    option.fontMetrics = QFontMetrics(font(textStyle(face.size)));
    return option;
}

} // namespace

void paintButton(QPainter& painter, const QRect& rect, const ButtonFace& face, QStyle::State state)
{
    painter.save();
    painter.setFont(font(textStyle(face.size)));
    paintPushButton(painter, optionOf(face, rect, state), {face.role, face.size, face.symbol},
                    true);
    painter.restore();
}

QSize buttonSize(const ButtonFace& face)
{
    return pushButtonSize(optionOf(face, {}, QStyle::State_Enabled),
                          {face.role, face.size, face.symbol});
}

void QuorvaneStyle::drawPushButton(const QStyleOption* option, QPainter& painter,
                                   const QWidget* widget) const
{
    if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
        paintPushButton(painter, *button, lookOf(*button, widget),
                        qobject_cast<const Button*>(widget) != nullptr);
    }
}

void QuorvaneStyle::drawToolButton(const QStyleOptionToolButton& option, QPainter& painter) const
{
    drawPrimitive(PE_PanelButtonTool, &option, &painter);
    const QRectF rect = option.rect;
    const QIcon::Mode mode = isEnabled(option) ? QIcon::Normal : QIcon::Disabled;
    const bool showsText = option.toolButtonStyle != Qt::ToolButtonIconOnly || option.icon.isNull();
    const QColor color = themeColor(!isEnabled(option)  ? ThemeColor::textDisabled
                                    : isHovered(option) ? ThemeColor::text1
                                                        : ThemeColor::text2);
    QRectF words = rect;
    if (!option.icon.isNull()) {
        const int side = measure::iconRow;
        QRectF area(0, 0, side, side);
        area.moveCenter(rect.center());
        if (showsText) {
            area.moveLeft(rect.left() + 10);
            words.setLeft(area.right() + contentGap);
        }
        option.icon.paint(&painter, area.toAlignedRect(), Qt::AlignCenter, mode);
    }
    if (showsText) {
        painter.save();
        painter.setPen(color);
        const Qt::Alignment horizontal = option.icon.isNull() ? Qt::AlignHCenter : Qt::AlignLeft;
        painter.drawText(words,
                         static_cast<int>(horizontal | Qt::AlignVCenter) | Qt::TextHideMnemonic |
                             Qt::TextSingleLine,
                         option.text);
        painter.restore();
    }
}

void QuorvaneStyle::drawComboBox(const QStyleOptionComboBox& option, QPainter& painter,
                                 const QWidget*) const
{
    const QRectF rect = option.rect;
    paintGround(painter, option, rect, ButtonRole::bordered);
    const bool enabled = isEnabled(option);
    const QRectF chevron(rect.right() - comboEnd - measure::iconChevron, rect.top(),
                         measure::iconChevron, rect.height());
    paintSymbol(painter, QStringLiteral("chevron.up.chevron.down"), chevron, measure::iconChevron,
                themeColor(enabled ? ThemeColor::text3 : ThemeColor::textDisabled));
    if (option.editable) {
        return;
    }
    QRectF words = rect.adjusted(comboStart, 0, 0, 0);
    words.setRight(chevron.left() - comboGap);
    if (!option.currentIcon.isNull()) {
        const int side = measure::iconButton;
        const QRectF area(words.left(), rect.top() + (rect.height() - side) / 2, side, side);
        option.currentIcon.paint(&painter, area.toAlignedRect(), Qt::AlignCenter,
                                 enabled ? QIcon::Normal : QIcon::Disabled);
        words.setLeft(area.right() + contentGap);
    }
    painter.save();
    painter.setPen(themeColor(enabled ? ThemeColor::text1 : ThemeColor::textDisabled));
    painter.drawText(words, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     option.fontMetrics.elidedText(option.currentText, Qt::ElideRight,
                                                   static_cast<int>(words.width()) + 1));
    painter.restore();
}

void QuorvaneStyle::drawCheckIndicator(const QStyleOption& option, QPainter& painter,
                                       bool round) const
{
    painter.save();
    if (!isEnabled(option)) {
        painter.setOpacity(painter.opacity() * disabledOpacity);
    }
    QRectF rect(0, 0, measure::checkBox, measure::checkBox);
    rect.moveCenter(QRectF(option.rect).center());
    rect.moveTopLeft(QPointF(rect.topLeft().toPoint()));
    const qreal corner = round ? measure::checkBox / 2.0 : radius::small;
    const bool partial = option.state & State_NoChange;
    const bool filled = partial || option.state & State_On;
    if (filled) {
        paintPanel(painter, rect, corner, themeColor(ThemeColor::accentFill), Qt::transparent);
        if (isPressed(option) || isHovered(option)) {
            paintPanel(painter, rect, corner,
                       themeColor(isPressed(option) ? ThemeColor::press : ThemeColor::hover),
                       Qt::transparent);
        }
    } else {
        paintPanel(painter, rect, corner,
                   isPressed(option)
                       ? blended(themeColor(ThemeColor::press), themeColor(ThemeColor::field))
                       : themeColor(ThemeColor::field),
                   themeColor(isHovered(option) ? ThemeColor::text3 : ThemeColor::controlEdge));
    }
    if (filled && round) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(themeColor(ThemeColor::accentLabel));
        painter.drawEllipse(rect.center(), 3, 3);
    } else if (filled) {
        paintSymbol(painter, partial ? QStringLiteral("minus") : QStringLiteral("checkmark"), rect,
                    measure::iconChevron, themeColor(ThemeColor::accentLabel));
    }
    painter.restore();
}

QSize QuorvaneStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                      const QSize& size, const QWidget* widget) const
{
    const QSize base = QProxyStyle::sizeFromContents(type, option, size, widget);
    switch (type) {
    case CT_PushButton:
        if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
            return pushButtonSize(*button, lookOf(*button, widget));
        }
        return base;
    case CT_ComboBox:
        return {size.width() + comboStart + comboGap + measure::iconChevron + comboEnd,
                buttonHeight(comboSize(widget))};
    case CT_LineEdit:
        return {size.width(), std::max(size.height(), measure::field)};
    case CT_CheckBox:
    case CT_RadioButton:
        return {base.width(), std::max(base.height(), measure::checkBox)};
    case CT_MenuItem:
        if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option)) {
            return menuItemSize(*item, size);
        }
        return base;
    case CT_MenuBarItem:
        return menuBarItemSize(option, size);
    case CT_MenuBar:
        return {size.width(), measure::menuBarHeight};
    case CT_HeaderSection:
        return {base.width(), measure::tableHeader};
    case CT_ItemViewItem:
        return {base.width(), std::max(base.height(), measure::row)};
    default:
        return base;
    }
}

QRect QuorvaneStyle::subElementRect(SubElement element, const QStyleOption* option,
                                    const QWidget* widget) const
{
    const QRect rect = QProxyStyle::subElementRect(element, option, widget);
    const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
    if (element == SE_LineEditContents && frame && frame->lineWidth > 0 &&
        !qobject_cast<const TextField*>(widget)) {
        return rect.adjusted(fieldPadding, 0, -fieldPadding, 0);
    }
    return rect;
}

QRect QuorvaneStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                    SubControl subControl, const QWidget* widget) const
{
    if (control == CC_ComboBox && subControl == SC_ComboBoxEditField) {
        return option->rect.adjusted(8, 2, -(measure::iconChevron + 13), -2);
    }
    if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
        bar && control == CC_ScrollBar) {
        return scrollBarPart(*bar, subControl);
    }
    return QProxyStyle::subControlRect(control, option, subControl, widget);
}

} // namespace quorvane
