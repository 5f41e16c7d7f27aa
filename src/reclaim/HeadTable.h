// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <mutex>
#include <vector>

namespace quorvane::DuplicateFinder {

/// Which heads of files have been met, so that a file is sampled only once another one begins like
/// it: files that begin differently cannot be alike. 24 to 48 bytes for each file.
class HeadTable
{
public:
    static constexpr std::uint32_t nobody = std::numeric_limits<std::uint32_t>::max();

    struct Meeting
    {
        bool isFirst = false;           ///< the file has to wait for a second one
        std::uint32_t waiting = nobody; ///< the file that waited until now, told to one caller
    };

    /// For so many files, each of which comes once.
    explicit HeadTable(std::size_t files);

    /// Takes the file of that number in with the hash of its size and its first bytes. Files of
    /// different heads may meet by chance, which costs time but changes nothing. Any thread.
    Meeting meet(std::uint64_t head, std::uint32_t file);

    /// The numbers of the files that are still waiting. Once all have come.
    std::vector<std::uint32_t> waiting() const;

private:
    std::mutex m_lock;
    std::vector<std::uint64_t> m_heads; ///< 0 where there is none
    std::vector<std::uint32_t> m_files;
};

} // namespace quorvane::DuplicateFinder
