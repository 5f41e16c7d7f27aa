// SPDX-License-Identifier: MIT
#pragma once

#include "Color.h"

#include <QString>

#include <array>
#include <optional>
#include <string_view>

namespace quorvane {

/// The family of colours that folders take. The order of the cases is that of the settings.
enum class AppPalette : unsigned char { defaultHues, forest, ocean, midnight, aurora, slate };

inline constexpr std::array allAppPalettes{AppPalette::defaultHues, AppPalette::forest,
                                           AppPalette::ocean,       AppPalette::midnight,
                                           AppPalette::aurora,      AppPalette::slate};

/// The palette of a fresh installation.
inline constexpr AppPalette initialPalette = AppPalette::slate;

/// The stored key: "default", "forest", "ocean", "midnight", "aurora" or "slate".
std::string_view rawValue(AppPalette palette);
std::optional<AppPalette> appPaletteFromRawValue(std::string_view text);
QString title(AppPalette palette);
QString subtitle(AppPalette palette);
/// The colour that stands for the palette in a list. Only that of the default palette differs
/// between a dark and a light window.
Color swatch(AppPalette palette, bool dark);

} // namespace quorvane
