// SPDX-License-Identifier: MIT
#pragma once

#include "DuplicateFinder.h"
#include "FileNode.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace quorvane {
class TrashFolders;
} // namespace quorvane

namespace quorvane::DuplicateFinder {

/// What files are compared by: 24 bytes, so that a million files fit into 32 million. While files
/// are sampled: a hash of the bytes seen, then device and inode. In the end: the first 24 bytes of
/// the SHA-256 of the contents, which nobody can make two contents share (2^96 attempts).
using Key = std::array<std::uint64_t, 3>;

/// A file that may have copies. Candidates lie in one list, bucket by bucket; the last of each
/// bucket is marked.
class Candidate
{
public:
    explicit Candidate(FileNode& file)
        : m_bits(reinterpret_cast<std::uintptr_t>(&file))
    {}

    /// Absent once dropped.
    FileNode* file() const { return reinterpret_cast<FileNode*>(m_bits & ~allMarks); }
    bool isDropped() const { return file() == nullptr; }
    /// A dropped candidate still ends its bucket.
    void drop() { m_bits &= endMark; }

    /// It is the last of its bucket.
    bool endsBucket() const { return (m_bits & endMark) != 0; }
    void setEndsBucket(bool ends) { setMark(endMark, ends); }
    /// Another candidate is the same file under another name.
    bool isLinked() const { return (m_bits & linkedMark) != 0; }
    void setLinked(bool is) { setMark(linkedMark, is); }
    /// Not all of it could be read.
    bool isBrokenOff() const { return (m_bits & brokenMark) != 0; }
    void setBrokenOff(bool is) { setMark(brokenMark, is); }

    Key key = {};

private:
    static constexpr std::uintptr_t endMark = 1;
    static constexpr std::uintptr_t linkedMark = 2;
    static constexpr std::uintptr_t brokenMark = 4;
    static constexpr std::uintptr_t allMarks = endMark | linkedMark | brokenMark;
    static_assert(alignof(FileNode) > allMarks);

    void setMark(std::uintptr_t mark, bool isSet)
    {
        m_bits = isSet ? m_bits | mark : m_bits & ~mark;
    }

    std::uintptr_t m_bits;
};
static_assert(sizeof(Candidate) == 32);

using Candidates = std::vector<Candidate>;

inline constexpr double walkEnd = 0.06; ///< progress at the end of the walk

/// The first pass: finds the regular files of at least so many bytes that share their size with
/// others, outside every Trash. Fills the list, larger files first; takes nothing beyond it.
/// Returns how many nodes it walked; absent for a cancel.
std::optional<std::size_t> collectCandidates(FileNode& root, std::int64_t minimumBytes,
                                             const TrashFolders& trash,
                                             const ProgressCallback& progress,
                                             const CancelCallback& isCancelled,
                                             Candidates& candidates);

/// Where the bucket ends that begins there.
std::size_t bucketEnd(const Candidates& candidates, std::size_t begin);

/// Sorts each bucket of the list's part by key and cuts it into buckets of equal keys; `words`
/// tells for a bucket's first file how many words of their keys have to be equal. What is dropped
/// or stands alone goes; the rest moves to `place`, not behind `begin`, and on. Returns where it
/// ends.
std::size_t splitBuckets(Candidates& candidates, std::size_t begin, std::size_t end,
                         std::size_t place, std::size_t (*words)(const Candidate&));

} // namespace quorvane::DuplicateFinder
