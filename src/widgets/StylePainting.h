// SPDX-License-Identifier: MIT
#pragma once

#include "Theme.h"

#include <QLinearGradient>
#include <QStyleOption>

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

/// From `top` at the upper edge to `bottom` at the lower one.
inline QBrush verticalGradient(const QRectF& rect, ThemeColor top, ThemeColor bottom)
{
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    gradient.setColorAt(0, themeColor(top));
    gradient.setColorAt(1, themeColor(bottom));
    return gradient;
}

} // namespace quorvane
