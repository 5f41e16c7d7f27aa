// SPDX-License-Identifier: MIT
#pragma once

#include "Command.h"

namespace quorvane {

/// Reviews a large result of a search for duplicates in the window and tells what that takes.
extern const Command reviewCommand;

} // namespace quorvane
