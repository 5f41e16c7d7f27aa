// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <string_view>

namespace quorvane {

/// Writes and removes the files that the program keeps for itself, in folders of its own. Names
/// are single components. Any thread; a call blocks as long as the disk does.
class StoredFiles
{
public:
    virtual ~StoredFiles() = default;

    /// Makes the folder and its parents, for the user alone, where they are missing.
    virtual bool makeFolder(const FilePath& folder) = 0;
    /// Puts a file of these bytes in the place of what has the name. Until all of it is on the disk
    /// it has the name "{name}.partial": whatever ends the program or the machine in between, the
    /// name stands for the old bytes or for the new ones.
    virtual bool save(const FilePath& folder, std::string_view name, std::string_view bytes) = 0;
    /// Removes the regular file of that name for good; never anything else.
    virtual bool remove(const FilePath& folder, std::string_view name) = 0;

    /// The system's own calls; lives as long as the process.
    static StoredFiles& system();
};

} // namespace quorvane
