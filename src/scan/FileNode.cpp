// SPDX-License-Identifier: MIT
#include "FileNode.h"

#include "CheckedMath.h"
#include "FileTree.h"
#include "Text.h"

#include <algorithm>
#include <utility>

namespace quorvane {
namespace {

constexpr const char* rollupPlace = "FileNode::finalizeTree";

/// The order of a finished folder's children, over copied keys so that a sort stays in the cache.
struct SortKey
{
    std::int64_t bytes;
    std::string_view name;
    std::uint32_t index;

    friend bool operator<(const SortKey& a, const SortKey& b)
    {
        return a.bytes != b.bytes ? a.bytes > b.bytes : a.name < b.name;
    }
};

std::vector<SortKey> keysOf(std::span<const FileNode> children)
{
    std::vector<SortKey> keys;
    keys.reserve(children.size());
    for (std::uint32_t i = 0; i < children.size(); ++i) {
        keys.push_back({children[i].scannedBytes(), children[i].name(), i});
    }
    return keys;
}

/// Sorts keys of which a long tail is already in order: the scanner hands files over sorted,
/// folders before them, since a folder's bytes are known only now.
void sortKeys(std::vector<SortKey>& keys)
{
    const auto tail =
        std::is_sorted_until(keys.rbegin(), keys.rend(), [](const SortKey& a, const SortKey& b) {
            return b < a;
        }).base();
    if (tail == keys.begin()) {
        return;
    }
    std::stable_sort(keys.begin(), tail);
    std::inplace_merge(keys.begin(), tail, keys.end());
}

} // namespace

QString FileNode::displayName() const
{
    return displayText(name());
}

std::int64_t FileNode::logicalSize() const
{
    return hasPart() ? m_part->logicalSize : m_own.logical;
}

std::int64_t FileNode::sizeOnDisk() const
{
    return hasPart() ? m_part->sizeOnDisk : m_own.onDisk;
}

std::optional<std::int64_t> FileNode::dateModified() const
{
    if ((m_flags & datelessFlag) != 0) {
        return std::nullopt;
    }
    return m_dateModified;
}

FileNode* FileNode::parent() const
{
    return m_parent->node;
}

std::span<FileNode> FileNode::children() const
{
    if (!hasPart()) {
        return {};
    }
    return {m_part->children, m_part->childCount};
}

FileNode* FileNode::largestChild() const
{
    const std::span<FileNode> all = children();
    return all.empty() ? nullptr : all.data();
}

std::int64_t FileNode::scannedBytes() const
{
    return hasPart() ? m_part->scannedBytes : m_own.logical;
}

std::int64_t FileNode::scannedBytesOnDisk() const
{
    return hasPart() ? m_part->scannedBytesOnDisk : m_own.onDisk;
}

std::int64_t FileNode::fileCount() const
{
    if (hasPart()) {
        return m_part->fileCount;
    }
    return isRegularFile() ? 1 : 0;
}

std::int64_t FileNode::directoryCount() const
{
    return hasPart() ? m_part->directoryCount : 0;
}

FilePath FileNode::path() const
{
    std::size_t length = 0;
    const FileNode* top = this;
    for (; top->parent() != nullptr; top = top->parent()) {
        length += top->m_nameLength + 1;
    }
    const std::string& rootPath = static_cast<const FileTree::Anchor*>(top->m_parent)->path.bytes();
    if (top == this) {
        return FilePath(rootPath);
    }
    const bool endsInSlash = rootPath.ends_with('/');
    std::string bytes = rootPath;
    bytes.resize(rootPath.size() + length - (endsInSlash ? 1 : 0), '/');
    std::size_t end = bytes.size();
    for (const FileNode* node = this; node != top; node = node->parent()) {
        const std::string_view name = node->name();
        bytes.replace(end - name.size(), name.size(), name);
        end -= name.size() + 1;
    }
    return FilePath(std::move(bytes));
}

std::size_t FileNode::depth() const
{
    std::size_t steps = 0;
    for (const FileNode* node = parent(); node != nullptr; node = node->parent()) {
        ++steps;
    }
    return steps;
}

void FileNode::addProvisional(std::int64_t bytes, std::int64_t byteOnDisk)
{
    if (!hasPart()) {
        return;
    }
    constexpr const char* place = "FileNode::addProvisional";
    m_part->scannedBytes = checkedAdd(m_part->scannedBytes, bytes, place);
    m_part->scannedBytesOnDisk = checkedAdd(m_part->scannedBytesOnDisk, byteOnDisk, place);
}

void FileNode::rollUp(DirectoryPart& folder)
{
    std::int64_t bytes = 0;
    std::int64_t bytesOnDisk = 0;
    std::int64_t files = 0;
    std::int64_t directories = 1;
    for (const FileNode& child : std::span(folder.children, folder.childCount)) {
        bytes = checkedAdd(bytes, child.scannedBytes(), rollupPlace);
        bytesOnDisk = checkedAdd(bytesOnDisk, child.scannedBytesOnDisk(), rollupPlace);
        files = checkedAdd(files, child.fileCount(), rollupPlace);
        directories = checkedAdd(directories, child.directoryCount(), rollupPlace);
    }
    folder.scannedBytes = bytes;
    folder.scannedBytesOnDisk = bytesOnDisk;
    folder.fileCount = files;
    folder.directoryCount = directories;
}

void FileNode::sortChildren(DirectoryPart& folder)
{
    if (folder.childCount < 2) {
        return;
    }
    FileNode* const nodes = folder.children;
    std::vector<SortKey> keys = keysOf({nodes, folder.childCount});
    sortKeys(keys);
    // The permutation is applied cycle by cycle, so that one node at a time stands aside.
    for (std::uint32_t start = 0; start < keys.size(); ++start) {
        if (keys[start].index == start) {
            continue;
        }
        FileNode aside = std::move(nodes[start]);
        std::uint32_t place = start;
        for (std::uint32_t from = keys[place].index; from != start; from = keys[place].index) {
            nodes[place] = std::move(nodes[from]);
            keys[place].index = place;
            place = from;
        }
        nodes[place] = std::move(aside);
        keys[place].index = place;
    }
    for (std::size_t i = 0; i < folder.childCount; ++i) {
        if (nodes[i].hasPart()) {
            nodes[i].m_part->node = &nodes[i];
        }
    }
}

void FileNode::finalizeTree()
{
    if (!isDirectory()) {
        return;
    }
    // Every folder stands after its parent in this list; walked backwards, children come first.
    // Parts stay where they are while sorting moves the nodes.
    std::vector<DirectoryPart*> folders{m_part};
    for (std::size_t next = 0; next < folders.size(); ++next) {
        const DirectoryPart& folder = *folders[next];
        for (const FileNode& child : std::span(folder.children, folder.childCount)) {
            if (child.isDirectory()) {
                folders.push_back(child.m_part);
            }
        }
    }
    for (auto folder = folders.rbegin(); folder != folders.rend(); ++folder) {
        rollUp(**folder);
        sortChildren(**folder);
    }
}

std::vector<const FileNode*> FileNode::sortedChildren() const
{
    const std::span<FileNode> all = children();
    std::vector<SortKey> keys = keysOf(all);
    sortKeys(keys);
    std::vector<const FileNode*> sorted;
    sorted.reserve(keys.size());
    for (const SortKey& key : keys) {
        sorted.push_back(&all[key.index]);
    }
    return sorted;
}

} // namespace quorvane
