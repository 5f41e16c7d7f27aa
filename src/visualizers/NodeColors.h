// SPDX-License-Identifier: MIT
#pragma once

#include "AppPalette.h"
#include "Color.h"
#include "FileTypeCategory.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace quorvane {

class FileNode;

/// The one place where a node gets its colour: a file by what it is, a folder by a stable hash of
/// its path, so that it keeps its colour between scans and between visualisers. Any thread.
struct NodeColors
{
    static constexpr std::size_t tileCount = 8;
    /// A file of no known kind.
    static constexpr Color genericFileColor{0.4, 0.5, 0.66};
    /// Folders of the slate palette.
    static constexpr std::array<Color, tileCount> slateTiles{{{0.24, 0.35, 0.5},
                                                              {0.29, 0.49, 0.35},
                                                              {0.49, 0.42, 0.35},
                                                              {0.22, 0.25, 0.32},
                                                              {0.29, 0.33, 0.39},
                                                              {0.29, 0.36, 0.42},
                                                              {0.54, 0.58, 0.64},
                                                              {0.18, 0.23, 0.31}}};

    /// The user's palette, for the whole process. Read on every computation of a colour; the
    /// layouts do not depend on it. Set on the main thread.
    static AppPalette activePalette();
    static void setActivePalette(AppPalette palette);

    /// FNV-1a over the bytes as they are, 64 bits.
    static std::uint64_t hash(std::string_view bytes);
    /// Eight hues of the active palette, from 0 to 1; the default ones for a palette without hues.
    static std::span<const double, tileCount> folderPalette();
    static double hue(std::string_view path);
    /// A folder's colour from the bytes of its full path.
    static Color folderBase(std::string_view path);
    static Color legendColor(FileTypeCategory category);
    /// The colour of a file name's category; absent for `other`.
    static std::optional<Color> categoryAccent(std::string_view fileName);
    static Color leafColor(const FileNode& node);
    /// The line between tiles.
    static Color boundaryColor();

    /// Each channel moved towards white or black by the fraction, 0 to 1. Opaque. A colour that is
    /// not valid counts as white.
    static Color lightened(const Color& color, double fraction);
    static Color darkened(const Color& color, double fraction);

    /// The ground behind a visualiser; absent stands for the desktop's own ground of text.
    static std::optional<Color> canvasWash();
    /// A tint over the whole window. Clear for the default palette.
    static Color shellTint(AppPalette palette);
};

} // namespace quorvane
