// SPDX-License-Identifier: MIT
#include "FileDigester.h"

#include "DirectoryWalk.h"

#include <algorithm>

namespace quorvane::DuplicateFinder {
namespace {

/// What one read asks for: a piece stays in the processor's cache until the hash has seen it.
constexpr std::int64_t pieceBytes = std::min(endSampleBytes, blockBytes);

} // namespace

/// A regular file that is open for reading, closed at the end of its life.
class FileDigester::OpenFile
{
public:
    OpenFile(FileSystemCalls& fileSystem, FileContentCalls& contents, const FileNode& node)
        : m_contents(contents)
    {
        const ReachablePlace place(fileSystem, node.path());
        if (!place.isReachable()) {
            return;
        }
        m_descriptor = contents.open(place.parent(), place.name());
        m_isReadable =
            m_descriptor >= 0 && contents.status(m_descriptor, m_status) && m_status.isRegularFile;
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile()
    {
        if (m_descriptor >= 0) {
            m_contents.close(m_descriptor);
        }
    }

    bool isReadable() const { return m_isReadable; }
    int descriptor() const { return m_descriptor; }
    std::int64_t changedSeconds() const { return m_status.changedSeconds; }

private:
    FileContentCalls& m_contents;
    int m_descriptor = -1;
    OpenFileStatus m_status;
    bool m_isReadable = false;
};

FileDigester::FileDigester(FileSystemCalls& fileSystem, FileContentCalls& contents,
                           std::int64_t unchangedBefore)
    : m_fileSystem(fileSystem)
    , m_contents(contents)
    , m_unchangedBefore(unchangedBefore)
    , m_buffer(std::make_unique_for_overwrite<std::byte[]>(pieceBytes))
{}

std::optional<Sample> FileDigester::partialDigest(const FileNode& node)
{
    const OpenFile file(m_fileSystem, m_contents, node);
    if (!file.isReadable()) {
        return std::nullopt;
    }
    const std::int64_t size = node.scannedBytes();
    m_hash.start();
    std::int64_t sampled = 0;
    bool coversWholeFile = false;
    if (size <= wholeSampleBytes) {
        // One byte more shows a file that has grown: its whole is for the next pass to read.
        sampled = feed(file, wholeSampleBytes + 1);
        coversWholeFile = m_hasReachedEnd;
    } else {
        const std::int64_t tail = size - endSampleBytes;
        m_contents.willRead(file.descriptor(), tail, endSampleBytes);
        sampled = feed(file, endSampleBytes);
        if (!m_contents.seek(file.descriptor(), tail)) {
            return std::nullopt;
        }
        sampled += feed(file, endSampleBytes);
    }
    if (sampled < leastSampleBytes) {
        return std::nullopt;
    }
    const std::optional<Digest> digest = m_hash.finish();
    return digest ? std::optional(Sample{*digest, coversWholeFile}) : std::nullopt;
}

std::optional<Digest> FileDigester::fullDigest(const FileNode& node)
{
    const OpenFile file(m_fileSystem, m_contents, node);
    return file.isReadable() ? readWhole(file) : std::nullopt;
}

std::optional<Digest> FileDigester::fullDigest(const FileNode& node, const Digest& sample)
{
    const OpenFile file(m_fileSystem, m_contents, node);
    if (!file.isReadable()) {
        return std::nullopt;
    }
    return file.changedSeconds() < m_unchangedBefore ? sample : readWhole(file);
}

std::optional<Digest> FileDigester::readWhole(const OpenFile& file)
{
    m_contents.willReadOnce(file.descriptor());
    m_hash.start();
    while (feed(file, blockBytes) == blockBytes) {
    }
    return m_hash.finish();
}

std::int64_t FileDigester::feed(const OpenFile& file, std::int64_t most)
{
    std::int64_t fed = 0;
    m_hasReachedEnd = false;
    while (fed < most) {
        const auto room = static_cast<std::size_t>(std::min(most - fed, pieceBytes));
        const std::int64_t got = m_contents.read(file.descriptor(), {m_buffer.get(), room});
        if (got <= 0) {
            m_hasReachedEnd = got == 0;
            break;
        }
        m_hash.update({m_buffer.get(), static_cast<std::size_t>(got)});
        fed += got;
    }
    m_bytesRead += fed;
    return fed;
}

} // namespace quorvane::DuplicateFinder
