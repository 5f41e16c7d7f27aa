// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "FileTree.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>

namespace quorvane::test {

/// Numbers that come out the same with every standard library.
class Dice
{
public:
    explicit Dice(std::uint64_t seed)
        : m_engine(seed)
    {}

    /// From 0 to count - 1; count is above 0. The bias is below 1 in 2^32 for small counts.
    std::uint64_t below(std::uint64_t count) { return m_engine() % count; }
    /// True in about that share of the calls, 0 to 1.
    bool chance(double share) { return fraction() < share; }
    /// From 0 up to but not including 1.
    double fraction() { return static_cast<double>(m_engine() >> 11) * 0x1.0p-53; }

private:
    std::mt19937_64 m_engine;
};

struct RandomTreeOptions
{
    FilePath rootPath{"/scan"};
    std::size_t entries = 300;    ///< at most so many below the root
    std::size_t maxDepth = 7;     ///< levels below the root
    std::size_t maxChildren = 40; ///< of one folder
    double folderShare = 0.3;     ///< of all entries
    double chainShare = 0.2;      ///< of folders that hold one folder and nothing else
    double zeroShare = 0.1;       ///< of files without a byte
    double equalShare = 0.2;      ///< of files whose size many others have too
    unsigned largestPower = 36;   ///< sizes go up to 2 to this power
};

/// A finished tree with all that makes layouts and walks hard: chains, empty folders, equal and
/// zero sizes, sizes on disk in another order, names of every category in any case, links and
/// pipes. The same for the same seed and options. Ids are dense, in breadth-first order.
std::shared_ptr<FileTree> randomTree(std::uint64_t seed, const RandomTreeOptions& options = {});

} // namespace quorvane::test
