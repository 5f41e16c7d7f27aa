// SPDX-License-Identifier: MIT
#pragma once

#include "Arguments.h"

#include <span>
#include <string_view>

namespace quorvane {

/// What the program ends with.
enum ExitCode : int { exitSuccess = 0, exitFailure = 1, exitUsage = 2 };

/// One word that the program understands.
struct Command
{
    std::string_view name;
    std::string_view synopsis; ///< what follows the name, for the help text
    std::string_view summary;
    std::span<const OptionRule> options;
    /// Returns an ExitCode. Results go to standard output, messages to standard error.
    int (*run)(const Arguments&);
};

extern const Command treeCommand;
extern const Command scanCommand;
extern const Command dumpCommand;
extern const Command treemapCommand;
extern const Command layoutCommand;
extern const Command duplicatesCommand;
extern const Command corpusCommand;
extern const Command tagCommand;
extern const Command queryCommand;
extern const Command indexCommand;
extern const Command findCommand;
extern const Command classifyCommand;
extern const Command formatCommand;
extern const Command folderSearchCommand;
extern const Command processesCommand;
extern const Command machineTextsCommand;
extern const Command machineCommand;
extern const Command screenshotNamesCommand;
extern const Command screenshotsCommand;
extern const Command trashCommand;
extern const Command snapshotCommand;
extern const Command quickWinsCommand;
extern const Command devCachesCommand;
extern const Command applicationsCommand;
extern const Command directoryBytesCommand;

/// The commands that draw. Empty in a build without the GUI modules.
std::span<const Command> guiCommands();

/// Prints "quorvane-bench: {message}" on standard error and returns the code.
int complain(std::string_view message, ExitCode code);

} // namespace quorvane
