// SPDX-License-Identifier: MIT
#pragma once

#include "GlobalHotKey.h"
#include "ProgramInstance.h"
#include "WindowSystem.h"

#include <memory>

namespace quorvane {

/// Those of the desktop that the application object is connected to. They end before it does.
std::unique_ptr<GlobalHotKey> makeDesktopHotKey();
std::unique_ptr<WindowSystem> makeWindowSystem();
std::unique_ptr<ProgramInstance> makeProgramInstance();

/// The token by which the desktop lets this process come to the front; empty without one. To be
/// read before the application object is made, which takes it away.
std::string startActivationToken();

} // namespace quorvane
