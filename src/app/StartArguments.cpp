// SPDX-License-Identifier: MIT
#include "StartArguments.h"

#include <filesystem>
#include <system_error>

namespace quorvane {
namespace {

StartArguments refused(std::string text)
{
    StartArguments result;
    result.action = StartArguments::Action::reportUsage;
    result.problem = std::move(text);
    return result;
}

bool isFileUrl(std::string_view text)
{
    return text.substr(0, 5) == "file:";
}

bool climbs(const std::filesystem::path& path)
{
    for (const std::filesystem::path& part : path) {
        if (part == "..") {
            return true;
        }
    }
    return false;
}

/// Where a step up follows a link, only the file system knows where it leads.
FilePath absolutePath(std::string_view text, const FilePath& workingFolder)
{
    std::filesystem::path path(text);
    if (path.is_relative()) {
        path = std::filesystem::path(workingFolder.bytes()) / path;
    }
    if (climbs(path)) {
        std::error_code error;
        const std::filesystem::path resolved = std::filesystem::canonical(path, error);
        if (!error) {
            return FilePath(resolved.string());
        }
    }
    return FilePath(path.lexically_normal().string());
}

} // namespace

StartArguments StartArguments::parse(const std::vector<std::string_view>& arguments,
                                     const FilePath& workingFolder)
{
    StartArguments result;
    bool optionsEnded = false;
    for (const std::string_view argument : arguments) {
        if (!optionsEnded && argument == "--") {
            optionsEnded = true;
        } else if (!optionsEnded && (argument == "--help" || argument == "-h")) {
            result.action = Action::showHelp;
            return result;
        } else if (!optionsEnded && (argument == "--version" || argument == "-v")) {
            result.action = Action::showVersion;
            return result;
        } else if (!optionsEnded && argument == "--search") {
            result.opensSearch = true;
        } else if (!optionsEnded && argument.size() > 1 && argument.front() == '-') {
            return refused("unknown option '" + std::string(argument) + "'");
        } else if (argument.empty()) {
            return refused("the folder's name is empty");
        } else if (result.folder) {
            return refused("only one folder can be scanned at a time");
        } else if (isFileUrl(argument)) {
            result.folder = FilePath::fromFileUrl(argument);
            if (result.folder->isEmpty()) {
                return refused("'" + std::string(argument) + "' names no folder of this machine");
            }
        } else {
            result.folder = absolutePath(argument, workingFolder);
        }
    }
    return result;
}

std::string StartArguments::usage()
{
    return "Usage: quorvane [FOLDER]\n"
           "Shows what takes up space on your disk.\n"
           "\n"
           "  FOLDER      scan this folder at once; a path or a file:// URL\n"
           "  --search    open the floating search, or close it\n"
           "  --help      print this help and exit\n"
           "  --version   print the version and exit\n";
}

} // namespace quorvane
