// SPDX-License-Identifier: MIT
#include "PosixPrograms.h"

#include <fcntl.h>
#include <unistd.h>

#include <dirent.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace quorvane {
namespace {

/// What the kernel puts behind the path of a file that was removed while it runs.
constexpr std::string_view deletedMark = " (deleted)";

std::string linkTarget(int folder, const std::string& name)
{
    std::array<char, 4096> target;
    const ssize_t length = readlinkat(folder, name.c_str(), target.data(), target.size());
    std::string_view text(target.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    if (text.ends_with(deletedMark)) {
        text.remove_suffix(deletedMark.size());
    }
    return std::string(text);
}

/// The path behind "0::" in a process's list of control groups (cgroups(7), version 2).
std::string controlGroup(int folder, const std::string& name)
{
    constexpr std::string_view unified = "0::";
    const int file = openat(folder, name.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return {};
    }
    std::array<char, 4096> bytes;
    const ssize_t got = read(file, bytes.data(), bytes.size());
    ::close(file);
    const std::string_view text(bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    const std::size_t at = text.find(unified);
    if (at == std::string_view::npos) {
        return {};
    }
    const std::string_view path = text.substr(at + unified.size());
    return std::string(path.substr(0, path.find('\n')));
}

class LinuxPrograms final : public PosixPrograms
{
public:
    std::vector<Running> running() override
    {
        std::vector<Running> found;
        DIR* const processes = opendir("/proc");
        if (processes == nullptr) {
            return found;
        }
        while (const dirent* const entry = readdir(processes)) {
            const std::string pid = entry->d_name;
            if (pid.find_first_not_of("0123456789") != std::string::npos) {
                continue;
            }
            Running each{linkTarget(dirfd(processes), pid + "/exe"),
                         controlGroup(dirfd(processes), pid + "/cgroup")};
            if (!each.executable.empty() || !each.controlGroup.empty()) {
                found.push_back(std::move(each));
            }
        }
        closedir(processes);
        return found;
    }
};

} // namespace

Programs& Programs::system()
{
    static LinuxPrograms programs;
    return programs;
}

} // namespace quorvane
