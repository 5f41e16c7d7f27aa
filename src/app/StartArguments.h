// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

/// What the command line asks for.
struct StartArguments
{
    enum class Action { run, showHelp, showVersion, reportUsage };

    Action action = Action::run;
    /// Folder to scan at the start; absolute. Absent opens the welcome screen.
    std::optional<FilePath> folder;
    /// Whether the floating search is to open.
    bool opensSearch = false;
    /// What is wrong with the command line when action is reportUsage.
    std::string problem;

    /// Reads the arguments behind the program's name: at most one folder, as a path or as a file
    /// URL. A relative path starts at workingFolder. Bytes stay as they are.
    static StartArguments parse(const std::vector<std::string_view>& arguments,
                                const FilePath& workingFolder);
    static std::string usage();
};

} // namespace quorvane
