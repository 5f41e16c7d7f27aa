// SPDX-License-Identifier: MIT
#include "DiskReader.h"

#include "DirectoryWalk.h"
#include "FileContentCalls.h"
#include "FolderMeter.h"

#include <algorithm>
#include <span>

namespace quorvane {
namespace {

/// Behind a path, makes a call follow a link that stands in the last place.
constexpr std::string_view itself = "/.";
/// As many as the kernel follows in one path.
constexpr int maxLinks = 40;
constexpr std::size_t chunkBytes = std::size_t{64} << 10;

FilePath followed(const FilePath& path)
{
    return FilePath(path.bytes() + std::string(itself));
}

} // namespace

std::optional<EntryStatus> DiskReader::status(const FilePath& path) const
{
    return statusOf(path, m_calls);
}

bool DiskReader::isDirectory(const FilePath& path) const
{
    const std::optional<EntryStatus> known = status(path);
    return known && known->kind == EntryStatus::Kind::directory;
}

bool DiskReader::leadsToDirectory(const FilePath& path) const
{
    return !path.isEmpty() && isDirectory(followed(path));
}

std::vector<std::string> DiskReader::names(const FilePath& folder) const
{
    std::vector<std::string> names;
    const ReachablePlace place(m_calls, followed(folder));
    const int descriptor = !folder.isEmpty() && place.isReachable()
                               ? m_calls.openDirectory(place.parent(), place.name())
                               : -1;
    if (descriptor < 0) {
        return names;
    }
    const OpenDirectory directory(m_calls, descriptor);
    NameList list;
    m_calls.appendNames(descriptor, list);
    names.reserve(list.spans.size());
    for (std::size_t i = 0; i < list.spans.size(); ++i) {
        names.emplace_back(list.nameAt(i), list.spans[i].length);
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::optional<std::string> DiskReader::text(const FilePath& path, std::size_t maxBytes) const
{
    const std::optional<EntryStatus> known = status(path);
    if (!known || known->kind != EntryStatus::Kind::regularFile) {
        return std::nullopt;
    }
    std::string bytes = head(path, maxBytes + 1);
    if (bytes.size() > maxBytes || (bytes.empty() && known->size > 0)) {
        return std::nullopt;
    }
    return bytes;
}

std::optional<std::string> DiskReader::linkedText(const FilePath& path) const
{
    return text(followingLinks(path));
}

FilePath DiskReader::followingLinks(const FilePath& path) const
{
    FilePath current = path;
    for (int step = 0; step < maxLinks; ++step) {
        const ReachablePlace place(m_calls, current);
        std::string target;
        if (!place.isReachable() || !m_calls.readLink(place.parent(), place.name(), target) ||
            target.empty()) {
            return current;
        }
        current = target.front() == '/' ? FilePath(std::move(target))
                                        : current.parent().appending(target);
    }
    return current;
}

std::string DiskReader::head(const FilePath& path, std::size_t bytes) const
{
    std::string read;
    const ReachablePlace place(m_calls, path);
    const int file = place.isReachable() ? m_contents.open(place.parent(), place.name()) : -1;
    if (file < 0) {
        return read;
    }
    OpenFileStatus status;
    if (m_contents.status(file, status) && status.isRegularFile) {
        while (read.size() < bytes) {
            const std::size_t had = read.size();
            read.resize(had + std::min(chunkBytes, bytes - had));
            const std::int64_t got =
                m_contents.read(file, std::as_writable_bytes(std::span(read).subspan(had)));
            read.resize(had + static_cast<std::size_t>(std::max<std::int64_t>(got, 0)));
            if (got <= 0) {
                break;
            }
        }
    }
    m_contents.close(file);
    return read;
}

} // namespace quorvane
