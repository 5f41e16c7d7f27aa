// SPDX-License-Identifier: MIT
#include "ThreadPriority.h"

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>

namespace quorvane {
namespace {

// ioprio_set(2) has no wrapper and no exported header.
constexpr int ioprioWhoProcess = 1;
constexpr int ioprioClassIdle = 3;
constexpr int ioprioClassShift = 13;
constexpr int lowestNice = 19;

} // namespace

void lowerThisThread()
{
    const auto thread = static_cast<id_t>(gettid());
    setpriority(PRIO_PROCESS, thread, lowestNice);
    syscall(SYS_ioprio_set, ioprioWhoProcess, thread, ioprioClassIdle << ioprioClassShift);
}

void raiseDescriptorLimit()
{
    constexpr rlim_t enough = 65536;
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur < enough) {
        limit.rlim_cur = std::min(limit.rlim_max, enough);
        setrlimit(RLIMIT_NOFILE, &limit);
    }
}

} // namespace quorvane
