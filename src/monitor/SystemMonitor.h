// SPDX-License-Identifier: MIT
#pragma once

#include "DriveSample.h"
#include "FilePath.h"

namespace quorvane {

class FileSystemCalls;

/// Readings of the machine. Any thread; each call asks the system anew.
struct SystemMonitor
{
    /// Capacity of the volume that holds the folder above url (statvfs(3): blocks, and blocks open
    /// to the user). Zeros when it cannot be read.
    static DriveSample driveUsage(FileSystemCalls& calls, const FilePath& url);
};

} // namespace quorvane
