// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <string_view>
#include <vector>

namespace quorvane {

/// The folders that Steam keeps games in, from the text of its "libraryfolders.vdf" (Valve's
/// KeyValues format: quoted keys and values, values in braces, "//" comments): the value of each
/// "path", and of each number in files of before 2021, where it is an absolute path without "."
/// and "..". In the order of the file, each once. Any text will do. Any thread.
std::vector<FilePath> steamLibrariesIn(std::string_view text);

} // namespace quorvane
