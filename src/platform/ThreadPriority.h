// SPDX-License-Identifier: MIT
#pragma once

namespace quorvane {

/// Gives the calling thread the lowest processor priority and the idle disk class, so that its work
/// yields to everything else. Has no effect where the system refuses.
void lowerThisThread();

/// Raises the number of descriptors that the process may hold to what the system allows it, at most
/// 65536: a deep walk keeps many folders open. Called once at start-up.
void raiseDescriptorLimit();

} // namespace quorvane
