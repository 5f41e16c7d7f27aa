// SPDX-License-Identifier: MIT
#include "AppSection.h"

#include <gtest/gtest.h>

#include <vector>

namespace quorvane {
namespace {

struct Row
{
    AppSection section;
    const char* rawValue;
    const char* title;
    const char* systemImage;
    bool needsScan;
};

const std::vector<Row> rows{
    {AppSection::analysis, "analysis", "Analysis", "chart.pie", false},
    {AppSection::search, "search", "Folder Search", "magnifyingglass", true},
    {AppSection::tagging, "tagging", "Tagging", "tag", true},
    {AppSection::screenshotRename, "screenshotRename", "Screenshot Rename", "viewfinder", false},
    {AppSection::cleanup, "cleanup", "Cleanup", "trash", true},
    {AppSection::duplicates, "duplicates", "Duplicates", "rectangle.on.rectangle.angled", true},
    {AppSection::uninstaller, "uninstaller", "App Uninstaller", "app.dashed", false},
    {AppSection::quickWins, "quickWins", "Quick Wins", "bolt", true},
    {AppSection::snapshots, "snapshots", "Snapshots", "clock.arrow.circlepath", false},
    {AppSection::monitor, "monitor", "Monitor", "gauge", false},
    {AppSection::devCacheCleaner, "devCacheCleaner", "Dev Cache Cleaner", "wrench.and.screwdriver",
     false},
    {AppSection::settings, "settings", "Settings", "gearshape", false}};

TEST(AppSection, TableIsComplete)
{
    ASSERT_EQ(allAppSections.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const Row& row = rows[i];
        EXPECT_EQ(allAppSections[i], row.section);
        EXPECT_EQ(rawValue(row.section), row.rawValue);
        EXPECT_EQ(appSectionFromRawValue(row.rawValue), row.section);
        EXPECT_EQ(title(row.section), QLatin1String(row.title));
        EXPECT_EQ(systemImage(row.section), QLatin1String(row.systemImage));
        EXPECT_EQ(needsScan(row.section), row.needsScan);
    }
}

TEST(AppSection, OtherTextIsNoSection)
{
    EXPECT_EQ(appSectionFromRawValue(""), std::nullopt);
    EXPECT_EQ(appSectionFromRawValue("Analysis"), std::nullopt);
    EXPECT_EQ(appSectionFromRawValue("analysis "), std::nullopt);
}

TEST(ToolSection, RowsStandInTheOrderOfTheSidebar)
{
    const std::vector<AppSection> expected{AppSection::quickWins,   AppSection::duplicates,
                                           AppSection::uninstaller, AppSection::snapshots,
                                           AppSection::cleanup,     AppSection::devCacheCleaner,
                                           AppSection::search,      AppSection::monitor,
                                           AppSection::tagging,     AppSection::screenshotRename};
    std::vector<AppSection> actual;
    for (const ToolSection& tool : ToolSection::items) {
        actual.push_back(tool.section);
    }
    EXPECT_EQ(actual, expected);
}

} // namespace
} // namespace quorvane
