// SPDX-License-Identifier: MIT
#include "ProcessMemory.h"

#include <unistd.h>

#include <fstream>
#include <limits>
#include <string>

namespace quorvane {

std::int64_t residentBytes()
{
    std::ifstream statm("/proc/self/statm");
    std::int64_t pages = 0;
    std::int64_t residentPages = 0;
    statm >> pages >> residentPages;
    return residentPages * sysconf(_SC_PAGESIZE);
}

std::int64_t peakResidentBytes()
{
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word) {
        if (word == "VmHWM:") {
            std::int64_t kilobytes = 0;
            status >> kilobytes;
            return kilobytes * 1024;
        }
        status.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    }
    return 0;
}

void forgetPeakResidentBytes()
{
    // proc(5), clear_refs: 5 resets the peak to the current size.
    std::ofstream("/proc/self/clear_refs") << 5;
}

} // namespace quorvane
