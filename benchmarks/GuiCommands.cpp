// SPDX-License-Identifier: MIT
#include "Command.h"
#include "PaintCommand.h"

namespace quorvane {

std::span<const Command> guiCommands()
{
    return {&paintCommand, 1};
}

} // namespace quorvane
