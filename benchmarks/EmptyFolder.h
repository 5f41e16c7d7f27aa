// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <string>
#include <variant>

namespace quorvane {

/// Opens a folder in which nothing is yet, and makes it if it does not exist; its parent must. A
/// descriptor that the caller closes, or a message.
std::variant<int, std::string> openEmptyFolder(const FilePath& folder);

} // namespace quorvane
