// SPDX-License-Identifier: MIT
#include "ThreadPriority.h"

#include "ThisThread.h"
#include "UnprivilegedRun.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <algorithm>
#include <thread>

namespace quorvane {
namespace {

TEST(ThreadPriority, LoweredThreadYieldsAndTheOthersStay)
{
    const ThreadPriorityState before = priorityOfThisThread();
    ThreadPriorityState lowered;
    std::thread thread([&] {
        lowerThisThread();
        lowered = priorityOfThisThread();
    });
    thread.join();
    EXPECT_EQ(lowered, (ThreadPriorityState{19, 3}));
    EXPECT_EQ(priorityOfThisThread(), before);
}

TEST(ThreadPriority, DescriptorLimitGoesUpToWhatIsAllowed)
{
    inChildProcess([] {
        rlimit limit = {};
        ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
        limit.rlim_cur = 64;
        ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
        raiseDescriptorLimit();
        ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
        EXPECT_EQ(limit.rlim_cur, std::min<rlim_t>(limit.rlim_max, 65536));
    });
}

TEST(ThreadPriority, DescriptorLimitThatIsHighEnoughStays)
{
    inChildProcess([] {
        rlimit limit = {};
        ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
        limit.rlim_cur = limit.rlim_max;
        ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
        raiseDescriptorLimit();
        rlimit after = {};
        ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &after), 0);
        EXPECT_EQ(after.rlim_cur, limit.rlim_cur);
    });
}

} // namespace
} // namespace quorvane
