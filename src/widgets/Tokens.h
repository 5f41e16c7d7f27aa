// SPDX-License-Identifier: MIT
#pragma once

namespace quorvane {

// Lengths are points at scale 1; durations are milliseconds.

namespace spacing {
inline constexpr int xs = 4;
inline constexpr int s = 8;
inline constexpr int m = 12;
inline constexpr int l = 16;
inline constexpr int xl = 24;
inline constexpr int panelSection = 20; ///< between the sections of a side panel
} // namespace spacing

namespace radius {
inline constexpr int small = 4;    ///< check box, inner segment, key cap
inline constexpr int control = 6;  ///< buttons, fields, rows, tooltips
inline constexpr int surface = 10; ///< cards, tiles, menus, dialogs, canvases
} // namespace radius

namespace measure {
inline constexpr int menuBarHeight = 28;
inline constexpr int sideBarWidth = 240;
inline constexpr int sideBarPadding = 12;
inline constexpr int toolBarHeight = 52;
inline constexpr int inspectorWidth = 300;
inline constexpr int screenHeaderHeight = 64;
inline constexpr int screenMargin = 24;
inline constexpr int crumbsHeight = 36;
inline constexpr int footerHeight = 44;
inline constexpr int canvasInset = 12;

inline constexpr int button = 30;
inline constexpr int buttonLarge = 36;
inline constexpr int buttonSmall = 26;
inline constexpr int toolButton = 30;
inline constexpr int field = 30;
inline constexpr int fieldLarge = 38;
inline constexpr int picker = 30;
inline constexpr int pickerInset = 2;
inline constexpr int checkBox = 16;
inline constexpr int switchWidth = 36;
inline constexpr int switchHeight = 20;
inline constexpr int chip = 24;
inline constexpr int badge = 18;
inline constexpr int keyCap = 18;
inline constexpr int bar = 6;
inline constexpr int rail = 4;
inline constexpr int scrollBar = 6;
inline constexpr int scrollBarHovered = 8;
inline constexpr int scrollBarInset = 3; ///< between the bar and the edge of its area
inline constexpr int actionTile = 62;
inline constexpr int scanTile = 68;
inline constexpr int flashBanner = 36;
inline constexpr int dialogWidth = 400;
inline constexpr int emptyTextWidth = 460;

inline constexpr int row = 32;
inline constexpr int rowTwoLines = 48;
inline constexpr int tableHeader = 28;
inline constexpr int menuRow = 28;

inline constexpr int iconChevron = 11;
inline constexpr int iconButtonSmall = 13;
inline constexpr int iconButton = 14;
inline constexpr int iconButtonLarge = 15;
inline constexpr int iconRow = 16;
inline constexpr int iconTile = 18;
inline constexpr int iconHeader = 20;
inline constexpr int iconEmpty = 46;

inline constexpr int focusRing = 3; ///< outside a control
inline constexpr int focusLine = 2; ///< inside a row, a tile of a list or a canvas
} // namespace measure

namespace duration {
inline constexpr int hover = 100;
inline constexpr int toggle = 150; ///< picker, check box, switch
inline constexpr int expand = 160;
inline constexpr int panel = 200; ///< inspector, dialog, tooltip
inline constexpr int banner = 250;
inline constexpr int sweep = 1600;
} // namespace duration

} // namespace quorvane
