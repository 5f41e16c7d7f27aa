// SPDX-License-Identifier: MIT
#include "ShortDigests.h"

#include <cstring>

namespace quorvane::DuplicateFinder {

ShortDigests::ShortDigests(std::size_t files, std::size_t mostWhole, unsigned partBits)
    : m_keys(files)
    , m_mostWhole(mostWhole)
    , m_partMask((Key{1} << partBits) - 1)
{}

bool ShortDigests::note(std::size_t place, const Digest& digest)
{
    Key part = 0;
    static_assert(sizeof part <= sizeof(Digest));
    std::memcpy(&part, digest.data(), sizeof part);
    m_keys[place] = (part & m_partMask) | partMark;

    const std::lock_guard guard(m_lock);
    auto known = m_known.find(digest);
    if (known == m_known.end()) {
        if (m_whole.size() >= m_mostWhole) {
            return false;
        }
        known = m_known.emplace(digest, m_whole.size()).first;
        m_whole.push_back(&known->first);
    }
    m_keys[place] = known->second;
    return true;
}

} // namespace quorvane::DuplicateFinder
