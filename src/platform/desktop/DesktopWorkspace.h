// SPDX-License-Identifier: MIT
#pragma once

#include "Workspace.h"

#include <memory>

namespace quorvane {

/// The workspace of the desktop that the program runs on.
std::unique_ptr<Workspace> makeDesktopWorkspace();

} // namespace quorvane
