// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <map>

namespace quorvane {

/// Drawn pages within a bound of memory.
class PageCache
{
public:
    explicit PageCache(qint64 limit)
        : m_limit(limit)
    {}

    /// Null when the page is not kept.
    const QImage* find(int page) const;
    /// Drops the pages farthest from those on show (first to last) until the bound holds; what is
    /// on show stays in any case.
    void keep(int page, const QImage& drawn, int first, int last);
    void clear();
    qint64 bytes() const { return m_bytes; }

private:
    void drop(std::map<int, QImage>::iterator page);

    qint64 m_limit;
    qint64 m_bytes = 0;
    std::map<int, QImage> m_pages;
};

} // namespace quorvane
