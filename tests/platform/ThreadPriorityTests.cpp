// SPDX-License-Identifier: MIT
#include "ThreadPriority.h"

#include "UnprivilegedRun.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <thread>

namespace quorvane {
namespace {

int niceOfThisThread()
{
    return getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()));
}

/// The disk class of the calling thread, 3 for idle.
long diskClassOfThisThread()
{
    constexpr int whoProcess = 1;
    constexpr int classShift = 13;
    return syscall(SYS_ioprio_get, whoProcess, gettid()) >> classShift;
}

TEST(ThreadPriority, LoweredThreadYieldsAndTheOthersStay)
{
    const int before = niceOfThisThread();
    int lowered = 0;
    long diskClass = 0;
    std::thread thread([&] {
        lowerThisThread();
        lowered = niceOfThisThread();
        diskClass = diskClassOfThisThread();
    });
    thread.join();
    EXPECT_EQ(lowered, 19);
    EXPECT_EQ(diskClass, 3);
    EXPECT_EQ(niceOfThisThread(), before);
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
