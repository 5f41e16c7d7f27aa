// SPDX-License-Identifier: MIT
#pragma once

#include "DuplicateBuckets.h"
#include "FileContentCalls.h"
#include "FileSystemCalls.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <span>
#include <string>
#include <utility>

namespace quorvane::DuplicateFinder {

/// Which file it is, in short: equal for all names of one file, and by chance for others.
std::uint32_t identityHint(const OpenFileStatus& status);

/// Finds the names that are no copies of each other because they are one and the same name, seen
/// through two mounts: who removes one of them removes the other.
class AliasFilter
{
public:
    AliasFilter(FileSystemCalls& fileSystem, FileContentCalls& contents)
        : m_fileSystem(fileSystem)
        , m_contents(contents)
    {}

    /// Takes files of one bucket with their hints, place by place. Of each file there stay as many
    /// names as it has on its disk, each of them once; the others are dropped. Files are opened
    /// only where hints are equal. Takes 8 bytes for each of 65536 files beyond what it keeps of
    /// those with equal hints.
    void dropAliases(std::span<Candidate> files, std::span<const std::uint32_t> hints) const;

private:
    using Identity = std::pair<std::uint64_t, std::uint64_t>; ///< device and inode
    struct Seen
    {
        std::map<Identity, std::uint64_t> names;            ///< kept of each file
        std::set<std::pair<Identity, std::string>> entries; ///< folder and name of what was kept
    };

    bool isAlias(const FileNode& file, Seen& seen) const;

    FileSystemCalls& m_fileSystem;
    FileContentCalls& m_contents;
};

} // namespace quorvane::DuplicateFinder
