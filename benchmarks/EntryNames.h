// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

namespace quorvane {

class SeededRandom;

/// A name for the file at that place in its folder: 15.5 bytes in the mean, different for every
/// place, some hidden, some with letters beyond ASCII, with extensions of every kind.
std::string generatedFileName(SeededRandom& random, std::size_t place);
/// A name for the subfolder at that place in its folder; never equal to a file's. At the top of the
/// tree the first places have the names of a home folder.
std::string generatedFolderName(SeededRandom& random, std::size_t place, bool isAtTop);

} // namespace quorvane
