// SPDX-License-Identifier: MIT
#include "ItemViews.h"
#include "Painting.h"
#include "QuorvaneStyle.h"
#include "StylePainting.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QPainter>
#include <QStyleOptionFrame>
#include <QStyleOptionViewItem>

namespace quorvane {
namespace {

/// A table draws ground and focus for its rows as a whole.
bool isTable(const QWidget* widget)
{
    return qobject_cast<const TableView*>(widget) != nullptr;
}

void drawFieldPanel(const QStyleOption& option, QPainter& painter)
{
    const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(&option);
    if (!frame || frame->lineWidth <= 0) {
        return;
    }
    const bool lit = isHovered(option) || option.state & QStyle::State_HasFocus;
    paintPanel(painter, option.rect, radius::control, themeColor(ThemeColor::field),
               themeColor(!isEnabled(option) ? ThemeColor::hairline
                          : lit              ? ThemeColor::text3
                                             : ThemeColor::controlEdge));
}

void drawToolPanel(const QStyleOption& option, QPainter& painter)
{
    if (option.state & QStyle::State_On) {
        paintPanel(painter, option.rect, radius::control, themeColor(ThemeColor::accentLow),
                   Qt::transparent);
    }
    if (isPressed(option) || isHovered(option)) {
        paintPanel(painter, option.rect, radius::control,
                   themeColor(isPressed(option) ? ThemeColor::press : ThemeColor::hover),
                   Qt::transparent);
    }
}

/// The ground of one cell; its delegate draws the focus line around all of it afterwards.
void drawCellPanel(const QStyleOption& option, QPainter& painter, const QWidget* widget)
{
    const auto* item = qstyleoption_cast<const QStyleOptionViewItem*>(&option);
    if (!item || isTable(widget)) {
        return;
    }
    const bool alone = item->viewItemPosition == QStyleOptionViewItem::OnlyOne ||
                       item->viewItemPosition == QStyleOptionViewItem::Invalid;
    paintRowGround(painter, option.rect, alone ? radius::control : 0,
                   item->state & (QStyle::State_Selected | QStyle::State_MouseOver));
}

void drawBranch(const QStyleOption& option, QPainter& painter)
{
    if (option.state & QStyle::State_Children) {
        paintSymbol(painter,
                    option.state & QStyle::State_Open ? QStringLiteral("chevron.down")
                                                      : QStringLiteral("chevron.right"),
                    option.rect, measure::iconChevron, themeColor(ThemeColor::text3));
    }
}

void drawFrame(const QStyleOption& option, QPainter& painter, const QWidget* widget)
{
    if (isComboPopup(widget)) {
        paintPopover(painter, option.rect, radius::surface);
        return;
    }
    paintPanel(painter, option.rect, radius::control,
               isTable(widget) ? themeColor(ThemeColor::card) : QColor(Qt::transparent),
               themeColor(ThemeColor::hairline));
}

void drawMenuBarPanel(const QStyleOption& option, QPainter& painter)
{
    const QRectF rect = option.rect;
    painter.fillRect(QRectF(rect.left(), rect.bottom() - 1, rect.width(), 1),
                     themeColor(ThemeColor::hairline));
}

} // namespace

void QuorvaneStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                  QPainter* painter, const QWidget* widget) const
{
    switch (element) {
    case PE_FrameFocusRect:
        if (qobject_cast<const QAbstractItemView*>(widget) && !isTable(widget)) {
            paintFocusLine(*painter, option->rect, radius::control);
        }
        return;
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
        return drawCheckIndicator(*option, *painter, false);
    case PE_IndicatorRadioButton:
        return drawCheckIndicator(*option, *painter, true);
    case PE_PanelLineEdit:
    case PE_FrameLineEdit:
        return drawFieldPanel(*option, *painter);
    case PE_PanelButtonTool:
        return drawToolPanel(*option, *painter);
    case PE_PanelItemViewItem:
        return drawCellPanel(*option, *painter, widget);
    case PE_IndicatorBranch:
        return drawBranch(*option, *painter);
    case PE_PanelTipLabel:
        return paintPopover(*painter, option->rect, radius::control);
    case PE_PanelMenu:
        return paintPopover(*painter, option->rect, radius::surface);
    case PE_PanelMenuBar:
        return drawMenuBarPanel(*option, *painter);
    case PE_Frame:
        return drawFrame(*option, *painter, widget);
    case PE_PanelItemViewRow:
    case PE_PanelStatusBar:
    case PE_PanelScrollAreaCorner:
    case PE_FrameStatusBarItem:
    case PE_FrameMenu:
    case PE_IndicatorHeaderArrow:
        return;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

} // namespace quorvane
