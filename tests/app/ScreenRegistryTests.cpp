// SPDX-License-Identifier: MIT
#include "AppState.h"
#include "FakePlatform.h"
#include "ScreenRegistry.h"

#include <gtest/gtest.h>

#include <QWidget>

#include <memory>

namespace quorvane {
namespace {

ScreenFactory named(const char* name)
{
    return [name](AppState&, QWidget* parent) {
        auto* const screen = new QWidget(parent);
        screen->setObjectName(QLatin1String(name));
        return screen;
    };
}

TEST(ScreenRegistry, ListsItsKeysInTheOrderOfTheEnumeration)
{
    VisualizerScreens screens;
    screens.add(VisualizerType::mindMap, named("mindMap"));
    screens.add(VisualizerType::folders, named("folders"));
    screens.add(VisualizerType::treemap, named("treemap"));
    const std::vector<VisualizerType> expected{VisualizerType::folders, VisualizerType::treemap,
                                               VisualizerType::mindMap};
    EXPECT_EQ(screens.keys(), expected);
}

TEST(ScreenRegistry, MakesTheScreenOfAKeyAsAChildOfTheParent)
{
    FakePlatform platform;
    AppState state(platform.platform());
    QWidget parent;
    SectionScreens screens;
    screens.add(AppSection::monitor, named("old"));
    screens.add(AppSection::monitor, named("monitor"));
    ASSERT_TRUE(screens.contains(AppSection::monitor));
    QWidget* const made = screens.make(AppSection::monitor, state, &parent);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->objectName(), QStringLiteral("monitor"));
    EXPECT_EQ(made->parentWidget(), &parent);
}

TEST(ScreenRegistry, HasNothingForAKeyThatWasNotAdded)
{
    FakePlatform platform;
    AppState state(platform.platform());
    const SectionScreens screens;
    EXPECT_FALSE(screens.contains(AppSection::cleanup));
    EXPECT_EQ(screens.make(AppSection::cleanup, state, nullptr), nullptr);
    EXPECT_TRUE(screens.keys().empty());
}

} // namespace
} // namespace quorvane
