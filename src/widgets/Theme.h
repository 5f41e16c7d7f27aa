// SPDX-License-Identifier: MIT
#pragma once

#include "Appearance.h"

#include <QColor>
#include <QFont>
#include <QObject>
#include <QPalette>

#include <array>
#include <cstddef>

namespace quorvane {

/// The named colours of the design.
enum class ThemeColor {
    window,  ///< ground of the window, below the wash
    wash,    ///< default tint of the wash, laid over the window
    side,    ///< menu bar, side bar, inspector, laid over the wash
    veil,    ///< tool bar and detail area, laid over the wash
    card,    ///< cards, lists, tables
    cardTop, ///< line inside the top edge of a card
    raised,  ///< picker ground, bar track, table header, tiles in panels
    popover, ///< menu, tooltip, dialog, flash banner
    field,   ///< text field, empty check box
    canvas,  ///< ground of a drawing; dark in both themes

    hairline,    ///< separators, card edges
    tileEdge,    ///< edge of the side bar's tiles and card
    controlEdge, ///< buttons, fields, popovers, switch off, scroll bar

    text1,        ///< body
    text2,        ///< captions
    text3,        ///< hints, headings, paths
    textDisabled, ///< disabled only, and the big symbol of an empty state

    accent,      ///< focus edge, selection stroke, charts, swatch
    accentText,  ///< links, current crumb, icons of the current row, folder icons
    accentFill,  ///< prominent button (top of its gradient), check box, switch, menu row
    accentFill2, ///< prominent button, bottom of its gradient
    accentHover, ///< prominent button below the pointer
    accentPress, ///< prominent button held down
    accentLabel, ///< text and symbols on accentFill
    accentLow,   ///< current row, selected row, active chip
    focusRing,   ///< 3 wide, outside a control
    hover,       ///< rows, plain buttons, tool buttons below the pointer
    press,       ///< the same, held down
    button,      ///< bordered button, top of its gradient
    button2,     ///< bordered button, bottom of its gradient
    buttonHover,
    buttonPress,
    segment, ///< current segment of a picker
    knob,    ///< knob of a switch

    destructive,  ///< destructive button, top of its gradient
    destructive2, ///< destructive button, bottom of its gradient
    destructiveHover,
    destructivePress,
    destructiveLabel,
    keptHover, ///< green button below the pointer
    keptPress,
    queuedHover, ///< red tinted button below the pointer
    queuedPress,

    red, ///< bars
    green,
    orange,
    purple,
    cyan,
    redText, ///< text and symbols
    greenText,
    orangeText,
    purpleText,
    cyanText,
    redLow, ///< ground below the text of the same colour
    greenLow,
    orangeLow,
    purpleLow,
    cyanLow,

    scrim,  ///< behind a dialog, over the whole window
    shadow, ///< popovers, banner
    dialogShadow,
    knobShadow, ///< below the current segment and the knob of a switch
    count
};

/// The type styles: size, line and weight as one.
enum class TextStyle {
    counter,       ///< 44 / 52, semibold: the counter of a running scan, the wordmark
    figure,        ///< 28 / 34, semibold: numbers of the monitor
    title,         ///< 20 / 26, semibold: title of a screen
    heading,       ///< 15 / 20, semibold: heading of an empty state, dialog title
    lead,          ///< 15 / 23: the sentences below the wordmark
    body,          ///< 13 / 18
    row,           ///< 13 / 18, medium: row titles, buttons
    strong,        ///< 13 / 18, semibold: sizes
    caption,       ///< 12 / 16
    captionMedium, ///< 12 / 16, medium
    captionStrong, ///< 12 / 16, semibold
    section,       ///< 11 / 14, medium, tracked: headings of sections
    label,         ///< 11 / 14, medium: tiles, badges
    path           ///< 11 / 14
};

struct TypeMeasure
{
    int size;       ///< points at scale 1
    int lineHeight; ///< points at scale 1
    QFont::Weight weight;
    double tracking; ///< added to each advance, in points
};

TypeMeasure typeMeasure(TextStyle style);

/// The font of a style: Inter where installed, else the system's own family. Small text on a light
/// ground takes the next heavier cut where the renderer would thin it; `lightOnDark` tells how the
/// text stands where that is not the scheme's way: on a canvas, on a filled button.
QFont font(TextStyle style);
QFont font(TextStyle style, bool lightOnDark);

/// Gives text the stroke width that its designers drew: FreeType would thicken outlines of
/// PostScript flavour, twice as visible on a dark ground. Takes effect only before the first
/// QGuiApplication; leaves a FREETYPE_PROPERTIES of the user's own alone.
void prepareTextRendering();

/// All colours of one scheme with one accent. A value; compare two to know whether anything
/// changes.
class Theme
{
public:
    Theme(bool dark, AccentChoice accent);

    bool isDark() const { return m_dark; }
    AccentChoice accent() const { return m_accent; }
    QColor color(ThemeColor color) const { return m_colors[static_cast<std::size_t>(color)]; }
    QPalette palette() const;

    bool operator==(const Theme& other) const
    {
        return m_dark == other.m_dark && m_accent == other.m_accent;
    }

private:
    void applyAccent();

    bool m_dark;
    AccentChoice m_accent;
    std::array<QColor, static_cast<std::size_t>(ThemeColor::count)> m_colors;
};

/// The theme that the program shows now. Main thread only.
const Theme& theme();

/// theme().color(color)
QColor themeColor(ThemeColor color);

/// The plain colour of an accent, as its swatch shows it in the current scheme.
QColor color(AccentChoice accent);

/// Shows the given scheme and accent at once in all windows: palette, fonts, repaint, signal.
/// AppTheme::system follows the desktop, now and when it changes. Main thread only.
void setTheme(AppTheme scheme, AccentChoice accent);

/// Tells that theme() has changed. Main thread only.
class ThemeNotifier : public QObject
{
    Q_OBJECT

public:
    static ThemeNotifier& instance();

Q_SIGNALS:
    void themeChanged();

private:
    ThemeNotifier() = default;
};

/// Contrast of two opaque colours by WCAG 2: 1 (none) to 21.
double contrastRatio(const QColor& first, const QColor& second);

/// The opaque colour that shows when `top` lies over the opaque `bottom`.
QColor blended(const QColor& top, const QColor& bottom);

/// The given colour with another opacity, 0 to 1.
QColor withOpacity(const QColor& color, double opacity);

} // namespace quorvane
