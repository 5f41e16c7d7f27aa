// SPDX-License-Identifier: MIT
#include "Button.h"
#include "Painting.h"
#include "QuorvaneStyle.h"
#include "StylePainting.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QPainter>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QStyleOptionToolButton>

namespace quorvane {
namespace {

constexpr int contentGap = 7;
constexpr int comboGap = 11; ///< between the text and the chevron
constexpr int comboEnd = 9;
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
    case ButtonRole::bordered:
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
    const bool edged = role == ButtonRole::bordered || role == ButtonRole::kept;
    if (!isEnabled(option)) {
        const bool bordered = role == ButtonRole::bordered;
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
    case ButtonRole::plain:
        return themeColor(ThemeColor::accentText);
    case ButtonRole::bordered:
        break;
    }
    return themeColor(ThemeColor::text1);
}

/// Whether the label stands light on a dark fill in both schemes.
bool isFilled(ButtonRole role)
{
    return (role == ButtonRole::prominent &&
            contrastRatio(themeColor(ThemeColor::accentLabel), Qt::black) > 4.5) ||
           role == ButtonRole::destructive;
}

TextStyle textStyle(ControlSize size)
{
    return size == ControlSize::small ? TextStyle::captionMedium : TextStyle::row;
}

ControlSize comboSize(const QWidget* widget)
{
    const QVariant size =
        widget ? widget->property(QuorvaneStyle::controlSizeProperty) : QVariant();
    return size.isValid() ? static_cast<ControlSize>(size.toInt()) : ControlSize::small;
}

} // namespace

void QuorvaneStyle::drawPushButton(const QStyleOption* option, QPainter& painter,
                                   const QWidget* widget) const
{
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    if (!button) {
        return;
    }
    const ButtonLook look = lookOf(*button, widget);
    const QRectF rect = button->rect;
    paintGround(painter, *button, rect, look.role);

    const bool hasSymbol = !look.symbol.isEmpty() || !button->icon.isNull();
    const int side = symbolSide(look.size);
    const int words = button->fontMetrics.size(Qt::TextShowMnemonic, button->text).width();
    const int gap = hasSymbol && !button->text.isEmpty() ? contentGap : 0;
    const qreal wanted = words + gap + (hasSymbol ? side : 0);
    const qreal content = std::min(wanted, rect.width() - 8);
    const QColor color = labelColor(*button, look.role);
    qreal left = rect.left() + (rect.width() - content) / 2;
    if (!look.symbol.isEmpty()) {
        paintSymbol(painter, look.symbol, QRectF(left, rect.top(), side, rect.height()), side,
                    color);
    } else if (hasSymbol) {
        button->icon.paint(
            &painter,
            QRectF(left, rect.top() + (rect.height() - side) / 2, side, side).toAlignedRect(),
            Qt::AlignCenter, isEnabled(*button) ? QIcon::Normal : QIcon::Disabled);
    }
    left += hasSymbol ? side + gap : 0;
    painter.save();
    if (qobject_cast<const Button*>(widget) && isFilled(look.role)) {
        painter.setFont(font(textStyle(look.size), true));
    }
    painter.setPen(color);
    const QRectF area(left, rect.top(), rect.left() + (rect.width() + content) / 2 - left,
                      rect.height());
    const QString text = button->fontMetrics.elidedText(
        button->text, Qt::ElideRight, static_cast<int>(area.width()) + 1, Qt::TextShowMnemonic);
    painter.drawText(area,
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextHideMnemonic | Qt::TextDontClip |
                         Qt::TextSingleLine,
                     text);
    painter.restore();
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
    QRectF words = rect.adjusted(11, 0, 0, 0);
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
    switch (type) {
    case CT_PushButton:
        if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
            const ButtonLook look = lookOf(*button, widget);
            const bool hasSymbol = !look.symbol.isEmpty() || !button->icon.isNull();
            const int words = button->fontMetrics.size(Qt::TextShowMnemonic, button->text).width();
            const int symbol = hasSymbol ? symbolSide(look.size) + (words > 0 ? contentGap : 0) : 0;
            return {words + symbol + 2 * buttonPadding(look.size), buttonHeight(look.size)};
        }
        break;
    case CT_ComboBox:
        if (qstyleoption_cast<const QStyleOptionComboBox*>(option)) {
            return {size.width() + 11 + comboGap + measure::iconChevron + comboEnd,
                    buttonHeight(comboSize(widget))};
        }
        break;
    case CT_LineEdit:
        return {size.width(), std::max(size.height(), measure::field)};
    case CT_CheckBox:
    case CT_RadioButton: {
        QSize wanted = QProxyStyle::sizeFromContents(type, option, size, widget);
        wanted.setHeight(std::max(wanted.height(), measure::checkBox));
        return wanted;
    }
    case CT_MenuItem:
        if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option)) {
            return menuItemSize(*item, size);
        }
        break;
    case CT_MenuBarItem: {
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        const int words = item && isProgramMenu(*item)
                              ? textWidth(TextStyle::captionStrong, item->text)
                              : size.width();
        return {words + 2 * spacing::s, measure::menuBarHeight};
    }
    case CT_MenuBar:
        return {size.width(), measure::menuBarHeight};
    case CT_HeaderSection: {
        const QSize wanted = QProxyStyle::sizeFromContents(type, option, size, widget);
        return {wanted.width(), measure::tableHeader};
    }
    case CT_ItemViewItem: {
        const QSize wanted = QProxyStyle::sizeFromContents(type, option, size, widget);
        return {wanted.width(), std::max(wanted.height(), measure::row)};
    }
    default:
        break;
    }
    return QProxyStyle::sizeFromContents(type, option, size, widget);
}

QRect QuorvaneStyle::subElementRect(SubElement element, const QStyleOption* option,
                                    const QWidget* widget) const
{
    return QProxyStyle::subElementRect(element, option, widget);
}

QRect QuorvaneStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                    SubControl subControl, const QWidget* widget) const
{
    if (control == CC_ComboBox && subControl == SC_ComboBoxEditField) {
        return option->rect.adjusted(8, 2, -(measure::iconChevron + 13), -2);
    }
    if (control == CC_ScrollBar) {
        // No arrows: the groove is the whole bar.
        const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
        if (!bar) {
            return {};
        }
        const QRect all = bar->rect;
        const bool horizontal = bar->orientation == Qt::Horizontal;
        const int length = horizontal ? all.width() : all.height();
        const int range = bar->maximum - bar->minimum;
        int slider = length;
        if (range > 0) {
            const qint64 total = static_cast<qint64>(range) + bar->pageStep;
            slider = std::max(static_cast<int>(qint64{bar->pageStep} * length / total),
                              std::min(pixelMetric(PM_ScrollBarSliderMin), length));
        }
        const int start = sliderPositionFromValue(bar->minimum, bar->maximum, bar->sliderPosition,
                                                  length - slider, bar->upsideDown);
        switch (subControl) {
        case SC_ScrollBarSlider:
            return horizontal ? QRect(all.left() + start, all.top(), slider, all.height())
                              : QRect(all.left(), all.top() + start, all.width(), slider);
        case SC_ScrollBarSubPage:
            return horizontal ? QRect(all.left(), all.top(), start, all.height())
                              : QRect(all.left(), all.top(), all.width(), start);
        case SC_ScrollBarAddPage:
            return horizontal ? all.adjusted(start + slider, 0, 0, 0)
                              : all.adjusted(0, start + slider, 0, 0);
        case SC_ScrollBarGroove:
            return all;
        default:
            return {};
        }
    }
    return QProxyStyle::subControlRect(control, option, subControl, widget);
}

} // namespace quorvane
