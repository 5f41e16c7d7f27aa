// SPDX-License-Identifier: MIT
#include "DesktopSettings.h"
#include "QuorvaneStyle.h"
#include "StylePainting.h"
#include "TextField.h"
#include "Tokens.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace quorvane {
namespace {

constexpr int popupPadding = 6; ///< between the edge of a menu and its rows, the edge included
constexpr int shortestSlider = 32;
constexpr int scrollBarExtent = measure::scrollBarHovered + 2 * measure::scrollBarInset;

constexpr std::pair<QStyle::PixelMetric, int> metrics[] = {
    {QStyle::PM_ButtonShiftHorizontal, 0},
    {QStyle::PM_ButtonShiftVertical, 0},
    {QStyle::PM_MenuBarPanelWidth, 0},
    {QStyle::PM_MenuBarVMargin, 0},
    {QStyle::PM_MenuBarItemSpacing, 0},
    {QStyle::PM_MenuBarHMargin, spacing::s},
    {QStyle::PM_MenuHMargin, 0},
    {QStyle::PM_MenuVMargin, 0},
    {QStyle::PM_MenuDesktopFrameWidth, 0},
    {QStyle::PM_MenuPanelWidth, popupPadding},
    {QStyle::PM_SubMenuOverlap, -2},
    {QStyle::PM_IndicatorWidth, measure::checkBox},
    {QStyle::PM_IndicatorHeight, measure::checkBox},
    {QStyle::PM_ExclusiveIndicatorWidth, measure::checkBox},
    {QStyle::PM_ExclusiveIndicatorHeight, measure::checkBox},
    {QStyle::PM_CheckBoxLabelSpacing, spacing::s},
    {QStyle::PM_RadioButtonLabelSpacing, spacing::s},
    {QStyle::PM_ScrollBarExtent, scrollBarExtent},
    // The bar lies over the contents, which keep their own distance from the edge.
    {QStyle::PM_ScrollView_ScrollBarOverlap, scrollBarExtent},
    {QStyle::PM_ScrollView_ScrollBarSpacing, 0},
    {QStyle::PM_ScrollBarSliderMin, shortestSlider},
    {QStyle::PM_FocusFrameHMargin, measure::focusRing},
    {QStyle::PM_FocusFrameVMargin, measure::focusRing},
    {QStyle::PM_SmallIconSize, measure::iconRow},
    {QStyle::PM_ListViewIconSize, measure::iconRow},
    {QStyle::PM_TabBarIconSize, measure::iconRow},
    {QStyle::PM_ButtonIconSize, measure::iconButton},
    {QStyle::PM_ToolTipLabelFrameWidth, popupPadding},
    {QStyle::PM_HeaderMargin, spacing::m},
    {QStyle::PM_TreeViewIndentation, measure::iconChevron + spacing::s},
};

constexpr std::pair<QStyle::StyleHint, int> hints[] = {
    {QStyle::SH_FocusFrame_AboveWidget, 1},
    {QStyle::SH_FocusFrame_Mask, 0},
    // A menu of the choices, the current one checked and above the box.
    {QStyle::SH_ComboBox_Popup, 1},
    {QStyle::SH_ScrollBar_Transient, 0},
    {QStyle::SH_ScrollBar_LeftClickAbsolutePosition, 1},
    {QStyle::SH_DialogButtonBox_ButtonsHaveIcons, 0},
    {QStyle::SH_EtchDisabledText, 0},
    {QStyle::SH_DitherDisabledText, 0},
    {QStyle::SH_ItemView_ShowDecorationSelected, 1},
    {QStyle::SH_ItemView_ActivateItemOnSingleClick, 0},
    {QStyle::SH_Menu_MouseTracking, 1},
    {QStyle::SH_MenuBar_MouseTracking, 1},
    {QStyle::SH_Menu_Mask, 0},
    {QStyle::SH_ToolTip_Mask, 0},
    {QStyle::SH_ToolTipLabel_Opacity, 255},
    {QStyle::SH_UnderlineShortcut, 0},
};

/// The number that a table gives to a key, or null.
template<typename Key, std::size_t count>
const int* valueOf(const std::pair<Key, int> (&table)[count], Key key)
{
    const auto* found = std::find_if(std::begin(table), std::end(table),
                                     [key](const auto& entry) { return entry.first == key; });
    return found == std::end(table) ? nullptr : &found->second;
}

} // namespace

int QuorvaneStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                               const QWidget* widget) const
{
    if (metric == PM_TextCursorWidth) {
        // The field draws its own.
        return qobject_cast<const TextField*>(widget) ? 0 : 1;
    }
    if (metric == PM_DefaultFrameWidth) {
        return isComboPopup(widget) ? popupPadding : 1;
    }
    const int* value = valueOf(metrics, metric);
    return value ? *value : QProxyStyle::pixelMetric(metric, option, widget);
}

int QuorvaneStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                             QStyleHintReturn* returnData) const
{
    if (hint == SH_Widget_Animation_Duration) {
        return animationDuration(duration::hover);
    }
    const int* value = valueOf(hints, hint);
    return value ? *value : QProxyStyle::styleHint(hint, option, widget, returnData);
}

} // namespace quorvane
