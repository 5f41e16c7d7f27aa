// SPDX-License-Identifier: MIT
#pragma once

#include "Command.h"

namespace quorvane {

extern const Command picturesCommand;

} // namespace quorvane
