// SPDX-License-Identifier: MIT
#pragma once

#include "Candidate.h"
#include "DuplicateFinder.h"
#include "FileContentCalls.h"
#include "FileSystemCalls.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <utility>

namespace quorvane::DuplicateFinder {

/// Which file it is, in short: equal for all names of one file, and by chance for others.
std::uint32_t identityHint(const OpenFileStatus& status);

/// Finds the names that are no copies of each other because they are one and the same name, seen
/// through two mounts: who removes one of them removes the other.
class AliasFilter
{
public:
    /// isCancelled is asked before each file that is opened; once it is true none is any more, and
    /// what is left of the files is of no use.
    AliasFilter(FileSystemCalls& fileSystem, FileContentCalls& contents,
                CancelCallback isCancelled = neverCancelled)
        : m_fileSystem(fileSystem)
        , m_contents(contents)
        , m_isCancelled(std::move(isCancelled))
    {}

    /// Takes files of one bucket with their hints, place by place. Of each file there stay as many
    /// names as it has on its disk, each of them once; the others are dropped. Files are opened
    /// only where hints are equal. Takes 8 bytes for each of 65536 files, or of those of one hint
    /// if they are more.
    void dropAliases(std::span<Candidate> files, std::span<const std::uint32_t> hints) const;

private:
    using Identity = std::pair<std::uint64_t, std::uint64_t>; ///< device and inode
    struct Names
    {
        std::uint64_t found = 0; ///< that are different, as far as is known
        std::uint64_t links = 0; ///< that the file has
    };
    using NamesOfFiles = std::map<Identity, Names>;
    /// A file of the bucket. Its key is its hint, later that of its entry.
    struct KeyedPlace
    {
        std::uint32_t key;
        std::uint32_t place;

        friend bool operator<(const KeyedPlace& a, const KeyedPlace& b)
        {
            return a.key != b.key ? a.key < b.key : a.place < b.place;
        }
    };
    /// What a name stands for: the file and the folder in which it has it.
    struct Entry
    {
        Identity file;
        Identity folder;
        std::uint64_t links;
    };

    void dropAmong(std::span<KeyedPlace> alike, std::span<Candidate> files) const;
    void dropRepeated(std::span<const KeyedPlace> sorted, std::span<Candidate> files,
                      NamesOfFiles& names) const;
    void dropBeyond(std::span<const KeyedPlace> sorted, std::span<Candidate> files,
                    NamesOfFiles& names) const;
    std::optional<Entry> entryOf(const FileNode& file) const;

    FileSystemCalls& m_fileSystem;
    FileContentCalls& m_contents;
    const CancelCallback m_isCancelled;
};

} // namespace quorvane::DuplicateFinder
