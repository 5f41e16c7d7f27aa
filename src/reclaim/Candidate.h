// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"

#include <cstdint>

namespace quorvane::DuplicateFinder {

/// A file that may have copies, in the room of a pointer: there may be millions of them. They lie
/// in one list, bucket by bucket, in which the last file of each bucket is marked.
class Candidate
{
public:
    explicit Candidate(FileNode* file)
        : m_bits(reinterpret_cast<std::uintptr_t>(file))
    {}

    /// Absent once dropped.
    FileNode* file() const { return reinterpret_cast<FileNode*>(m_bits & ~allMarks); }

    /// Its sample is of use when the file is verified. Where it was the whole file: for its digest,
    /// which is that of the bucket. Of a larger file: for the tail that was left in the page cache.
    bool isSampleOfUse() const { return (m_bits & sampleOfUseMark) != 0; }
    void setSampleOfUse(bool is) { setMark(sampleOfUseMark, is); }

    /// It is the last of its bucket.
    bool endsBucket() const { return (m_bits & endMark) != 0; }
    void setEndsBucket(bool ends) { setMark(endMark, ends); }

    /// With the last file of a bucket: its files are known to be alike.
    bool isSettled() const { return (m_bits & settledMark) != 0; }
    void setSettled(bool is) { setMark(settledMark, is); }

    bool isDropped() const { return m_bits == 0; }
    void drop() { m_bits = 0; }

    /// By place in memory, where the files of a folder lie together.
    friend bool operator<(const Candidate& a, const Candidate& b)
    {
        return (a.m_bits & ~allMarks) < (b.m_bits & ~allMarks);
    }

private:
    static constexpr std::uintptr_t sampleOfUseMark = 1;
    static constexpr std::uintptr_t endMark = 2;
    static constexpr std::uintptr_t settledMark = 4;
    static constexpr std::uintptr_t allMarks = sampleOfUseMark | endMark | settledMark;
    static_assert(alignof(FileNode) > allMarks);

    void setMark(std::uintptr_t mark, bool isSet)
    {
        m_bits = isSet ? m_bits | mark : m_bits & ~mark;
    }

    std::uintptr_t m_bits;
};

} // namespace quorvane::DuplicateFinder
