// SPDX-License-Identifier: MIT
#include "CheckedMath.h"

#include <cstdio>
#include <cstdlib>

namespace quorvane {

void overflowFault(const char* place)
{
    std::fprintf(stderr, "Quorvane: byte sum overflows in %s\n", place);
    std::abort();
}

} // namespace quorvane
