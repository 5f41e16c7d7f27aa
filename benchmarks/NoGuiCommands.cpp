// SPDX-License-Identifier: MIT
#include "Command.h"

namespace quorvane {

std::span<const Command> guiCommands()
{
    return {};
}

} // namespace quorvane
