// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

namespace quorvane {

/// The desktop around the program. Main thread; every call returns at once and fails in silence
/// when the desktop does not answer.
class Workspace
{
public:
    virtual ~Workspace() = default;

    /// Opens the file manager with the entry selected.
    virtual void reveal(const FilePath& path) = 0;
    /// Opens the entry in its default application.
    virtual void open(const FilePath& path) = 0;
};

} // namespace quorvane
