// SPDX-License-Identifier: MIT
#include "ProtectedPlaces.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace quorvane {
namespace {

// Filesystem Hierarchy Standard 3.0, and the folders of other word sizes that Debian keeps beside
// /lib.
constexpr std::array<std::string_view, 12> systemTrees{"/bin",  "/boot",  "/dev",   "/etc",
                                                       "/lib",  "/lib32", "/lib64", "/libx32",
                                                       "/proc", "/sbin",  "/sys",   "/usr"};
/// Not their contents: a person's own volumes and files lie below some of them.
constexpr std::array<std::string_view, 14> topFolders{
    "/",    "/home", "/media", "/mnt",     "/opt",       "/root",    "/run",
    "/srv", "/tmp",  "/var",   "/var/lib", "/var/cache", "/var/log", "/run/media"};

} // namespace

bool isProtectedPlace(const FilePath& path)
{
    const auto isBelow = [&path](std::string_view folder) {
        return FilePath(std::string(folder)).holds(path) && path.bytes() != folder;
    };
    if (isBelow("/dev/shm")) {
        // Anybody's files, in memory.
        return false;
    }
    return std::any_of(systemTrees.begin(), systemTrees.end(), isBelow) ||
           std::find(systemTrees.begin(), systemTrees.end(), path.bytes()) != systemTrees.end() ||
           std::find(topFolders.begin(), topFolders.end(), path.bytes()) != topFolders.end();
}

} // namespace quorvane
