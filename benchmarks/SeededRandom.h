// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace quorvane {

/// SplitMix64: the same numbers for the same seed on every machine.
class SeededRandom
{
public:
    explicit SeededRandom(std::uint64_t seed)
        : m_state(seed)
    {}
    /// A stream of its own for each pair of seed and number.
    SeededRandom(std::uint64_t seed, std::uint64_t number)
        : m_state(SeededRandom(seed ^ (number + 1) * 0xD1342543DE82EF95U).next())
    {}

    std::uint64_t next()
    {
        m_state += 0x9E3779B97F4A7C15U;
        std::uint64_t mixed = m_state;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
        return mixed ^ (mixed >> 31);
    }

    /// From 0 to limit - 1; the limit is at least 1 and small beside 2^64.
    std::uint64_t below(std::uint64_t limit) { return next() % limit; }
    bool oneIn(std::uint64_t count) { return below(count) == 0; }

private:
    std::uint64_t m_state;
};

} // namespace quorvane
