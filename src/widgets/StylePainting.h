// SPDX-License-Identifier: MIT
#pragma once

#include "Theme.h"

#include <QLinearGradient>
#include <QStyleOption>
#include <QWidget>

// Small helpers that the parts of the style share.

namespace quorvane {

inline bool isEnabled(const QStyleOption& option)
{
    return option.state & QStyle::State_Enabled;
}

inline bool isHovered(const QStyleOption& option)
{
    return isEnabled(option) && option.state & QStyle::State_MouseOver;
}

inline bool isPressed(const QStyleOption& option)
{
    return isEnabled(option) && option.state & QStyle::State_Sunken;
}

/// The title of the program's own menu, which a menu bar sets apart.
inline bool isProgramMenu(const QStyleOptionMenuItem& option)
{
    return option.menuItemType == QStyleOptionMenuItem::DefaultItem;
}

/// The window with the choices of a combo box.
inline bool isComboPopup(const QWidget* widget)
{
    return widget && widget->inherits("QComboBoxPrivateContainer");
}

/// Whether text in the accent's label colour stands light on the fill.
inline bool isAccentLabelLight()
{
    return themeColor(ThemeColor::accentLabel).lightnessF() > 0.5F;
}

/// From `top` at the upper edge to `bottom` at the lower one.
inline QBrush verticalGradient(const QRectF& rect, ThemeColor top, ThemeColor bottom)
{
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    gradient.setColorAt(0, themeColor(top));
    gradient.setColorAt(1, themeColor(bottom));
    return gradient;
}

} // namespace quorvane
