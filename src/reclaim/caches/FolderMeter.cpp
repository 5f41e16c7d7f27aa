// SPDX-License-Identifier: MIT
#include "FolderMeter.h"

#include "CheckedMath.h"
#include "DirectoryWalk.h"
#include "FileSystemCalls.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace quorvane {
namespace {

constexpr unsigned minWorkers = 2;
constexpr unsigned maxWorkers = 8;
/// Part of the descriptors that may stay open as parents of folders that wait.
constexpr int descriptorShare = 2;
constexpr std::size_t entriesBetweenPolls = 512;
constexpr std::chrono::milliseconds folderReportInterval{80};
constexpr std::string_view packageExtension = ".app";
/// Behind a path, makes a call follow a link that stands in the last place.
constexpr std::string_view itself = "/.";
constexpr const char* sumPlace = "FolderMeter";

bool contains(std::span<const std::string_view> names, std::string_view name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

void add(FolderSums& sums, const FolderSums& more)
{
    sums.bytes = checkedAdd(sums.bytes, more.bytes, sumPlace);
    sums.allocatedBytes = checkedAdd(sums.allocatedBytes, more.allocatedBytes, sumPlace);
    sums.itemCount += more.itemCount;
    sums.lastModified = std::max(sums.lastModified, more.lastModified);
}

/// One walk over all that a meter was given: a stack of folders that wait and the workers that
/// share it.
class Walk
{
public:
    Walk(FileSystemCalls& calls, const FolderMeter::Rules& rules, const FolderMeter::Hooks& hooks,
         const FolderMeter::Names& names)
        : m_calls(calls)
        , m_rules(rules)
        , m_hooks(hooks)
        , m_names(names)
        , m_roomForOpenDirectories(calls.descriptorLimit() / descriptorShare)
    {}

    /// The folders' slots are 0 and up, in the order given.
    void addMeasured(std::span<const FilePath> folders)
    {
        m_slots.resize(folders.size());
        for (std::size_t i = folders.size(); i-- > 0;) {
            m_slots[i].path = folders[i];
            if (!addRoot(folders[i], i)) {
                m_slots[i].waiting = 0;
            }
        }
        m_given = folders.size();
    }

    void addSearched(const FilePath& root) { addRoot(root, searching); }

    void run()
    {
        advance();
        std::vector<std::thread> helpers;
        const unsigned wanted =
            std::clamp(std::thread::hardware_concurrency(), minWorkers, maxWorkers);
        for (unsigned i = 1; i < wanted && m_pending.size() + m_slots.size() > 0; ++i) {
            try {
                helpers.emplace_back([this] { work(); });
            } catch (const std::system_error&) {
                // At the system's limit of threads the walk goes on with those that are there.
                break;
            }
        }
        work();
        for (std::thread& helper : helpers) {
            helper.join();
        }
    }

    struct Slot
    {
        FilePath path;
        FolderSums sums;
        std::size_t waiting = 1; ///< folders of it that are not listed yet
        bool isReadable = false;

        bool isMeasured() const { return waiting == 0 && isReadable; }
    };
    const std::deque<Slot>& slots() const { return m_slots; }

private:
    /// Stands for the slot of a folder that is searched, not measured.
    static constexpr std::size_t searching = static_cast<std::size_t>(-1);

    struct Folder
    {
        /// The folder that holds it, while there is room to keep that open; else it is reached by
        /// path.
        std::shared_ptr<OpenDirectory> parent;
        std::string path;
        std::size_t slot = searching;
        std::uint64_t device = 0;
        bool isRoot = false;       ///< of a slot, or of the search
        bool isMountPoint = false; ///< something may be mounted there
    };

    struct Scratch
    {
        NameList names;
        std::vector<Folder> found;
        FolderSums sums;
        bool isListed = false;
    };

    bool addRoot(const FilePath& path, std::size_t slot)
    {
        Folder folder;
        folder.path = path.bytes() + std::string(itself);
        folder.slot = slot;
        folder.isRoot = true;
        folder.isMountPoint = true;
        const ReachablePlace place(m_calls, FilePath(folder.path));
        EntryStatus status;
        if (path.isEmpty() || !place.isReachable() ||
            !m_calls.status(place.parent(), place.name(), status) ||
            status.kind != EntryStatus::Kind::directory) {
            return false;
        }
        folder.device = status.device;
        m_pending.push_back(std::move(folder));
        return true;
    }

    void work()
    {
        Scratch scratch;
        Folder folder;
        bool isActive = false;
        while (exchange(scratch, folder, isActive)) {
            list(folder, scratch);
        }
    }

    /// Hands over what the last folder held and takes the next one; false when there is none.
    bool exchange(Scratch& scratch, Folder& folder, bool& isActive)
    {
        if (m_hooks.isCancelled && m_hooks.isCancelled()) {
            m_isStopped = true;
        }
        std::unique_lock guard(m_lock);
        if (isActive) {
            --m_active;
            handOver(scratch, folder);
            isActive = false;
        }
        if (m_waitingWorkers > 0) {
            m_wake.notify_all();
        }
        report(guard);
        while (m_pending.empty() || m_isStopped) {
            if (m_isStopped || m_active == 0) {
                m_wake.notify_all();
                return false;
            }
            ++m_waitingWorkers;
            m_wake.wait(guard);
            --m_waitingWorkers;
        }
        folder = std::move(m_pending.back());
        m_pending.pop_back();
        ++m_active;
        isActive = true;
        return true;
    }

    void handOver(Scratch& scratch, const Folder& folder)
    {
        ++m_foldersListed;
        for (Folder& found : scratch.found) {
            if (found.isRoot) {
                found.slot = m_slots.size();
                m_slots.emplace_back().path = FilePath(found.path);
            } else if (found.slot != searching) {
                ++m_slots[found.slot].waiting;
            }
            m_pending.push_back(std::move(found));
        }
        if (folder.slot == searching || m_isStopped) {
            return;
        }
        Slot& slot = m_slots[folder.slot];
        slot.isReadable = slot.isReadable || (folder.isRoot && scratch.isListed);
        add(slot.sums, scratch.sums);
        --slot.waiting;
        advance();
    }

    void advance()
    {
        while (m_measured < m_given && m_slots[m_measured].waiting == 0) {
            ++m_measured;
        }
    }

    /// One thread at a time, outside the lock, so that the others go on meanwhile. What is measured
    /// while a report is under way is reported by the thread that makes it.
    void report(std::unique_lock<std::mutex>& guard)
    {
        const auto now = std::chrono::steady_clock::now();
        if (m_hooks.onFolders && !m_isReporting &&
            now - m_lastFolderReport >= folderReportInterval) {
            m_lastFolderReport = now;
            const std::int64_t listed = m_foldersListed;
            unlocked(guard, [&] { m_hooks.onFolders(listed); });
        }
        while (m_hooks.onMeasured && !m_isReporting && m_reported < m_measured) {
            const std::size_t next = ++m_reported;
            unlocked(guard, [&] { m_hooks.onMeasured(next); });
        }
    }

    template<class Call>
    void unlocked(std::unique_lock<std::mutex>& guard, const Call& call)
    {
        m_isReporting = true;
        guard.unlock();
        call();
        guard.lock();
        m_isReporting = false;
    }

    void list(const Folder& folder, Scratch& scratch)
    {
        scratch.names.clear();
        scratch.found.clear();
        scratch.sums = {};
        scratch.isListed = false;
        const std::shared_ptr<OpenDirectory> directory = open(folder);
        if (!directory) {
            return;
        }
        // What a listing gave before it failed counts.
        scratch.isListed =
            m_calls.appendNames(directory->descriptor(), scratch.names, m_isStopped) ||
            !scratch.names.spans.empty();
        const std::string path = pathBelow(folder);
        for (std::size_t i = 0; i < scratch.names.spans.size(); ++i) {
            if (i % entriesBetweenPolls == entriesBetweenPolls - 1 && m_hooks.isCancelled &&
                m_hooks.isCancelled()) {
                m_isStopped = true;
            }
            if (m_isStopped.load(std::memory_order_relaxed)) {
                return;
            }
            if (folder.slot == searching) {
                search(folder, *directory, path, i, scratch);
            } else {
                measure(folder, *directory, path, i, scratch);
            }
        }
        if (!scratch.found.empty() && directory->keepWithin(m_roomForOpenDirectories)) {
            for (Folder& found : scratch.found) {
                found.parent = directory;
            }
        }
    }

    std::shared_ptr<OpenDirectory> open(const Folder& folder)
    {
        const ReachablePlace place = folder.parent
                                         ? ReachablePlace(folder.parent, nameOf(folder.path))
                                         : ReachablePlace(m_calls, FilePath(folder.path));
        if (!place.isReachable() || (folder.isMountPoint && !isToBeListed(place))) {
            return nullptr;
        }
        const int descriptor = m_calls.openDirectory(place.parent(), place.name());
        return descriptor < 0 ? nullptr : std::make_shared<OpenDirectory>(m_calls, descriptor);
    }

    /// Nothing of the automounter's: to list its maps could mount what nobody has used.
    bool isToBeListed(const ReachablePlace& place)
    {
        return m_calls.volumeKind(place.parent(), place.name()) == VolumeKind::ordinary;
    }

    static std::string_view nameOf(std::string_view path)
    {
        return path.substr(path.rfind('/') + 1);
    }

    /// The path that the folder's entries begin with, its slash included.
    static std::string pathBelow(const Folder& folder)
    {
        std::string_view path = folder.path;
        if (path.ends_with(itself)) {
            path.remove_suffix(itself.size());
        }
        std::string below(path);
        if (!below.ends_with('/')) {
            below.push_back('/');
        }
        return below;
    }

    static std::string_view nameAt(const NameList& names, std::size_t i)
    {
        return {names.nameAt(i), names.spans[i].length};
    }

    void measure(const Folder& folder, const OpenDirectory& directory, const std::string& path,
                 std::size_t i, Scratch& scratch)
    {
        const std::string_view name = nameAt(scratch.names, i);
        EntryStatus status;
        if ((m_rules.skipsHidden && name.front() == '.') ||
            !m_calls.status(directory.descriptor(), scratch.names.nameAt(i), status)) {
            return;
        }
        if (status.kind == EntryStatus::Kind::directory) {
            if (!(m_rules.skipsPackages && name.ends_with(packageExtension))) {
                enter(folder, path, name, status, folder.slot, scratch);
            }
            return;
        }
        FolderSums& sums = scratch.sums;
        sums.bytes = checkedAdd(sums.bytes, status.size, sumPlace);
        if (status.kind == EntryStatus::Kind::regularFile) {
            sums.allocatedBytes = checkedAdd(sums.allocatedBytes, status.allocatedBytes, sumPlace);
        }
        ++sums.itemCount;
        sums.lastModified = std::max(sums.lastModified, std::optional(status.modifiedSeconds));
    }

    void search(const Folder& folder, const OpenDirectory& directory, const std::string& path,
                std::size_t i, Scratch& scratch)
    {
        const std::string_view name = nameAt(scratch.names, i);
        if (scratch.names.spans[i].hint == NameList::Hint::noDirectory) {
            return;
        }
        const bool isWanted = contains(m_names.wanted, name);
        if (!isWanted && (name.front() == '.' || contains(m_names.neverEntered, name))) {
            return;
        }
        EntryStatus status;
        if (!m_calls.status(directory.descriptor(), scratch.names.nameAt(i), status) ||
            status.kind != EntryStatus::Kind::directory) {
            return;
        }
        const std::size_t before = scratch.found.size();
        enter(folder, path, name, status, searching, scratch);
        if (isWanted && scratch.found.size() > before) {
            scratch.found.back().isRoot = true;
        }
    }

    void enter(const Folder& folder, const std::string& path, std::string_view name,
               const EntryStatus& status, std::size_t slot, Scratch& scratch) const
    {
        const bool isMountPoint = status.device != folder.device;
        if (isMountPoint && m_rules.staysOnVolume) {
            return;
        }
        Folder found;
        found.path.reserve(path.size() + name.size());
        found.path.append(path).append(name);
        found.slot = slot;
        found.device = status.device;
        found.isMountPoint = isMountPoint;
        scratch.found.push_back(std::move(found));
    }

    FileSystemCalls& m_calls;
    const FolderMeter::Rules& m_rules;
    const FolderMeter::Hooks& m_hooks;
    const FolderMeter::Names& m_names;
    std::atomic<int> m_roomForOpenDirectories;
    std::atomic<bool> m_isStopped{false};

    std::mutex m_lock;
    std::condition_variable m_wake;
    std::vector<Folder> m_pending;
    std::deque<Slot> m_slots;
    std::size_t m_given = 0;
    std::size_t m_measured = 0; ///< the first so many of the given are done
    std::size_t m_reported = 0;
    int m_active = 0;
    int m_waitingWorkers = 0;
    bool m_isReporting = false;
    std::int64_t m_foldersListed = 0;
    std::chrono::steady_clock::time_point m_lastFolderReport = std::chrono::steady_clock::now();
};

} // namespace

FolderMeter::FolderMeter(const Rules& rules, Hooks hooks)
    : FolderMeter(rules, std::move(hooks), FileSystemCalls::system())
{}

FolderMeter::FolderMeter(const Rules& rules, Hooks hooks, FileSystemCalls& calls)
    : m_rules(rules)
    , m_hooks(std::move(hooks))
    , m_calls(calls)
{}

std::vector<std::optional<FolderSums>> FolderMeter::measure(std::span<const FilePath> folders) const
{
    const Names none;
    Walk walk(m_calls, m_rules, m_hooks, none);
    walk.addMeasured(folders);
    walk.run();
    std::vector<std::optional<FolderSums>> sums;
    sums.reserve(folders.size());
    for (const Walk::Slot& slot : walk.slots()) {
        sums.push_back(slot.isMeasured() ? std::optional(slot.sums) : std::nullopt);
    }
    return sums;
}

std::vector<FolderMeter::Found> FolderMeter::search(const FilePath& root, const Names& names) const
{
    Walk walk(m_calls, m_rules, m_hooks, names);
    walk.addSearched(root);
    walk.run();
    std::vector<Found> found;
    for (const Walk::Slot& slot : walk.slots()) {
        if (slot.isMeasured()) {
            found.push_back({slot.path, slot.sums});
        }
    }
    return found;
}

std::optional<EntryStatus> statusOf(const FilePath& path, FileSystemCalls& calls)
{
    const ReachablePlace place(calls, path);
    EntryStatus status;
    if (path.isEmpty() || !place.isReachable() ||
        !calls.status(place.parent(), place.name(), status)) {
        return std::nullopt;
    }
    return status;
}

std::int64_t directoryBytes(const FilePath& path)
{
    return directoryBytes(path, FileSystemCalls::system());
}

std::int64_t directoryBytes(const FilePath& path, FileSystemCalls& calls)
{
    return directoryBytes({&path, 1}, {}, calls).front();
}

std::vector<std::int64_t> directoryBytes(std::span<const FilePath> paths,
                                         const std::function<bool()>& isCancelled,
                                         FileSystemCalls& calls)
{
    const auto sums =
        FolderMeter({true, false, false}, {isCancelled, {}, {}}, calls).measure(paths);
    std::vector<std::int64_t> bytes;
    bytes.reserve(paths.size());
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const std::optional<EntryStatus> status = statusOf(paths[i], calls);
        if (sums[i]) {
            bytes.push_back(sums[i]->allocatedBytes);
        } else if (status && status->kind != EntryStatus::Kind::directory) {
            bytes.push_back(status->size);
        } else {
            bytes.push_back(0);
        }
    }
    return bytes;
}

} // namespace quorvane
