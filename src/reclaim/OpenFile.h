// SPDX-License-Identifier: MIT
#pragma once

#include "DirectoryWalk.h"
#include "FileContentCalls.h"
#include "FilePath.h"
#include "FileSystemCalls.h"

namespace quorvane::DuplicateFinder {

/// What stands at a path, opened for reading and closed at the end of its life. The path may have
/// any length.
class OpenFile
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

    /// It is open and known for what it is, which need not be a file.
    bool hasStatus() const { return m_hasStatus; }
    /// It is a regular file.
    bool isReadable() const { return m_hasStatus && m_status.isRegularFile; }
    int descriptor() const { return m_descriptor; }
    const OpenFileStatus& status() const { return m_status; }

private:
    FileContentCalls& m_contents;
    int m_descriptor = -1;
    OpenFileStatus m_status;
    bool m_hasStatus = false;
};

} // namespace quorvane::DuplicateFinder
