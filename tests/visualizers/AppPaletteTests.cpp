// SPDX-License-Identifier: MIT
#include "AppPalette.h"

#include <gtest/gtest.h>

#include <vector>

namespace quorvane {
namespace {

struct Row
{
    AppPalette palette;
    const char* key;
    const char* title;
    const char* subtitle;
    Color swatch;
};

const std::vector<Row> table{
    {AppPalette::defaultHues,
     "default",
     "Default",
     "Curated mixed hues",
     {88 / 255.0, 86 / 255.0, 214 / 255.0}},
    {AppPalette::forest, "forest", "Forest", "Nature-inspired greens", {0.3, 0.62, 0.4}},
    {AppPalette::ocean, "ocean", "Ocean", "Deep blue oceanic", {0.3, 0.55, 0.9}},
    {AppPalette::midnight, "midnight", "Midnight", "Twilight indigo & violet", {0.45, 0.4, 0.85}},
    {AppPalette::aurora, "aurora", "Aurora", "Soft pastel gradients", {0.75, 0.45, 0.8}},
    {AppPalette::slate, "slate", "Slate", "Dark slate tones", {0.24, 0.35, 0.5}},
};

TEST(AppPalette, SixCasesInTheOrderOfTheSettings)
{
    ASSERT_EQ(allAppPalettes.size(), table.size());
    for (std::size_t i = 0; i < table.size(); ++i) {
        const Row& row = table[i];
        EXPECT_EQ(allAppPalettes[i], row.palette);
        EXPECT_EQ(rawValue(row.palette), row.key);
        EXPECT_EQ(title(row.palette).toStdString(), row.title);
        EXPECT_EQ(subtitle(row.palette).toStdString(), row.subtitle);
        EXPECT_EQ(swatch(row.palette, false), row.swatch) << row.key;
        EXPECT_EQ(appPaletteFromRawValue(row.key), row.palette);
    }
}

TEST(AppPalette, OnlyTheDefaultSwatchKnowsDarkWindows)
{
    const Color indigo = swatch(AppPalette::defaultHues, true);
    EXPECT_DOUBLE_EQ(indigo.r, 94 / 255.0);
    EXPECT_DOUBLE_EQ(indigo.g, 92 / 255.0);
    EXPECT_DOUBLE_EQ(indigo.b, 230 / 255.0);
    for (std::size_t i = 1; i < table.size(); ++i) {
        EXPECT_EQ(swatch(table[i].palette, true), table[i].swatch);
    }
}

TEST(AppPalette, AnUnknownKeyIsNoPalette)
{
    EXPECT_FALSE(appPaletteFromRawValue(""));
    EXPECT_FALSE(appPaletteFromRawValue("Slate"));
    EXPECT_FALSE(appPaletteFromRawValue("defaultHues"));
}

TEST(AppPalette, AFreshInstallationIsSlate)
{
    EXPECT_EQ(initialPalette, AppPalette::slate);
}

} // namespace
} // namespace quorvane
