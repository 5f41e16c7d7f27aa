// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"
#include "FilePath.h"
#include "FileSystemCalls.h"
#include "ItemMetadata.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace quorvane {

/// Room for nodes and name bytes, handed out in order from a few large blocks and given back all at
/// once. One thread at a time.
class NodeArena
{
public:
    NodeArena() = default;
    NodeArena(const NodeArena&) = delete;
    NodeArena& operator=(const NodeArena&) = delete;
    ~NodeArena();

    void* allocate(std::size_t bytes, std::size_t alignment);
    /// A copy of the bytes that lives as long as the arena.
    const char* copy(std::string_view bytes);
    /// Bytes handed out, padding included.
    std::size_t usedBytes() const { return m_usedBytes; }

private:
    struct Block
    {
        char* start;
        std::size_t size;
    };

    std::vector<Block> m_blocks;
    char* m_next = nullptr;
    char* m_end = nullptr;
    std::size_t m_usedBytes = 0;
};

/// What a new node is made of.
struct NodeValues
{
    std::int64_t id = 0;
    std::string_view name; ///< copied
    ItemMetadata metadata;
};

/// Rollups that are given instead of computed, for trees that are read back from a dump.
struct NodeRollups
{
    std::int64_t scannedBytes = 0;
    std::int64_t scannedBytesOnDisk = 0;
    std::int64_t fileCount = 0;
    std::int64_t directoryCount = 0;
};

/// Owns every node of one scan and all their names, and frees them in a few large blocks: dropping
/// a tree of a million nodes takes milliseconds on any thread.
class FileTree : public std::enable_shared_from_this<FileTree>
{
public:
    /// A tree of one node. rootPath is the path that the root stands for; its name need not be the
    /// path's last component.
    static std::shared_ptr<FileTree> create(const FilePath& rootPath, const NodeValues& root);
    /// A free-standing node for something that no scan saw: a folder of that many bytes on both
    /// measures, without a date. Its id is 5381, times 31 plus each byte of the file URL in
    /// wrapping 64-bit arithmetic, but at least 2.
    static NodePointer stagedItem(std::string_view name, const FilePath& path, std::int64_t bytes);

    FileTree(const FileTree&) = delete;
    FileTree& operator=(const FileTree&) = delete;
    ~FileTree() = default;

    FileNode& root() { return *m_root; }
    /// What the disk knew the root folder by when it was scanned. Before the tree is shared.
    void setRootIdentity(const FolderIdentity& identity) { m_anchor.identity = identity; }
    /// The same of a root node; absent in a tree that no scan made.
    static std::optional<FolderIdentity> identityOf(const FileNode& root);
    /// Shares ownership of the whole tree.
    NodePointer rootPointer();

    /// One more arena, for a worker of its own. Any thread.
    NodeArena& addArena();

    /// Makes the children of a folder, in the given order, in one array. At most once for a folder,
    /// and by one thread for it; different folders may be filled at once from different arenas.
    static std::span<FileNode> addChildren(FileNode& parent, std::span<const NodeValues> values,
                                           NodeArena& arena);
    std::span<FileNode> addChildren(FileNode& parent, std::span<const NodeValues> values);

    /// Overwrites a node's rollups. For trees that are read back as they stand.
    void setRollups(FileNode& node, const NodeRollups& rollups);

    /// Bytes that the arenas hold for nodes and names.
    std::size_t byteSize() const;

private:
    FileTree() = default;

    /// Stands above the root: carries the path that the root's own path begins with.
    struct Anchor : DirectoryPart
    {
        FilePath path;
        std::optional<FolderIdentity> identity;
    };
    friend class FileNode;

    static void fill(FileNode& node, DirectoryPart* parent, const NodeValues& values,
                     const char* name, NodeArena& arena);
    static DirectoryPart* newPart(FileNode& node, NodeArena& arena);

    mutable std::mutex m_lock;
    std::vector<std::unique_ptr<NodeArena>> m_arenas;
    Anchor m_anchor{};
    FileNode* m_root = nullptr;
};

/// The node at a path at or below the root of a tree, by way of the names from the root down; null
/// when there is none.
FileNode* findNode(FileNode& root, const FilePath& path);

/// Every node of a tree by its id: a flat table, since the scanner's ids are dense.
class NodeIndex
{
public:
    NodeIndex() = default;
    /// Visits the whole tree below root. Any thread.
    explicit NodeIndex(FileNode& root);

    /// Absent for an id that the tree does not have.
    FileNode* find(std::int64_t id) const;
    std::size_t size() const { return m_size; }
    /// All ids are below.
    std::int64_t idEnd() const { return static_cast<std::int64_t>(m_nodes.size()); }
    bool isEmpty() const { return m_size == 0; }

    std::size_t byteSize() const { return m_nodes.capacity() * sizeof(FileNode*); }

private:
    void insert(FileNode& node);

    std::vector<FileNode*> m_nodes;
    std::size_t m_size = 0;
};

} // namespace quorvane
