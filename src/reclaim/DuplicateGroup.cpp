// SPDX-License-Identifier: MIT
#include "ByteFormatter.h"
#include "CheckedMath.h"
#include "DuplicateFinder.h"
#include "FilePath.h"
#include "GroupTexts.h"
#include "Text.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <string_view>
#include <utility>

namespace quorvane::DuplicateFinder {
namespace {

QString idOf(std::int64_t bytes, const std::vector<FileNode*>& files)
{
    const std::int64_t firstId = files.empty() ? 0 : files.front()->id();
    return QStringLiteral("dup-%1-%2-%3").arg(bytes).arg(firstId).arg(files.size());
}

std::size_t placeOf(std::uint64_t key, std::size_t places)
{
    return static_cast<std::size_t>((key * 0x9E3779B97F4A7C15U) >> 32) & (places - 1);
}

QString folderName(const FileNode& file)
{
    const FileNode* const parent = file.parent();
    if (parent != nullptr && parent->parent() != nullptr) {
        return displayText(parent->name());
    }
    const FilePath folder = file.path().parent();
    const std::string_view name = folder.lastComponent();
    return displayText(name.empty() ? std::string_view(folder.bytes()) : name);
}

bool holds(const std::vector<const FileNode*>& sorted, const FileNode& file)
{
    return std::binary_search(sorted.begin(), sorted.end(), &file, std::less<>());
}

/// Absent where there is nothing to mark.
std::shared_ptr<const GroupMarks> sorted(GroupMarks marks)
{
    if (marks.sameFile.empty() && marks.brokenOff.empty()) {
        return nullptr;
    }
    std::sort(marks.sameFile.begin(), marks.sameFile.end(), std::less<>());
    std::sort(marks.brokenOff.begin(), marks.brokenOff.end(), std::less<>());
    return std::make_shared<const GroupMarks>(std::move(marks));
}

/// Whether a's path comes before b's when theirs go on with a slash behind these names.
bool isFolderBefore(std::string_view a, std::string_view b)
{
    const std::size_t common = std::min(a.size(), b.size());
    const int order = a.substr(0, common).compare(b.substr(0, common));
    if (order != 0 || a.size() == b.size()) {
        return order < 0;
    }
    const std::string_view slash = "/";
    return a.size() < b.size() ? slash < b.substr(common, 1) : a.substr(common, 1) < slash;
}

} // namespace

bool isListedBefore(const FileNode& a, const FileNode& b)
{
    const std::size_t depth = a.depth();
    const std::size_t otherDepth = b.depth();
    if (depth != otherDepth) {
        return depth < otherDepth;
    }
    const FileNode* first = &a;
    const FileNode* second = &b;
    while (first->parent() != second->parent()) {
        first = first->parent();
        second = second->parent();
    }
    return first == &a ? first->name() < second->name()
                       : isFolderBefore(first->name(), second->name());
}

Group::Group(std::int64_t bytes, std::vector<FileNode*> files, NodePointer tree)
    : Group(bytes, std::move(files), std::move(tree), *std::make_unique<GroupTexts>())
{}

Group::Group(std::int64_t bytes, std::vector<FileNode*> files, NodePointer tree, GroupTexts& texts,
             GroupMarks marks)
    : m_bytes(bytes)
    , m_files(std::move(files))
    , m_tree(std::move(tree))
    , m_marks(sorted(std::move(marks)))
    , m_formattedSize(texts.size(bytes))
    , m_formattedReclaimable(texts.size(reclaimableBytes()))
{
    std::sort(m_files.begin(), m_files.end(),
              [](const FileNode* a, const FileNode* b) { return isListedBefore(*a, *b); });
    m_id = idOf(bytes, m_files);
    for (FileNode* file : m_files) {
        // An absent date compares below every present one.
        if (!isBrokenOff(*file) &&
            (m_newestFile == nullptr || m_newestFile->dateModified() < file->dateModified())) {
            m_newestFile = file;
        }
    }
    noteFolders(texts);
}

bool Group::isSameFile(const FileNode& file) const
{
    return m_marks && holds(m_marks->sameFile, file);
}

bool Group::isBrokenOff(const FileNode& file) const
{
    return m_marks && holds(m_marks->brokenOff, file);
}

std::int64_t Group::reclaimableBytes() const
{
    return reclaimable(m_bytes, m_files.size());
}

std::int64_t Group::reclaimable(std::int64_t bytes, std::size_t count)
{
    return checkedMultiply(bytes, std::max<std::int64_t>(static_cast<std::int64_t>(count) - 1, 0),
                           "DuplicateFinder.reclaimableBytes");
}

void Group::noteFolders(GroupTexts& texts)
{
    // In their order files of one folder come one after the other.
    const FileNode* last = nullptr;
    for (const FileNode* file : m_files) {
        if (m_folderCount > 0 && file->parent() == last) {
            continue;
        }
        last = file->parent();
        if (const auto known = static_cast<std::size_t>(m_folderCount++);
            known < m_topFolders.size()) {
            m_topFolders[known] = texts.folder(*file);
        }
    }
}

QString GroupTexts::size(std::int64_t bytes)
{
    Size& known = m_sizes[placeOf(static_cast<std::uint64_t>(bytes), places)];
    if (known.bytes != bytes) {
        known = {bytes, ByteFormatter::string(bytes)};
    }
    return known.text;
}

QString GroupTexts::folder(const FileNode& file)
{
    const FileNode* const node = file.parent();
    if (node == nullptr) {
        return folderName(file);
    }
    Folder& known = m_folders[placeOf(reinterpret_cast<std::uintptr_t>(node), places)];
    if (known.node != node) {
        known = {node, folderName(file)};
    }
    return known.name;
}

} // namespace quorvane::DuplicateFinder
