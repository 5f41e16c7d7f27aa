// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "TreePlan.h"

#include <optional>
#include <string>

namespace quorvane {

/// Makes a tree on disk: the same names, sizes, links and dates for the same shape. Most files are
/// holes; about a quarter holds a block or more. The destination must not exist or be an empty
/// folder, its parent must exist. Returns a message on failure, what was made until then is left.
/// Blocks; uses a few threads of its own.
std::optional<std::string> generateTree(const FilePath& destination, const TreeShape& shape);

} // namespace quorvane
