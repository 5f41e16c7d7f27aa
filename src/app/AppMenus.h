// SPDX-License-Identifier: MIT
#pragma once

#include "ScreenRegistry.h"

class QMenuBar;

namespace quorvane {

class AppState;

/// Fills the menu bar of a window with the program's commands. A command that leads to a section is
/// there when the section has a screen. Main thread.
void addAppMenus(QMenuBar& menuBar, AppState& state, const SectionScreens& sections);

} // namespace quorvane
