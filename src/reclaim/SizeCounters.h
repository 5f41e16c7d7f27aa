// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quorvane::DuplicateFinder {

/// Tells roughly which sizes two files or more have, in one megabyte for any number of files: sizes
/// that share a counter are taken for one.
class SizeCounters
{
public:
    void add(std::int64_t bytes)
    {
        std::uint8_t& count = m_counts[placeOf(bytes)];
        if (count < 2) {
            // The second file brings the first one in.
            m_shared += count == 1 ? 2 : 0;
            ++count;
        } else {
            ++m_shared;
        }
    }

    /// Maybe another file has that size as well. Never false where one has.
    bool isShared(std::int64_t bytes) const { return m_counts[placeOf(bytes)] == 2; }
    /// Number of files added for which that is true by now.
    std::size_t shared() const { return m_shared; }

private:
    static constexpr unsigned bits = 20;

    static std::size_t placeOf(std::int64_t bytes)
    {
        return static_cast<std::size_t>((static_cast<std::uint64_t>(bytes) * 0x9E3779B97F4A7C15U) >>
                                        (64 - bits));
    }

    std::vector<std::uint8_t> m_counts = std::vector<std::uint8_t>(std::size_t{1} << bits);
    std::size_t m_shared = 0;
};

} // namespace quorvane::DuplicateFinder
