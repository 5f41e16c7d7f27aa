// SPDX-License-Identifier: MIT
#include "Command.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iostream>
#include <string>
#include <variant>
#include <vector>

namespace quorvane {

int complain(std::string_view message, ExitCode code)
{
    std::cerr << "quorvane-bench: " << message << '\n';
    return code;
}

namespace {

std::vector<const Command*> allCommands()
{
    std::vector<const Command*> commands{
        // One on each line, so that two additions do not meet.
        // clang-format off
        &treeCommand,
        &scanCommand,
        &dumpCommand,
        &treemapCommand,
        &layoutCommand,
        &corpusCommand,
        &duplicatesCommand,
        &quickWinsCommand,
        &devCachesCommand,
        &applicationsCommand,
        &directoryBytesCommand,
        &tagCommand,
        &trashCommand,
        &snapshotCommand,
        &processesCommand,
        &machineTextsCommand,
        &machineCommand,
        &screenshotNamesCommand,
        &screenshotsCommand,
        &queryCommand,
        &indexCommand,
        &findCommand,
        &classifyCommand,
        &formatCommand,
        &folderSearchCommand,
        // clang-format on
    };
    for (const Command& command : guiCommands()) {
        commands.push_back(&command);
    }
    return commands;
}

void printHelp(std::ostream& out)
{
    out << "Usage: quorvane-bench COMMAND ...\n"
           "Measures the parts of Quorvane whose speed is promised.\n\n";
    for (const Command* command : allCommands()) {
        out << "  " << command->name << ' ' << command->synopsis << "\n      " << command->summary
            << "\n";
    }
    out << "\nExit status: 0 when all went well, 1 when the work failed, 2 for wrong usage or a\n"
           "malformed dump.\n";
}

bool asksForHelp(std::span<const char* const> words)
{
    const auto end = std::find(words.begin(), words.end(), std::string_view("--"));
    return std::any_of(words.begin(), end,
                       [](std::string_view word) { return word == "--help" || word == "-h"; });
}

int runProgram(std::span<const char* const> words)
{
    if (asksForHelp(words)) {
        printHelp(std::cout);
        return exitSuccess;
    }
    if (words.empty()) {
        printHelp(std::cerr);
        return exitUsage;
    }
    const std::vector<const Command*> commands = allCommands();
    const auto command = std::find_if(commands.begin(), commands.end(), [&](const Command* known) {
        return known->name == words.front();
    });
    if (command == commands.end()) {
        return complain("unknown command " + std::string(words.front()) + "; try --help",
                        exitUsage);
    }
    const Arguments::Result arguments = Arguments::parse(words.subspan(1), (*command)->options);
    if (const std::string* fault = std::get_if<std::string>(&arguments)) {
        return complain(*fault + "; try --help", exitUsage);
    }
    const int code = (*command)->run(std::get<Arguments>(arguments));
    std::cout.flush();
    if (code == exitSuccess && !std::cout) {
        return complain("standard output cannot be written", exitFailure);
    }
    return code;
}

} // namespace
} // namespace quorvane

int main(int argc, char** argv)
{
    std::ios::sync_with_stdio(false);
    const std::vector<const char*> words(argv + (argc > 0 ? 1 : 0), argv + argc);
    return quorvane::runProgram(words);
}
