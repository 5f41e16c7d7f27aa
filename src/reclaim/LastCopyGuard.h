// SPDX-License-Identifier: MIT
#pragma once

#include "DuplicateFinder.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

namespace quorvane {

/// The groups whose last copies a person has agreed to lose, having read a sentence that names
/// them. Counts for these groups alone: another search's result needs another yes. A plain value.
struct AcceptedLosses
{
    std::shared_ptr<const DuplicateFinder::Groups> groups;
    std::vector<std::size_t> indices; ///< places in groups, ascending

    bool contains(const std::shared_ptr<const DuplicateFinder::Groups>& of,
                  std::size_t index) const;
};

/// Keeps one copy of each group of duplicates out of the Trash: a copy may go only while another
/// copy of its group stays, which means that it is neither in the queue nor below a folder in it,
/// and that the disk has it still. Copies that stay only because their move fails do not count, so
/// that the answer does not depend on the order of the moves. Immutable; any thread.
class LastCopyGuard
{
public:
    /// Whether the disk has the file as the finder saw it.
    using IsOnDisk = std::function<bool(const FileNode&)>;

    /// groups: may be null. queue: the nodes that are to go. A node of another tree, or one that no
    /// scan saw, stands for the node of the groups' tree at its path, links on the way to either
    /// resolved by the disk, or for all of it where it lies around it. Takes as long as the disk.
    LastCopyGuard(std::shared_ptr<const DuplicateFinder::Groups> groups,
                  std::span<const NodePointer> queue);

    const std::shared_ptr<const DuplicateFinder::Groups>& groups() const { return m_groups; }
    /// The groups that have a file at or below the entry at that place of the queue, ascending.
    std::span<const std::size_t> groupsOf(std::size_t entry) const { return m_groupsOf[entry]; }
    /// The first file of the group that is at or below the entry; null when none is.
    const FileNode* fileOf(std::size_t entry, std::size_t group) const;
    /// The files of a group of some entry's that are neither in the queue nor below a folder in it.
    /// One whose reading broke off is not known to be a copy and does not count.
    std::span<const FileNode* const> stayingFiles(std::size_t group) const
    {
        return m_stayingFiles[group];
    }
    bool isAllStaged(std::size_t group) const { return m_stagedFiles[group] == fileCount(group); }

    /// Whether the entry at that place of the queue may go: each group that it has a copy of keeps
    /// another one on the disk, or all of its copies are staged and their loss is accepted.
    bool mayGo(std::size_t entry, const AcceptedLosses& accepted, const IsOnDisk& isOnDisk) const;

private:
    std::size_t fileCount(std::size_t group) const { return (*m_groups)[group].files().size(); }
    void noteEntries(std::span<const NodePointer> queue);
    void noteFiles();

    std::shared_ptr<const DuplicateFinder::Groups> m_groups;
    /// Staged nodes of the groups' tree with their places in the queue.
    std::unordered_map<const FileNode*, std::vector<std::size_t>> m_entries;
    std::vector<const FileNode*> m_nodes; ///< of the queue's entries; null for one elsewhere
    std::vector<std::vector<std::size_t>> m_groupsOf;
    std::vector<std::size_t> m_stagedFiles;
    /// Of each group that an entry has a file of; empty for the others.
    std::vector<std::vector<const FileNode*>> m_stayingFiles;
};

/// The node at a path of the tree below root; the root itself where the path lies around it; null
/// for a path that the tree does not have.
const FileNode* nodeAt(const FileNode& root, const FilePath& path);

} // namespace quorvane
