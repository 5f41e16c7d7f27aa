// SPDX-License-Identifier: MIT
#include "ProtectedPlaces.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace quorvane {
namespace {

constexpr std::array<std::string_view, 7> systemTrees{"/System",      "/bin",  "/dev", "/etc",
                                                      "/private/etc", "/sbin", "/usr"};
/// Not their contents: a person's own volumes, applications and files lie below some of them.
constexpr std::array<std::string_view, 12> topFolders{
    "/",    "/Applications", "/Library", "/Users",       "/Volumes", "/cores",
    "/opt", "/private",      "/tmp",     "/private/tmp", "/var",     "/private/var"};

} // namespace

bool isProtectedPlace(const FilePath& path)
{
    return std::any_of(systemTrees.begin(), systemTrees.end(),
                       [&path](std::string_view tree) {
                           return FilePath(std::string(tree)).holds(path);
                       }) ||
           std::find(topFolders.begin(), topFolders.end(), path.bytes()) != topFolders.end();
}

} // namespace quorvane
