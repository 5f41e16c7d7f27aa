// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <array>
#include <optional>
#include <string_view>

namespace quorvane {

/// Which colour scheme the window takes.
enum class AppTheme {
    system, ///< follow the desktop
    light,
    dark
};

inline constexpr std::array allAppThemes{AppTheme::system, AppTheme::light, AppTheme::dark};

/// How light or dark a window is.
enum class ColorScheme { light, dark };

/// The stored key, for example "dark".
std::string_view rawValue(AppTheme theme);
std::optional<AppTheme> appThemeFromRawValue(std::string_view text);
QString title(AppTheme theme);
/// The scheme that the theme asks for; none for the desktop's own.
std::optional<ColorScheme> colorScheme(AppTheme theme);

/// The accent colour of controls, selection and charts.
enum class AccentChoice { blue, purple, teal, orange, pink, green };

inline constexpr std::array allAccentChoices{AccentChoice::blue, AccentChoice::purple,
                                             AccentChoice::teal, AccentChoice::orange,
                                             AccentChoice::pink, AccentChoice::green};

/// The stored key, for example "blue".
std::string_view rawValue(AccentChoice accent);
std::optional<AccentChoice> accentChoiceFromRawValue(std::string_view text);
/// The stored key, capitalised.
QString title(AccentChoice accent);

} // namespace quorvane
