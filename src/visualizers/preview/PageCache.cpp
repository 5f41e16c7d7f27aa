// SPDX-License-Identifier: MIT
#include "PageCache.h"

#include <iterator>

namespace quorvane {

const QImage* PageCache::find(int page) const
{
    const auto found = m_pages.find(page);
    return found == m_pages.end() ? nullptr : &found->second;
}

void PageCache::keep(int page, const QImage& drawn, int first, int last)
{
    if (const auto old = m_pages.find(page); old != m_pages.end()) {
        drop(old);
    }
    m_pages.emplace(page, drawn);
    m_bytes += drawn.sizeInBytes();
    while (m_bytes > m_limit) {
        // Sorted by page: the one farthest away stands at one of the ends.
        const auto lowest = m_pages.begin();
        const auto highest = std::prev(m_pages.end());
        const auto farthest = first - lowest->first > highest->first - last ? lowest : highest;
        if (farthest->first >= first && farthest->first <= last) {
            return;
        }
        drop(farthest);
    }
}

void PageCache::clear()
{
    m_pages.clear();
    m_bytes = 0;
}

void PageCache::drop(std::map<int, QImage>::iterator page)
{
    m_bytes -= page->second.sizeInBytes();
    m_pages.erase(page);
}

} // namespace quorvane
