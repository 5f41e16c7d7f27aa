// SPDX-License-Identifier: MIT
#include "Painting.h"
#include "QuorvaneStyle.h"
#include "StylePainting.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QPainter>
#include <QStyleOptionMenuItem>

namespace quorvane {
namespace {

constexpr int rowPadding = 10;
constexpr int rowGap = 9;
constexpr int shortcutGap = 24;
constexpr int separatorMargin = 5;
constexpr int barItemHeight = 20;

bool isCurrent(const QStyleOptionMenuItem& option)
{
    return isEnabled(option) && option.state & QStyle::State_Selected;
}

/// A check mark, else the symbol of the row.
void drawRowSymbol(const QStyleOptionMenuItem& option, QPainter& painter, const QRectF& area,
                   const QColor& words)
{
    if (option.checked) {
        paintSymbol(painter, QStringLiteral("checkmark"), area, measure::iconChevron, words);
    } else if (!option.icon.isNull()) {
        QRectF square(0, 0, measure::iconButton, measure::iconButton);
        square.moveCenter(area.center());
        option.icon.paint(&painter, square.toAlignedRect(), Qt::AlignCenter,
                          !isEnabled(option)  ? QIcon::Disabled
                          : isCurrent(option) ? QIcon::Selected
                                              : QIcon::Normal);
    }
}

/// The text at the left and the shortcut at the right.
void drawRowWords(const QStyleOptionMenuItem& option, QPainter& painter, const QRectF& area,
                  const QColor& words)
{
    const QStringList parts = option.text.split(u'\t');
    painter.save();
    QFont rowFont = option.font;
    if (isCurrent(option) && rowFont.weight() == font(TextStyle::body).weight()) {
        rowFont.setWeight(font(TextStyle::body, isAccentLabelLight()).weight());
    }
    painter.setFont(rowFont);
    painter.setPen(words);
    const int flags = Qt::AlignVCenter | Qt::TextHideMnemonic | Qt::TextSingleLine;
    painter.drawText(area, flags | Qt::AlignLeft, parts.value(0));
    if (parts.size() > 1) {
        if (isEnabled(option) && !isCurrent(option)) {
            painter.setPen(themeColor(ThemeColor::text3));
        }
        painter.drawText(area, flags | Qt::AlignRight, parts[1]);
    }
    painter.restore();
}

} // namespace

QSize QuorvaneStyle::menuItemSize(const QStyleOptionMenuItem& option, const QSize& size) const
{
    if (option.menuItemType == QStyleOptionMenuItem::Separator) {
        return {size.width(), 2 * separatorMargin + 1};
    }
    const QStringList parts = option.text.split(u'\t');
    const QFontMetrics metrics(option.font);
    int width = 2 * rowPadding + metrics.size(Qt::TextShowMnemonic, parts.value(0)).width();
    if (option.maxIconWidth > 0 || option.menuHasCheckableItems) {
        width += measure::iconButton + rowGap;
    }
    if (option.reservedShortcutWidth > 0) {
        width += shortcutGap + option.reservedShortcutWidth;
    }
    if (option.menuItemType == QStyleOptionMenuItem::SubMenu) {
        width += rowGap + measure::iconChevron;
    }
    return {width + spacing::xs, measure::menuRow};
}

QSize QuorvaneStyle::menuBarItemSize(const QStyleOption* option, const QSize& size) const
{
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    const int words = item && isProgramMenu(*item) ? textWidth(TextStyle::captionStrong, item->text)
                                                   : size.width();
    return {words + 2 * spacing::s, measure::menuBarHeight};
}

void QuorvaneStyle::drawMenuItem(const QStyleOptionMenuItem& option, QPainter& painter) const
{
    const QRectF rect = option.rect;
    if (option.menuItemType == QStyleOptionMenuItem::Separator) {
        painter.fillRect(QRectF(rect.left() + rowPadding, rect.center().y() - 0.5,
                                rect.width() - 2 * rowPadding, 1),
                         themeColor(ThemeColor::controlEdge));
        return;
    }
    const bool enabled = isEnabled(option);
    const bool current = isCurrent(option);
    if (current) {
        paintPanel(painter, rect, radius::control, themeColor(ThemeColor::accentFill),
                   Qt::transparent);
    }
    const QColor words = themeColor(!enabled  ? ThemeColor::textDisabled
                                    : current ? ThemeColor::accentLabel
                                              : ThemeColor::text1);
    QRectF content = rect.adjusted(rowPadding, 0, -rowPadding, 0);
    if (option.maxIconWidth > 0 || option.menuHasCheckableItems) {
        const QRectF area(content.left(), rect.top(), measure::iconButton, rect.height());
        drawRowSymbol(option, painter, area, words);
        content.setLeft(area.right() + rowGap);
    }
    if (option.menuItemType == QStyleOptionMenuItem::SubMenu) {
        const QRectF area(content.right() - measure::iconChevron, rect.top(), measure::iconChevron,
                          rect.height());
        paintSymbol(painter, QStringLiteral("chevron.right"), area, measure::iconChevron,
                    current ? words : themeColor(ThemeColor::text3));
        content.setRight(area.left() - rowGap);
    }
    drawRowWords(option, painter, content, words);
}

void QuorvaneStyle::drawMenuBarItem(const QStyleOptionMenuItem& option, QPainter& painter) const
{
    QRectF rect = option.rect;
    const bool enabled = isEnabled(option);
    const bool open = enabled && option.state & State_Sunken;
    const bool lit = enabled && option.state & State_Selected;
    QRectF pill(0, 0, rect.width(), barItemHeight);
    pill.moveCenter(rect.center());
    if (open || lit) {
        paintPanel(painter, pill, radius::small,
                   themeColor(open ? ThemeColor::press : ThemeColor::hover), Qt::transparent);
    }
    painter.save();
    const bool strong = isProgramMenu(option);
    if (strong) {
        painter.setFont(font(TextStyle::captionStrong));
    }
    painter.setPen(themeColor(!enabled                ? ThemeColor::textDisabled
                              : open || lit || strong ? ThemeColor::text1
                                                      : ThemeColor::text2));
    painter.drawText(rect, Qt::AlignCenter | Qt::TextHideMnemonic | Qt::TextSingleLine,
                     option.text);
    painter.restore();
}

} // namespace quorvane
