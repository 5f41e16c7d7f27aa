// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <array>
#include <optional>
#include <string_view>

namespace quorvane {

/// What the detail area shows.
enum class AppSection {
    analysis,
    search,
    tagging,
    screenshotRename,
    cleanup,
    duplicates,
    uninstaller,
    quickWins,
    snapshots,
    monitor,
    devCacheCleaner,
    settings
};

inline constexpr std::array allAppSections{
    AppSection::analysis,         AppSection::search,          AppSection::tagging,
    AppSection::screenshotRename, AppSection::cleanup,         AppSection::duplicates,
    AppSection::uninstaller,      AppSection::quickWins,       AppSection::snapshots,
    AppSection::monitor,          AppSection::devCacheCleaner, AppSection::settings};

/// For example "quickWins".
std::string_view rawValue(AppSection section);
std::optional<AppSection> appSectionFromRawValue(std::string_view text);
QString title(AppSection section);
/// Name of the symbol that stands for it.
QString systemImage(AppSection section);
/// Whether the section shows a prompt until a tree exists.
bool needsScan(AppSection section);

/// A row of the sidebar's tools.
struct ToolSection
{
    AppSection section;

    /// In the order of the sidebar.
    static const std::array<ToolSection, 10> items;
};

} // namespace quorvane
