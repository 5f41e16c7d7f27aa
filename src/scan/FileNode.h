// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "ItemMetadata.h"

#include <QString>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

class BloatKeys;
class FileTree;
class NodeArena;
class VisibleChildren;
struct DirectoryPart;

/// One entry of a scan: a file, a folder, a link or a special file.
///
/// Owned by its FileTree, in whose arenas it lives beside its siblings: the children of a folder
/// are one array. Outside the tree a node is held by a std::shared_ptr<FileNode> that shares
/// ownership of the whole tree. Written by one scan worker at a time and by finalizeTree(); read
/// from any thread without a lock once the tree is finished. The one field that changes then is
/// isStagedForTrash.
class FileNode
{
public:
    FileNode(const FileNode&) = delete;
    FileNode& operator=(const FileNode&) = delete;

    /// Unique within one scan. The root is 0; the others count up from 1.
    std::int64_t id() const { return m_id; }
    /// The last path component as the directory listing gave it: bytes, not always UTF-8.
    std::string_view name() const { return {m_name, m_nameLength}; }
    /// For the screen only.
    QString displayName() const;

    bool isDirectory() const { return (m_flags & directoryFlag) != 0; }
    bool isSymbolicLink() const { return (m_flags & symbolicLinkFlag) != 0; }
    bool isRegularFile() const { return (m_flags & regularFileFlag) != 0; }
    /// Whether the disk claims a larger size, with which the sums would overflow.
    bool isSizeCapped() const { return (m_flags & cappedFlag) != 0; }

    /// Bytes of the entry itself (st_size). For a folder this is the directory's own size, no
    /// total.
    std::int64_t logicalSize() const;
    /// Allocated bytes of the entry itself (st_blocks × 512).
    std::int64_t sizeOnDisk() const;
    /// Whole seconds since 1970; absent only for staged items that no scan saw.
    std::optional<std::int64_t> dateModified() const;

    /// Absent for the root.
    FileNode* parent() const;
    /// After finalizeTree(): by scannedBytes descending, then by name ascending in byte order.
    std::span<FileNode> children() const;
    /// The first of the sorted children; absent when there are none.
    FileNode* largestChild() const;

    /// Rollups. For anything but a folder: the entry's own sizes, 1 file when regular, 0 folders.
    /// For a folder: the sums over its children; directoryCount counts the folder itself.
    std::int64_t scannedBytes() const;
    std::int64_t scannedBytesOnDisk() const;
    std::int64_t fileCount() const;
    std::int64_t directoryCount() const;

    QString formattedBytes() const;
    QString formattedBytesOnDisk() const;

    /// The full path, joined on demand from the names up to the root.
    FilePath path() const;
    /// Number of steps up to the root.
    std::size_t depth() const;

    /// Any thread.
    bool isStagedForTrash() const
    {
        return std::atomic_ref<bool>(m_isStagedForTrash).load(std::memory_order_relaxed);
    }
    /// Any thread; who stages and unstages is the model's to order.
    void setStagedForTrash(bool staged)
    {
        std::atomic_ref<bool>(m_isStagedForTrash).store(staged, std::memory_order_relaxed);
    }

    /// Rolls sums up, sorts every folder's children and so sets largestChild, for the whole tree
    /// below this node. Called once on the root when all workers have ended. Uses no recursion: a
    /// chain of any depth is a legal tree. A sum beyond 64 bits ends the program.
    void finalizeTree();
    /// The children in the order of finalizeTree(), leaving the node as it is.
    std::vector<const FileNode*> sortedChildren() const;

    /// Adds to the byte rollups of a folder while the scan fills it: the bytes of its own regular
    /// files, so that they are in place before the final pass. Only by the worker that fills it;
    /// nothing happens to an entry that is no folder.
    void addProvisional(std::int64_t bytes, std::int64_t byteOnDisk);

    /// The name of the switch that hides this node's family (see BloatFilter); nothing when its
    /// name belongs to none. Looks at the node's own name alone.
    std::optional<std::string_view> bloatCategory() const;
    bool isBloatHidden(const BloatKeys& keys) const;
    /// The children without those that the keys hide, order kept. The keys must outlive the result.
    VisibleChildren visibleChildren(const BloatKeys& keys) const;

private:
    friend class FileTree;
    friend class NodeArena;

    static constexpr std::uint32_t directoryFlag = 1;
    static constexpr std::uint32_t symbolicLinkFlag = 2;
    static constexpr std::uint32_t regularFileFlag = 4;
    static constexpr std::uint32_t partFlag = 8;
    static constexpr std::uint32_t datelessFlag = 16;
    static constexpr std::uint32_t cappedFlag = 32;
    static constexpr unsigned nameLengthBits = 24;

    struct OwnSizes
    {
        std::int64_t logical;
        std::int64_t onDisk;
    };

    FileNode() = default;
    FileNode(FileNode&&) = default;
    FileNode& operator=(FileNode&&) = default;
    ~FileNode() = default;

    bool hasPart() const { return (m_flags & partFlag) != 0; }
    static void sortChildren(DirectoryPart& folder);
    static void rollUp(DirectoryPart& folder);

    DirectoryPart* m_parent;
    const char* m_name;
    std::int64_t m_id;
    std::int64_t m_dateModified;
    union {
        OwnSizes m_own;
        DirectoryPart* m_part;
    };
    std::uint32_t m_nameLength : nameLengthBits;
    std::uint32_t m_flags : 8;
    mutable bool m_isStagedForTrash;
};

/// What only a folder needs. Lives in the tree's arena.
struct DirectoryPart
{
    FileNode* node;
    FileNode* children;
    std::size_t childCount;
    std::int64_t logicalSize;
    std::int64_t sizeOnDisk;
    std::int64_t scannedBytes;
    std::int64_t scannedBytesOnDisk;
    std::int64_t fileCount;
    std::int64_t directoryCount;
};

using NodePointer = std::shared_ptr<FileNode>;

} // namespace quorvane
