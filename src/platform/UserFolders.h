// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <optional>

namespace quorvane {

/// Folders that the desktop keeps for the user's files.
enum class UserFolder {
    downloads,
    desktop,
    documents,
    screenshots ///< where the desktop puts the screenshots that it takes
};

/// The path of such a folder, whether it exists or not; the one for screenshots only where it
/// exists. Absent where the desktop names none. Reads the desktop's settings; for screenshots any
/// thread but the main one, as it asks the disk.
std::optional<FilePath> userFolder(UserFolder folder);

} // namespace quorvane
