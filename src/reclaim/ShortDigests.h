// SPDX-License-Identifier: MIT
#pragma once

#include "FileDigester.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <span>
#include <vector>

namespace quorvane::DuplicateFinder {

/// Stands for the digests of very many files in 8 bytes each. The digests that come first are known
/// whole, so that files of equal keys are alike; of the others only a part is kept: files of
/// different keys are certainly not alike, those of equal keys almost certainly are.
class ShortDigests
{
public:
    using Key = std::uint64_t;

    static constexpr unsigned mostPartBits = 63;

    /// For so many files, of which at most so many digests are known whole. Of each of the others
    /// 1 to mostPartBits are kept: a test takes few, for digests to meet by chance.
    ShortDigests(std::size_t files, std::size_t mostWhole, unsigned partBits = mostPartBits);

    /// Of the file at that place; at most one thread a place. True when the digest is known whole.
    bool note(std::size_t place, const Digest& digest);

    /// Place by place; for the owner to sort once all is noted.
    std::span<Key> keys() { return m_keys; }
    static bool isWhole(Key key) { return (key & partMark) == 0; }
    /// The digest of a key that stands for a whole one, once all is noted.
    const Digest& whole(Key key) const { return *m_whole[key]; }

private:
    static constexpr Key partMark = Key{1} << mostPartBits;

    std::vector<Key> m_keys;
    const std::size_t m_mostWhole;
    const Key m_partMask;
    std::mutex m_lock;
    std::map<Digest, Key> m_known;
    std::vector<const Digest*> m_whole; ///< of m_known, by key
};

} // namespace quorvane::DuplicateFinder
