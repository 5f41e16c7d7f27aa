// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace quorvane {

/// Bytes of this process that are in memory now (proc(5), statm).
std::int64_t residentBytes();

} // namespace quorvane
