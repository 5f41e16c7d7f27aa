// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"
#include "FilePath.h"
#include "FileSystemCalls.h"

#include <atomic>
#include <memory>
#include <string>
#include <string_view>

namespace quorvane {

/// An open directory that is closed when its last holder lets go.
class OpenDirectory
{
public:
    OpenDirectory(FileSystemCalls& calls, int descriptor)
        : m_calls(calls)
        , m_descriptor(descriptor)
    {}
    OpenDirectory(const OpenDirectory&) = delete;
    OpenDirectory& operator=(const OpenDirectory&) = delete;
    ~OpenDirectory();

    int descriptor() const { return m_descriptor; }

    /// Counts this directory against the room while it lives; false when there is none left.
    bool keepWithin(std::atomic<int>& room);

private:
    FileSystemCalls& m_calls;
    int m_descriptor;
    std::atomic<int>* m_room = nullptr;
};

/// A place in the file system in a form that system calls take at any path length: a name relative
/// to a directory that is open, or to nothing.
class ReachablePlace
{
public:
    /// Opens as many folders on the way as the length of the path needs: a single call takes at
    /// most PATH_MAX bytes. Not isReachable() when one of them cannot be opened.
    ReachablePlace(FileSystemCalls& calls, const FilePath& path);
    /// A name directly below an open directory.
    ReachablePlace(std::shared_ptr<OpenDirectory> parent, std::string_view name);

    bool isReachable() const { return m_isReachable; }
    int parent() const;
    const char* name() const { return m_name.c_str(); }

private:
    std::shared_ptr<OpenDirectory> m_parent;
    std::string m_name;
    bool m_isReachable = true;
};

} // namespace quorvane
