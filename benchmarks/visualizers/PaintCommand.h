// SPDX-License-Identifier: MIT
#pragma once

#include "Command.h"

namespace quorvane {

/// Lays out and paints the treemap into pictures, without a window.
extern const Command paintCommand;

} // namespace quorvane
