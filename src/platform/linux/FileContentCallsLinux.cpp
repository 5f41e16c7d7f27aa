// SPDX-License-Identifier: MIT
#include "PageCacheLinux.h"
#include "PosixFileContentCalls.h"

#include <fcntl.h>

#include <atomic>
#include <cerrno>

namespace quorvane {
namespace {

class LinuxFileContentCalls final : public PosixFileContentCalls
{
public:
    int open(int parent, const char* name) override
    {
        // Only a file's owner may read it without leaving a trace.
        const int file = openWith(parent, name, O_NOATIME);
        return file < 0 && errno == EPERM ? openWith(parent, name, 0) : file;
    }

    void willRead(int file, std::int64_t position, std::int64_t bytes) override
    {
        posix_fadvise(file, position, bytes, POSIX_FADV_WILLNEED);
    }

    void willReadParts(int file) override { posix_fadvise(file, 0, 0, POSIX_FADV_RANDOM); }

    void willReadOnce(int file) override
    {
        posix_fadvise(file, 0, 0, POSIX_FADV_SEQUENTIAL);
        // Before Linux 6.3 without any effect; from then on reading does not make pages that were
        // in the cache before seem more useful than they are.
        posix_fadvise(file, 0, 0, POSIX_FADV_NOREUSE);
    }

    std::uint64_t cachedPieces(int file, std::int64_t position, std::int64_t bytes,
                               std::int64_t pieceBytes) override
    {
        if (m_hasStatistics.load(std::memory_order_relaxed)) {
            const auto pieces = cachedPiecesByStatistics(file, position, bytes, pieceBytes);
            if (pieces && *pieces != 0) {
                return *pieces;
            }
            if (!pieces && errno == ENOSYS) {
                m_hasStatistics.store(false, std::memory_order_relaxed);
            }
        }
        // Slower, but it sees the pages of a file below one that is stacked upon it, which has none
        // of its own.
        return cachedPiecesByMapping(file, position, bytes, pieceBytes).value_or(~std::uint64_t{0});
    }

    void isDoneWith(int file, std::int64_t position, std::int64_t bytes) override
    {
        posix_fadvise(file, position, bytes, POSIX_FADV_DONTNEED);
    }

private:
    std::atomic<bool> m_hasStatistics = true;
};

} // namespace

FileContentCalls& FileContentCalls::system()
{
    static LinuxFileContentCalls calls;
    return calls;
}

} // namespace quorvane
