// SPDX-License-Identifier: MIT
#pragma once

#include "DuplicateFinder.h"
#include "FileContentCalls.h"
#include "FileNode.h"
#include "FileSystemCalls.h"
#include "Sha256.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace quorvane::DuplicateFinder {

/// Up to this size a file is sampled whole, in bytes.
inline constexpr std::int64_t wholeSampleBytes = 524288;
/// Read at each end of a larger file, in bytes.
inline constexpr std::int64_t endSampleBytes = 262144;
/// A sample of fewer bytes counts for nothing.
inline constexpr std::int64_t minSampleBytes = 16;
/// By so many first bytes of a file it is seen whether any other begins like it.
inline constexpr std::int64_t headBytes = 4096;
/// A file's digest is that of the digests of its parts of so many bytes, so that the holes of a
/// sparse file cost nothing.
inline constexpr std::int64_t digestBytes = 1048576;
/// What one read asks for, in bytes: it stays in the processor's nearest caches until the hash has
/// seen it, and is all the memory that a worker needs.
inline constexpr std::int64_t blockBytes = 65536;

/// Which file a name stands for.
struct FileIdentity
{
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    friend auto operator<=>(const FileIdentity&, const FileIdentity&) = default;
};

/// What a path stood for when it was opened.
struct NameOfFile
{
    FileIdentity file;
    FileIdentity folder;     ///< zeros where it cannot be told
    std::uint64_t links = 1; ///< names that the file has, on its own volume
};

struct FirstLook
{
    FileIdentity file;
    /// Hash of the first headBytes, never 0. It is 0 for a file that has several names, which was
    /// not read: it may be known under another one.
    std::uint64_t head = 0;
};

struct Contents
{
    Sha256::Digest digest = {}; ///< see digestBytes; the last part is shorter and may be empty
    std::int64_t bytes = 0;     ///< of which the digest is
    /// A read failed, or fewer bytes came than the scan saw.
    bool isBrokenOff = false;
};

/// Reads files and hashes them, for one worker: its buffer and its hash serve file after file.
/// Paths may have any length and any bytes. All readings are absent when the path cannot be opened
/// or is no regular file any more, and after a cancel, which is polled before each block. Holes of
/// sparse files are not read. What a reading brings into the page cache and nobody had there is
/// given back at its end.
class FileDigester
{
public:
    /// All of them outlive this.
    FileDigester(FileSystemCalls& fileSystem, FileContentCalls& contents,
                 const CancelCallback& isCancelled);

    /// Absent also for a file of at most wholeSampleBytes of which fewer than minSampleBytes could
    /// be read.
    std::optional<FirstLook> look(const FileNode& file);
    /// The same hash, however many names the file has.
    std::optional<std::uint64_t> head(const FileNode& file);
    /// Hash of the file's two ends, found by its size in the scan. Absent also when the seek to its
    /// tail fails and when fewer than minSampleBytes could be read. Not of cryptographic strength:
    /// equal ends only lead to contents().
    std::optional<std::uint64_t> ends(const FileNode& file);
    /// Digest of all that can be read from the start on.
    std::optional<Contents> contents(const FileNode& file);
    /// Opens it without reading.
    std::optional<NameOfFile> name(const FileNode& file);

    /// Bytes read so far.
    std::int64_t bytesRead() const { return m_bytesRead; }

private:
    class OpenFile;
    class Reading;

    std::optional<std::uint64_t> headOf(const OpenFile& file, const FileNode& node);

    FileSystemCalls& m_fileSystem;
    FileContentCalls& m_contents;
    const CancelCallback& m_isCancelled;
    Sha256 m_hash;
    Sha256 m_list;          ///< of the digests of a file's parts
    Sha256::Digest m_zeros; ///< of a part of zeros
    std::unique_ptr<std::byte[]> m_buffer;
    std::int64_t m_bytesRead = 0;
};

} // namespace quorvane::DuplicateFinder
