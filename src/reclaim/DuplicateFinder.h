// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"

#include <QString>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace quorvane {
class FileContentCalls;
class FileSystemCalls;
class TrashFolders;
} // namespace quorvane

/// Finds files of a finished scan whose contents are identical: first those of one size, of these
/// the ones with equal ends, of these the ones with an equal digest of the whole. No state.
namespace quorvane::DuplicateFinder {

class GroupTexts;

/// The order of the files in a group: fewer path components first, then by the bytes of the paths.
/// So of equal dates the live file comes before a backup of it. Both of one tree.
bool isListedBefore(const FileNode& a, const FileNode& b);

/// What is to be known of files of a group.
struct GroupMarks
{
    /// Another name of the same file is in the group: moving one of them frees nothing.
    std::vector<const FileNode*> sameFile;
    /// Its reading broke off: only what could be read up to there is known to be alike.
    std::vector<const FileNode*> brokenOff;
};

/// One set of identical files. A plain value; all but reclaimableBytes() is computed once, so that
/// a list of groups draws without work. Readable from any thread.
class Group
{
public:
    /// files: nodes of one tree in any order, at least two for a real group. tree shares ownership
    /// of that tree (its root will do), so that the group keeps its files alive.
    Group(std::int64_t bytes, std::vector<FileNode*> files, NodePointer tree);
    /// The same for one of many groups, which share equal texts.
    Group(std::int64_t bytes, std::vector<FileNode*> files, NodePointer tree, GroupTexts& texts,
          GroupMarks marks = {});

    /// Size of each copy.
    std::int64_t bytes() const { return m_bytes; }
    /// In the order of isListedBefore().
    const std::vector<FileNode*>& files() const { return m_files; }
    /// See GroupMarks.
    bool isSameFile(const FileNode& file) const;
    bool isBrokenOff(const FileNode& file) const;
    /// "dup-{bytes}-{id of the first file}-{number of files}"
    const QString& id() const { return m_id; }
    const QString& formattedSize() const { return m_formattedSize; }
    const QString& formattedReclaimable() const { return m_formattedReclaimable; }
    /// The file modified last; of equal ones the first, and one without a date counts as older than
    /// any other. One whose reading broke off is passed over; absent where there is no other.
    FileNode* newestFile() const { return m_newestFile; }
    /// Number of different folders in which the files lie.
    std::int64_t folderCount() const { return m_folderCount; }
    /// Names of the first two of these folders, for the screen. Two folders may share a name.
    std::span<const QString> topFolders() const
    {
        return std::span(m_topFolders)
            .first(std::min(static_cast<std::size_t>(m_folderCount), m_topFolders.size()));
    }

    /// What keeping one copy gains. A product beyond 64 bits ends the program.
    std::int64_t reclaimableBytes() const;
    /// The same for so many copies of so many bytes.
    static std::int64_t reclaimable(std::int64_t bytes, std::size_t count);

    friend bool operator==(const Group& a, const Group& b)
    {
        return a.m_bytes == b.m_bytes && a.m_files == b.m_files;
    }

private:
    void noteFolders(GroupTexts& texts);

    std::int64_t m_bytes;
    std::vector<FileNode*> m_files;
    NodePointer m_tree;
    std::shared_ptr<const GroupMarks> m_marks; ///< absent where there are none; sorted by place
    QString m_id;
    QString m_formattedSize;
    QString m_formattedReclaimable;
    FileNode* m_newestFile = nullptr;
    std::int64_t m_folderCount = 0;
    std::array<QString, 2> m_topFolders;
};

using Groups = std::vector<Group>;

/// Takes a number from 0 to 1. Called on any thread, from the workers under the finder's lock: it
/// must be quick and not call the finder.
using ProgressCallback = std::function<void(double)>;
/// Polled from any thread, before each file and each block of one.
using CancelCallback = std::function<bool()>;

inline bool neverCancelled()
{
    return false;
}

/// Smaller files are ignored unless the caller says otherwise.
inline constexpr std::int64_t defaultMinimumBytes = 1024;

enum class Pass { walk, sampling, verifying, building };

/// What one pass came to.
struct PassReport
{
    Pass pass = Pass::walk;
    double seconds = 0;
    std::int64_t files = 0; ///< nodes of the walk; files sampled or verified; groups built
    std::int64_t bytesRead = 0;
};

/// What a measurement or a test sets; the program takes the defaults.
struct Options
{
    int workers = 0;                       ///< threads of the two parallel passes; 0: one a core
    FileSystemCalls* fileSystem = nullptr; ///< absent: the system's own
    FileContentCalls* contents = nullptr;  ///< absent: the system's own
    std::function<double()> clock = {};    ///< seconds, any thread; absent: the steady clock
    const TrashFolders* trash = nullptr;   ///< absent: those of the system
    std::function<void(const PassReport&)> onPassEnd = {}; ///< on the calling thread
};

/// Searches the tree below root, which must be finished, and blocks until done. Groups come by what
/// they would reclaim, largest first, then by the name of their first file. A cancelled search
/// gives no group. Files that cannot be opened fall out, and so does what lies in a Trash; there is
/// no failure. Each file is read once, however many names it has. Worker threads are
/// the calling thread's children and inherit its priority.
Groups find(const NodePointer& root, std::int64_t minimumBytes, const ProgressCallback& progress,
            const CancelCallback& isCancelled = neverCancelled, const Options& options = {});

} // namespace quorvane::DuplicateFinder
