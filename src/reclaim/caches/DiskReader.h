// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "FileSystemCalls.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace quorvane {

class FileContentCalls;

/// Small files and listings of foreign folders, read whole. Any thread.
class DiskReader
{
public:
    static constexpr std::size_t defaultMaxBytes = std::size_t{1} << 20;

    DiskReader(FileSystemCalls& calls, FileContentCalls& contents)
        : m_calls(calls)
        , m_contents(contents)
    {}

    FileSystemCalls& calls() const { return m_calls; }

    /// lstat(2) of the path; absent when it fails.
    std::optional<EntryStatus> status(const FilePath& path) const;
    bool isDirectory(const FilePath& path) const;
    /// Whether the path is a folder or a link to one.
    bool leadsToDirectory(const FilePath& path) const;
    /// Names in a folder, sorted, hidden ones included; none where it cannot be listed. A link to a
    /// folder is followed.
    std::vector<std::string> names(const FilePath& folder) const;
    /// The bytes of a regular file; absent when it cannot be read or holds more than maxBytes.
    std::optional<std::string> text(const FilePath& path,
                                    std::size_t maxBytes = defaultMaxBytes) const;
    /// The same, following links that stand in the file's place.
    std::optional<std::string> linkedText(const FilePath& path) const;
    /// Where a link leads in the end, by its text; the path itself where no link stands.
    FilePath followingLinks(const FilePath& path) const;
    /// At most so many bytes of a regular file from its start.
    std::string head(const FilePath& path, std::size_t bytes) const;

private:
    FileSystemCalls& m_calls;
    FileContentCalls& m_contents;
};

} // namespace quorvane
