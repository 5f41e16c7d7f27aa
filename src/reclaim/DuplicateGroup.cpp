// SPDX-License-Identifier: MIT
#include "ByteFormatter.h"
#include "CheckedMath.h"
#include "DuplicateFinder.h"
#include "FilePath.h"
#include "Text.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace quorvane::DuplicateFinder {
namespace {

constexpr std::size_t mostTopFolders = 2;

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

QString folderName(const FileNode& file)
{
    const FilePath folder = file.path().parent();
    const std::string_view name = folder.lastComponent();
    return displayText(name.empty() ? std::string_view(folder.bytes()) : name);
}

} // namespace

Group::Group(std::int64_t bytes, std::vector<FileNode*> files, NodePointer tree)
    : m_bytes(bytes)
    , m_files(std::move(files))
    , m_tree(std::move(tree))
    , m_id(idOf(bytes, m_files))
    , m_formattedSize(ByteFormatter::string(bytes))
    , m_formattedReclaimable(ByteFormatter::string(reclaimableBytes()))
    , m_newestFile(newestOf(m_files))
{
    noteFolders();
}

std::int64_t Group::reclaimableBytes() const
{
    const auto count = static_cast<std::int64_t>(m_files.size());
    return checkedMultiply(m_bytes, std::max<std::int64_t>(count - 1, 0),
                           "DuplicateFinder.reclaimableBytes");
}

void Group::noteFolders()
{
    // In one tree a folder's path and its node stand for each other.
    std::unordered_set<const FileNode*> folders;
    for (const FileNode* file : m_files) {
        if (folders.insert(file->parent()).second && m_topFolders.size() < mostTopFolders) {
            m_topFolders.push_back(folderName(*file));
        }
    }
    m_folderCount = static_cast<std::int64_t>(folders.size());
}

} // namespace quorvane::DuplicateFinder
