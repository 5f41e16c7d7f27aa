// SPDX-License-Identifier: MIT
#pragma once

#include "FileContentCalls.h"
#include "FileNode.h"
#include "FileSystemCalls.h"
#include "Sha256.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>

namespace quorvane::DuplicateFinder {

class OpenFile;

using Digest = Sha256::Digest;

/// Up to this size a file is sampled whole, in bytes.
inline constexpr std::int64_t wholeSampleBytes = 524288;
/// Read at each end of a larger file, in bytes.
inline constexpr std::int64_t endSampleBytes = 262144;
/// A sample of fewer bytes counts for nothing.
inline constexpr std::int64_t leastSampleBytes = 16;
/// The most that the digest of a whole file takes in at once, in bytes.
inline constexpr std::int64_t blockBytes = 1048576;

/// By so many first bytes of a file that has more it is seen whether any other begins like it.
inline constexpr std::int64_t headBytes = 4096;

/// What the two ends of a file came to.
struct Sample
{
    Digest digest = {};
    /// The head filter wanted no more than the head: there is no digest.
    bool isTurnedAway = false;
    /// The sample was the file from start to end, read without a fault, so that its digest is that
    /// of the whole file as well.
    bool coversWholeFile = false;
    /// Of a larger file of which both ends were read: the digest of the first endSampleBytes, half
    /// done, for the digest of the whole to go on from.
    std::unique_ptr<const Sha256::State> head = nullptr;
    /// Of such a file: its tail is in the page cache only because of this sample. It was left for
    /// the digest of the whole, and has to be taken out in the end.
    bool hasLeftTail = false;
};

/// What the sample of a larger file is good for when the whole is read.
struct SampleTraces
{
    const Sha256::State* head = nullptr; ///< Sample::head, where it was kept
    bool hasLeftTail = false;
};

/// Reads files and digests them, for one worker: its buffer and its hash are used again from file
/// to file. Paths may have any length and any bytes.
class FileDigester
{
public:
    /// unchangedBefore: a file that has not changed since that time (seconds since 1970) has not
    /// changed since the search began. What a sample came to serves again only for such a file, if
    /// it also has the size and the date of modification that the scan saw: another file that came
    /// to its path with its folder may be of any age.
    FileDigester(FileSystemCalls& fileSystem, FileContentCalls& contents,
                 std::int64_t unchangedBefore);

    /// Takes a hash of a file's size and head and tells whether the file is to be sampled. If it is
    /// not, the head is left in the page cache for when its turn comes; isLeft: by this reading,
    /// and has to be taken out in the end.
    using HeadFilter = std::function<bool(std::uint64_t head, bool isLeft)>;

    /// Digest of the file's two ends, found by its size in the scan; of the whole of a small file.
    /// Absent when it cannot be opened or is no regular file any more, when the seek to its tail
    /// fails, and when fewer than leastSampleBytes could be read. hasLeftHead: an earlier reading
    /// left the file's head in the page cache.
    std::optional<Sample> partialDigest(const FileNode& file, const HeadFilter& isWanted = {},
                                        bool hasLeftHead = false);
    /// Takes a head or a tail out of the page cache that partialDigest() has left there.
    void takeOutHead(const FileNode& file);
    void takeOutTail(const FileNode& file);
    /// Digest of all that can be read from the start on. Absent when the file cannot be opened or
    /// is no regular file any more.
    std::optional<Digest> fullDigest(const FileNode& file);
    /// The same for a file whose sample was the whole of it: the sample's digest when the file can
    /// still be opened and has not changed since, otherwise it is read again.
    std::optional<Digest> fullDigest(const FileNode& file, const Digest& sample);

    /// The same for a larger file: when it has not changed since, what its head came to is taken
    /// over and the rest is read.
    std::optional<Digest> fullDigest(const FileNode& file, const SampleTraces& traces);

    /// Bytes read so far.
    std::int64_t bytesRead() const { return m_bytesRead; }

    /// identityHint() of the file that fullDigest() opened last.
    std::uint32_t identity() const { return m_identity; }

private:
    std::optional<Digest> readWhole(const OpenFile& file, const FileNode& node,
                                    bool hasLeftTail = false);
    std::optional<Digest> readOn(const OpenFile& file, const FileNode& node, std::int64_t position,
                                 bool hasLeftTail);
    /// It is what was sampled, as far as that can be told.
    bool isUnchanged(const OpenFileStatus& status, const FileNode& file) const;
    void takeOut(const FileNode& file, std::int64_t begin, std::int64_t end);
    /// Reads at most so many bytes into the front of the buffer, fewer only at the end or a fault.
    std::int64_t fill(const OpenFile& file, std::int64_t most);
    /// Feeds at most so many bytes from the current position to the hash. The number fed; a fault
    /// ends the reading.
    std::int64_t feed(const OpenFile& file, std::int64_t most);

    FileSystemCalls& m_fileSystem;
    FileContentCalls& m_contents;
    std::int64_t m_unchangedBefore;
    Sha256 m_hash;
    std::unique_ptr<std::byte[]> m_buffer;
    bool m_hasReachedEnd = false;
    std::uint32_t m_identity = 0;
    std::int64_t m_bytesRead = 0;
};

} // namespace quorvane::DuplicateFinder
