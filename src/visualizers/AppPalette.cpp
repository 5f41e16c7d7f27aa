// SPDX-License-Identifier: MIT
#include "AppPalette.h"

#include <QStringView>

#include <cstddef>

namespace quorvane {
namespace {

struct PaletteRow
{
    AppPalette palette;
    std::string_view key;
    QStringView title;
    QStringView subtitle;
    Color swatch;
};

constexpr Color indigoLight{0x58 / 255.0, 0x56 / 255.0, 0xD6 / 255.0};
constexpr Color indigoDark{0x5E / 255.0, 0x5C / 255.0, 0xE6 / 255.0};

constexpr std::array rows{
    PaletteRow{AppPalette::defaultHues, "default", u"Default", u"Curated mixed hues", indigoLight},
    PaletteRow{
        AppPalette::forest, "forest", u"Forest", u"Nature-inspired greens", {0.3, 0.62, 0.4}},
    PaletteRow{AppPalette::ocean, "ocean", u"Ocean", u"Deep blue oceanic", {0.3, 0.55, 0.9}},
    PaletteRow{AppPalette::midnight,
               "midnight",
               u"Midnight",
               u"Twilight indigo & violet",
               {0.45, 0.4, 0.85}},
    PaletteRow{
        AppPalette::aurora, "aurora", u"Aurora", u"Soft pastel gradients", {0.75, 0.45, 0.8}},
    PaletteRow{AppPalette::slate, "slate", u"Slate", u"Dark slate tones", {0.24, 0.35, 0.5}},
};

constexpr bool rowsFollowTheCases()
{
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (static_cast<std::size_t>(rows[i].palette) != i ||
            rows[i].palette != allAppPalettes[i]) {
            return false;
        }
    }
    return rows.size() == allAppPalettes.size();
}
static_assert(rowsFollowTheCases());

const PaletteRow& rowOf(AppPalette palette)
{
    return rows[static_cast<std::size_t>(palette)];
}

} // namespace

std::string_view rawValue(AppPalette palette)
{
    return rowOf(palette).key;
}

std::optional<AppPalette> appPaletteFromRawValue(std::string_view text)
{
    for (const PaletteRow& row : rows) {
        if (row.key == text) {
            return row.palette;
        }
    }
    return std::nullopt;
}

QString title(AppPalette palette)
{
    return rowOf(palette).title.toString();
}

QString subtitle(AppPalette palette)
{
    return rowOf(palette).subtitle.toString();
}

Color swatch(AppPalette palette, bool dark)
{
    return palette == AppPalette::defaultHues && dark ? indigoDark : rowOf(palette).swatch;
}

} // namespace quorvane
