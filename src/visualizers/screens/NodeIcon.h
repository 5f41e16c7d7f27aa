// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"

#include <QIcon>

namespace quorvane {

/// The icon that the desktop's theme has for the node, told by kind and name alone: nothing is
/// asked of the node's own disk. Null where the theme has none. Main thread.
QIcon themeIconOf(const FileNode& node);

} // namespace quorvane
