// SPDX-License-Identifier: MIT
#include "CheckedMath.h"
#include "DuplicateFinder.h"
#include "GroupTexts.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <memory>
#include <utility>

namespace quorvane::DuplicateFinder {
namespace {

QString idOf(std::int64_t bytes, const std::vector<FileNode*>& files)
{
    const std::int64_t firstId = files.empty() ? 0 : files.front()->id();
    return QStringLiteral("dup-%1-%2-%3").arg(bytes).arg(firstId).arg(files.size());
}

FileNode* newestOf(const std::vector<FileNode*>& files)
{
    // An absent date compares below every present one.
    const auto newest =
        std::max_element(files.begin(), files.end(), [](const FileNode* a, const FileNode* b) {
            return a->dateModified() < b->dateModified();
        });
    return newest == files.end() ? nullptr : *newest;
}

} // namespace

Group::Group(std::int64_t bytes, std::vector<FileNode*> files, NodePointer tree)
    : Group(bytes, std::move(files), std::move(tree), *std::make_unique<GroupTexts>())
{}

Group::Group(std::int64_t bytes, std::vector<FileNode*> files, NodePointer tree, GroupTexts& texts)
    : m_bytes(bytes)
    , m_files(std::move(files))
    , m_tree(std::move(tree))
    , m_id(idOf(bytes, m_files))
    , m_formattedSize(texts.size(bytes))
    , m_formattedReclaimable(texts.size(reclaimableBytes()))
    , m_newestFile(newestOf(m_files))
{
    noteFolders(texts);
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
    // In one tree a folder's path and its node stand for each other. Files of one folder mostly
    // come one after the other.
    std::vector<const FileNode*> folders;
    folders.reserve(m_files.size());
    for (const FileNode* file : m_files) {
        const FileNode* const folder = file->parent();
        if (!folders.empty() && folders.back() == folder) {
            continue;
        }
        const auto known = static_cast<std::size_t>(m_folderCount);
        if (known < m_topFolders.size() &&
            std::find(folders.begin(), folders.end(), folder) == folders.end()) {
            m_topFolders[known] = texts.folder(*file);
            ++m_folderCount;
        }
        folders.push_back(folder);
    }
    std::sort(folders.begin(), folders.end(), std::less<>());
    m_folderCount = std::distance(folders.begin(), std::unique(folders.begin(), folders.end()));
}

} // namespace quorvane::DuplicateFinder
