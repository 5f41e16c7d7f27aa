// SPDX-License-Identifier: MIT
#include "FloorWalk.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <cstddef>
#include <cstring>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace quorvane {
namespace {

constexpr std::size_t listingBytes = std::size_t{64} << 10;

/// The head of one record of getdents64(2); the name follows it.
struct ListingRecord
{
    std::uint64_t inode;
    std::int64_t offset;
    std::uint16_t length;
    std::uint8_t type;
};
constexpr std::size_t nameOffset = offsetof(ListingRecord, type) + 1;

/// An open folder that waits for its subfolders to be opened relative to it.
struct OpenFolder
{
    int descriptor;
    std::atomic<std::size_t> waiting;
};

struct PendingFolder
{
    OpenFolder* parent;
    std::string name;
};

bool isDots(const char* name)
{
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

class Walk
{
public:
    std::variant<WalkTotals, std::string> run(const std::string& root, int workers)
    {
        auto* const above = new OpenFolder{AT_FDCWD, {2}};
        m_pending.push_back({above, root});
        std::vector<std::thread> threads;
        for (int i = 1; i < workers; ++i) {
            threads.emplace_back([this] { work(); });
        }
        work();
        for (std::thread& thread : threads) {
            thread.join();
        }
        delete above;
        if (m_outOfDescriptors) {
            return std::string("too many open files");
        }
        return m_totals;
    }

private:
    void work()
    {
        WalkTotals own;
        std::vector<PendingFolder> found;
        PendingFolder folder;
        bool isActive = false;
        while (exchange(found, folder, isActive)) {
            list(folder, found, own);
        }
        const std::lock_guard guard(m_lock);
        m_totals.entries += own.entries;
        m_totals.files += own.files;
        m_totals.directories += own.directories;
        m_totals.logicalBytes += own.logicalBytes;
        m_totals.diskBytes += own.diskBytes;
    }

    /// Hands over what was found and takes the next folder; false when the walk has ended.
    bool exchange(std::vector<PendingFolder>& found, PendingFolder& next, bool& isActive)
    {
        std::unique_lock guard(m_lock);
        for (PendingFolder& folder : found) {
            m_pending.push_back(std::move(folder));
        }
        m_active -= isActive ? 1 : 0;
        isActive = false;
        if (m_waiting > 0 && (found.size() > 1 || (m_active == 0 && m_pending.empty()))) {
            m_wake.notify_all();
        }
        found.clear();
        while (m_pending.empty()) {
            if (m_active == 0) {
                return false;
            }
            ++m_waiting;
            m_wake.wait(guard);
            --m_waiting;
        }
        next = std::move(m_pending.back());
        m_pending.pop_back();
        ++m_active;
        isActive = true;
        return true;
    }

    void list(const PendingFolder& folder, std::vector<PendingFolder>& found, WalkTotals& own)
    {
        const int descriptor = openat(folder.parent->descriptor, folder.name.c_str(),
                                      O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (descriptor < 0) {
            m_outOfDescriptors = m_outOfDescriptors || errno == EMFILE;
        }
        release(folder.parent);
        if (descriptor < 0) {
            return;
        }
        alignas(std::uint64_t) std::array<char, listingBytes> records;
        for (;;) {
            const long got = syscall(SYS_getdents64, descriptor, records.data(), records.size());
            if (got <= 0) {
                break;
            }
            readRecords(descriptor, records.data(), static_cast<std::size_t>(got), found, own);
        }
        if (found.empty()) {
            close(descriptor);
            return;
        }
        auto* const open = new OpenFolder{descriptor, {found.size()}};
        for (PendingFolder& pending : found) {
            pending.parent = open;
        }
    }

    static void readRecords(int descriptor, const char* records, std::size_t size,
                            std::vector<PendingFolder>& found, WalkTotals& own)
    {
        for (std::size_t at = 0; at < size;) {
            std::uint16_t length = 0;
            std::memcpy(&length, records + at + offsetof(ListingRecord, length), sizeof length);
            const char* const name = records + at + nameOffset;
            at += length;
            struct stat entry;
            if (isDots(name) || fstatat(descriptor, name, &entry, AT_SYMLINK_NOFOLLOW) != 0) {
                continue;
            }
            ++own.entries;
            if (S_ISDIR(entry.st_mode)) {
                ++own.directories;
                found.push_back({nullptr, name});
                continue;
            }
            own.files += S_ISREG(entry.st_mode) ? 1 : 0;
            own.logicalBytes += entry.st_size;
            own.diskBytes += entry.st_blocks * 512;
        }
    }

    static void release(OpenFolder* folder)
    {
        if (folder->waiting.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            close(folder->descriptor);
            delete folder;
        }
    }

    std::mutex m_lock;
    std::condition_variable m_wake;
    std::vector<PendingFolder> m_pending;
    int m_active = 0;
    int m_waiting = 0;
    std::atomic<bool> m_outOfDescriptors{false};
    WalkTotals m_totals;
};

void allowManyDescriptors()
{
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = limit.rlim_max;
        setrlimit(RLIMIT_NOFILE, &limit);
    }
}

} // namespace

std::variant<WalkTotals, std::string> floorWalk(const FilePath& root, int workers)
{
    struct stat entry = {};
    if (lstat(root.bytes().c_str(), &entry) != 0) {
        return "Cannot access " + root.bytes();
    }
    if (!S_ISDIR(entry.st_mode)) {
        return "Not a directory: " + root.bytes();
    }
    allowManyDescriptors();
    return Walk().run(root.bytes(), workers);
}

} // namespace quorvane
