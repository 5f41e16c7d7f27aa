// SPDX-License-Identifier: MIT
#pragma once

#include "FileSystemCalls.h"

#include <array>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string_view>
#include <utility>

namespace quorvane {

/// The file system with faults: makes a chosen call fail, runs a hook before calls, changes what a
/// status tells, and counts. Set up before use; the calls themselves may come from any thread.
class FaultyFileSystemCalls final : public FileSystemCalls
{
public:
    enum class Call {
        openDirectory,
        appendNames,
        status,
        creationDate,
        readLink,
        volumeKind,
        volumeCapacity
    };
    static constexpr std::array allCalls{Call::openDirectory, Call::appendNames, Call::status,
                                         Call::creationDate,  Call::readLink,    Call::volumeKind,
                                         Call::volumeCapacity};

    /// name is empty for a call that has none.
    using Hook = std::function<void(int number, std::string_view name)>;
    using StatusChange = std::function<void(std::string_view name, EntryStatus& status)>;

    explicit FaultyFileSystemCalls(FileSystemCalls& below = FileSystemCalls::system());

    /// The call of that number (from 1) fails without reaching the system; 0 for none.
    void failOnce(Call call, int number) { entry(call).failing = number; }
    void failAlways(Call call) { entry(call).failsAlways = true; }
    /// Runs before each call of the kind, on the calling thread and outside any lock. A hook that
    /// changes the disk stands for another process.
    void before(Call call, Hook hook) { entry(call).hook = std::move(hook); }
    /// Runs on each status that was read.
    void changeStatus(StatusChange change) { m_change = std::move(change); }
    /// Tells the kind of a folder by its name, in place of the system.
    void claimVolumeKind(std::function<VolumeKind(std::string_view name)> kindOf)
    {
        m_claimed = std::move(kindOf);
    }
    void limitDescriptors(int limit) { m_descriptorLimit = limit; }

    int count(Call call) const;
    /// Directories that are open now, and the most that were at any time.
    int openNow() const;
    int mostOpen() const;

    int openDirectory(int parent, const char* name) override;
    void close(int directory) override;
    using FileSystemCalls::appendNames;
    bool appendNames(int directory, NameList& names, const std::atomic<bool>& stops) override;
    bool status(int directory, const char* name, EntryStatus& status) override;
    bool creationDate(int directory, const char* name, std::int64_t& seconds) override;
    bool readLink(int directory, const char* name, std::string& target) override;
    VolumeKind volumeKind(int parent, const char* name) override;
    bool volumeCapacity(const char* path, VolumeCapacity& capacity) override;
    int descriptorLimit() override;

private:
    struct Entry
    {
        int count = 0;
        int failing = 0;
        bool failsAlways = false;
        Hook hook;
    };

    Entry& entry(Call call) { return m_entries[static_cast<std::size_t>(call)]; }
    /// Counts the call, runs its hook, and tells whether it may reach the system.
    bool passes(Call call, std::string_view name);

    FileSystemCalls& m_below;
    mutable std::mutex m_lock;
    std::array<Entry, allCalls.size()> m_entries;
    StatusChange m_change;
    std::function<VolumeKind(std::string_view name)> m_claimed;
    int m_descriptorLimit = 0;
    int m_openNow = 0;
    int m_mostOpen = 0;
};

} // namespace quorvane
