// SPDX-License-Identifier: MIT
#include "CacheFootprint.h"

#include <algorithm>

namespace quorvane::DuplicateFinder {
namespace {

std::int64_t pieceStart(std::int64_t position)
{
    return position - position % CacheFootprint::pieceBytes;
}

/// The lowest bits, of which there are 64.
std::uint64_t lowest(std::int64_t count)
{
    return count >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << count) - 1;
}

} // namespace

CacheFootprint::~CacheFootprint()
{
    for (std::size_t i = 0; i < m_count; ++i) {
        takeOut(m_stretches[i]);
    }
}

void CacheFootprint::look(std::int64_t begin, std::int64_t end)
{
    if (!m_isOn || end <= begin) {
        return;
    }
    begin = pieceStart(begin);
    const std::uint64_t all = lowest((end - begin + pieceBytes - 1) / pieceBytes);
    std::uint64_t owned = ~m_contents.cachedPieces(m_file, begin, end - begin, pieceBytes);
    if (m_ownFrom < end) {
        // Beginning with the piece of that position.
        owned |= ~lowest(std::max<std::int64_t>(pieceStart(m_ownFrom) - begin, 0) / pieceBytes);
    }
    m_stretches[m_count++] = {begin, owned & all, all};
}

void CacheFootprint::lookAhead(std::int64_t position, std::int64_t end)
{
    if (!m_isOn) {
        return;
    }
    if (m_ahead < 0) {
        m_ahead = pieceStart(position);
    }
    if (m_count > 0 && m_stretches[0].begin + stretchBytes <= position) {
        takeOut(m_stretches[0]);
        m_stretches[0] = m_stretches[1];
        --m_count;
    }
    while (m_count < m_stretches.size() && m_ahead < end) {
        look(m_ahead, std::min(m_ahead + stretchBytes, end));
        m_ahead += stretchBytes;
    }
}

bool CacheFootprint::ownsHead() const
{
    return m_count > 0 && m_stretches[0].begin == 0 && (m_stretches[0].owned & 1) != 0;
}

void CacheFootprint::takeOverHead()
{
    if (m_count > 0 && m_stretches[0].begin == 0) {
        m_stretches[0].owned |= 1;
    }
}

bool CacheFootprint::leaveLast()
{
    if (m_count == 0 || m_stretches[m_count - 1].owned != m_stretches[m_count - 1].all) {
        return false;
    }
    --m_count;
    return true;
}

void CacheFootprint::takeOut(const Stretch& stretch)
{
    for (int first = 0; first < piecesAtOnce;) {
        int end = first;
        while (end < piecesAtOnce && (stretch.owned >> end & 1) != 0) {
            ++end;
        }
        if (end > first) {
            m_contents.isDoneWith(m_file, stretch.begin + first * pieceBytes,
                                  (end - first) * pieceBytes);
        }
        first = end + 1;
    }
}

} // namespace quorvane::DuplicateFinder
