// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

namespace quorvane {

/// What fstat(2) of an open file tells that a reader of its bytes has to know.
struct OpenFileStatus
{
    bool isRegularFile = false;
    std::int64_t changedSeconds = 0;  ///< later of st_ctim and st_mtim, whole seconds since 1970
    std::uint64_t device = 0;         ///< st_dev
    std::uint64_t inode = 0;          ///< st_ino, which tells files of one device apart
    std::uint64_t links = 0;          ///< st_nlink: how many names the file has
    std::int64_t bytes = 0;           ///< st_size
    std::int64_t modifiedSeconds = 0; ///< st_mtim, whole seconds since 1970
};

/// Every call by which the bytes of files are read, so that a test can make each of them fail. All
/// calls may come from any thread at once.
class FileContentCalls
{
public:
    virtual ~FileContentCalls() = default;

    /// Opens a name below an open directory (or FileSystemCalls::noDirectory()) for reading. Does
    /// not follow a link, never waits for a pipe's other end, and leaves the date of last access as
    /// it is where the system lets it. Returns a descriptor or -1; it may be of anything that has
    /// taken the name of a file since.
    virtual int open(int parent, const char* name) = 0;
    virtual bool status(int file, OpenFileStatus& status) = 0;
    /// Reads from the current position. Returns the number of bytes, which may be less than there
    /// is room for; 0 at the end, -1 for a fault.
    virtual std::int64_t read(int file, std::span<std::byte> room) = 0;
    /// Sets the position, in bytes from the start.
    virtual bool seek(int file, std::int64_t position) = 0;
    virtual void close(int file) = 0;

    /// A part of a file, in bytes from its start.
    struct DataRange
    {
        std::int64_t begin = 0;
        std::int64_t end = 0;
    };
    /// The first part of a sparse file at or behind a position that is no hole. Both at their
    /// largest where only a hole follows; from that position without an end where the system does
    /// not tell. The position for read() may be anywhere afterwards.
    virtual DataRange dataFrom(int /*file*/, std::int64_t position)
    {
        return {position, std::numeric_limits<std::int64_t>::max()};
    }

    /// Tells the page cache that a range is about to be read. A hint without an answer.
    virtual void willRead(int file, std::int64_t position, std::int64_t bytes) = 0;
    /// Tells the page cache that no more of the file is read than what is asked for or told by
    /// willRead(): it is not to read on in advance. A hint without an answer.
    virtual void willReadParts(int /*file*/) {}
    /// Tells the page cache that the file is read once from start to end. What others have in the
    /// cache stays there. A hint without an answer.
    virtual void willReadOnce(int file) = 0;

    /// Which pieces of a file have anything in the page cache: bit i stands for the bytes from
    /// position + i × pieceBytes on, of which there are pieceBytes or what is left of `bytes`. At
    /// most 64 pieces. Where the system does not tell, all of them. Reads nothing.
    virtual std::uint64_t cachedPieces(int /*file*/, std::int64_t /*position*/,
                                       std::int64_t /*bytes*/, std::int64_t /*pieceBytes*/)
    {
        return ~std::uint64_t{0};
    }
    /// Tells the page cache that nobody needs these bytes any more, whoever had them read. A hint
    /// without an answer.
    virtual void isDoneWith(int /*file*/, std::int64_t /*position*/, std::int64_t /*bytes*/) {}

    /// The system's own calls; lives as long as the process.
    static FileContentCalls& system();
};

} // namespace quorvane
