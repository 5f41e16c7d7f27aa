// SPDX-License-Identifier: MIT
#pragma once

#include "FileDigester.h"
#include "FileNode.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>
#include <vector>

namespace quorvane::DuplicateFinder {

/// A file that may have copies, in the room of a pointer: there may be millions of them.
class Candidate
{
public:
    explicit Candidate(FileNode* file)
        : m_bits(reinterpret_cast<std::uintptr_t>(file))
    {}

    /// Absent once dropped.
    FileNode* file() const { return reinterpret_cast<FileNode*>(m_bits & ~sampledWholeBit); }

    /// Its sample was the whole file.
    bool isSampledWhole() const { return (m_bits & sampledWholeBit) != 0; }
    void markSampledWhole() { m_bits |= sampledWholeBit; }

    bool isDropped() const { return m_bits == 0; }
    void drop() { m_bits = 0; }

    /// By place in memory, where the files of a folder lie together.
    friend bool operator<(const Candidate& a, const Candidate& b) { return a.m_bits < b.m_bits; }

private:
    static constexpr std::uintptr_t sampledWholeBit = 1;
    static_assert(alignof(FileNode) > sampledWholeBit);

    std::uintptr_t m_bits;
};

/// The files of one key, which is their size and their digest. They lie side by side in a list of
/// candidates in which every bucket begins where the one before ends.
struct Bucket
{
    std::size_t end = 0; ///< one past its last file
    Digest digest = {};
};

/// Grows without moving what is there.
using Buckets = std::deque<Bucket>;

/// Files of one size with the digests that belong to them, place by place.
struct DigestedFiles
{
    std::span<Candidate> files;
    std::span<Digest> digests;
};

/// Sorts the files of one size by their digests, and those of one digest by place in memory. Files
/// that are dropped or stand alone with their digest go; the others move to `place` of the list and
/// behind it, and a bucket for each digest is appended. `place`, which moves on, must not lie
/// behind the files if it is in the same list. Uses no memory for a file.
void splitByDigest(DigestedFiles all, std::vector<Candidate>& list, std::size_t& place,
                   Buckets& buckets);

} // namespace quorvane::DuplicateFinder
