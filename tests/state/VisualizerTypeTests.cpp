// SPDX-License-Identifier: MIT
#include "VisualizerType.h"

#include <gtest/gtest.h>

#include <vector>

namespace quorvane {
namespace {

struct Row
{
    VisualizerType type;
    const char* title;
    const char* systemImage;
};

const std::vector<Row> rows{
    {VisualizerType::folders, "Folders", "folder"},
    {VisualizerType::treemap, "Treemap", "square.grid.3x3"},
    {VisualizerType::list, "List", "list.bullet.rectangle"},
    {VisualizerType::topSizes, "Top Sizes", "list.number"},
    {VisualizerType::ageMap, "Age Map", "calendar"},
    {VisualizerType::sunburst, "Sunburst", "circle.hexagongrid"},
    {VisualizerType::flame, "Flame", "flame"},
    {VisualizerType::bubbles, "Bubbles", "bubble.left.and.bubble.right"},
    {VisualizerType::mindMap, "Mind Map", "point.3.connected.trianglepath.dotted"}};

TEST(VisualizerType, NumbersCountFromZeroInTheOrderOfTheTable)
{
    for (std::size_t i = 0; i < allVisualizerTypes.size(); ++i) {
        EXPECT_EQ(static_cast<std::size_t>(allVisualizerTypes[i]), i);
    }
}

TEST(VisualizerType, TheNineOfTheFirstReleaseKeepTheirPlacesAndNames)
{
    ASSERT_GE(allVisualizerTypes.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(allVisualizerTypes[i], rows[i].type);
        EXPECT_EQ(title(rows[i].type), QLatin1String(rows[i].title));
        EXPECT_EQ(systemImage(rows[i].type), QLatin1String(rows[i].systemImage));
    }
}

} // namespace
} // namespace quorvane
