// SPDX-License-Identifier: MIT
#include "DirectoryWalk.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <utility>

namespace quorvane {
namespace {

/// The longest name that one call takes, its NUL included.
constexpr std::size_t longestName = PATH_MAX;
/// Makes a call on a folder's path follow a link that stands in its last place: only the end of the
/// whole path may not be followed.
constexpr std::string_view itself = "/.";

} // namespace

OpenDirectory::~OpenDirectory()
{
    m_calls.close(m_descriptor);
    if (m_room != nullptr) {
        m_room->fetch_add(1, std::memory_order_relaxed);
    }
}

bool OpenDirectory::keepWithin(std::atomic<int>& room)
{
    if (room.fetch_sub(1, std::memory_order_relaxed) <= 0) {
        room.fetch_add(1, std::memory_order_relaxed);
        return false;
    }
    m_room = &room;
    return true;
}

ReachablePlace::ReachablePlace(FileSystemCalls& calls, const FilePath& path)
{
    std::string_view rest = path.bytes();
    // A call would take the path up to the NUL, which names something else.
    m_isReachable = rest.find('\0') == std::string_view::npos;
    while (m_isReachable && rest.size() >= longestName) {
        const std::size_t cut = rest.rfind('/', longestName - 1 - itself.size());
        if (cut == std::string_view::npos || cut == 0) {
            m_isReachable = false;
            return;
        }
        const std::string step = std::string(rest.substr(0, cut)).append(itself);
        const int descriptor = calls.openDirectory(parent(), step.c_str());
        if (descriptor < 0) {
            m_isReachable = false;
            return;
        }
        m_parent = std::make_shared<OpenDirectory>(calls, descriptor);
        rest.remove_prefix(cut + 1);
        // What follows is relative to the folder that is open now, also behind a doubled slash.
        rest.remove_prefix(std::min(rest.find_first_not_of('/'), rest.size()));
    }
    m_name = rest;
}

ReachablePlace::ReachablePlace(std::shared_ptr<OpenDirectory> parent, std::string_view name)
    : m_parent(std::move(parent))
    , m_name(name)
{}

int ReachablePlace::parent() const
{
    return m_parent ? m_parent->descriptor() : FileSystemCalls::noDirectory();
}

} // namespace quorvane
