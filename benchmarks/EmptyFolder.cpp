// SPDX-License-Identifier: MIT
#include "EmptyFolder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace quorvane {
namespace {

std::string refusal(const FilePath& folder, const std::string& reason)
{
    return folder.bytes() + ": " + reason;
}

} // namespace

std::variant<int, std::string> openEmptyFolder(const FilePath& folder)
{
    if (mkdir(folder.bytes().c_str(), 0755) != 0 && errno != EEXIST) {
        return refusal(folder, std::generic_category().message(errno));
    }
    std::error_code fault;
    const bool isEmpty = std::filesystem::is_empty(folder.bytes(), fault);
    if (fault) {
        return refusal(folder, fault.message());
    }
    if (!isEmpty) {
        return refusal(folder, "the folder is not empty");
    }
    const int top = open(folder.bytes().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (top < 0) {
        return refusal(folder, std::generic_category().message(errno));
    }
    return top;
}

} // namespace quorvane
