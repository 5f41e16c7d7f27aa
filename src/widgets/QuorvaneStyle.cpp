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

#include <cmath>

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
           isComboPopup(&widget);
}

/// Gives the choices of a combo box their ground, and room for the widest one and its check mark.
void preparePopup(QWidget& popup)
{
    QPalette ground = QApplication::palette();
    for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Base}) {
        ground.setColor(role, themeColor(ThemeColor::popover));
    }
    popup.setPalette(ground);
    if (const auto* choices = popup.findChild<QAbstractItemView*>()) {
        const int beside = popup.width() - choices->width();
        popup.resize(std::max(popup.width(), choices->sizeHintForColumn(0) + beside),
                     popup.height());
    }
}

/// All pixels that a rounded rectangle touches, the half covered ones of its corners included.
QRegion roundRegion(const QSize& size, int radius)
{
    QRegion region(0, radius, size.width(), size.height() - 2 * radius);
    for (int row = 0; row < radius; ++row) {
        const int inward = radius - row - 1;
        const int cut =
            radius - static_cast<int>(std::ceil(std::sqrt(radius * radius - inward * inward)));
        const int width = size.width() - 2 * cut;
        region += QRect(cut, row, width, 1);
        region += QRect(cut, size.height() - row - 1, width, 1);
    }
    return region;
}

} // namespace

QuorvaneStyle::QuorvaneStyle()
    : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion")))
{
    setObjectName(QStringLiteral("quorvane"));
}

void QuorvaneStyle::install(QApplication& application)
{
    DesktopSettings::instance().setPaletteIsDark(
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
    if (isRoundPopup(*widget) && widget->isWindow()) {
        widget->setAttribute(Qt::WA_TranslucentBackground);
        widget->setWindowFlags(widget->windowFlags() | Qt::FramelessWindowHint |
                               Qt::NoDropShadowWindowHint);
        widget->installEventFilter(this);
    }
}

void QuorvaneStyle::unpolish(QWidget* widget)
{
    if (isRoundPopup(*widget) && widget->isWindow()) {
        widget->removeEventFilter(this);
        widget->clearMask();
        widget->setAttribute(Qt::WA_TranslucentBackground, false);
    }
    QProxyStyle::unpolish(widget);
}

bool QuorvaneStyle::eventFilter(QObject* watched, QEvent* event)
{
    // Without a compositor a translucent corner shows black: cut it off.
    auto* popup = qobject_cast<QWidget*>(watched);
    if (event->type() == QEvent::Resize && popup && isRoundPopup(*popup)) {
        popup->setMask(roundRegion(popup->size(), popup->inherits("QTipLabel") ? radius::control
                                                                               : radius::surface));
    }
    if (event->type() == QEvent::Show && popup && isComboPopup(popup)) {
        preparePopup(*popup);
    }
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
    const auto* item = qstyleoption_cast<const QStyleOptionViewItem*>(option);
    if (const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option);
        header && drawHeader(element, *header, *painter, widget)) {
        return;
    }
    if (element == CE_PushButton) {
        drawPushButton(option, *painter, widget);
    } else if (element == CE_MenuItem && menuItem) {
        drawMenuItem(*menuItem, *painter);
    } else if (element == CE_MenuBarItem && menuItem) {
        drawMenuBarItem(*menuItem, *painter);
    } else if (element == CE_ItemViewItem && item) {
        drawItem(*item, *painter, widget);
    } else if (element == CE_HeaderEmptyArea) {
        painter->fillRect(option->rect, themeColor(ThemeColor::raised));
    } else if (element != CE_MenuBarEmptyArea && element != CE_MenuEmptyArea &&
               element != CE_ComboBoxLabel && element != CE_FocusFrame) {
        // Those four are drawn with what they belong to, or not at all.
        QProxyStyle::drawControl(element, option, painter, widget);
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
