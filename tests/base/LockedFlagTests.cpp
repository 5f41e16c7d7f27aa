// SPDX-License-Identifier: MIT
#include "LockedFlag.h"

#include <gtest/gtest.h>

#include <thread>

namespace quorvane {
namespace {

TEST(LockedFlag, StartsUnset)
{
    EXPECT_FALSE(LockedFlag().get());
}

TEST(LockedFlag, CanBeSetAndCleared)
{
    LockedFlag flag;
    flag.set(true);
    EXPECT_TRUE(flag.get());
    flag.set(false);
    EXPECT_FALSE(flag.get());
}

TEST(LockedFlag, StopsAJobThatPollsItAndShowsWhatWasWrittenBefore)
{
    LockedFlag stop;
    int reason = 0;
    int seen = 0;
    std::thread job([&] {
        while (!stop.get()) {
            std::this_thread::yield();
        }
        seen = reason;
    });
    reason = 7;
    stop.set(true);
    job.join();
    EXPECT_EQ(seen, 7);
}

} // namespace
} // namespace quorvane
