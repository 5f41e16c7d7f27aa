// SPDX-License-Identifier: MIT
#include "LastCopyGuard.h"

#include "PinnedEntry.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

namespace quorvane {
namespace {

const FileNode& topOf(const FileNode& node)
{
    const FileNode* top = &node;
    while (top->parent() != nullptr) {
        top = top->parent();
    }
    return *top;
}

/// The top of the tree that the groups were found in; null without a file.
const FileNode* treeOf(const DuplicateFinder::Groups& groups)
{
    for (const DuplicateFinder::Group& group : groups) {
        if (!group.files().empty()) {
            return &topOf(*group.files().front());
        }
    }
    return nullptr;
}

/// As nodeAt(), for a tree whose root goes by that path.
const FileNode* nodeBelow(const FileNode& root, const FilePath& rootPath, const FilePath& path)
{
    if (path.holds(rootPath)) {
        return &root;
    }
    if (!rootPath.holds(path)) {
        return nullptr;
    }
    std::string_view rest = path.bytes();
    rest.remove_prefix(rootPath.bytes() == "/" ? 0 : rootPath.bytes().size());
    const FileNode* node = &root;
    while (!rest.empty() && node != nullptr) {
        rest.remove_prefix(1);
        const std::string_view name = rest.substr(0, rest.find('/'));
        const auto children = node->children();
        const auto child = std::find_if(children.begin(), children.end(),
                                        [name](const FileNode& c) { return c.name() == name; });
        node = child == children.end() ? nullptr : &*child;
        rest.remove_prefix(name.size());
    }
    return node;
}

/// As nodeAt(), by the names that both go by when no link is on the way: a home folder that is
/// reached through a link is one folder under two names.
const FileNode* nodeOnDisk(const FileNode& root, const FilePath& path)
{
    const std::optional<FilePath> realRoot = PinnedEntry::realPathOf(root.path());
    const std::optional<FilePath> realFolder = PinnedEntry::realPathOf(path.parent());
    if (!realRoot || !realFolder) {
        return nullptr;
    }
    return nodeBelow(root, *realRoot, realFolder->appending(path.lastComponent()));
}

} // namespace

const FileNode* nodeAt(const FileNode& root, const FilePath& path)
{
    return nodeBelow(root, root.path(), path);
}

bool AcceptedLosses::contains(const std::shared_ptr<const DuplicateFinder::Groups>& of,
                              std::size_t index) const
{
    return groups == of && std::binary_search(indices.begin(), indices.end(), index);
}

LastCopyGuard::LastCopyGuard(std::shared_ptr<const DuplicateFinder::Groups> groups,
                             std::span<const NodePointer> queue)
    : m_groups(groups ? std::move(groups) : std::make_shared<const DuplicateFinder::Groups>())
    , m_nodes(queue.size(), nullptr)
    , m_groupsOf(queue.size())
    , m_stagedFiles(m_groups->size(), 0)
    , m_stayingFiles(m_groups->size())
{
    noteEntries(queue);
    if (!m_entries.empty()) {
        noteFiles();
    }
}

void LastCopyGuard::noteEntries(std::span<const NodePointer> queue)
{
    const FileNode* const tree = treeOf(*m_groups);
    if (tree == nullptr) {
        return;
    }
    for (std::size_t i = 0; i < queue.size(); ++i) {
        const FileNode* node = queue[i].get();
        if (&topOf(*node) != tree) {
            const FilePath path = node->path();
            node = nodeAt(*tree, path);
            if (node == nullptr) {
                node = nodeOnDisk(*tree, path);
            }
        }
        m_nodes[i] = node;
        if (node != nullptr) {
            m_entries[node].push_back(i);
        }
    }
}

void LastCopyGuard::noteFiles()
{
    for (std::size_t group = 0; group < m_groups->size(); ++group) {
        for (const FileNode* const file : (*m_groups)[group].files()) {
            bool isStaged = false;
            for (const FileNode* node = file; node != nullptr; node = node->parent()) {
                const auto found = m_entries.find(node);
                if (found == m_entries.end()) {
                    continue;
                }
                isStaged = true;
                for (const std::size_t entry : found->second) {
                    std::vector<std::size_t>& taken = m_groupsOf[entry];
                    if (taken.empty() || taken.back() != group) {
                        taken.push_back(group);
                    }
                }
            }
            m_stagedFiles[group] += isStaged ? 1 : 0;
            if (!isStaged && !(*m_groups)[group].isBrokenOff(*file)) {
                m_stayingFiles[group].push_back(file);
            }
        }
        if (m_stagedFiles[group] == 0) {
            m_stayingFiles[group] = {};
        }
    }
}

const FileNode* LastCopyGuard::fileOf(std::size_t entry, std::size_t group) const
{
    for (const FileNode* const file : (*m_groups)[group].files()) {
        const FileNode* node = file;
        while (node != nullptr && node != m_nodes[entry]) {
            node = node->parent();
        }
        if (node != nullptr) {
            return file;
        }
    }
    return nullptr;
}

bool LastCopyGuard::mayGo(std::size_t entry, const AcceptedLosses& accepted,
                          const IsOnDisk& isOnDisk) const
{
    return std::all_of(m_groupsOf[entry].begin(), m_groupsOf[entry].end(), [&](std::size_t group) {
        if (isAllStaged(group)) {
            return accepted.contains(m_groups, group);
        }
        return std::any_of(m_stayingFiles[group].begin(), m_stayingFiles[group].end(),
                           [&isOnDisk](const FileNode* file) { return isOnDisk(*file); });
    });
}

} // namespace quorvane
