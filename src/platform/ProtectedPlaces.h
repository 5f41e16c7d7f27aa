// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

namespace quorvane {

/// Whether the entry belongs to the installed system: it lies at or below a folder of programs and
/// libraries, or it is a top folder that the system cannot do without. By the bytes of an absolute
/// path alone; whoever may have reached it through a link asks for the real path as well. Any
/// thread.
bool isProtectedPlace(const FilePath& path);

} // namespace quorvane
