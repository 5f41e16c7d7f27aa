// SPDX-License-Identifier: MIT
#include "QuorvaneStyle.h"

#include "DesktopSettings.h"
#include "FocusRing.h"
#include "ItemViews.h"
#include "Painting.h"
#include "StylePainting.h"
#include "Symbols.h"
#include "TextField.h"
#include "Tokens.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QScrollBar>
#include <QStyleFactory>
#include <QStyleHintReturn>
#include <QStyleOptionComplex>

namespace quorvane {
namespace {

bool hasHover(const QWidget& widget)
{
    return qobject_cast<const QAbstractButton*>(&widget) ||
           qobject_cast<const QComboBox*>(&widget) || qobject_cast<const QLineEdit*>(&widget) ||
           qobject_cast<const QScrollBar*>(&widget) || qobject_cast<const QHeaderView*>(&widget) ||
           qobject_cast<const QMenuBar*>(&widget);
}

/// Windows of their own whose corners are round.
bool isRoundPopup(const QWidget& widget)
{
    return qobject_cast<const QMenu*>(&widget) || widget.inherits("QTipLabel") ||
           widget.inherits("QComboBoxPrivateContainer");
}

/// A table draws ground and focus for its rows as a whole.
bool isTable(const QWidget* widget)
{
    return qobject_cast<const TableView*>(widget) != nullptr;
}

} // namespace

QuorvaneStyle::QuorvaneStyle()
    : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion")))
{
    setObjectName(QStringLiteral("quorvane"));
}

void QuorvaneStyle::install(QApplication& application)
{
    DesktopSettings::instance().setPrefersDark(
        application.palette().color(QPalette::Window).lightnessF() < 0.5F);
    DesktopSettings::instance().follow();
    application.setStyle(new QuorvaneStyle);
    setTheme(theme().isDark() ? AppTheme::dark : AppTheme::light, theme().accent());
    FocusRing::follow(application);
}

void QuorvaneStyle::polish(QWidget* widget)
{
    QProxyStyle::polish(widget);
    if (hasHover(*widget)) {
        widget->setAttribute(Qt::WA_Hover);
    }
    if (auto* view = qobject_cast<QAbstractItemView*>(widget)) {
        view->viewport()->setAttribute(Qt::WA_Hover);
    }
    if (isRoundPopup(*widget)) {
        widget->setAttribute(Qt::WA_TranslucentBackground);
        if (widget->inherits("QMenu") && widget->isWindow()) {
            widget->setWindowFlags(widget->windowFlags() | Qt::FramelessWindowHint |
                                   Qt::NoDropShadowWindowHint);
        }
    }
}

void QuorvaneStyle::unpolish(QWidget* widget)
{
    if (isRoundPopup(*widget)) {
        widget->setAttribute(Qt::WA_TranslucentBackground, false);
    }
    QProxyStyle::unpolish(widget);
}

bool QuorvaneStyle::eventFilter(QObject* watched, QEvent* event)
{
    return QProxyStyle::eventFilter(watched, event);
}

void QuorvaneStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                       QPainter* painter, const QWidget* widget) const
{
    if (const auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option);
        box && control == CC_ComboBox) {
        drawComboBox(*box, *painter, widget);
        return;
    }
    if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
        bar && control == CC_ScrollBar) {
        drawScrollBar(*bar, *painter);
        return;
    }
    if (const auto* button = qstyleoption_cast<const QStyleOptionToolButton*>(option);
        button && control == CC_ToolButton) {
        drawToolButton(*button, *painter);
        return;
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

void QuorvaneStyle::drawControl(ControlElement element, const QStyleOption* option,
                                QPainter* painter, const QWidget* widget) const
{
    const auto* menuItem = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option);
    const auto* item = qstyleoption_cast<const QStyleOptionViewItem*>(option);
    switch (element) {
    case CE_PushButton:
        drawPushButton(option, *painter, widget);
        return;
    case CE_MenuItem:
        if (menuItem) {
            drawMenuItem(*menuItem, *painter);
        }
        return;
    case CE_MenuBarItem:
        if (menuItem) {
            drawMenuBarItem(*menuItem, *painter);
        }
        return;
    case CE_MenuBarEmptyArea:
    case CE_MenuEmptyArea:
        return;
    case CE_Header:
        if (header) {
            drawControl(CE_HeaderSection, option, painter, widget);
            QStyleOptionHeader label = *header;
            label.rect.adjust(spacing::m, 0, -spacing::m, 0);
            drawControl(CE_HeaderLabel, &label, painter, widget);
        }
        return;
    case CE_HeaderSection:
        if (header) {
            drawHeaderSection(*header, *painter, widget);
        }
        return;
    case CE_HeaderEmptyArea:
        painter->fillRect(option->rect, themeColor(ThemeColor::raised));
        return;
    case CE_HeaderLabel:
        if (header) {
            drawHeaderLabel(*header, *painter);
        }
        return;
    case CE_ItemViewItem:
        if (item) {
            drawItem(*item, *painter, widget);
        }
        return;
    case CE_ComboBoxLabel:
        // Drawn with the box.
        return;
    case CE_FocusFrame:
        return;
    default:
        QProxyStyle::drawControl(element, option, painter, widget);
    }
}

void QuorvaneStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                  QPainter* painter, const QWidget* widget) const
{
    const QRectF rect = option->rect;
    switch (element) {
    case PE_FrameFocusRect:
        if (qobject_cast<const QAbstractItemView*>(widget) && !isTable(widget)) {
            paintFocusLine(*painter, rect, radius::control);
        }
        return;
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
        drawCheckIndicator(*option, *painter, false);
        return;
    case PE_IndicatorRadioButton:
        drawCheckIndicator(*option, *painter, true);
        return;
    case PE_PanelLineEdit:
    case PE_FrameLineEdit:
        if (const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
            frame && frame->lineWidth > 0) {
            const bool lit = isHovered(*option) || option->state & State_HasFocus;
            paintPanel(*painter, rect, radius::control, themeColor(ThemeColor::field),
                       themeColor(!isEnabled(*option) ? ThemeColor::hairline
                                  : lit               ? ThemeColor::text3
                                                      : ThemeColor::controlEdge));
        }
        return;
    case PE_PanelButtonTool:
        if (option->state & State_On) {
            paintPanel(*painter, rect, radius::control, themeColor(ThemeColor::accentLow),
                       Qt::transparent);
        }
        if (isPressed(*option) || isHovered(*option)) {
            paintPanel(*painter, rect, radius::control,
                       themeColor(isPressed(*option) ? ThemeColor::press : ThemeColor::hover),
                       Qt::transparent);
        }
        return;
    case PE_PanelItemViewRow:
    case PE_PanelStatusBar:
    case PE_PanelScrollAreaCorner:
    case PE_FrameStatusBarItem:
    case PE_FrameMenu:
        return;
    case PE_PanelItemViewItem:
        if (const auto* item = qstyleoption_cast<const QStyleOptionViewItem*>(option);
            item && !isTable(widget)) {
            // The focus line goes around the text and the ground at once, drawn by the delegate.
            const bool alone = item->viewItemPosition == QStyleOptionViewItem::OnlyOne ||
                               item->viewItemPosition == QStyleOptionViewItem::Invalid;
            paintRowGround(*painter, rect, alone ? radius::control : 0,
                           item->state & (State_Selected | State_MouseOver));
        }
        return;
    case PE_IndicatorBranch:
        if (option->state & State_Children) {
            paintSymbol(*painter,
                        option->state & State_Open ? QStringLiteral("chevron.down")
                                                   : QStringLiteral("chevron.right"),
                        rect, measure::iconChevron, themeColor(ThemeColor::text3));
        }
        return;
    case PE_PanelTipLabel:
        paintPopover(*painter, rect, radius::control);
        return;
    case PE_PanelMenu:
        paintPopover(*painter, rect, radius::surface);
        return;
    case PE_PanelMenuBar:
        painter->fillRect(QRectF(rect.left(), rect.bottom() - 1, rect.width(), 1),
                          themeColor(ThemeColor::hairline));
        return;
    case PE_Frame:
        if (widget && widget->inherits("QComboBoxPrivateContainer")) {
            paintPopover(*painter, rect, radius::surface);
        } else if (isTable(widget)) {
            paintPanel(*painter, rect, radius::control, themeColor(ThemeColor::card),
                       themeColor(ThemeColor::hairline));
        } else {
            paintPanel(*painter, rect, radius::control, Qt::transparent,
                       themeColor(ThemeColor::hairline));
        }
        return;
    case PE_IndicatorHeaderArrow:
        return;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

int QuorvaneStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                               const QWidget* widget) const
{
    switch (metric) {
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
    case PM_MenuBarPanelWidth:
    case PM_MenuBarVMargin:
    case PM_MenuBarItemSpacing:
    case PM_MenuHMargin:
    case PM_MenuVMargin:
    case PM_MenuDesktopFrameWidth:
    case PM_ScrollView_ScrollBarSpacing:
        return 0;
    case PM_MenuBarHMargin:
        return spacing::s;
    case PM_MenuPanelWidth:
        return 6;
    case PM_SubMenuOverlap:
        return -2;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return measure::checkBox;
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing:
        return spacing::s;
    case PM_ScrollBarExtent:
    case PM_ScrollView_ScrollBarOverlap:
        return measure::scrollBarHovered + 2 * measure::scrollBarInset;
    case PM_ScrollBarSliderMin:
        return 32;
    case PM_FocusFrameHMargin:
    case PM_FocusFrameVMargin:
        return measure::focusRing;
    case PM_SmallIconSize:
    case PM_ListViewIconSize:
    case PM_TabBarIconSize:
        return measure::iconRow;
    case PM_ButtonIconSize:
        return measure::iconButton;
    case PM_TextCursorWidth:
        // The field draws its own.
        return qobject_cast<const TextField*>(widget) ? 0 : 1;
    case PM_ToolTipLabelFrameWidth:
        return 6;
    case PM_DefaultFrameWidth:
        return widget && widget->inherits("QComboBoxPrivateContainer") ? 6 : 1;
    case PM_HeaderMargin:
        return spacing::m;
    case PM_TreeViewIndentation:
        return 19;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int QuorvaneStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                             QStyleHintReturn* returnData) const
{
    switch (hint) {
    case SH_FocusFrame_AboveWidget:
        return 1;
    case SH_FocusFrame_Mask:
        return 0;
    case SH_ComboBox_Popup:
        return 0;
    case SH_ScrollBar_Transient:
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_EtchDisabledText:
    case SH_DitherDisabledText:
        return 0;
    case SH_ScrollBar_LeftClickAbsolutePosition:
        return 1;
    case SH_ItemView_ShowDecorationSelected:
        return 1;
    case SH_ItemView_ActivateItemOnSingleClick:
        return 0;
    case SH_Menu_MouseTracking:
    case SH_MenuBar_MouseTracking:
        return 1;
    case SH_Menu_Mask:
    case SH_ToolTip_Mask:
        return 0;
    case SH_ToolTipLabel_Opacity:
        return 255;
    case SH_Widget_Animation_Duration:
        return animationDuration(duration::hover);
    case SH_UnderlineShortcut:
        return 0;
    default:
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}

QPixmap QuorvaneStyle::generatedIconPixmap(QIcon::Mode mode, const QPixmap& pixmap,
                                           const QStyleOption* option) const
{
    // A selected row keeps the colours of its icons.
    return mode == QIcon::Disabled ? QProxyStyle::generatedIconPixmap(mode, pixmap, option)
                                   : pixmap;
}

QIcon QuorvaneStyle::standardIcon(StandardPixmap pixmap, const QStyleOption* option,
                                  const QWidget* widget) const
{
    switch (pixmap) {
    case SP_LineEditClearButton:
        return symbolIcon(QStringLiteral("xmark.circle.fill"), ThemeColor::text3);
    case SP_DirIcon:
    case SP_DirClosedIcon:
    case SP_DirLinkIcon:
        return symbolIcon(QStringLiteral("folder.fill"), ThemeColor::accentText);
    case SP_FileIcon:
    case SP_FileLinkIcon:
        return symbolIcon(QStringLiteral("doc"));
    case SP_ComputerIcon:
        return symbolIcon(QStringLiteral("desktopcomputer"));
    case SP_DriveHDIcon:
        return symbolIcon(QStringLiteral("internaldrive"));
    case SP_FileDialogBack:
    case SP_ArrowBack:
        return symbolIcon(QStringLiteral("chevron.left"));
    case SP_ArrowForward:
        return symbolIcon(QStringLiteral("chevron.right"));
    case SP_FileDialogToParent:
        return symbolIcon(QStringLiteral("chevron.up"));
    case SP_FileDialogNewFolder:
        return symbolIcon(QStringLiteral("folder.badge.plus"));
    case SP_FileDialogListView:
        return symbolIcon(QStringLiteral("square.grid.3x3"));
    case SP_FileDialogDetailedView:
        return symbolIcon(QStringLiteral("list.bullet.rectangle"));
    default:
        return QProxyStyle::standardIcon(pixmap, option, widget);
    }
}

} // namespace quorvane
