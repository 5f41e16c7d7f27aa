// SPDX-License-Identifier: MIT
#pragma once

#include "FileContentCalls.h"
#include "OpenFile.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace quorvane::DuplicateFinder {

/// What the reading of one file brings into the page cache. It is taken out again at the end of
/// this one's life, while what was there before stays, since others may want it.
///
/// It goes by pieces: one of which anything was in the cache before is left alone as a whole. So is
/// a file with several names, which may be read again by another of them.
class CacheFootprint
{
public:
    static constexpr std::int64_t pieceBytes = 262144;

    /// Of an open regular file. Both must outlive this.
    CacheFootprint(FileContentCalls& contents, const OpenFile& file)
        : m_contents(contents)
        , m_file(file.descriptor())
        , m_isOn(file.status().links <= 1)
    {}
    CacheFootprint(const CacheFootprint&) = delete;
    CacheFootprint& operator=(const CacheFootprint&) = delete;
    ~CacheFootprint();

    /// Before that part, of at most 64 pieces, is read or announced. At most twice.
    void look(std::int64_t begin, std::int64_t end);
    /// Before each block of a file that is read on from a place to the end. What lies behind is
    /// taken out at once. Looks far enough ahead of what the system reads in advance.
    void lookAhead(std::int64_t position, std::int64_t end);

    /// The beginning of the file was not in the cache when look() was called for it.
    bool ownsHead() const;
    /// The beginning is in the cache because of an earlier reading that left it.
    void takeOverHead();
    /// Leaves all that look() was last called for, which was not in the cache then, to the next
    /// reading. False where that is not so of all of it: then it does not stay.
    bool leaveLast();
    /// What lies from there on is in the cache because of an earlier reading that left it.
    void takeOverFrom(std::int64_t position) { m_ownFrom = position; }
    /// Whatever has been read stays for the next reading.
    void leave() { m_count = 0; }

private:
    static constexpr int piecesAtOnce = 64;
    static constexpr std::int64_t stretchBytes = pieceBytes * piecesAtOnce;

    struct Stretch
    {
        std::int64_t begin;  ///< a multiple of pieceBytes
        std::uint64_t owned; ///< pieces that were not in the cache, as bits
        std::uint64_t all;   ///< pieces that were looked at
    };

    void takeOut(const Stretch& stretch);

    FileContentCalls& m_contents;
    const int m_file;
    const bool m_isOn;
    std::array<Stretch, 2> m_stretches = {};
    std::size_t m_count = 0;
    std::int64_t m_ownFrom = std::numeric_limits<std::int64_t>::max();
    std::int64_t m_ahead = -1; ///< where lookAhead() goes on looking
};

} // namespace quorvane::DuplicateFinder
