// SPDX-License-Identifier: MIT
#pragma once

#include "CorpusPlan.h"
#include "FilePath.h"

#include <optional>
#include <string>

namespace quorvane {

/// Makes a folder with duplicates on disk: the same paths, contents, links and dates for the same
/// shape. The destination must not exist or be an empty folder, its parent must exist. Returns a
/// message on failure, what was made until then is left. Blocks; uses a few threads of its own.
std::optional<std::string> generateCorpus(const FilePath& destination, const CorpusShape& shape);

} // namespace quorvane
