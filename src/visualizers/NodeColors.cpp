// SPDX-License-Identifier: MIT
#include "NodeColors.h"

#include "FileNode.h"

#include <atomic>

namespace quorvane {
namespace {

std::atomic<AppPalette> currentPalette{initialPalette};

using Hues = std::array<double, NodeColors::tileCount>;

/// In the order of the cases; slate has no row.
constexpr std::array<Hues, 5> palettes{{
    {0.03, 0.1, 0.21, 0.36, 0.5, 0.6, 0.71, 0.88},
    {0.06, 0.12, 0.18, 0.25, 0.33, 0.41, 0.07, 0.5},
    {0.5, 0.55, 0.58, 0.62, 0.66, 0.7, 0.52, 0.72},
    {0.58, 0.64, 0.7, 0.75, 0.8, 0.85, 0.62, 0.72},
    {0.15, 0.28, 0.42, 0.55, 0.68, 0.82, 0.95, 0.05},
}};

constexpr double folderSaturation = 0.55;
constexpr double folderBrightness = 0.86;

std::size_t tileOf(std::string_view path)
{
    return static_cast<std::size_t>(NodeColors::hash(path) % NodeColors::tileCount);
}

} // namespace

AppPalette NodeColors::activePalette()
{
    return currentPalette.load(std::memory_order_relaxed);
}

void NodeColors::setActivePalette(AppPalette palette)
{
    currentPalette.store(palette, std::memory_order_relaxed);
}

std::uint64_t NodeColors::hash(std::string_view bytes)
{
    std::uint64_t value = 0xcbf29ce484222325U;
    for (const char c : bytes) {
        value = (value ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
    }
    return value;
}

std::span<const double, NodeColors::tileCount> NodeColors::folderPalette()
{
    const auto row = static_cast<std::size_t>(activePalette());
    return row < palettes.size() ? palettes[row] : palettes.front();
}

double NodeColors::hue(std::string_view path)
{
    return folderPalette()[tileOf(path)];
}

Color NodeColors::folderBase(std::string_view path)
{
    if (activePalette() == AppPalette::slate) {
        return slateTiles[tileOf(path)];
    }
    return Color::hsb(hue(path), folderSaturation, folderBrightness);
}

Color NodeColors::legendColor(FileTypeCategory category)
{
    const CategoryRgb fixed = rgb(category);
    return {fixed.r, fixed.g, fixed.b};
}

std::optional<Color> NodeColors::categoryAccent(std::string_view fileName)
{
    const FileTypeCategory category = fileTypeCategoryForName(fileName);
    if (category == FileTypeCategory::other) {
        return std::nullopt;
    }
    return legendColor(category);
}

Color NodeColors::leafColor(const FileNode& node)
{
    if (node.isDirectory()) {
        return folderBase(node.path().bytes());
    }
    return categoryAccent(node.name()).value_or(genericFileColor);
}

Color NodeColors::boundaryColor()
{
    if (activePalette() == AppPalette::slate) {
        return {0.03, 0.035, 0.04};
    }
    return {0, 0, 0, 0.28};
}

Color NodeColors::lightened(const Color& color, double fraction)
{
    const Color from = color.isValid() ? color : Color::white();
    const double kept = 1 - fraction;
    return {kept * from.r + fraction, kept * from.g + fraction, kept * from.b + fraction};
}

Color NodeColors::darkened(const Color& color, double fraction)
{
    const Color from = color.isValid() ? color : Color::white();
    const double kept = 1 - fraction;
    return {kept * from.r, kept * from.g, kept * from.b};
}

std::optional<Color> NodeColors::canvasWash()
{
    switch (activePalette()) {
    case AppPalette::forest:
        return Color::hsb(0.28, 0.18, 0.93);
    case AppPalette::ocean:
        return Color::hsb(0.58, 0.16, 0.95);
    case AppPalette::midnight:
        return Color::hsb(0.72, 0.14, 0.94);
    case AppPalette::aurora:
        return Color::hsb(0.8, 0.12, 0.97);
    case AppPalette::slate:
        return Color{0.063, 0.071, 0.082};
    case AppPalette::defaultHues:
        break;
    }
    return std::nullopt;
}

Color NodeColors::shellTint(AppPalette palette)
{
    switch (palette) {
    case AppPalette::forest:
        return Color::hsb(0.32, 0.42, 0.5);
    case AppPalette::ocean:
        return Color::hsb(0.56, 0.42, 0.58);
    case AppPalette::midnight:
        return Color::hsb(0.7, 0.4, 0.56);
    case AppPalette::aurora:
        return Color::hsb(0.82, 0.44, 0.62);
    case AppPalette::slate:
        return {0.22, 0.3, 0.42};
    case AppPalette::defaultHues:
        break;
    }
    return Color::clear();
}

} // namespace quorvane
