// SPDX-License-Identifier: MIT
#pragma once

#include "Command.h"

namespace quorvane {

/// Opens the real window on a scan and times what the user waits for.
extern const Command windowCommand;

} // namespace quorvane
