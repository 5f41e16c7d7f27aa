// SPDX-License-Identifier: MIT
#include "PageCacheLinux.h"

#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

namespace quorvane {
namespace {

// Newer than the headers that this is built with; one number on all architectures of today.
#ifdef SYS_cachestat
constexpr long cachestatNumber = SYS_cachestat;
#else
constexpr long cachestatNumber = 451;
#endif

/// struct cachestat_range of the kernel.
struct CacheRange
{
    std::uint64_t offset;
    std::uint64_t length;
};

/// struct cachestat of the kernel.
struct CacheStatistics
{
    std::uint64_t cached; ///< pages; so are the others
    std::uint64_t dirty;
    std::uint64_t inWriteback;
    std::uint64_t evicted;
    std::uint64_t recentlyEvicted;
};

std::optional<std::int64_t> cachedPages(int file, std::int64_t position, std::int64_t bytes)
{
    CacheRange range{static_cast<std::uint64_t>(position), static_cast<std::uint64_t>(bytes)};
    CacheStatistics statistics = {};
    if (syscall(cachestatNumber, file, &range, &statistics, 0U) != 0) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(statistics.cached);
}

std::int64_t pageBytes()
{
    static const std::int64_t bytes = sysconf(_SC_PAGESIZE);
    return bytes;
}

} // namespace

std::optional<std::uint64_t> cachedPiecesByStatistics(int file, std::int64_t position,
                                                      std::int64_t bytes, std::int64_t pieceBytes)
{
    const std::optional<std::int64_t> all = cachedPages(file, position, bytes);
    if (!all || *all == 0) {
        return all ? std::optional<std::uint64_t>(0) : std::nullopt;
    }
    if (bytes <= pieceBytes || *all * pageBytes() >= bytes) {
        return ~std::uint64_t{0};
    }
    std::uint64_t pieces = 0;
    for (std::int64_t begin = 0, i = 0; begin < bytes; begin += pieceBytes, ++i) {
        const std::optional<std::int64_t> some =
            cachedPages(file, position + begin, std::min(pieceBytes, bytes - begin));
        if (!some) {
            return std::nullopt;
        }
        pieces |= std::uint64_t{*some > 0 ? 1U : 0U} << i;
    }
    return pieces;
}

std::optional<std::uint64_t> cachedPiecesByMapping(int file, std::int64_t position,
                                                   std::int64_t bytes, std::int64_t pieceBytes)
{
    const std::int64_t page = pageBytes();
    const std::int64_t before = position % page;
    const auto length = static_cast<std::size_t>(before + bytes);
    void* const mapped =
        mmap(nullptr, length, PROT_READ, MAP_SHARED, file, static_cast<off_t>(position - before));
    if (mapped == MAP_FAILED) {
        return std::nullopt;
    }
    std::vector<unsigned char> pages((length + static_cast<std::size_t>(page) - 1) /
                                     static_cast<std::size_t>(page));
    const bool isKnown = mincore(mapped, length, pages.data()) == 0;
    munmap(mapped, length);
    if (!isKnown) {
        return std::nullopt;
    }
    std::uint64_t pieces = 0;
    for (std::size_t i = 0; i < pages.size(); ++i) {
        const std::int64_t begin =
            std::max<std::int64_t>(static_cast<std::int64_t>(i) * page - before, 0);
        const std::int64_t last =
            std::min(static_cast<std::int64_t>(i + 1) * page - before, bytes) - 1;
        if ((pages[i] & 1) != 0) {
            pieces |= std::uint64_t{1} << (begin / pieceBytes);
            pieces |= std::uint64_t{1} << (last / pieceBytes);
        }
    }
    return pieces;
}

} // namespace quorvane
