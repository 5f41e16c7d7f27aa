// SPDX-License-Identifier: MIT
#include "Appearance.h"

#include <cstddef>

namespace quorvane {
namespace {

constexpr std::array<std::string_view, 3> themeKeys{"system", "light", "dark"};
constexpr std::array<std::string_view, 6> accentKeys{"blue",   "purple", "teal",
                                                     "orange", "pink",   "green"};

QString capitalised(std::string_view key)
{
    QString text = QString::fromLatin1(key.data(), static_cast<qsizetype>(key.size()));
    text[0] = text[0].toUpper();
    return text;
}

} // namespace

std::string_view rawValue(AppTheme theme)
{
    return themeKeys[static_cast<std::size_t>(theme)];
}

std::optional<AppTheme> appThemeFromRawValue(std::string_view text)
{
    for (const AppTheme theme : allAppThemes) {
        if (rawValue(theme) == text) {
            return theme;
        }
    }
    return std::nullopt;
}

QString title(AppTheme theme)
{
    return capitalised(rawValue(theme));
}

std::optional<ColorScheme> colorScheme(AppTheme theme)
{
    switch (theme) {
    case AppTheme::light:
        return ColorScheme::light;
    case AppTheme::dark:
        return ColorScheme::dark;
    case AppTheme::system:
        break;
    }
    return std::nullopt;
}

std::string_view rawValue(AccentChoice accent)
{
    return accentKeys[static_cast<std::size_t>(accent)];
}

std::optional<AccentChoice> accentChoiceFromRawValue(std::string_view text)
{
    for (const AccentChoice accent : allAccentChoices) {
        if (rawValue(accent) == text) {
            return accent;
        }
    }
    return std::nullopt;
}

QString title(AccentChoice accent)
{
    return capitalised(rawValue(accent));
}

} // namespace quorvane
