// SPDX-License-Identifier: MIT
#include "HeadTable.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <utility>

namespace quorvane::DuplicateFinder {

// At most half full, so that a free slot is never far.
HeadTable::HeadTable(std::size_t files)
    : m_heads(std::bit_ceil(files * 2 + 1))
    , m_files(m_heads.size(), nobody)
{}

HeadTable::Meeting HeadTable::meet(std::uint64_t head, std::uint32_t file)
{
    head = std::max<std::uint64_t>(head, 1);
    const std::size_t mask = m_heads.size() - 1;
    const std::lock_guard guard(m_lock);
    std::size_t slot = head & mask;
    while (m_heads[slot] != 0 && m_heads[slot] != head) {
        slot = (slot + 1) & mask;
    }
    if (m_heads[slot] == 0) {
        m_heads[slot] = head;
        m_files[slot] = file;
        return {true, nobody};
    }
    return {false, std::exchange(m_files[slot], nobody)};
}

std::vector<std::uint32_t> HeadTable::waiting() const
{
    std::vector<std::uint32_t> files;
    std::copy_if(m_files.begin(), m_files.end(), std::back_inserter(files),
                 [](std::uint32_t file) { return file != nobody; });
    return files;
}

} // namespace quorvane::DuplicateFinder
