// SPDX-License-Identifier: MIT
#include "Refresher.h"
#include "WaitFor.h"

#include <gtest/gtest.h>

namespace quorvane {
namespace {

struct Screen
{
    QObject owner;
    QProperty<int> first{0};
    QProperty<int> second{0};
    int refreshes = 0;
    Refresher* refresher = new Refresher(&owner, [this] { ++refreshes; });

    Screen() { refresher->watch(first, second); }
};

TEST(Refresher, SeveralChangesOfOneEventLeadToOneRefresh)
{
    Screen screen;
    screen.first = 1;
    screen.second = 2;
    screen.first = 3;
    EXPECT_EQ(screen.refreshes, 0);
    EXPECT_TRUE(waitFor([&] { return screen.refreshes > 0; }));
    EXPECT_EQ(screen.refreshes, 1);
}

TEST(Refresher, ALaterChangeLeadsToAnotherRefresh)
{
    Screen screen;
    screen.first = 1;
    ASSERT_TRUE(waitFor([&] { return screen.refreshes == 1; }));
    screen.second = 1;
    EXPECT_TRUE(waitFor([&] { return screen.refreshes == 2; }));
}

TEST(Refresher, AnEqualValueIsNoChange)
{
    Screen screen;
    screen.first = 0;
    screen.refresher->schedule();
    ASSERT_TRUE(waitFor([&] { return screen.refreshes == 1; }));
    screen.first = 0;
    bool turned = false;
    QMetaObject::invokeMethod(
        &screen.owner, [&turned] { turned = true; }, Qt::QueuedConnection);
    ASSERT_TRUE(waitFor([&] { return turned; }));
    EXPECT_EQ(screen.refreshes, 1);
}

TEST(Refresher, RefreshingNowDropsWhatWasScheduled)
{
    Screen screen;
    screen.first = 1;
    screen.refresher->refreshNow();
    EXPECT_EQ(screen.refreshes, 1);
    bool turned = false;
    QMetaObject::invokeMethod(
        &screen.owner, [&turned] { turned = true; }, Qt::QueuedConnection);
    ASSERT_TRUE(waitFor([&] { return turned; }));
    EXPECT_EQ(screen.refreshes, 1);
}

} // namespace
} // namespace quorvane
