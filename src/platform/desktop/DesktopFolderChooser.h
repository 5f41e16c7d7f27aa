// SPDX-License-Identifier: MIT
#pragma once

#include "FolderChooser.h"

#include <memory>

namespace quorvane {

/// The folder chooser of the desktop that the program runs on, and the toolkit's where that has
/// none.
std::unique_ptr<FolderChooser> makeDesktopFolderChooser();

} // namespace quorvane
