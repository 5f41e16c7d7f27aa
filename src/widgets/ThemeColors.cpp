// SPDX-License-Identifier: MIT
#include "Theme.h"

#include <cmath>

namespace quorvane {
namespace {

using Rgb = unsigned; ///< 0xRRGGBB

struct Entry
{
    ThemeColor color;
    Rgb darkRgb;
    double darkOpacity;
    Rgb lightRgb;
    double lightOpacity;
};

// Entries of the accent are those of blue; Theme::applyAccent replaces them for the others.
constexpr std::array entries{
    Entry{ThemeColor::window, 0x0D0F12, 1, 0xF3F4F6, 1},
    Entry{ThemeColor::wash, 0x384D6B, 0.30, 0x384D6B, 0.30},
    Entry{ThemeColor::side, 0x000000, 0.18, 0xFFFFFF, 0.70},
    Entry{ThemeColor::veil, 0xFFFFFF, 0, 0xFFFFFF, 0.55},
    Entry{ThemeColor::card, 0x15181E, 1, 0xFFFFFF, 1},
    Entry{ThemeColor::cardTop, 0xFFFFFF, 0.055, 0xFFFFFF, 0},
    Entry{ThemeColor::raised, 0x1F232B, 1, 0xECEEF1, 1},
    Entry{ThemeColor::popover, 0x232832, 1, 0xFFFFFF, 1},
    Entry{ThemeColor::field, 0x111419, 1, 0xFFFFFF, 1},
    Entry{ThemeColor::canvas, 0x101215, 1, 0x101215, 1},
    Entry{ThemeColor::hairline, 0x252A33, 1, 0xE1E4E9, 1},
    Entry{ThemeColor::tileEdge, 0x252A33, 1, 0xD6DAE1, 1},
    Entry{ThemeColor::controlEdge, 0x383F4B, 1, 0xC6CBD3, 1},
    Entry{ThemeColor::text1, 0xECEEF2, 1, 0x15171C, 1},
    Entry{ThemeColor::text2, 0xA8AEBA, 1, 0x484E59, 1},
    Entry{ThemeColor::text3, 0x9199A7, 1, 0x58606C, 1},
    Entry{ThemeColor::textDisabled, 0x5D6470, 1, 0xA3A9B3, 1},
    Entry{ThemeColor::accent, 0x0A84FF, 1, 0x007AFF, 1},
    Entry{ThemeColor::accentText, 0x54A8FF, 1, 0x005CBF, 1},
    Entry{ThemeColor::accentFill, 0x0970D9, 1, 0x0070EA, 1},
    Entry{ThemeColor::accentFill2, 0x0867C8, 1, 0x0068DA, 1},
    Entry{ThemeColor::accentHover, 0x1B7FE6, 1, 0x0064D2, 1},
    Entry{ThemeColor::accentPress, 0x075CB3, 1, 0x0057B8, 1},
    Entry{ThemeColor::accentLabel, 0xFFFFFF, 1, 0xFFFFFF, 1},
    Entry{ThemeColor::accentLow, 0x0A84FF, 0.18, 0x007AFF, 0.13},
    Entry{ThemeColor::focusRing, 0x0A84FF, 0.55, 0x007AFF, 0.45},
    Entry{ThemeColor::hover, 0xFFFFFF, 0.055, 0x000000, 0.045},
    Entry{ThemeColor::press, 0xFFFFFF, 0.10, 0x000000, 0.09},
    Entry{ThemeColor::button, 0x272C36, 1, 0xFFFFFF, 1},
    Entry{ThemeColor::button2, 0x22272F, 1, 0xF7F8FA, 1},
    Entry{ThemeColor::buttonHover, 0x313845, 1, 0xE9ECF0, 1},
    Entry{ThemeColor::buttonPress, 0x1D222A, 1, 0xDDE1E7, 1},
    Entry{ThemeColor::segment, 0x39404D, 1, 0xFFFFFF, 1},
    Entry{ThemeColor::knob, 0xFFFFFF, 1, 0xFFFFFF, 1},
    Entry{ThemeColor::destructive, 0xC9302A, 1, 0xD12D24, 1},
    Entry{ThemeColor::destructive2, 0xB62A25, 1, 0xC2281F, 1},
    Entry{ThemeColor::destructiveHover, 0xD63D36, 1, 0xBD271E, 1},
    Entry{ThemeColor::destructivePress, 0x9F2420, 1, 0xA6211A, 1},
    Entry{ThemeColor::destructiveLabel, 0xFFFFFF, 1, 0xFFFFFF, 1},
    Entry{ThemeColor::keptHover, 0x30D158, 0.22, 0x34C759, 0.24},
    Entry{ThemeColor::keptPress, 0x30D158, 0.10, 0x34C759, 0.30},
    Entry{ThemeColor::queuedHover, 0xFF453A, 0.22, 0xFF3B30, 0.18},
    Entry{ThemeColor::queuedPress, 0xFF453A, 0.10, 0xFF3B30, 0.24},
    Entry{ThemeColor::red, 0xFF453A, 1, 0xFF3B30, 1},
    Entry{ThemeColor::green, 0x30D158, 1, 0x34C759, 1},
    Entry{ThemeColor::orange, 0xFF9F0A, 1, 0xFF9500, 1},
    Entry{ThemeColor::purple, 0xBF5AF2, 1, 0xAF52DE, 1},
    Entry{ThemeColor::cyan, 0x40C8E0, 1, 0x30B0C7, 1},
    Entry{ThemeColor::redText, 0xFF7A72, 1, 0xC4190F, 1},
    Entry{ThemeColor::greenText, 0x4CD970, 1, 0x1A7434, 1},
    Entry{ThemeColor::orangeText, 0xFFB340, 1, 0x8F4F00, 1},
    Entry{ThemeColor::purpleText, 0xCF86F5, 1, 0x8A2FBB, 1},
    Entry{ThemeColor::cyanText, 0x5FD2E6, 1, 0x0D6A7D, 1},
    Entry{ThemeColor::redLow, 0xFF453A, 0.14, 0xFF3B30, 0.10},
    Entry{ThemeColor::greenLow, 0x30D158, 0.14, 0x34C759, 0.14},
    Entry{ThemeColor::orangeLow, 0xFF9F0A, 0.14, 0xFF9500, 0.14},
    Entry{ThemeColor::purpleLow, 0xBF5AF2, 0.16, 0xAF52DE, 0.12},
    Entry{ThemeColor::cyanLow, 0x40C8E0, 0.14, 0x30B0C7, 0.14},
    Entry{ThemeColor::scrim, 0x040507, 0.58, 0x1E242E, 0.38},
    Entry{ThemeColor::shadow, 0x000000, 0.45, 0x141A26, 0.18},
    Entry{ThemeColor::dialogShadow, 0x000000, 0.50, 0x141A26, 0.24},
    Entry{ThemeColor::knobShadow, 0x000000, 0.35, 0x141A26, 0.22},
};
static_assert(entries.size() == static_cast<std::size_t>(ThemeColor::count));

struct AccentEntry
{
    AccentChoice accent;
    Rgb dark;
    Rgb light;
    Rgb darkText;
    Rgb lightText;
    bool whiteLabel; ///< the fill is darkened to carry white; else it carries near-black
};

constexpr std::array accentEntries{
    AccentEntry{AccentChoice::blue, 0x0A84FF, 0x007AFF, 0x54A8FF, 0x005CBF, true},
    AccentEntry{AccentChoice::purple, 0xBF5AF2, 0xAF52DE, 0xCF86F5, 0x8A2FBB, true},
    AccentEntry{AccentChoice::teal, 0x40C8E0, 0x30B0C7, 0x5FD2E6, 0x0D6A7D, false},
    AccentEntry{AccentChoice::orange, 0xFF9F0A, 0xFF9500, 0xFFB340, 0x8F4F00, false},
    AccentEntry{AccentChoice::pink, 0xFF375F, 0xFF2D55, 0xFF7A93, 0xB8203D, true},
    AccentEntry{AccentChoice::green, 0x30D158, 0x34C759, 0x4CD970, 0x1A7434, false},
};

constexpr Rgb darkLabel = 0x0D0F12;
constexpr double darkenedFill = 0.85; ///< of the accent, below a white label

QColor colorOf(Rgb rgb, double opacity = 1)
{
    QColor color(static_cast<QRgb>(rgb));
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

QColor scaled(const QColor& color, double factor)
{
    const auto part = [factor](int value) {
        return static_cast<int>(std::lround(std::min(255.0, value * factor)));
    };
    return QColor(part(color.red()), part(color.green()), part(color.blue()), color.alpha());
}

const AccentEntry& entryOf(AccentChoice accent)
{
    return accentEntries[static_cast<std::size_t>(accent)];
}

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

} // namespace

Theme::Theme(bool dark, AccentChoice accent)
    : m_dark(dark)
    , m_accent(accent)
{
    for (const Entry& entry : entries) {
        m_colors[static_cast<std::size_t>(entry.color)] =
            dark ? colorOf(entry.darkRgb, entry.darkOpacity)
                 : colorOf(entry.lightRgb, entry.lightOpacity);
    }
    if (accent != AccentChoice::blue) {
        applyAccent();
    }
}

void Theme::applyAccent()
{
    const AccentEntry& entry = entryOf(m_accent);
    const QColor accent = colorOf(m_dark ? entry.dark : entry.light);
    const QColor fill = entry.whiteLabel ? scaled(accent, darkenedFill) : accent;
    const auto set = [this](ThemeColor color, const QColor& value) {
        m_colors[static_cast<std::size_t>(color)] = value;
    };
    set(ThemeColor::accent, accent);
    set(ThemeColor::accentText, colorOf(m_dark ? entry.darkText : entry.lightText));
    set(ThemeColor::accentFill, fill);
    set(ThemeColor::accentFill2, scaled(fill, 0.93));
    set(ThemeColor::accentHover, scaled(fill, m_dark ? 1.08 : 0.89));
    set(ThemeColor::accentPress, scaled(fill, m_dark ? 0.83 : 0.80));
    set(ThemeColor::accentLabel, colorOf(entry.whiteLabel ? 0xFFFFFF : darkLabel));
    set(ThemeColor::accentLow, withOpacity(accent, color(ThemeColor::accentLow).alphaF()));
    set(ThemeColor::focusRing, withOpacity(accent, color(ThemeColor::focusRing).alphaF()));
}

QPalette Theme::palette() const
{
    QPalette palette;
    const auto set = [&](QPalette::ColorRole role, ThemeColor value) {
        palette.setColor(QPalette::All, role, color(value));
    };
    set(QPalette::Window, ThemeColor::window);
    set(QPalette::WindowText, ThemeColor::text1);
    set(QPalette::Base, ThemeColor::card);
    set(QPalette::AlternateBase, ThemeColor::raised);
    set(QPalette::Text, ThemeColor::text1);
    set(QPalette::PlaceholderText, ThemeColor::text3);
    set(QPalette::Button, ThemeColor::button);
    set(QPalette::ButtonText, ThemeColor::text1);
    set(QPalette::BrightText, ThemeColor::redText);
    set(QPalette::ToolTipBase, ThemeColor::popover);
    set(QPalette::ToolTipText, ThemeColor::text1);
    set(QPalette::Highlight, ThemeColor::accentFill);
    set(QPalette::HighlightedText, ThemeColor::accentLabel);
    set(QPalette::Link, ThemeColor::accentText);
    set(QPalette::LinkVisited, ThemeColor::accentText);
    set(QPalette::Light, ThemeColor::raised);
    set(QPalette::Midlight, ThemeColor::raised);
    set(QPalette::Mid, ThemeColor::hairline);
    set(QPalette::Dark, ThemeColor::controlEdge);
    palette.setColor(QPalette::Shadow, Qt::black);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::PlaceholderText}) {
        palette.setColor(QPalette::Disabled, role, color(ThemeColor::textDisabled));
    }
    return palette;
}

QColor color(AccentChoice accent)
{
    const AccentEntry& entry = entryOf(accent);
    return colorOf(theme().isDark() ? entry.dark : entry.light);
}

double contrastRatio(const QColor& first, const QColor& second)
{
    const double one = luminance(first);
    const double two = luminance(second);
    return (std::max(one, two) + 0.05) / (std::min(one, two) + 0.05);
}

QColor blended(const QColor& top, const QColor& bottom)
{
    const double alpha = top.alphaF();
    const auto mix = [alpha](int upper, int lower) {
        return static_cast<int>(std::lround(upper * alpha + lower * (1 - alpha)));
    };
    return QColor(mix(top.red(), bottom.red()), mix(top.green(), bottom.green()),
                  mix(top.blue(), bottom.blue()));
}

QColor withOpacity(const QColor& color, double opacity)
{
    QColor result = color;
    result.setAlphaF(static_cast<float>(std::clamp(opacity, 0.0, 1.0)));
    return result;
}

} // namespace quorvane
