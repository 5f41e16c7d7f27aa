// SPDX-License-Identifier: MIT
#include "ThreadPriority.h"

#include <sys/resource.h>

#include <algorithm>
#include <climits>

namespace quorvane {

void lowerThisThread()
{
    setpriority(PRIO_DARWIN_THREAD, 0, PRIO_DARWIN_BG);
    setiopolicy_np(IOPOL_TYPE_DISK, IOPOL_SCOPE_THREAD, IOPOL_THROTTLE);
}

void raiseDescriptorLimit()
{
    // setrlimit(2) refuses more than OPEN_MAX here, whatever the hard limit says.
    constexpr rlim_t enough = OPEN_MAX;
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur < enough) {
        limit.rlim_cur = std::min(limit.rlim_max, enough);
        setrlimit(RLIMIT_NOFILE, &limit);
    }
}

} // namespace quorvane
