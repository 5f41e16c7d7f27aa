// SPDX-License-Identifier: MIT
#pragma once

#include "DirectoryWalk.h"
#include "FileContentCalls.h"
#include "FileNode.h"
#include "FileSystemCalls.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

namespace quorvane::TagEngine {

/// The most that is read of a file, in bytes.
inline constexpr std::size_t maximumContentBytes = 1000000;

/// Reads the beginnings of files, for one worker. It reads instead of mapping: a file that shrinks
/// meanwhile is simply shorter. Opens each file relative to its folder, which stays open from file
/// to file.
class ContentReader
{
public:
    ContentReader(FileSystemCalls& fileSystem, FileContentCalls& contents);

    /// The first maximumContentBytes of the file, valid until the next call. Absent when it cannot
    /// be read, and for what is no regular file any more.
    std::optional<std::string_view> beginningOf(const FileNode& file);

private:
    int openFile(const FileNode& file);

    FileSystemCalls& m_fileSystem;
    FileContentCalls& m_contents;
    const FileNode* m_folder = nullptr;
    std::shared_ptr<OpenDirectory> m_openFolder;
    std::unique_ptr<std::byte[]> m_buffer;
};

} // namespace quorvane::TagEngine
