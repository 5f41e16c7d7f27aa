// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorvane {

class FileContentCalls;
class FileSystemCalls;

/// What speaks for a folder being made again, and what speaks against it. A plain value.
struct Evidence
{
    /// What it is judged by: "package.json beside it", "CACHEDIR.TAG in it"; empty where nothing
    /// of the kind was found.
    std::string basis;
    /// When anything in it last changed, whole seconds since 1970.
    std::optional<std::int64_t> lastChanged;
    /// Why to think twice; empty where nothing calls for it. Lives as long as the process.
    std::string_view caution;

    friend bool operator==(const Evidence&, const Evidence&) = default;
};

/// For a ".git", whatever stands beside it.
inline constexpr std::string_view holdsHistory = "holds history: not made again";
/// For a folder with a common name and no sign that a tool has made it.
inline constexpr std::string_view hasNoManifest = "no project file beside it: may be your own";

/// Reads on the disk what speaks for a folder: a CACHEDIR.TAG with the signature of the Cache
/// Directory Tagging Specification in it, or the project file from which the folder of that name is
/// made. Folders called "vendor", "build", "dist" or "target" with neither get a caution, a ".git"
/// always does. lastChanged stays absent. Any thread; at most a few calls.
Evidence evidenceFor(const FilePath& folder, FileSystemCalls& calls, FileContentCalls& contents);

} // namespace quorvane
