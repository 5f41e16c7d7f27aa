// SPDX-License-Identifier: MIT
#pragma once

#include "Command.h"

namespace quorvane {

/// Opens the two outlines of a tree off screen and tells what that takes.
extern const Command outlineCommand;

} // namespace quorvane
