// SPDX-License-Identifier: MIT
#include "Appearance.h"

#include <gtest/gtest.h>

#include <optional>
#include <utility>
#include <vector>

namespace quorvane {
namespace {

TEST(AppTheme, TableIsComplete)
{
    struct Row
    {
        AppTheme theme;
        const char* rawValue;
        const char* title;
        std::optional<ColorScheme> colorScheme;
    };
    const std::vector<Row> rows{{AppTheme::system, "system", "System", std::nullopt},
                                {AppTheme::light, "light", "Light", ColorScheme::light},
                                {AppTheme::dark, "dark", "Dark", ColorScheme::dark}};
    ASSERT_EQ(allAppThemes.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(allAppThemes[i], rows[i].theme);
        EXPECT_EQ(rawValue(rows[i].theme), rows[i].rawValue);
        EXPECT_EQ(appThemeFromRawValue(rows[i].rawValue), rows[i].theme);
        EXPECT_EQ(title(rows[i].theme), QLatin1String(rows[i].title));
        EXPECT_EQ(colorScheme(rows[i].theme), rows[i].colorScheme);
    }
}

TEST(AppTheme, OtherTextIsNoTheme)
{
    EXPECT_EQ(appThemeFromRawValue("blue"), std::nullopt);
    EXPECT_EQ(appThemeFromRawValue("Dark"), std::nullopt);
    EXPECT_EQ(appThemeFromRawValue(""), std::nullopt);
}

TEST(AccentChoice, TableIsCompleteAndTitlesAreCapitalisedKeys)
{
    struct Row
    {
        AccentChoice accent;
        const char* rawValue;
        const char* title;
    };
    const std::vector<Row> rows{
        {AccentChoice::blue, "blue", "Blue"}, {AccentChoice::purple, "purple", "Purple"},
        {AccentChoice::teal, "teal", "Teal"}, {AccentChoice::orange, "orange", "Orange"},
        {AccentChoice::pink, "pink", "Pink"}, {AccentChoice::green, "green", "Green"}};
    ASSERT_EQ(allAccentChoices.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(allAccentChoices[i], rows[i].accent);
        EXPECT_EQ(rawValue(rows[i].accent), rows[i].rawValue);
        EXPECT_EQ(accentChoiceFromRawValue(rows[i].rawValue), rows[i].accent);
        EXPECT_EQ(title(rows[i].accent), QLatin1String(rows[i].title));
    }
}

TEST(AccentChoice, OtherTextIsNoAccent)
{
    EXPECT_EQ(accentChoiceFromRawValue("indigo"), std::nullopt);
    EXPECT_EQ(accentChoiceFromRawValue("dark"), std::nullopt);
}

} // namespace
} // namespace quorvane
