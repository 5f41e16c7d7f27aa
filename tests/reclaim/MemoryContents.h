// SPDX-License-Identifier: MIT
#pragma once

#include "FileContentCalls.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace quorvane::test {

/// One file's contents, and what goes wrong with them.
struct MemoryFile
{
    std::string bytes;
    bool opens = true;
    bool hasStatus = true;
    bool isRegularFile = true;
    bool seeks = true;
    std::int64_t readable = std::numeric_limits<std::int64_t>::max(); ///< beyond it reads fail
    std::int64_t changedSeconds = 1'000'000'000;
    std::int64_t modifiedSeconds = 0; ///< as trees from text have it
    std::uint64_t device = 1;
    std::uint64_t inode = 0; ///< 0: one that no other path has
    std::uint64_t links = 1;
    std::set<std::int64_t> cachedPages = {}; ///< that are in the page cache, from 0
    /// Where the file has data, in their order; nowhere else may be read. Empty: everywhere.
    std::vector<FileContentCalls::DataRange> data = {};
};

/// File contents that lie in memory, by absolute path. What is not there cannot be opened. Set up
/// before use, or from beforeOpen; the calls themselves may come from any thread.
class MemoryContents final : public FileContentCalls
{
public:
    /// Runs before each open outside any lock, with how often this path was opened before.
    std::function<void(const std::string& path, int before)> beforeOpen;
    /// Tells what is in the page cache of the files, page by page.
    bool tellsCache = false;
    static constexpr std::int64_t pageBytes = 4096;

    MemoryFile& file(const std::string& path)
    {
        const std::lock_guard guard(m_lock);
        return m_files[path];
    }
    void remove(const std::string& path)
    {
        const std::lock_guard guard(m_lock);
        m_files.erase(path);
    }

    int opened(const std::string& path) const
    {
        const std::lock_guard guard(m_lock);
        const auto found = m_opened.find(path);
        return found == m_opened.end() ? 0 : found->second;
    }
    int openedInAll() const
    {
        const std::lock_guard guard(m_lock);
        return m_lastDescriptor;
    }
    /// Files that were opened and not closed.
    std::size_t openNow() const
    {
        const std::lock_guard guard(m_lock);
        return m_open.size();
    }
    std::int64_t bytesRead() const
    {
        const std::lock_guard guard(m_lock);
        return m_bytesRead;
    }
    std::size_t largestRead() const
    {
        const std::lock_guard guard(m_lock);
        return m_largestRead;
    }

    int open(int, const char* name) override
    {
        if (beforeOpen) {
            beforeOpen(name, opened(name));
        }
        const std::lock_guard guard(m_lock);
        ++m_opened[name];
        const auto found = m_files.find(name);
        if (found == m_files.end() || !found->second.opens) {
            return -1;
        }
        m_open[++m_lastDescriptor] = {found->second, 0, name};
        if (found->second.inode == 0) {
            m_open[m_lastDescriptor].file.inode = ownInode(name);
        }
        return m_lastDescriptor;
    }
    bool status(int descriptor, OpenFileStatus& status) override
    {
        const std::lock_guard guard(m_lock);
        const MemoryFile& file = m_open.at(descriptor).file;
        status.isRegularFile = file.isRegularFile;
        status.changedSeconds = file.changedSeconds;
        status.device = file.device;
        status.inode = file.inode;
        status.links = file.links;
        status.bytes = static_cast<std::int64_t>(file.bytes.size());
        status.modifiedSeconds = file.modifiedSeconds;
        return file.hasStatus;
    }
    std::int64_t read(int descriptor, std::span<std::byte> room) override
    {
        const std::lock_guard guard(m_lock);
        Open& open = m_open.at(descriptor);
        m_largestRead = std::max(m_largestRead, room.size());
        const auto size = static_cast<std::int64_t>(open.file.bytes.size());
        const std::int64_t end = std::min(size, open.file.readable);
        if (open.position >= end) {
            return open.position >= size ? 0 : -1;
        }
        const std::int64_t got =
            std::min(end - open.position, static_cast<std::int64_t>(room.size()));
        std::memcpy(room.data(), open.file.bytes.data() + open.position,
                    static_cast<std::size_t>(got));
        const bool isData =
            open.file.data.empty() ||
            std::any_of(open.file.data.begin(), open.file.data.end(), [&](const DataRange& range) {
                return range.begin <= open.position && open.position + got <= range.end;
            });
        if (!isData) {
            return -1;
        }
        bringIn(open, got);
        open.position += got;
        m_bytesRead += got;
        return got;
    }
    bool seek(int descriptor, std::int64_t position) override
    {
        const std::lock_guard guard(m_lock);
        Open& open = m_open.at(descriptor);
        open.position = position;
        return open.file.seeks;
    }
    void close(int descriptor) override
    {
        const std::lock_guard guard(m_lock);
        m_open.erase(descriptor);
    }
    DataRange dataFrom(int descriptor, std::int64_t position) override
    {
        const std::lock_guard guard(m_lock);
        const MemoryFile& file = m_open.at(descriptor).file;
        for (const DataRange& range : file.data) {
            if (position < range.end) {
                return {std::max(position, range.begin), range.end};
            }
        }
        constexpr std::int64_t last = std::numeric_limits<std::int64_t>::max();
        return file.data.empty() ? DataRange{position, last} : DataRange{last, last};
    }
    void willRead(int, std::int64_t, std::int64_t) override {}
    void willReadOnce(int) override {}
    std::uint64_t cachedPieces(int descriptor, std::int64_t position, std::int64_t bytes,
                               std::int64_t pieceBytes) override
    {
        if (!tellsCache) {
            return FileContentCalls::cachedPieces(descriptor, position, bytes, pieceBytes);
        }
        const std::lock_guard guard(m_lock);
        const auto found = m_files.find(m_open.at(descriptor).path);
        if (found == m_files.end()) {
            return 0;
        }
        std::uint64_t pieces = 0;
        for (const std::int64_t page : found->second.cachedPages) {
            const std::int64_t place = page * pageBytes - position;
            if (place >= 0 && place < bytes) {
                pieces |= std::uint64_t{1} << (place / pieceBytes);
            }
        }
        return pieces;
    }
    void isDoneWith(int descriptor, std::int64_t position, std::int64_t bytes) override
    {
        const std::lock_guard guard(m_lock);
        ++m_takenOut;
        const auto found = m_files.find(m_open.at(descriptor).path);
        if (found != m_files.end()) {
            std::erase_if(found->second.cachedPages, [&](std::int64_t page) {
                return page * pageBytes >= position && page * pageBytes < position + bytes;
            });
        }
    }
    /// Pages that had to be read from the disk.
    std::int64_t pagesBroughtIn() const
    {
        const std::lock_guard guard(m_lock);
        return m_pagesBroughtIn;
    }
    /// How often something was to be taken out of the cache.
    int takenOut() const
    {
        const std::lock_guard guard(m_lock);
        return m_takenOut;
    }

private:
    static std::uint64_t ownInode(const char* path)
    {
        return std::hash<std::string>()(path) | std::uint64_t{1} << 63;
    }

    struct Open
    {
        MemoryFile file;
        std::int64_t position = 0;
        std::string path = {};
    };

    void bringIn(const Open& open, std::int64_t bytes)
    {
        const auto found = m_files.find(open.path);
        for (std::int64_t page = open.position / pageBytes;
             found != m_files.end() && page * pageBytes < open.position + bytes; ++page) {
            m_pagesBroughtIn += found->second.cachedPages.insert(page).second ? 1 : 0;
        }
    }

    mutable std::mutex m_lock;
    std::map<std::string, MemoryFile> m_files;
    std::map<std::string, int> m_opened;
    std::map<int, Open> m_open;
    int m_lastDescriptor = 0;
    std::int64_t m_bytesRead = 0;
    std::size_t m_largestRead = 0;
    std::int64_t m_pagesBroughtIn = 0;
    int m_takenOut = 0;
};

} // namespace quorvane::test
