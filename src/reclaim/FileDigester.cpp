// SPDX-License-Identifier: MIT
#include "FileDigester.h"

#include "DirectoryWalk.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>

namespace quorvane::DuplicateFinder {
namespace {

static_assert(endSampleBytes % blockBytes == 0 && digestBytes % blockBytes == 0 &&
              headBytes < blockBytes);

/// A fast hash of bytes that come in pieces, each but the last a multiple of 32 bytes long: four
/// lanes of multiply and rotate, as in xxHash.
class QuickHash
{
public:
    void update(std::span<const std::byte> bytes)
    {
        m_bytes += bytes.size();
        for (; bytes.size() >= sizeof m_lanes; bytes = bytes.subspan(sizeof m_lanes)) {
            mix(bytes.data(), sizeof m_lanes);
        }
        if (!bytes.empty()) {
            mix(bytes.data(), bytes.size());
        }
    }
    /// Never 0.
    std::uint64_t value() const
    {
        std::uint64_t value = m_bytes;
        for (const std::uint64_t lane : m_lanes) {
            value = (value ^ lane) * factor;
            value ^= value >> 29;
        }
        return std::max<std::uint64_t>(value, 1);
    }

private:
    static constexpr std::uint64_t factor = 0x9E3779B97F4A7C15U;

    void mix(const std::byte* bytes, std::size_t count)
    {
        std::array<std::uint64_t, 4> words = {};
        std::memcpy(words.data(), bytes, count);
        for (std::size_t i = 0; i < words.size(); ++i) {
            m_lanes[i] = std::rotl((m_lanes[i] ^ words[i]) * factor, 31);
        }
    }

    std::array<std::uint64_t, 4> m_lanes = {1, 2, 3, 4};
    std::uint64_t m_bytes = 0;
};

/// What the reading of a part of a file brings into the page cache, in up to 64 pieces. Those of
/// which nobody had anything in the cache before are given back once they are read.
class CacheShare
{
public:
    /// Before that part is read. Both must outlive this.
    CacheShare(FileContentCalls& contents, int file, std::int64_t begin, std::int64_t end)
        : m_contents(contents)
        , m_file(file)
        , m_begin(begin - begin % blockBytes)
        , m_end(end)
        , m_pieceBytes(((end - m_begin) / (blockBytes * maxPieces) + 1) * blockBytes)
        , m_count(static_cast<int>((end - m_begin + m_pieceBytes - 1) / m_pieceBytes))
        , m_cached(end > begin ? contents.cachedPieces(file, m_begin, end - m_begin, m_pieceBytes)
                               : ~std::uint64_t{0})
    {}
    CacheShare(const CacheShare&) = delete;
    CacheShare& operator=(const CacheShare&) = delete;
    ~CacheShare() { giveBack(m_count); }

    /// All before that position has been read.
    void readTo(std::int64_t position)
    {
        const std::int64_t read =
            std::min<std::int64_t>((position - m_begin) / m_pieceBytes, m_count);
        if ((read - m_next) * m_pieceBytes >= bytesAtOnce) {
            giveBack(static_cast<int>(read));
        }
    }

private:
    static constexpr int maxPieces = 64;
    static constexpr std::int64_t bytesAtOnce = 8388608;

    void giveBack(int end)
    {
        while (m_next < end) {
            const int first = m_next;
            const bool isCached = (m_cached >> first & 1) != 0;
            while (m_next < end && ((m_cached >> m_next & 1) != 0) == isCached) {
                ++m_next;
            }
            if (!isCached) {
                const std::int64_t from = m_begin + first * m_pieceBytes;
                m_contents.isDoneWith(m_file, from,
                                      std::min(m_begin + m_next * m_pieceBytes, m_end) - from);
            }
        }
    }

    FileContentCalls& m_contents;
    const int m_file;
    const std::int64_t m_begin;
    const std::int64_t m_end;
    const std::int64_t m_pieceBytes;
    const int m_count;
    const std::uint64_t m_cached; ///< a bit for each piece
    int m_next = 0;
};

} // namespace

/// What stands at a path, opened for reading and closed at the end of its life.
class FileDigester::OpenFile
{
public:
    OpenFile(FileSystemCalls& fileSystem, FileContentCalls& contents, const FilePath& path)
        : m_contents(contents)
    {
        const ReachablePlace place(fileSystem, path);
        if (!place.isReachable()) {
            return;
        }
        m_descriptor = contents.open(place.parent(), place.name());
        m_hasStatus = m_descriptor >= 0 && contents.status(m_descriptor, m_status);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile()
    {
        if (m_descriptor >= 0) {
            m_contents.close(m_descriptor);
        }
    }

    bool hasStatus() const { return m_hasStatus; }
    bool isReadable() const { return m_hasStatus && m_status.isRegularFile; }
    int descriptor() const { return m_descriptor; }
    std::int64_t bytes() const { return m_status.bytes; }
    std::uint64_t links() const { return std::max<std::uint64_t>(m_status.links, 1); }
    FileIdentity identity() const { return {m_status.device, m_status.inode}; }

private:
    FileContentCalls& m_contents;
    int m_descriptor = -1;
    OpenFileStatus m_status;
    bool m_hasStatus = false;
};

/// A file being read block by block from its start or from a place that it is moved to.
class FileDigester::Reading
{
public:
    /// Holes are looked for where the scan saw fewer bytes on the disk than in the file.
    Reading(FileDigester& owner, const OpenFile& file, const FileNode& node)
        : m_owner(owner)
        , m_file(file)
        , m_hasHoles(node.scannedBytesOnDisk() < node.scannedBytes())
    {}

    bool moveTo(std::int64_t position)
    {
        m_position = position;
        return m_owner.m_contents.seek(m_file.descriptor(), position);
    }
    std::int64_t position() const { return m_position; }
    /// A read failed; nothing is to be read after it.
    bool hasFault() const { return m_hasFault; }

    /// At most so many bytes, which may not be more than a block; fewer only at the end, after a
    /// fault and after a cancel.
    std::span<const std::byte> next(std::int64_t max)
    {
        const std::span<std::byte> room(m_owner.m_buffer.get(), static_cast<std::size_t>(max));
        std::size_t filled = 0;
        while (filled < room.size() && !m_owner.m_isCancelled()) {
            const std::int64_t got = readSome(room.subspan(filled));
            if (got <= 0) {
                m_hasFault = m_hasFault || got < 0;
                break;
            }
            filled += static_cast<std::size_t>(got);
            m_position += got;
        }
        return room.first(filled);
    }

    /// Feeds at most so many bytes to the sink, block by block. The number fed.
    template<typename Sink>
    std::int64_t feed(std::int64_t max, CacheShare& share, const Sink& sink)
    {
        std::int64_t fed = 0;
        while (fed < max) {
            const std::int64_t wanted = std::min(max - fed, blockBytes);
            const std::span<const std::byte> bytes = next(wanted);
            sink(bytes);
            fed += static_cast<std::int64_t>(bytes.size());
            share.readTo(m_position);
            if (static_cast<std::int64_t>(bytes.size()) < wanted) {
                break;
            }
        }
        return fed;
    }

    /// Goes on behind so many zeros when nothing but a hole lies there.
    bool skipZeros(std::int64_t count)
    {
        if (m_hasHoles && locate() && m_data.begin - m_position >= count &&
            !m_owner.m_isCancelled()) {
            m_position += count;
            return true;
        }
        return false;
    }

private:
    /// Finds the data at or behind the position and goes there. False when that fails.
    bool locate()
    {
        if (m_position < m_data.end) {
            return true;
        }
        m_data = m_owner.m_contents.dataFrom(m_file.descriptor(), m_position);
        m_data.begin = std::min(m_data.begin, std::max(m_file.bytes(), m_position));
        return m_owner.m_contents.seek(m_file.descriptor(), m_data.begin);
    }

    std::int64_t readSome(std::span<std::byte> room)
    {
        FileContentCalls& calls = m_owner.m_contents;
        if (m_hasHoles && !locate()) {
            return -1;
        }
        if (m_hasHoles && m_position < m_data.begin) {
            const auto zeros = static_cast<std::size_t>(
                std::min(m_data.begin - m_position, static_cast<std::int64_t>(room.size())));
            std::fill_n(room.begin(), zeros, std::byte{0});
            return static_cast<std::int64_t>(zeros);
        }
        if (m_hasHoles) {
            room = room.first(static_cast<std::size_t>(
                std::min(m_data.end - m_position, static_cast<std::int64_t>(room.size()))));
        }
        const std::int64_t got = calls.read(m_file.descriptor(), room);
        m_owner.m_bytesRead += std::max<std::int64_t>(got, 0);
        return got;
    }

    FileDigester& m_owner;
    const OpenFile& m_file;
    const bool m_hasHoles;
    std::int64_t m_position = 0;
    FileContentCalls::DataRange m_data = {0, 0};
    bool m_hasFault = false;
};

FileDigester::FileDigester(FileSystemCalls& fileSystem, FileContentCalls& contents,
                           const CancelCallback& isCancelled)
    : m_fileSystem(fileSystem)
    , m_contents(contents)
    , m_isCancelled(isCancelled)
    , m_buffer(std::make_unique<std::byte[]>(blockBytes))
{
    m_hash.start();
    for (std::int64_t i = 0; i < digestBytes; i += blockBytes) {
        m_hash.update({m_buffer.get(), static_cast<std::size_t>(blockBytes)});
    }
    m_zeros = m_hash.finish().value_or(Sha256::Digest{});
}

std::optional<FirstLook> FileDigester::look(const FileNode& node)
{
    const OpenFile file(m_fileSystem, m_contents, node.path());
    if (!file.isReadable()) {
        return std::nullopt;
    }
    const std::optional<std::uint64_t> head = file.links() > 1 ? 0 : headOf(file, node);
    return head ? std::optional(FirstLook{file.identity(), *head}) : std::nullopt;
}

std::optional<std::uint64_t> FileDigester::head(const FileNode& node)
{
    const OpenFile file(m_fileSystem, m_contents, node.path());
    return file.isReadable() ? headOf(file, node) : std::nullopt;
}

std::optional<std::uint64_t> FileDigester::headOf(const OpenFile& file, const FileNode& node)
{
    const CacheShare share(m_contents, file.descriptor(), 0,
                           std::min(node.scannedBytes(), headBytes));
    m_contents.willReadParts(file.descriptor());
    const std::span<const std::byte> head = Reading(*this, file, node).next(headBytes);
    if (std::ssize(head) < minSampleBytes && node.scannedBytes() <= wholeSampleBytes) {
        return std::nullopt;
    }
    QuickHash hash;
    hash.update(head);
    return hash.value();
}

std::optional<std::uint64_t> FileDigester::ends(const FileNode& node)
{
    const OpenFile file(m_fileSystem, m_contents, node.path());
    if (!file.isReadable()) {
        return std::nullopt;
    }
    const std::int64_t tail = node.scannedBytes() - endSampleBytes;
    CacheShare headShare(m_contents, file.descriptor(), 0, endSampleBytes);
    CacheShare tailShare(m_contents, file.descriptor(), tail, node.scannedBytes());
    m_contents.willReadParts(file.descriptor());
    m_contents.willRead(file.descriptor(), 0, endSampleBytes);
    m_contents.willRead(file.descriptor(), tail, endSampleBytes);
    Reading reading(*this, file, node);
    QuickHash hash;
    const auto sink = [&](std::span<const std::byte> bytes) { hash.update(bytes); };
    std::int64_t sampled = reading.feed(endSampleBytes, headShare, sink);
    if (!reading.moveTo(tail)) {
        return std::nullopt;
    }
    sampled += reading.feed(endSampleBytes, tailShare, sink);
    return sampled < minSampleBytes || m_isCancelled() ? std::nullopt : std::optional(hash.value());
}

std::optional<Contents> FileDigester::contents(const FileNode& node)
{
    const OpenFile file(m_fileSystem, m_contents, node.path());
    if (!file.isReadable()) {
        return std::nullopt;
    }
    CacheShare share(m_contents, file.descriptor(), 0, node.scannedBytes());
    if (node.scannedBytes() > wholeSampleBytes) {
        m_contents.willReadOnce(file.descriptor());
    }
    Reading reading(*this, file, node);
    Contents contents;
    m_list.start();
    for (std::int64_t got = digestBytes; got == digestBytes; contents.bytes += got) {
        if (reading.skipZeros(digestBytes)) {
            m_list.update(std::as_bytes(std::span(m_zeros)));
            continue;
        }
        m_hash.start();
        got = reading.feed(digestBytes, share,
                           [this](std::span<const std::byte> block) { m_hash.update(block); });
        const std::optional<Sha256::Digest> digest = m_hash.finish();
        if (!digest || m_isCancelled()) {
            return std::nullopt;
        }
        m_list.update(std::as_bytes(std::span(*digest)));
    }
    const std::optional<Sha256::Digest> digest = m_list.finish();
    if (!digest) {
        return std::nullopt;
    }
    contents.digest = *digest;
    contents.isBrokenOff = reading.hasFault() || contents.bytes < node.scannedBytes();
    return contents;
}

std::optional<NameOfFile> FileDigester::name(const FileNode& node)
{
    const FilePath path = node.path();
    const OpenFile file(m_fileSystem, m_contents, path);
    if (!file.isReadable()) {
        return std::nullopt;
    }
    // By way of ".", since the folder itself may be a link.
    const OpenFile folder(m_fileSystem, m_contents, path.parent().appending("."));
    return NameOfFile{file.identity(), folder.hasStatus() ? folder.identity() : FileIdentity{},
                      file.links()};
}

} // namespace quorvane::DuplicateFinder
