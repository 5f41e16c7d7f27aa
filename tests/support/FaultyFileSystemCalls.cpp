// SPDX-License-Identifier: MIT
#include "FaultyFileSystemCalls.h"

#include <algorithm>

namespace quorvane {

FaultyFileSystemCalls::FaultyFileSystemCalls(FileSystemCalls& below)
    : m_below(below)
{}

int FaultyFileSystemCalls::count(Call call) const
{
    const std::lock_guard guard(m_lock);
    return m_entries[static_cast<std::size_t>(call)].count;
}

int FaultyFileSystemCalls::openNow() const
{
    const std::lock_guard guard(m_lock);
    return m_openNow;
}

int FaultyFileSystemCalls::mostOpen() const
{
    const std::lock_guard guard(m_lock);
    return m_mostOpen;
}

bool FaultyFileSystemCalls::passes(Call call, std::string_view name)
{
    int number = 0;
    {
        const std::lock_guard guard(m_lock);
        number = ++entry(call).count;
    }
    const Entry& settings = entry(call);
    if (settings.hook) {
        settings.hook(number, name);
    }
    return !settings.failsAlways && number != settings.failing;
}

int FaultyFileSystemCalls::openDirectory(int parent, const char* name)
{
    const int directory =
        passes(Call::openDirectory, name) ? m_below.openDirectory(parent, name) : -1;
    if (directory >= 0) {
        const std::lock_guard guard(m_lock);
        ++m_openNow;
        m_mostOpen = std::max(m_mostOpen, m_openNow);
    }
    return directory;
}

void FaultyFileSystemCalls::close(int directory)
{
    {
        const std::lock_guard guard(m_lock);
        --m_openNow;
    }
    m_below.close(directory);
}

bool FaultyFileSystemCalls::appendNames(int directory, NameList& names,
                                        const std::atomic<bool>& stops)
{
    return passes(Call::appendNames, {}) && m_below.appendNames(directory, names, stops);
}

bool FaultyFileSystemCalls::status(int directory, const char* name, EntryStatus& status)
{
    if (!passes(Call::status, name) || !m_below.status(directory, name, status)) {
        return false;
    }
    if (m_change) {
        m_change(name, status);
    }
    return true;
}

bool FaultyFileSystemCalls::creationDate(int directory, const char* name, std::int64_t& seconds)
{
    return passes(Call::creationDate, name) && m_below.creationDate(directory, name, seconds);
}

bool FaultyFileSystemCalls::readLink(int directory, const char* name, std::string& target)
{
    return passes(Call::readLink, name) && m_below.readLink(directory, name, target);
}

VolumeKind FaultyFileSystemCalls::volumeKind(int parent, const char* name)
{
    if (!passes(Call::volumeKind, name)) {
        return VolumeKind::ordinary;
    }
    return m_claimed ? m_claimed(name) : m_below.volumeKind(parent, name);
}

bool FaultyFileSystemCalls::volumeCapacity(const char* path, VolumeCapacity& capacity)
{
    return passes(Call::volumeCapacity, path) && m_below.volumeCapacity(path, capacity);
}

int FaultyFileSystemCalls::descriptorLimit()
{
    return m_descriptorLimit > 0 ? m_descriptorLimit : m_below.descriptorLimit();
}

} // namespace quorvane
