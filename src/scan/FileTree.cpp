// SPDX-License-Identifier: MIT
#include "FileTree.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace quorvane {
namespace {

constexpr std::size_t firstBlockBytes = std::size_t{64} << 10;
constexpr std::size_t blockBytes = std::size_t{4} << 20;
constexpr std::size_t pageBytes = 4096;

char* mapBlock(std::size_t size)
{
    void* const start =
        mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (start == MAP_FAILED) {
        throw std::bad_alloc();
    }
#ifdef MADV_HUGEPAGE
    // Large pages where there are any: filling and dropping a tree then costs a fraction of the
    // page faults. Advice alone; a small tree keeps its small first block.
    if (size >= blockBytes) {
        madvise(start, size, MADV_HUGEPAGE);
    }
#endif
    return static_cast<char*>(start);
}

} // namespace

NodeArena::~NodeArena()
{
    for (const Block& block : m_blocks) {
        munmap(block.start, block.size);
    }
}

void* NodeArena::allocate(std::size_t bytes, std::size_t alignment)
{
    const auto misaligned = reinterpret_cast<std::uintptr_t>(m_next) % alignment;
    const std::size_t padding = misaligned == 0 ? 0 : alignment - misaligned;
    if (static_cast<std::size_t>(m_end - m_next) < padding + bytes) {
        const std::size_t wanted = m_blocks.empty() ? firstBlockBytes : blockBytes;
        const std::size_t size = std::max(wanted, (bytes + pageBytes - 1) / pageBytes * pageBytes);
        m_blocks.push_back({mapBlock(size), size});
        m_next = m_blocks.back().start;
        m_end = m_next + size;
        m_usedBytes += bytes;
        return std::exchange(m_next, m_next + bytes);
    }
    char* const start = m_next + padding;
    m_next = start + bytes;
    m_usedBytes += padding + bytes;
    return start;
}

const char* NodeArena::copy(std::string_view bytes)
{
    char* const place = static_cast<char*>(allocate(bytes.size(), 1));
    if (!bytes.empty()) {
        std::memcpy(place, bytes.data(), bytes.size());
    }
    return place;
}

DirectoryPart* FileTree::newPart(FileNode& node, NodeArena& arena)
{
    void* const place = arena.allocate(sizeof(DirectoryPart), alignof(DirectoryPart));
    return new (place) DirectoryPart{&node, nullptr, 0, 0, 0, 0, 0, 0, 0};
}

void FileTree::fill(FileNode& node, DirectoryPart* parent, const NodeValues& values,
                    const char* name, NodeArena& arena)
{
    const ItemMetadata& meta = values.metadata;
    node.m_parent = parent;
    node.m_name = name;
    node.m_id = values.id;
    node.m_dateModified = meta.dateModified.value_or(0);
    constexpr std::size_t longest = (std::size_t{1} << FileNode::nameLengthBits) - 1;
    node.m_nameLength = static_cast<std::uint32_t>(std::min(values.name.size(), longest)) & longest;
    node.m_flags = ((meta.isDirectory ? FileNode::directoryFlag | FileNode::partFlag : 0U) |
                    (meta.isSymbolicLink ? FileNode::symbolicLinkFlag : 0U) |
                    (meta.isRegularFile ? FileNode::regularFileFlag : 0U) |
                    (meta.dateModified ? 0U : FileNode::datelessFlag) |
                    (meta.isSizeCapped ? FileNode::cappedFlag : 0U)) &
                   0xFFU;
    node.m_isStagedForTrash = false;
    if (!meta.isDirectory) {
        node.m_own = {meta.logicalSize, meta.sizeOnDisk};
        return;
    }
    DirectoryPart* const part = newPart(node, arena);
    part->logicalSize = meta.logicalSize;
    part->sizeOnDisk = meta.sizeOnDisk;
    part->scannedBytes = meta.logicalSize;
    part->scannedBytesOnDisk = meta.sizeOnDisk;
    part->fileCount = meta.isRegularFile ? 1 : 0;
    part->directoryCount = 1;
    node.m_part = part;
}

std::shared_ptr<FileTree> FileTree::create(const FilePath& rootPath, const NodeValues& root)
{
    std::shared_ptr<FileTree> tree(new FileTree);
    tree->m_anchor.path = rootPath;
    NodeArena& arena = tree->addArena();
    void* const place = arena.allocate(sizeof(FileNode), alignof(FileNode));
    tree->m_root = new (place) FileNode;
    fill(*tree->m_root, &tree->m_anchor, root, arena.copy(root.name), arena);
    return tree;
}

std::optional<FolderIdentity> FileTree::identityOf(const FileNode& root)
{
    return static_cast<const Anchor*>(root.m_parent)->identity;
}

NodePointer FileTree::stagedItem(std::string_view name, const FilePath& path, std::int64_t bytes)
{
    std::uint64_t hash = 5381;
    for (const char c : path.isEmpty() ? std::string() : path.fileUrl()) {
        hash = hash * 31 + static_cast<unsigned char>(c);
    }
    NodeValues values;
    values.id = std::max<std::int64_t>(static_cast<std::int64_t>(hash), 2);
    values.name = name;
    values.metadata.isDirectory = true;
    values.metadata.logicalSize = bytes;
    values.metadata.sizeOnDisk = bytes;
    return create(path, values)->rootPointer();
}

NodePointer FileTree::rootPointer()
{
    return {shared_from_this(), m_root};
}

NodeArena& FileTree::addArena()
{
    const std::lock_guard guard(m_lock);
    m_arenas.push_back(std::make_unique<NodeArena>());
    return *m_arenas.back();
}

std::span<FileNode> FileTree::addChildren(FileNode& parent, std::span<const NodeValues> values,
                                          NodeArena& arena)
{
    if (values.empty() || !parent.hasPart()) {
        return {};
    }
    auto* const nodes =
        static_cast<FileNode*>(arena.allocate(values.size() * sizeof(FileNode), alignof(FileNode)));
    std::size_t nameBytes = 0;
    for (const NodeValues& value : values) {
        nameBytes += value.name.size();
    }
    char* names = static_cast<char*>(arena.allocate(nameBytes, 1));
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::string_view name = values[i].name;
        if (!name.empty()) {
            std::memcpy(names, name.data(), name.size());
        }
        fill(*new (nodes + i) FileNode, parent.m_part, values[i], names, arena);
        names += name.size();
    }
    parent.m_part->children = nodes;
    parent.m_part->childCount = values.size();
    return {nodes, values.size()};
}

std::span<FileNode> FileTree::addChildren(FileNode& parent, std::span<const NodeValues> values)
{
    return addChildren(parent, values, *m_arenas.front());
}

void FileTree::setRollups(FileNode& node, const NodeRollups& rollups)
{
    if (!node.hasPart()) {
        if (rollups.scannedBytes == node.scannedBytes() &&
            rollups.scannedBytesOnDisk == node.scannedBytesOnDisk() &&
            rollups.fileCount == node.fileCount() && rollups.directoryCount == 0) {
            return;
        }
        DirectoryPart* const part = newPart(node, *m_arenas.front());
        part->logicalSize = node.m_own.logical;
        part->sizeOnDisk = node.m_own.onDisk;
        node.m_part = part;
        node.m_flags = (node.m_flags | FileNode::partFlag) & 0xFFU;
    }
    node.m_part->scannedBytes = rollups.scannedBytes;
    node.m_part->scannedBytesOnDisk = rollups.scannedBytesOnDisk;
    node.m_part->fileCount = rollups.fileCount;
    node.m_part->directoryCount = rollups.directoryCount;
}

std::size_t FileTree::byteSize() const
{
    const std::lock_guard guard(m_lock);
    std::size_t bytes = 0;
    for (const std::unique_ptr<NodeArena>& arena : m_arenas) {
        bytes += arena->usedBytes();
    }
    return bytes;
}

FileNode* findNode(FileNode& root, const FilePath& path)
{
    const FilePath rootPath = root.path();
    if (!rootPath.holds(path)) {
        return nullptr;
    }
    std::string_view rest = std::string_view(path.bytes()).substr(rootPath.bytes().size());
    FileNode* node = &root;
    while (!rest.empty()) {
        rest.remove_prefix(rest.front() == '/' ? 1 : 0);
        const std::string_view name = rest.substr(0, rest.find('/'));
        rest.remove_prefix(name.size());
        const std::span<FileNode> children = node->children();
        const auto child = std::find_if(children.begin(), children.end(),
                                        [&](const FileNode& each) { return each.name() == name; });
        if (child == children.end()) {
            return nullptr;
        }
        node = &*child;
    }
    return node;
}

NodeIndex::NodeIndex(FileNode& root)
{
    m_nodes.resize(static_cast<std::size_t>(root.directoryCount() + root.fileCount()) + 1);
    insert(root);
    std::vector<FileNode*> folders{&root};
    while (!folders.empty()) {
        FileNode* const folder = folders.back();
        folders.pop_back();
        for (FileNode& child : folder->children()) {
            insert(child);
            if (!child.children().empty()) {
                folders.push_back(&child);
            }
        }
    }
}

void NodeIndex::insert(FileNode& node)
{
    if (node.id() < 0) {
        return;
    }
    const auto place = static_cast<std::size_t>(node.id());
    if (place >= m_nodes.size()) {
        m_nodes.resize(std::max(place + 1, m_nodes.size() + m_nodes.size() / 8));
    }
    m_size += m_nodes[place] == nullptr ? 1 : 0;
    m_nodes[place] = &node;
}

FileNode* NodeIndex::find(std::int64_t id) const
{
    const auto place = static_cast<std::size_t>(id);
    return id >= 0 && place < m_nodes.size() ? m_nodes[place] : nullptr;
}

} // namespace quorvane
