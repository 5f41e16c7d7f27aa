// SPDX-License-Identifier: MIT
#include "SnapshotGrowth.h"

#include "SnapshotStore.h"
#include "Text.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

namespace quorvane {
namespace {

struct TextHash
{
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const
    {
        return std::hash<std::string_view>()(text);
    }
};

/// Folders by the text that begins the entries of their files.
using FolderMap = std::unordered_map<std::string, FileNode*, TextHash, std::equal_to<>>;

std::string entryText(std::string_view path, std::string_view rootPath)
{
    std::string text = snapshotEntryPath(path, rootPath);
    return isUtf8(text) ? text : displayText(text).toStdString();
}

std::string childPath(const std::string& folder, std::string_view name)
{
    std::string path = folder;
    path.append(path.ends_with('/') ? "" : "/");
    path.append(name);
    return path;
}

FolderMap foldersBelow(FileNode& root)
{
    const std::string rootPath = root.path().bytes();
    FolderMap folders{{std::string(), &root}};
    std::vector<std::pair<FileNode*, std::string>> stack{{&root, rootPath}};
    while (!stack.empty()) {
        const auto [folder, path] = std::move(stack.back());
        stack.pop_back();
        for (FileNode& child : folder->children()) {
            if (child.isDirectory()) {
                std::string below = childPath(path, child.name());
                folders.try_emplace(entryText(below, rootPath), &child);
                stack.emplace_back(&child, std::move(below));
            }
        }
    }
    return folders;
}

/// The deepest folder whose text the entry begins with: at a slash, or below the root "/", where
/// entries have no slashes within, anywhere.
FileNode* deepestFolder(const FolderMap& folders, std::string_view entry, bool hasSlashes)
{
    for (std::size_t end = entry.size(); end > 0; --end) {
        if (hasSlashes && (end == entry.size() || entry[end] != '/')) {
            continue;
        }
        const auto folder = folders.find(entry.substr(0, end));
        if (folder != folders.end()) {
            return folder->second;
        }
    }
    return folders.find(std::string_view())->second;
}

void add(std::int64_t& sum, std::int64_t bytes)
{
    if (__builtin_add_overflow(sum, bytes, &sum)) {
        sum = std::numeric_limits<std::int64_t>::max();
    }
}

} // namespace

GrowthStep growthStep(std::int64_t delta, std::int64_t past)
{
    const auto change = static_cast<long double>(delta);
    const auto whole = static_cast<long double>(past);
    if (delta >= 0) {
        if (delta == 0 || change * 100 < whole) {
            return GrowthStep::unchanged;
        }
        return change * 2 >= whole    ? GrowthStep::halfMore
               : change * 10 >= whole ? GrowthStep::tenthMore
                                      : GrowthStep::hundredthMore;
    }
    if (-change * 100 < whole) {
        return GrowthStep::unchanged;
    }
    return -change * 2 >= whole    ? GrowthStep::halfGone
           : -change * 10 >= whole ? GrowthStep::tenthGone
                                   : GrowthStep::hundredthGone;
}

SnapshotGrowth::SnapshotGrowth(SnapshotHeading base, std::vector<ScanSnapshot::Entry> baseItems,
                               const NodePointer& root)
    : m_base(std::move(base))
    , m_root(root)
{
    const CapturedSnapshot today = SnapshotStore::capture(*root);
    ScanSnapshot past;
    past.items = std::move(baseItems);
    m_diffs = diff(past, today.snapshot);
    m_net = netChange(m_diffs);
    findNodes(today.nodes, *root);
    sumUp();
}

void SnapshotGrowth::findNodes(const std::vector<FileNode*>& present, FileNode& root)
{
    std::vector<std::size_t> gone;
    m_nodes.reserve(m_diffs.size());
    for (std::size_t row = 0; row < m_diffs.size(); ++row) {
        const std::size_t item = m_diffs[row].presentItem;
        m_nodes.push_back(item == SnapshotDiff::noItem ? nullptr : present[item]);
        if (item == SnapshotDiff::noItem) {
            gone.push_back(row);
        }
    }
    if (!gone.empty()) {
        findGone(gone, root);
    }
}

void SnapshotGrowth::findGone(const std::vector<std::size_t>& rows, FileNode& root)
{
    const std::string rootPath = root.path().bytes();
    const FolderMap folders = foldersBelow(root);
    std::unordered_map<FileNode*, std::unordered_map<std::string_view, std::size_t>> wanted;
    for (const std::size_t row : rows) {
        m_nodes[row] = deepestFolder(folders, m_diffs[row].path, rootPath != "/");
        wanted[m_nodes[row]].emplace(m_diffs[row].path, row);
    }
    for (const auto& [folder, rowsByPath] : wanted) {
        const std::string path = folder->path().bytes();
        for (FileNode& child : folder->children()) {
            if (child.isDirectory()) {
                continue;
            }
            const auto row = rowsByPath.find(entryText(childPath(path, child.name()), rootPath));
            if (row != rowsByPath.end()) {
                m_nodes[row->second] = &child;
            }
        }
    }
}

void SnapshotGrowth::sumUp()
{
    for (std::size_t row = 0; row < m_diffs.size(); ++row) {
        for (const FileNode* node = m_nodes[row]; node != nullptr; node = node->parent()) {
            Sums& sums = m_sums[node];
            add(sums.past, m_diffs[row].pastBytes);
            add(sums.present, m_diffs[row].presentBytes);
        }
    }
}

NodePointer SnapshotGrowth::nodeOfRow(std::size_t row) const
{
    return {m_root, m_nodes[row]};
}

bool SnapshotGrowth::hasFileOfRow(std::size_t row) const
{
    return !m_nodes[row]->isDirectory();
}

SnapshotGrowth::Change SnapshotGrowth::changeOf(const FileNode& node) const
{
    const auto known = m_sums.find(&node);
    const std::int64_t now = node.scannedBytes();
    if (known == m_sums.end()) {
        return {0, now};
    }
    const Sums& sums = known->second;
    std::int64_t past = sums.past;
    if (node.isDirectory()) {
        // Neither is negative, so that the difference is a number.
        add(past, std::max<std::int64_t>(now - sums.present, 0));
    }
    return {sums.present - sums.past, past};
}

} // namespace quorvane
