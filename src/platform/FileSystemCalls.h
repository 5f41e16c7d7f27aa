// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

namespace quorvane {

/// What one lstat(2) of an entry tells. Sizes in bytes, never negative, times in whole seconds
/// since 1970.
/// What tells a folder from every other of the machine while it exists: st_dev and st_ino.
struct FolderIdentity
{
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    friend bool operator==(const FolderIdentity&, const FolderIdentity&) = default;
};

struct EntryStatus
{
    enum class Kind : std::uint8_t { directory, regularFile, symbolicLink, other };

    Kind kind = Kind::other;
    bool isExecutable = false;        ///< anyone may execute it: one of the x bits of st_mode
    std::int64_t size = 0;            ///< st_size
    std::int64_t allocatedBytes = 0;  ///< st_blocks × 512, or the largest number below that
    std::int64_t modifiedSeconds = 0; ///< seconds part of st_mtim
    std::uint64_t device = 0;         ///< st_dev
    std::uint64_t inode = 0;          ///< st_ino

    friend bool operator==(const EntryStatus&, const EntryStatus&) = default;
};

/// Names of one directory, end to end in one buffer: reused from directory to directory, so that a
/// walk allocates nothing for an entry.
struct NameList
{
    /// What the listing itself tells of an entry. Not every file system tells it.
    enum class Hint : std::uint8_t { unknown, directory, noDirectory };

    struct Span
    {
        std::uint64_t offset; ///< into bytes; the name is followed by a NUL there
        std::uint32_t length;
        Hint hint = Hint::unknown;
    };

    std::string bytes;
    std::vector<Span> spans;

    void clear()
    {
        bytes.clear();
        spans.clear();
    }
    const char* nameAt(std::size_t i) const { return bytes.data() + spans[i].offset; }
};

/// How a walk treats the file system that a directory lies on.
enum class VolumeKind : std::uint8_t {
    ordinary,   ///< to be listed
    kernelMade, ///< made up by the kernel (proc, sysfs, cgroup, …): no disk space, never listed
    /// A map of the automounter below which something is mounted. To be listed, but what lies on
    /// the map itself has to be asked about: opening an entry that nobody has used mounts it.
    automountMap,
    unusedAutomount ///< of the automounter with nothing mounted below: never opened
};

/// Bytes of a volume.
struct VolumeCapacity
{
    std::uint64_t totalBytes = 0;
    std::uint64_t availableBytes = 0;
};

/// Every call that a walk makes to the operating system, so that a test can make each of them fail.
/// All calls may come from any thread at once; none blocks longer than the system call behind it.
class FileSystemCalls
{
public:
    virtual ~FileSystemCalls() = default;

    /// The descriptor that stands for "relative to nothing": names given with it are whole paths.
    static int noDirectory();

    /// Opens a directory for listing without following a link. Returns a descriptor or -1.
    virtual int openDirectory(int parent, const char* name) = 0;
    virtual void close(int directory) = 0;
    /// Appends the names of an open directory, hidden ones included, without "." and "..", in the
    /// order of the listing. False when the listing fails at any point. Ends early, with the names
    /// so far, when the flag is set.
    virtual bool appendNames(int directory, NameList& names, const std::atomic<bool>& stops) = 0;
    /// The same, to the end.
    bool appendNames(int directory, NameList& names)
    {
        const std::atomic<bool> never{false};
        return appendNames(directory, names, never);
    }
    /// lstat(2) of a name below an open directory. False when it fails.
    virtual bool status(int directory, const char* name, EntryStatus& status) = 0;
    /// When a name below an open directory was created, in whole seconds since 1970; a link is not
    /// followed. False when it fails or the file system keeps no such date.
    virtual bool creationDate(int directory, const char* name, std::int64_t& seconds) = 0;
    /// What a link below an open directory leads to, as its text stands: readlink(2). False for
    /// anything but a link, and when it fails.
    virtual bool readLink(int /*directory*/, const char* /*name*/, std::string& /*target*/)
    {
        return false;
    }
    /// What kind of file system the directory lies on. Opens nothing and triggers no automount;
    /// ordinary when it cannot be told.
    virtual VolumeKind volumeKind(int parent, const char* name) = 0;

    /// Where a path leads when every link on it is followed. False when it leads nowhere.
    virtual bool resolve(const char* path, std::string& resolved);

    /// Total bytes of the volume that holds the path and those that the user may still fill. False
    /// when it cannot be asked.
    virtual bool volumeCapacity(const char* path, VolumeCapacity& capacity) = 0;
    /// How many descriptors the process may hold open at once.
    virtual int descriptorLimit() = 0;

    /// The system's own calls; lives as long as the process.
    static FileSystemCalls& system();
};

} // namespace quorvane
