// SPDX-License-Identifier: MIT
#include "ContentReader.h"

#include <span>

namespace quorvane::TagEngine {

ContentReader::ContentReader(FileSystemCalls& fileSystem, FileContentCalls& contents)
    : m_fileSystem(fileSystem)
    , m_contents(contents)
    , m_buffer(new std::byte[maximumContentBytes])
{}

int ContentReader::openFile(const FileNode& file)
{
    const FileNode* const folder = file.parent();
    if (folder == nullptr) {
        const ReachablePlace place(m_fileSystem, file.path());
        return place.isReachable() ? m_contents.open(place.parent(), place.name()) : -1;
    }
    if (folder != m_folder) {
        m_folder = folder;
        m_openFolder = nullptr;
        const ReachablePlace place(m_fileSystem, folder->path());
        const int descriptor =
            place.isReachable() ? m_fileSystem.openDirectory(place.parent(), place.name()) : -1;
        if (descriptor >= 0) {
            m_openFolder = std::make_shared<OpenDirectory>(m_fileSystem, descriptor);
        }
    }
    if (!m_openFolder) {
        return -1;
    }
    const ReachablePlace place(m_openFolder, file.name());
    return m_contents.open(place.parent(), place.name());
}

std::optional<std::string_view> ContentReader::beginningOf(const FileNode& file)
{
    const int descriptor = openFile(file);
    if (descriptor < 0) {
        return std::nullopt;
    }
    OpenFileStatus status;
    bool isRead = m_contents.status(descriptor, status) && status.isRegularFile;
    std::size_t size = 0;
    while (isRead && size < maximumContentBytes) {
        const std::span<std::byte> room(m_buffer.get() + size, maximumContentBytes - size);
        const std::int64_t got = m_contents.read(descriptor, room);
        isRead = got >= 0;
        if (got <= 0) {
            break;
        }
        size += static_cast<std::size_t>(got);
        if (static_cast<std::int64_t>(size) == status.bytes) {
            // All that was there when it was opened: that saves the read that finds the end.
            break;
        }
    }
    m_contents.close(descriptor);
    if (!isRead) {
        return std::nullopt;
    }
    return std::string_view(reinterpret_cast<const char*>(m_buffer.get()), size);
}

} // namespace quorvane::TagEngine
