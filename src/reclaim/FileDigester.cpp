// SPDX-License-Identifier: MIT
#include "FileDigester.h"

#include "AliasFilter.h"
#include "CacheFootprint.h"
#include "OpenFile.h"

#include <algorithm>
#include <functional>
#include <string_view>
#include <utility>

namespace quorvane::DuplicateFinder {
namespace {

/// What one read asks for, a part of a block: it stays in the processor's nearest caches until the
/// hash has seen it, and is all the memory that a worker needs.
constexpr std::int64_t pieceBytes = 65536;
static_assert(blockBytes % pieceBytes == 0 && endSampleBytes % pieceBytes == 0);
static_assert(headBytes < pieceBytes);

std::uint64_t headHash(std::int64_t size, std::span<const std::byte> head)
{
    const std::string_view bytes(reinterpret_cast<const char*>(head.data()), head.size());
    return std::hash<std::string_view>()(bytes) ^
           static_cast<std::uint64_t>(size) * 0x9E3779B97F4A7C15U;
}

} // namespace

FileDigester::FileDigester(FileSystemCalls& fileSystem, FileContentCalls& contents,
                           std::int64_t unchangedBefore)
    : m_fileSystem(fileSystem)
    , m_contents(contents)
    , m_unchangedBefore(unchangedBefore)
    , m_buffer(std::make_unique_for_overwrite<std::byte[]>(pieceBytes))
{}

std::optional<Sample> FileDigester::partialDigest(const FileNode& node, const HeadFilter& isWanted,
                                                  bool hasLeftHead)
{
    const OpenFile file(m_fileSystem, m_contents, node.path());
    if (!file.isReadable()) {
        return std::nullopt;
    }
    const std::int64_t size = node.scannedBytes();
    CacheFootprint footprint(m_contents, file);
    if (size <= wholeSampleBytes) {
        footprint.look(0, size);
    } else {
        footprint.look(0, endSampleBytes);
        m_contents.willReadParts(file.descriptor());
    }
    if (hasLeftHead) {
        footprint.takeOverHead();
    }
    // One byte more shows whether the head is all there is: such a file is read here and now, as
    // waiting would have it read twice.
    const std::int64_t asked = size <= headBytes ? headBytes + 1 : headBytes;
    std::int64_t sampled = fill(file, asked);
    if (isWanted && sampled == asked &&
        !isWanted(headHash(size, {m_buffer.get(), static_cast<std::size_t>(headBytes)}),
                  footprint.ownsHead())) {
        footprint.leave();
        return Sample{{}, true, false};
    }
    m_hash.start();
    m_hash.update({m_buffer.get(), static_cast<std::size_t>(sampled)});
    bool coversWholeFile = false;
    bool hasLeftTail = false;
    std::unique_ptr<const Sha256::State> head;
    if (size <= wholeSampleBytes) {
        // One byte more shows a file that has grown: its whole is for the next pass to read.
        if (!m_hasReachedEnd) {
            sampled += feed(file, wholeSampleBytes + 1 - sampled);
        }
        coversWholeFile = m_hasReachedEnd;
    } else {
        const std::int64_t tail = size - endSampleBytes;
        footprint.look(tail, size);
        m_contents.willRead(file.descriptor(), headBytes, endSampleBytes - headBytes);
        m_contents.willRead(file.descriptor(), tail, endSampleBytes);
        sampled += feed(file, endSampleBytes - sampled);
        if (sampled == endSampleBytes) {
            head = m_hash.state();
        }
        if (!m_contents.seek(file.descriptor(), tail)) {
            return std::nullopt;
        }
        sampled += feed(file, endSampleBytes);
        hasLeftTail = footprint.leaveLast();
        if (sampled < endSampleBytes * 2) {
            // Only where both ends are whole does their digest tell what the head was.
            head.reset();
        }
    }
    if (sampled < leastSampleBytes) {
        return std::nullopt;
    }
    const std::optional<Digest> digest = m_hash.finish();
    return digest ? std::optional(
                        Sample{*digest, false, coversWholeFile, std::move(head), hasLeftTail})
                  : std::nullopt;
}

std::optional<Digest> FileDigester::fullDigest(const FileNode& node)
{
    const OpenFile file(m_fileSystem, m_contents, node.path());
    m_identity = identityHint(file.status());
    return file.isReadable() ? readWhole(file, node) : std::nullopt;
}

std::optional<Digest> FileDigester::fullDigest(const FileNode& node, const Digest& sample)
{
    const OpenFile file(m_fileSystem, m_contents, node.path());
    if (!file.isReadable()) {
        return std::nullopt;
    }
    m_identity = identityHint(file.status());
    return isUnchanged(file.status(), node) ? sample : readWhole(file, node);
}

std::optional<Digest> FileDigester::fullDigest(const FileNode& node, const SampleTraces& traces)
{
    const OpenFile file(m_fileSystem, m_contents, node.path());
    if (!file.isReadable()) {
        return std::nullopt;
    }
    m_identity = identityHint(file.status());
    if (traces.head == nullptr || !isUnchanged(file.status(), node) ||
        !m_contents.seek(file.descriptor(), endSampleBytes)) {
        return readWhole(file, node, traces.hasLeftTail);
    }
    m_hash.resume(*traces.head);
    return readOn(file, node, endSampleBytes, traces.hasLeftTail);
}

bool FileDigester::isUnchanged(const OpenFileStatus& status, const FileNode& node) const
{
    return status.changedSeconds < m_unchangedBefore && status.bytes == node.scannedBytes() &&
           status.modifiedSeconds == node.dateModified();
}

void FileDigester::takeOutHead(const FileNode& node)
{
    takeOut(node, 0, CacheFootprint::pieceBytes);
}

void FileDigester::takeOutTail(const FileNode& node)
{
    takeOut(node, node.scannedBytes() - endSampleBytes, node.scannedBytes());
}

void FileDigester::takeOut(const FileNode& node, std::int64_t begin, std::int64_t end)
{
    const OpenFile file(m_fileSystem, m_contents, node.path());
    if (file.isReadable()) {
        CacheFootprint footprint(m_contents, file);
        footprint.takeOverFrom(begin);
        footprint.look(begin, end);
    }
}

std::optional<Digest> FileDigester::readWhole(const OpenFile& file, const FileNode& node,
                                              bool hasLeftTail)
{
    m_hash.start();
    return readOn(file, node, 0, hasLeftTail);
}

std::optional<Digest> FileDigester::readOn(const OpenFile& file, const FileNode& node,
                                           std::int64_t position, bool hasLeftTail)
{
    const std::int64_t size = node.scannedBytes();
    CacheFootprint footprint(m_contents, file);
    if (hasLeftTail) {
        footprint.takeOverFrom(size - endSampleBytes);
    }
    m_contents.willReadOnce(file.descriptor());
    std::int64_t fed = blockBytes;
    for (; fed == blockBytes; position += fed) {
        footprint.lookAhead(position, size);
        fed = feed(file, blockBytes);
    }
    return m_hash.finish();
}

std::int64_t FileDigester::feed(const OpenFile& file, std::int64_t most)
{
    std::int64_t fed = 0;
    while (fed < most) {
        const std::int64_t wanted = std::min(most - fed, pieceBytes);
        const std::int64_t got = fill(file, wanted);
        m_hash.update({m_buffer.get(), static_cast<std::size_t>(got)});
        fed += got;
        if (got < wanted) {
            break;
        }
    }
    return fed;
}

std::int64_t FileDigester::fill(const OpenFile& file, std::int64_t most)
{
    const std::span<std::byte> room(m_buffer.get(), static_cast<std::size_t>(most));
    std::size_t filled = 0;
    m_hasReachedEnd = false;
    while (filled < room.size()) {
        const std::int64_t got = m_contents.read(file.descriptor(), room.subspan(filled));
        if (got <= 0) {
            m_hasReachedEnd = got == 0;
            break;
        }
        filled += static_cast<std::size_t>(got);
    }
    m_bytesRead += static_cast<std::int64_t>(filled);
    return static_cast<std::int64_t>(filled);
}

} // namespace quorvane::DuplicateFinder
