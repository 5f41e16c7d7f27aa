// SPDX-License-Identifier: MIT
#include "Command.h"
#include "OutlineCommand.h"
#include "OverlayCommand.h"
#include "PaintCommand.h"
#include "ReviewCommand.h"
#include "WindowCommand.h"

#include <array>

namespace quorvane {

std::span<const Command> guiCommands()
{
    static const std::array commands{outlineCommand, overlayCommand, paintCommand, reviewCommand,
                                     windowCommand};
    return commands;
}

} // namespace quorvane
