// SPDX-License-Identifier: MIT
#include "Command.h"
#include "PaintCommand.h"
#include "WindowCommand.h"

#include <array>

namespace quorvane {

std::span<const Command> guiCommands()
{
    static const std::array commands{paintCommand, windowCommand};
    return commands;
}

} // namespace quorvane
