// SPDX-License-Identifier: MIT
#include "ProcessMemory.h"

#include <unistd.h>

#include <fstream>

namespace quorvane {

std::int64_t residentBytes()
{
    std::ifstream statm("/proc/self/statm");
    std::int64_t pages = 0;
    std::int64_t residentPages = 0;
    statm >> pages >> residentPages;
    return residentPages * sysconf(_SC_PAGESIZE);
}

} // namespace quorvane
