// SPDX-License-Identifier: MIT
#include "AppSection.h"

#include <cstddef>

namespace quorvane {
namespace {

struct Row
{
    const char* rawValue;
    const char* title;
    const char* systemImage;
    bool needsScan;
};

constexpr std::array<Row, allAppSections.size()> rows{{
    {"analysis", "Analysis", "chart.pie", false},
    {"search", "Folder Search", "magnifyingglass", true},
    {"tagging", "Tagging", "tag", true},
    {"screenshotRename", "Screenshot Rename", "viewfinder", false},
    {"cleanup", "Cleanup", "trash", true},
    {"duplicates", "Duplicates", "rectangle.on.rectangle.angled", true},
    {"uninstaller", "App Uninstaller", "app.dashed", false},
    {"quickWins", "Quick Wins", "bolt", true},
    {"snapshots", "Snapshots", "clock.arrow.circlepath", false},
    {"monitor", "Monitor", "gauge", false},
    {"devCacheCleaner", "Dev Cache Cleaner", "wrench.and.screwdriver", false},
    {"settings", "Settings", "gearshape", false},
}};

const Row& rowOf(AppSection section)
{
    return rows[static_cast<std::size_t>(section)];
}

} // namespace

const std::array<ToolSection, 10> ToolSection::items{{{AppSection::quickWins},
                                                      {AppSection::duplicates},
                                                      {AppSection::uninstaller},
                                                      {AppSection::snapshots},
                                                      {AppSection::cleanup},
                                                      {AppSection::devCacheCleaner},
                                                      {AppSection::search},
                                                      {AppSection::monitor},
                                                      {AppSection::tagging},
                                                      {AppSection::screenshotRename}}};

std::string_view rawValue(AppSection section)
{
    return rowOf(section).rawValue;
}

std::optional<AppSection> appSectionFromRawValue(std::string_view text)
{
    for (const AppSection section : allAppSections) {
        if (rawValue(section) == text) {
            return section;
        }
    }
    return std::nullopt;
}

QString title(AppSection section)
{
    return QString::fromLatin1(rowOf(section).title);
}

QString systemImage(AppSection section)
{
    return QString::fromLatin1(rowOf(section).systemImage);
}

bool needsScan(AppSection section)
{
    return rowOf(section).needsScan;
}

} // namespace quorvane
