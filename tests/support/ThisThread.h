// SPDX-License-Identifier: MIT
#pragma once

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <compare>

namespace quorvane {

/// How the calling thread stands against others. Linux alone.
struct ThreadPriorityState
{
    int nice = 0;       ///< -20 to 19, the last for what yields to all
    long diskClass = 0; ///< 3 for what the disk serves when it is idle

    friend auto operator<=>(const ThreadPriorityState&, const ThreadPriorityState&) = default;
};

inline ThreadPriorityState priorityOfThisThread()
{
    // ioprio_get(2) has no wrapper and no exported header.
    constexpr int whoProcess = 1;
    constexpr int classShift = 13;
    return {getpriority(PRIO_PROCESS, static_cast<id_t>(gettid())),
            syscall(SYS_ioprio_get, whoProcess, gettid()) >> classShift};
}

} // namespace quorvane
