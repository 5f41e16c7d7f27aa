// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace quorvane {

/// Bytes of this process that are in memory now (proc(5), statm).
std::int64_t residentBytes();

/// The most bytes of this process that were in memory at once since the start, or since the last
/// forgetPeakResidentBytes().
std::int64_t peakResidentBytes();
/// Begins peakResidentBytes() anew from what is in memory now.
void forgetPeakResidentBytes();

} // namespace quorvane
