// SPDX-License-Identifier: MIT
#include "Command.h"
#include "MonitorCommand.h"
#include "OutlineCommand.h"
#include "OverlayCommand.h"
#include "PaintCommand.h"
#include "PicturesCommand.h"
#include "ReviewCommand.h"
#include "WindowCommand.h"

#include <array>

namespace quorvane {

std::span<const Command> guiCommands()
{
    static const std::array commands{monitorCommand,  outlineCommand, overlayCommand, paintCommand,
                                     picturesCommand, reviewCommand,  windowCommand};
    return commands;
}

} // namespace quorvane
